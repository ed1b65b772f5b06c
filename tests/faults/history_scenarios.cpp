// Scenarios of transactions: nested, rolled back, undone, redone, limited, and summed up.
// What must hold behind a failure is fault_stage.
#include "tests/faults/fault_stage.h"

namespace kelm::test {

namespace {

/// Something of each sort.
bool change_much(fault_stage& s) {
    object* const made = s.fw.create_object(s.type, s.a);
    return made && made->set_property(props::reference, reference(s.b)) && made->add_inherits_from(s.b) &&
           s.a->set_property(props::text, text("another text that is too long for a string")) &&
           s.b->delete_vector_element(props::list, 1) && s.b->delete_property(props::reference) &&
           s.a->insert_vector_element(props::list, text("inserted"), 0) &&
           s.b->insert_vector_element(props::list, reference(s.c), 0) &&
           s.b->set_vector_element(props::list, reference(s.p), 0) &&
           s.b->move_vector_element(props::list, 0, 1) && s.c->insert_inherits_from(s.b, 0) &&
           s.c->set_inherits_from_position(s.b, 1) && s.heir->replace_inherits_from(s.b, s.a) &&
           s.d->cancel_inherits_from(s.c) && s.q->set_owner(s.c) && s.a->set_child_position(s.p, 0) &&
           s.a->attach(dynamic_cast<observer*>(s.c)) && s.a->detach_object(s.d) &&
           s.c->set_property_not_inheritable(props::text, true) && s.fw.delete_object(s.r);
}

void change_much_before(fault_stage& s) {
    EXPECT_TRUE(s.change([&] { return change_much(s); }));
}

void delete_before(fault_stage& s) {
    EXPECT_TRUE(s.change([&] { return s.fw.delete_object(s.a); }));
}

bool sum_up(fault_stage& s) {
    std::size_t details = 0;
    if (const shared_ptr<delta> all = s.model->delta_since(s.model->next_transaction(nullptr))) {
        for (delta_detail* each : all->modified_details()) {
            std::string name;
            each->name(name);
            if (const auto* const modified = detail_cast<detail_modified>(each))
                details += modified->changed_properties().size() + modified->inherits_changes().size() +
                           modified->child_order_changes().size();
            if (const auto* const then = detail_cast<detail_base_original_properties>(each))
                for (const u32 id : {props::text, props::list, props::reference}) {
                    code_translation translation;
                    code_words words;
                    details += then->original_property_as_string(id, &words).size();
                    details += then->original_property(id, &translation) ? 1 : 0;
                }
        }
        details += all->created_details().size() + all->deleted_details().size();
    }
    const delta* const last = s.model->last_delta();
    delta* const made = s.model->make_delta(s.model->message_at(0));
    const bool is_made = made != nullptr;
    delete_delta(made);
    return details != 0 && last && is_made;
}

} // namespace

std::vector<fault_scenario> history_scenarios() {
    return {
        {"much", nullptr, [](fault_stage& s) { return s.change([&] { return change_much(s); }); }},
        {"empty_transaction", nullptr,
         [](fault_stage& s) {
             s.model->begin_transaction("a transaction with a name that is long enough");
             return s.model->end_transaction() == nullptr;
         }},
        {"nested_with_rollback", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 if (!s.a->set_property(props::number, number(5))) return false;
                 s.model->begin_transaction("inner, with a name that is long enough");
                 if (!change_much(s)) return false;
                 s.model->rollback_transaction();
                 s.model->begin_transaction("second");
                 if (!s.a->set_property(props::number, number(6))) return false;
                 return s.model->end_transaction() != nullptr;
             });
         }},
        {"rollback", nullptr,
         [](fault_stage& s) {
             s.model->begin_transaction("taken back");
             if (!change_much(s)) return false;
             s.model->rollback_transaction_all();
             return true;
         }},
        {"rollback_alone",
         [](fault_stage& s) {
             s.model->begin_transaction("taken back");
             EXPECT_TRUE(change_much(s));
         },
         [](fault_stage& s) {
             s.model->rollback_transaction_all();
             return true;
         }},
        {"rollback_of_the_last_transaction", change_much_before,
         [](fault_stage& s) {
             s.model->rollback_last_transaction();
             return true;
         }},
        {"undo", change_much_before, undo},
        {"redo", undone<change_much_before>, redo},
        {"undo_of_a_deletion", delete_before, undo},
        {"redo_of_a_deletion", undone<delete_before>, redo},
        {"begin_behind_undo", undone<change_much_before>,
         [](fault_stage& s) {
             return s.change([&] { return s.a->set_property(props::number, number(5)); });
         }},
        {"limit_of_the_history", [](fault_stage& s) { s.model->set_undo_levels(4); },
         [](fault_stage& s) { return s.change([&] { return s.a->set_property(props::number, number(5)); }); },
         false, true},
        {"clear_history", change_much_before,
         [](fault_stage& s) {
             s.model->clear_history();
             return true;
         }},
        {"delta", change_much_before, sum_up},
        {"delta_with_deletions", delete_before, sum_up},
        {"transaction_guard", nullptr,
         [](fault_stage& s) {
             transaction_object guard{s.model, "a guard with a name that is long enough"};
             if (!guard.is_open() || !s.b->set_property(props::number, number(5))) return false;
             guard.commit();
             return true;
         },
         true},
        {"create_and_close_model", nullptr,
         [](fault_stage& s) {
             object* const made = s.open_other();
             if (!made) return false;
             made->model()->begin_transaction("a");
             const bool filled = s.fw.create_object(s.type, made) != nullptr;
             made->model()->end_transaction();
             if (!s.fw.delete_object(made)) return false;
             s.other = nullptr;
             return filled;
         }},
        {"names_of_transactions", change_much_before,
         [](fault_stage& s) {
             transaction_names names;
             s.model->undo_names(names, 0);
             std::string words;
             for (std::size_t i = 0; i != s.model->message_count(); ++i)
                 s.model->message_at(i)->to_string(words);
             return !names.empty();
         }},
        {"reads", nullptr,
         [](fault_stage& s) {
             std::size_t found = 0;
             for (object* each : {s.a, s.b, s.heir, s.linked}) {
                 found += each->all_properties()->size() + each->referenced_objects().size();
                 std::string words;
                 for (const u32 id : {props::text, props::list, props::reference, props::name})
                     found += each->get_property_as_string(id, words, nullptr) ? 1 : 0;
                 code_filter nobody;
                 code_sorter order;
                 found += each->children(&nobody, &order).size() + each->child_count(&nobody);
                 found += each->children().size() + each->inheritors().size() +
                          each->referencing_objects().size() + object_full_path_name(each).size();
             }
             return found != 0;
         }},
    };
}

} // namespace kelm::test
