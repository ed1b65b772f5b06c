// Scenarios of objects, children, bases and observers.
// What must hold behind a failure is fault_stage.
#include "tests/faults/fault_stage.h"

namespace kelm::test {

std::vector<fault_scenario> structure_scenarios() {
    return {
        {"create_tree", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 object* owner = s.root;
                 for (const u32 type : {s.type, types::part, types::hooked, s.type}) {
                     owner = s.fw.create_object(type, owner);
                     if (!owner || !owner->set_property(props::name, text("new"))) return false;
                 }
                 return true;
             });
         }},
        {"create_many", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 for (int i = 0; i != 40; ++i) // more than a page of ids
                     if (!s.fw.create_object(types::part, s.r)) return false;
                 return true;
             });
         }},
        {"delete_leaf", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.fw.delete_object(s.q); }); }},
        {"delete_tree_with_references_into_it", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.fw.delete_object(s.a); }); }},
        {"delete_heir", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.fw.delete_object(s.d); }); }},
        {"delete_objects", nullptr,
         [](fault_stage& s) { return s.change([&] {
                                  return s.fw.delete_objects({s.p, s.b, s.r});
                              }); }},
        {"create_and_delete", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 object* const made = s.fw.create_object(s.type, s.a);
                 return made && made->set_property(props::reference, reference(s.b)) &&
                        s.fw.delete_object(made);
             });
         }},
        {"remove_and_add_child", nullptr,
         [](fault_stage& s) {
             return s.change([&] { return s.a->remove_child(s.p) && s.a->add_child(s.p); });
         }},
        {"remove_children", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.a->remove_children(nullptr); }); }},
        {"set_child_position", nullptr,
         [](fault_stage& s) {
             return s.change(
                 [&] { return s.a->set_child_position(s.p, 0) && s.root->set_child_position(s.b, 3); });
         }},
        {"set_owner", nullptr,
         [](fault_stage& s) { return s.change([&] { return s.p->set_owner(s.b) && s.c->set_owner(s.b); }); }},
        {"add_base", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.p->add_inherits_from(s.a) && s.d->add_inherits_from(s.b) &&
                        s.heir->add_inherits_from(s.b) && s.b->add_inherits_from(s.a); // again: told, no more
             });
         }},
        {"insert_base", nullptr,
         [](fault_stage& s) {
             return s.change(
                 [&] { return s.d->insert_inherits_from(s.b, 0) && s.p->insert_inherits_from(s.b, 0); });
         }},
        {"cancel_base", nullptr,
         [](fault_stage& s) {
             return s.change(
                 [&] { return s.c->cancel_inherits_from(s.a) && s.heir->cancel_all_inherits_from(); });
         }},
        {"replace_base", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.d->replace_inherits_from(s.b, s.c) && s.heir->replace_inherits_from_at(s.b, 0);
             });
         }},
        {"move_base", nullptr,
         [](fault_stage& s) {
             return s.change(
                 [&] { return s.d->add_inherits_from(s.b) && s.d->set_inherits_from_position(s.b, 0); });
         }},
        {"attach_observers", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return s.b->attach(dynamic_cast<observer*>(s.d)) &&
                        s.a->attach(dynamic_cast<observer*>(s.c)) && s.a->detach_object(s.d) &&
                        s.b->detach_object(s.d);
             });
         }},
        {"attach_code_observer", nullptr,
         [](fault_stage& s) {
             code_observer ears;
             const bool attached = s.r->attach(&ears);
             if (attached) s.r->detach(&ears);
             return attached;
         }},
    };
}

} // namespace kelm::test
