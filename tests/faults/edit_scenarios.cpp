// Scenarios of values: set, deleted, elements of lists, marks and refreshes.
// What must hold behind a failure is fault_stage.
#include "tests/faults/fault_stage.h"

namespace kelm::test {

namespace {

void append(vector_property& to, const abstract_property& value) {
    std::unique_ptr<abstract_property> made{value.clone()};
    to.elements.push_back(made.get());
    made.release();
}

template <class... Values>
std::unique_ptr<vector_property> list_of(const Values&... values) {
    auto out = std::make_unique<vector_property>();
    (append(*out, values), ...);
    return out;
}

/// Frees what nobody has consumed.
struct given_values : initial_values {
    given_values() { reserve(2); }
    given_values(const given_values&) = delete;
    given_values& operator=(const given_values&) = delete;
    ~given_values() {
        for (const auto& [id, value] : *this) delete value;
    }
};

bool set(fault_stage& stage, object* what, u32 id, const abstract_property& value) {
    return stage.change([&] { return what->set_property(id, value); });
}

constexpr const char* long_text = "a text that is far too long for a string to keep it inside";

} // namespace

std::vector<fault_scenario> edit_scenarios() {
    return {
        {"set_text", nullptr, [](fault_stage& s) { return set(s, s.a, props::text, text(long_text)); }},
        {"set_first_text", nullptr, [](fault_stage& s) { return set(s, s.p, props::text, text(long_text)); }},
        {"set_inherited_text", nullptr,
         [](fault_stage& s) { return set(s, s.heir, props::text, text(long_text)); }},
        {"set_numbers", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.a->set_property(props::number, number(7)) &&
                        s.a->set_property(props::flag, flag(true)) &&
                        s.a->set_property(props::real, property<double>{1.5});
             });
         }},
        {"set_own_kind", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.a->set_property(props::definition, code_value{7}) &&
                        s.p->set_property(props::definition, code_value{8}) &&
                        s.a->set_vector_element(props::list, code_value{9}, 3) &&
                        s.a->append_vector_element(props::list, code_value{10});
             });
         }},
        {"set_reference", nullptr,
         [](fault_stage& s) { return set(s, s.a, props::reference, reference(s.q)); }},
        {"set_other_reference", nullptr,
         [](fault_stage& s) { return set(s, s.b, props::reference, reference(s.q)); }},
        {"set_reference_that_many_have", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 for (object* each : {s.a, s.c, s.d, s.p, s.q, s.heir})
                     if (!each->set_property(props::reference, reference(s.b))) return false;
                 return true;
             });
         }},
        {"set_list", nullptr,
         [](fault_stage& s) {
             return set(s, s.b, props::list,
                        *list_of(reference(s.p), reference(s.q), text(long_text), reference(s.p),
                                 *list_of(number(1))));
         }},
        {"set_first_list", nullptr,
         [](fault_stage& s) { return set(s, s.d, props::list, *list_of(reference(s.p), reference(s.q))); }},
        {"delete_value", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.a->delete_property(props::text); }); }},
        {"delete_reference", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.b->delete_property(props::reference); }); }},
        {"delete_list", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.b->delete_property(props::list); }); }},
        {"set_element", nullptr,
         [](fault_stage& s) {
             return s.change([&] { return s.b->set_vector_element(props::list, reference(s.q), 1); });
         }},
        {"insert_element", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.a->insert_vector_element(props::list, text(long_text), 1) &&
                        s.b->insert_vector_element(props::list, reference(s.q), 0);
             });
         }},
        {"insert_element_behind_the_end", nullptr,
         [](fault_stage& s) {
             return s.change([&] { return s.a->insert_vector_element(props::list, text(long_text), 99); });
         }},
        {"append_elements", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.p->append_vector_element(props::list, reference(s.q)) &&
                        s.p->append_vector_element(props::list, reference(s.q)) &&
                        s.a->append_vector_element(props::list, text(long_text));
             });
         }},
        {"delete_elements", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.b->delete_vector_element(props::list, 2) &&
                        s.b->delete_vector_element(props::list, 1) &&
                        s.a->delete_vector_element(props::list, 0);
             });
         }},
        {"move_element", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.b->move_vector_element(props::list, 1, 0) &&
                        s.a->move_vector_element(props::list, 0, 2);
             });
         }},
        {"mark_not_inheritable", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.b->set_property_not_inheritable(props::text, true) &&
                        s.a->set_property_not_inheritable(props::real, false);
             });
         }},
        {"refresh", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 const auto now = text(long_text);
                 const auto before = text("before");
                 return s.a->refresh_property(props::definition, &now, &before) &&
                        s.a->refresh_property(props::definition, nullptr, &now);
             });
         }},
        {"short_forms", nullptr,
         [](fault_stage& s) {
             given_values values;
             values.emplace_back(props::name, text(long_text).clone());
             values.emplace_back(props::reference, reference(s.q).clone());
             return s.fw.create_object_transacted(s.type, s.root, &values) != nullptr;
         },
         true},
    };
}

} // namespace kelm::test
