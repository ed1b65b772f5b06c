// The stage, and the table of operations by kind of hook.
// Nothing is asserted here but that no kind is missing.
#include "tests/object/hook_stage.h"

#include <memory>

namespace kelm::test {

hook_stage::hook_stage(u32 type) {
    begin();
    h = make(type, "h");
    base = thing("base");
    second_base = thing("second");
    spare = thing("spare");
    child = thing("child", h);
    sibling = thing("sibling", h);
    loose = thing("loose", h);
    watched = thing("watched");
    other = thing("other");
    victim = thing("victim");
    h->remove_child(loose);
    base->set_property(props::text, text("based"));
    h->add_inherits_from(base);
    h->add_inherits_from(second_base);
    h->set_property(props::number, number(1));
    vector_property numbers;
    for (const int each : {1, 2, 3}) numbers.elements.push_back(new property<int>{each});
    h->set_property(props::list, numbers);
    watched->attach(dynamic_cast<observer*>(h));
    end();
    model->clear_history();
    model->clear_modified();
    before = dump();
}

void hook_stage::on(int kind, hook_program::action what) {
    if (kind != post_end_transaction_semantic::kind) return hooks.on(kind, std::move(what));
    at_end = [what = std::move(what)](kelm::model* ended) {
        hook_call call;
        call.kind = post_end_transaction_semantic::kind;
        call.at = ended->as_object();
        return what(call);
    };
}

void hook_stage::pass_all() {
    hooks.clear();
    model_hooks::clear();
}

void hook_stage::open(around what) {
    if (what == around::nothing) return;
    begin("outer");
    other->set_property(props::text, text("outer"));
    if (what == around::a_transaction) return;
    begin("nested");
    other->set_property(props::number, number(1));
}

void hook_stage::close() {
    while (model->in_transaction() && model->end_transaction()) {}
}

std::string hook_stage::outer_changes() const {
    return std::string(other->defines_property(props::text) ? "outer " : "") +
           (other->defines_property(props::number) ? "nested" : "");
}

bool hook_stage::react() {
    return other->set_property(props::real, property<double>{0.5}) && fw.delete_object(victim);
}

std::string told(const hook_call& call) {
    std::string line = line_of(call);
    for (const std::string& each : call.values) line += " '" + each + "'";
    if (call.replaceable) line += *call.replaceable ? " '" + (*call.replaceable)->to_string() + "'" : " none";
    if (call.text) line += " text '" + *call.text + "'";
    if (call.from) line += " from " + own_name(dynamic_cast<object*>(call.from));
    if (call.told) line += " told " + std::to_string(call.told->type());
    return line;
}

namespace {

std::string answer(bool done) { return done ? "true" : "false"; }
std::string answer(const object* made) { return made ? "made" : "null"; }

std::string create(hook_stage& s) { return answer(s.fw.create_object(s.h->type(), s.root)); }
std::string create_below(hook_stage& s) { return answer(s.fw.create_object(types::thing, s.h)); }
std::string delete_it(hook_stage& s) { return answer(s.fw.delete_object(s.h)); }
std::string delete_child(hook_stage& s) { return answer(s.fw.delete_object(s.child)); }
std::string change_watched(hook_stage& s) {
    return answer(s.watched->set_property(props::text, text("new")));
}
std::string get(hook_stage& s) { return as_text(s.h->get_property(props::text)); }
std::string has(hook_stage& s) { return answer(s.h->has_property(props::text)); }
std::string get_text(hook_stage& s) {
    std::string out;
    const bool found = s.h->get_property_as_string(props::text, out);
    return answer(found) + " '" + out + "'";
}
std::string set(hook_stage& s) { return answer(s.h->set_property(props::text, text("new"))); }
std::string set_own(hook_stage& s) { return answer(s.h->set_property(props::number, number(2))); }
std::string set_element(hook_stage& s) { return answer(s.h->set_vector_element(props::list, number(9), 1)); }
std::string insert_element(hook_stage& s) {
    return answer(s.h->insert_vector_element(props::list, number(9), 1));
}
std::string append_element(hook_stage& s) {
    return answer(s.h->append_vector_element(props::list, number(9)));
}
std::string move_element(hook_stage& s) { return answer(s.h->move_vector_element(props::list, 0, 2)); }
std::string delete_value(hook_stage& s) { return answer(s.h->delete_property(props::number)); }
std::string delete_element(hook_stage& s) { return answer(s.h->delete_vector_element(props::list, 0)); }
std::string mark(hook_stage& s) { return answer(s.h->set_property_not_inheritable(props::text, true)); }
std::string add_child(hook_stage& s) { return answer(s.h->add_child(s.loose)); }
std::string remove_child(hook_stage& s) { return answer(s.h->remove_child(s.child)); }
std::string order_child(hook_stage& s) { return answer(s.h->set_child_position(s.child, 1)); }
std::string count_children(hook_stage& s) {
    std::vector<object*> out{s.other};
    const std::size_t count = s.h->children(out);
    return std::to_string(count) + " of " + std::to_string(out.size());
}
std::string add_base(hook_stage& s) { return answer(s.h->add_inherits_from(s.spare)); }
std::string cancel_base(hook_stage& s) { return answer(s.h->cancel_inherits_from(s.base)); }
std::string replace_base(hook_stage& s) { return answer(s.h->replace_inherits_from(s.spare, s.base)); }
std::string insert_base(hook_stage& s) { return answer(s.h->insert_inherits_from(s.spare, 1)); }
std::string order_base(hook_stage& s) { return answer(s.h->set_inherits_from_position(s.base, 1)); }
std::string set_owner(hook_stage& s) { return answer(s.h->set_owner(s.other)); }
std::string whole_transaction(hook_stage& s) {
    s.model->begin_transaction("whole");
    s.spare->set_property(props::text, text("new"));
    return s.model->end_transaction() ? "ended" : "null";
}

constexpr auto mutation = moment::mutation;
constexpr auto reading = moment::reading;

constexpr hook_row rows[] = {
    {0, "update", mutation, change_watched, "0 h from watched told 7", "true", "false", true, "true"},
    {1, "create", mutation, create, "1 none", "made", "null", true, "made"},
    {2, "delete", mutation, delete_it, "2 none", "true", "false", true, "true"},
    {3, "delete", mutation, delete_it, "3 h", "true", "false", false, "true"},
    {4, "get", reading, get, "4 h 10", "based", "none", false, "none"},
    {4, "has", reading, has, "4 h 10", "true", "false", false, "false"},
    {5, "get", reading, get, "5 h 10 'based'", "based", "none", false, "based"},
    {5, "has", reading, has, "5 h 10 'based'", "true", "false", false, "true"},
    {6, "get text", reading, get_text, "6 h 10 'based' text 'based'", "true 'based'", "false 'based'", false,
     "true 'based'"},
    {7, "set", mutation, set, "7 h h 10 'new'", "true", "false", false, "true"},
    {8, "set", mutation, set, "8 h h base 10 'new' 'based'", "true", "false", true, "true"},
    {8, "set anew", mutation, set_own, "8 h h h 11 '2' '1'", "true", "false", true, "true"},
    {9, "set element", mutation, set_element, "9 h h 14 1 '9'", "true", "false", false, "true"},
    {10, "set element", mutation, set_element, "10 h h 14 1 '9' '2'", "true", "false", true, "true"},
    {11, "insert", mutation, insert_element, "11 h h 14 1 '9'", "true", "false", false, "true"},
    {11, "append", mutation, append_element, "11 h h 14 3 '9'", "true", "false", false, "true"},
    {12, "insert", mutation, insert_element, "12 h h 14 1 '9'", "true", "false", true, "true"},
    {12, "append", mutation, append_element, "12 h h 14 3 '9'", "true", "false", true, "true"},
    {13, "move", mutation, move_element, "13 h h 14 0 2", "true", "false", false, "true"},
    {14, "move", mutation, move_element, "14 h h 14 0 2", "true", "false", true, "true"},
    {15, "delete value", mutation, delete_value, "15 h h 11", "true", "false", false, "true"},
    {16, "delete value", mutation, delete_value, "16 h h 11 '1'", "true", "false", true, "true"},
    {17, "delete element", mutation, delete_element, "17 h h 14 0", "true", "false", false, "true"},
    {18, "delete element", mutation, delete_element, "18 h h 14 0 '1'", "true", "false", true, "true"},
    {19, "mark", mutation, mark, "19 h h 10 1", "true", "false", false, "true"},
    {20, "mark", mutation, mark, "20 h h 10 1 'based'", "true", "false", true, "true"},
    {21, "add child", mutation, add_child, "21 h loose", "true", "false", false, "true"},
    {21, "create below", mutation, create_below, "21 h none", "made", "null", true, "made"},
    {22, "add child", mutation, add_child, "22 h loose", "true", "false", true, "true"},
    {22, "create below", mutation, create_below, "22 h none", "made", "null", true, "made"},
    {23, "remove child", mutation, remove_child, "23 h child", "true", "false", false, "true"},
    {23, "delete child", mutation, delete_child, "23 h child", "true", "false", false, "true"},
    {24, "remove child", mutation, remove_child, "24 h child", "true", "false", true, "true"},
    {24, "delete child", mutation, delete_child, "24 h none", "true", "false", true, "true"},
    {25, "order child", mutation, order_child, "25 h child 1", "true", "false", false, "true"},
    {26, "order child", mutation, order_child, "26 h child 1 0", "true", "false", true, "true"},
    {27, "list children", reading, count_children, "27 h", "2 of 2", "0 of 0", false, "0 of 0"},
    {28, "list children", reading, count_children, "28 h", "2 of 2", "0 of 0", false, "2 of 2"},
    {29, "add base", mutation, add_base, "29 h spare", "true", "false", false, "true"},
    {30, "add base", mutation, add_base, "30 h spare", "true", "false", true, "true"},
    {31, "cancel base", mutation, cancel_base, "31 h base", "true", "false", false, "true"},
    {32, "cancel base", mutation, cancel_base, "32 h base", "true", "false", true, "true"},
    {33, "replace base", mutation, replace_base, "33 h spare base", "true", "false", false, "true"},
    {34, "replace base", mutation, replace_base, "34 h spare base", "true", "false", true, "true"},
    {35, "insert base", mutation, insert_base, "35 h spare 1", "true", "false", false, "true"},
    {36, "insert base", mutation, insert_base, "36 h spare 1", "true", "false", true, "true"},
    {37, "order base", mutation, order_base, "37 h base 1", "true", "false", false, "true"},
    {38, "order base", mutation, order_base, "38 h base 1 0", "true", "false", true, "true"},
    {39, "set owner", mutation, set_owner, "39 h other", "true", "false", false, "true"},
    {40, "set owner", mutation, set_owner, "40 h other model", "true", "false", true, "true"},
    {42, "end", moment::end, whole_transaction, "42 model", "ended", "null", false, "ended"},
};

/// Kinds that no operation of a model in memory runs.
constexpr int without_row[] = {
    post_model_load_semantic::kind,  // reading a model
    validate_semantic::kind,         // the application's own
    read_newer_model_semantic::kind, // reading a model
};

constexpr bool every_kind_has_its_place() {
    for (int kind = 0; kind != all_semantics::size; ++kind) {
        bool has_row = false;
        for (const hook_row& each : rows) has_row = has_row || each.kind == kind;
        bool has_none = false;
        for (const int each : without_row) has_none = has_none || each == kind;
        if (has_row == has_none) return false;
    }
    return true;
}
static_assert(every_kind_has_its_place(), "a kind of hook has no operation that runs it in the table");

} // namespace

std::span<const hook_row> hook_rows() { return rows; }

} // namespace kelm::test
