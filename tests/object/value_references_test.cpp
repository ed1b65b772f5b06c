// The back-list of references: it follows every value that enters or leaves an object.
// What deleting a target does to those who refer to it is the business of deletion.
#include "tests/object/value_lines.h"

namespace kelm::test {

class value_references : public value_world {
protected:
    value_references() : a(thing("a")), b(thing("b")), x(thing("x")), y(thing("y")) {}
    /// \returns who refers to x and who to y
    std::string links() const {
        return "x: " + names_of(x->referencing_objects()) + "; y: " + names_of(y->referencing_objects());
    }

    object* a;
    object* b;
    object* x;
    object* y;
};

TEST_F(value_references, a_replaced_reference_moves_the_link) {
    EXPECT_TRUE(change([&] { return a->set_property(props::reference, reference(x)); }));
    EXPECT_EQ(links(), "x: a; y: ");
    EXPECT_TRUE(change([&] { return a->set_property(props::reference, reference(y)); }));
    EXPECT_EQ(links(), "x: ; y: a");
    EXPECT_TRUE(change([&] { return a->set_property(props::reference, reference(nullptr)); }));
    EXPECT_EQ(links(), "x: ; y: ");
    model->undo();
    EXPECT_EQ(links(), "x: ; y: a");
    model->undo();
    EXPECT_EQ(links(), "x: a; y: ");
    model->undo();
    EXPECT_EQ(links(), "x: ; y: ");
    for (const char* const after : {"x: a; y: ", "x: ; y: a", "x: ; y: "}) {
        model->redo();
        EXPECT_EQ(links(), after);
    }
}

TEST_F(value_references, a_deleted_value_takes_its_link_with_it) {
    prepare([&] { a->set_property(props::reference, reference(x)); });
    EXPECT_TRUE(change([&] { return a->delete_property(props::reference); }));
    EXPECT_EQ(links(), "x: ; y: ");
    model->undo();
    EXPECT_EQ(links(), "x: a; y: ");
}

TEST_F(value_references, a_value_of_another_kind_replaces_a_reference_like_any_other) {
    prepare([&] { a->set_property(props::reference, reference(x)); });
    EXPECT_TRUE(change([&] { return a->set_property(props::reference, text("no reference")); }));
    EXPECT_EQ(links(), "x: ; y: ");
    model->undo();
    EXPECT_EQ(links(), "x: a; y: ");
}

TEST_F(value_references, a_list_links_each_of_its_references) {
    property<object*> to_x{x};
    property<object*> to_y{y};
    property<object*> to_nobody{nullptr};
    property<int> no_reference{1};
    prepare([&] {
        a->set_property(props::list, *list_of({&to_x, &no_reference, &to_x, &to_nobody, &to_y}));
    });
    EXPECT_EQ(links(), "x: a; y: a");
    begin();
    ASSERT_TRUE(a->delete_vector_element(props::list, 0));
    EXPECT_EQ(links(), "x: a; y: a") << "one of two entries has gone";
    ASSERT_TRUE(a->set_vector_element(props::list, reference(y), 1));
    EXPECT_EQ(links(), "x: ; y: a");
    ASSERT_TRUE(a->move_vector_element(props::list, 1, 3));
    ASSERT_TRUE(a->delete_vector_element(props::list, 2));
    EXPECT_EQ(links(), "x: ; y: a");
    ASSERT_TRUE(a->delete_vector_element(props::list, 2));
    EXPECT_EQ(links(), "x: ; y: ");
    ASSERT_TRUE(a->insert_vector_element(props::list, reference(x), 0));
    EXPECT_EQ(links(), "x: a; y: ");
    ASSERT_TRUE(a->insert_vector_element(props::list, reference(y), 100));
    EXPECT_EQ(links(), "x: a; y: ") << "what is not put in is not linked";
    end();
    model->undo();
    EXPECT_EQ(links(), "x: a; y: a");
    model->redo();
    EXPECT_EQ(links(), "x: a; y: ");
    EXPECT_TRUE(change([&] { return a->delete_property(props::list); }));
    EXPECT_EQ(links(), "x: ; y: ");
    model->undo();
    EXPECT_EQ(links(), "x: a; y: ");
}

TEST_F(value_references, each_referring_value_has_a_link_of_its_own) {
    prepare([&] {
        a->set_property(props::reference, reference(x));
        a->append_vector_element(props::list, reference(x));
        b->set_property(props::reference, reference(x));
        x->set_property(props::reference, reference(x));
    });
    std::vector<std::string> names;
    for (const object* each : x->referencing_objects()) names.push_back(object_name(each));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "x"})) << "each object is told once";
    prepare([&] { a->delete_property(props::reference); });
    EXPECT_EQ(x->referencing_objects().size(), 3u) << "the list still refers";
    prepare([&] { a->delete_property(props::list); });
    EXPECT_EQ(x->referencing_objects().size(), 2u);
}

TEST_F(value_references, lists_inside_lists_are_not_looked_into) {
    property<object*> to_x{x};
    const auto inner = list_of({&to_x});
    prepare([&] { a->set_property(props::list, *list_of({inner.get()})); });
    EXPECT_EQ(links(), "x: ; y: ");
}

TEST_F(value_references, an_inherited_reference_links_its_owner_alone) {
    prepare([&] {
        a->set_property(props::reference, reference(x));
        b->add_inherits_from(a);
    });
    EXPECT_EQ(links(), "x: a; y: ");
    ASSERT_TRUE(change([&] { return b->set_property(props::reference, reference(y)); }));
    EXPECT_EQ(links(), "x: a; y: b") << "the clone of the inherited value is not stored, and not linked";
    model->undo();
    EXPECT_EQ(links(), "x: a; y: ");
    model->redo();
    EXPECT_EQ(links(), "x: a; y: b");
    EXPECT_EQ(value_text(dynamic_cast<property_set_message*>(model->message_at(1))->old_value()), "->x");
}

TEST_F(value_references, a_rollback_puts_links_back) {
    prepare([&] { a->set_property(props::reference, reference(x)); });
    const std::string before = dump();
    begin();
    ASSERT_TRUE(a->set_property(props::reference, reference(y)));
    ASSERT_TRUE(a->append_vector_element(props::list, reference(y)));
    ASSERT_TRUE(b->set_property(props::reference, reference(a)));
    model->rollback_transaction();
    EXPECT_EQ(dump(), before);
}

TEST_F(value_references, values_in_the_hands_of_the_history_link_nobody) {
    prepare([&] { a->set_property(props::reference, reference(x)); });
    ASSERT_TRUE(change([&] { return a->set_property(props::reference, reference(y)); }));
    EXPECT_EQ(links(), "x: ; y: a");
    ASSERT_TRUE(change([&] { return fw.delete_object(x); }));
    EXPECT_EQ(x->state(), state::deleted);
    model->undo();
    model->undo();
    EXPECT_EQ(links(), "x: a; y: ");
}

} // namespace kelm::test
