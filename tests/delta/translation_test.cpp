// What is shown of a value at the start: texts, names of targets, and what an application makes of them.
// Which value that is is told by original_values_test.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

/// Answers what it is told to.
class translator final : public original_properties_semantics {
public:
    abstract_property* do_it(detail_base_original_properties* of, u32 id, abstract_property* value) override {
        detail = of;
        property = id;
        given = value ? value->to_string() : "null";
        given_value = value;
        return answer ? answer(value) : value;
    }

    detail_base_original_properties* detail = nullptr;
    u32 property = 0;
    std::string given = "not called";
    const abstract_property* given_value = nullptr;
    std::function<abstract_property*(abstract_property*)> answer;
};

class text_translator final : public original_properties_as_string_semantics {
public:
    std::string& do_it(std::string& result, detail_base_original_properties* of, u32 id, value_ptr value,
                       const std::string& in_words) override {
        detail = of;
        property = id;
        given = value ? value->to_string() : "null";
        words = in_words;
        result_was = result;
        if (value) value->from_string("broken");
        if (!own.empty()) return own;
        result = "<" + in_words + ">";
        return result;
    }

    detail_base_original_properties* detail = nullptr;
    u32 property = 0;
    std::string given = "not called";
    std::string words;
    std::string result_was = "not called";
    std::string own;
};

class translations : public delta_world {
protected:
    const detail_base_original_properties& start() {
        if (!kept) kept = model->delta_since(nullptr);
        return *before_of(*kept, a);
    }
    std::string shown(u32 id) { return start().original_property_as_string(id, nullptr); }

    object* const a = thing("a");
    object* const b = thing("b");
    shared_ptr<delta> kept;
};

TEST_F(translations, of_a_value) {
    before([&] { a->set_property(props::text, counted_value{1}); });
    change([&] { a->set_property(props::text, counted_value{2}); });
    (void)start();
    const long alive = counted_value::alive;
    {
        translator same;
        const value_ptr used = start().original_property(props::text, &same);
        EXPECT_EQ(same.given, "counted 1");
        EXPECT_EQ(same.property, props::text);
        EXPECT_EQ(same.detail, &start());
        EXPECT_EQ(used.get(), same.given_value) << "taken as it is";
        EXPECT_EQ(counted_value::alive, alive + 1) << "a clone";
    }
    EXPECT_EQ(counted_value::alive, alive);
    {
        translator other;
        other.answer = [&](abstract_property*) { return new counted_value(7); };
        const value_ptr used = start().original_property(props::text, &other);
        EXPECT_EQ(as_text(used), "counted 7");
        EXPECT_EQ(counted_value::alive, alive + 1) << "what was given is freed";
    }
    {
        translator none;
        none.answer = [](abstract_property*) { return nullptr; };
        EXPECT_FALSE(start().original_property(props::text, &none));
        EXPECT_EQ(counted_value::alive, alive);
    }
    EXPECT_EQ(as_text(start().original_property(props::text, nullptr)), "counted 1");
}

TEST_F(translations, of_no_value) {
    change([&] { a->set_property(props::text, counted_value{1}); });
    (void)start();
    const long alive = counted_value::alive;
    translator same;
    EXPECT_FALSE(start().original_property(props::text, &same));
    EXPECT_EQ(same.given, "null");
    translator other;
    other.answer = [](abstract_property*) { return new counted_value(7); };
    EXPECT_EQ(as_text(start().original_property(props::text, &other)), "counted 7");
    EXPECT_EQ(counted_value::alive, alive);
    text_translator words;
    EXPECT_EQ(start().original_property_as_string(props::text, &words), "<>");
    EXPECT_EQ(words.given, "null");
    EXPECT_EQ(words.words, "");
}

// A value that was made for the read is handed on, not cloned.
TEST_F(translations, of_a_value_that_a_hook_made) {
    object* const h = hooked("h");
    const abstract_property* made = nullptr;
    const auto supply = [&](int value) {
        hooks.on<post_prop_get_semantic>([&made, value](hook_call& call) {
            if (call.numbers.at(0) == props::real) made = *call.replaceable = new counted_value(value);
            return true;
        });
    };
    supply(1);
    before([&] { a->add_inherits_from(h); });
    change([&] {
        a->set_property(props::real, number(1));
        a->delete_property(props::real);
        a->set_property(props::text, text("x"));
    });
    // Own at the start, or so it seems: the value that was read when it was covered.
    EXPECT_EQ(shown(props::real), "counted 1");
    kept.reset();
    model->clear_history();
    hooks.clear();
    change([&] {
        a->set_property(props::text, text("y"));
        a->set_property_not_inheritable(props::real, true);
    });
    (void)start();
    supply(2);
    const long alive = counted_value::alive;
    translator same;
    EXPECT_EQ(as_text(start().original_property(props::real, &same)), "counted 2");
    EXPECT_EQ(same.given_value, made);
    text_translator words;
    EXPECT_EQ(start().original_property_as_string(props::real, &words), "<counted 2>");
    EXPECT_TRUE(start().had_property(props::real));
    EXPECT_EQ(counted_value::alive, alive);
}

TEST_F(translations, of_a_text) {
    before([&] { a->set_property(props::text, text("old")); });
    change([&] { a->set_property(props::text, text("new")); });
    text_translator words;
    EXPECT_EQ(start().original_property_as_string(props::text, &words), "<old>");
    EXPECT_EQ(words.detail, &start());
    EXPECT_EQ(words.property, props::text);
    EXPECT_EQ(words.given, "old");
    EXPECT_EQ(words.words, "old");
    EXPECT_EQ(words.result_was, "");
    words.own = "its own";
    EXPECT_EQ(start().original_property_as_string(props::text, &words), "its own");
    EXPECT_EQ(shown(props::text), "old") << "it had a clone";
}

TEST_F(translations, texts_are_those_of_the_values_and_names_of_targets) {
    object* const nameless = thing("");
    nameless->delete_property(props::name);
    const struct {
        const char* why;
        std::unique_ptr<abstract_property> value;
        const char* shown;
    } rows[] = {
        {"a text", std::unique_ptr<abstract_property>{text("x").clone()}, "x"},
        {"a number", std::unique_ptr<abstract_property>{number(12).clone()}, "12"},
        {"a reference", std::unique_ptr<abstract_property>{reference(b).clone()}, "b"},
        {"a reference to nothing", std::unique_ptr<abstract_property>{reference(nullptr).clone()}, "NULL"},
        {"a reference to what has no name", std::unique_ptr<abstract_property>{reference(nameless).clone()},
         ""},
        {"a reference to the model", std::unique_ptr<abstract_property>{reference(root).clone()}, ""},
        {"an empty list", list(), ""},
        {"a list of one", list(text("x")), "x"},
        {"a list, without blanks", list(text("x"), number(1), text(""), reference(b)), "x,1,,b"},
        {"a list of references", list(reference(b), reference(nullptr)), "b,NULL"},
        {"a list in a list, in its own form", list(*list(text("x"), text("y")), text("z")), nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        before([&] { a->set_property(props::list, *row.value); });
        change([&] { a->delete_property(props::list); });
        kept.reset();
        const std::string expected =
            row.shown ? row.shown
                      : dynamic_cast<const vector_property&>(*row.value).elements[0]->to_string() + ",z";
        EXPECT_EQ(shown(props::list), expected);
    }
}

TEST_F(translations, an_entry_without_a_value_is_shown_as_none) {
    vector_property holes;
    holes.elements = {nullptr, text("x").clone(), nullptr};
    before([&] { a->set_property(props::list, holes); });
    change([&] { a->delete_property(props::list); });
    EXPECT_EQ(shown(props::list), "NULL,x,NULL");
}

TEST_F(translations, targets_have_the_names_of_the_start) {
    object* const nameless = thing("");
    before([&] {
        nameless->delete_property(props::name);
        a->set_property(props::reference, reference(b));
        a->set_property(props::list, *list(reference(b), reference(nameless), reference(a)));
    });
    change([&] {
        b->set_property(props::name, text("renamed"));
        a->set_property(props::name, text("renamed as well"));
        a->delete_property(props::reference);
        a->delete_property(props::list);
    });
    EXPECT_EQ(shown(props::reference), "b");
    EXPECT_EQ(shown(props::list), "b,,a");
    kept.reset();
    change([&] {
        nameless->set_property(props::name, text("named"));
        fw.delete_object(b);
    });
    EXPECT_EQ(shown(props::reference), "b");
    EXPECT_EQ(shown(props::list), "b,<unknown name>,a");
}

// One that is not told, as nothing differs in the end, is known all the same.
TEST_F(translations, a_target_that_is_not_told_has_the_name_of_the_start_as_well) {
    object* const nameless = thing("");
    before([&] {
        nameless->delete_property(props::name);
        a->set_property(props::reference, reference(nameless));
    });
    change([&] {
        nameless->set_property(props::name, text("for a moment"));
        nameless->delete_property(props::name);
        a->delete_property(props::reference);
    });
    EXPECT_EQ(shown(props::reference), "<unknown name>");
}

// Ids are those of one model: an object elsewhere may have that of one which is told here.
TEST_F(translations, a_target_in_another_model_has_its_own_name) {
    object* const elsewhere = fw.create_object(type_id::model, nullptr);
    object* foreign = nullptr;
    while (!foreign || foreign->id() != b->id()) foreign = fw.create_object(types::thing, elsewhere);
    foreign->set_property(props::name, text("foreign"));
    before([&] { a->set_property(props::reference, reference(foreign)); });
    change([&] {
        b->set_property(props::name, text("renamed"));
        a->delete_property(props::reference);
    });
    EXPECT_EQ(shown(props::reference), "foreign");
    kept.reset();
    model->clear_history();
    fw.delete_object(elsewhere);
    fw.set_in_semantic(false);
}

TEST_F(translations, a_new_target_has_its_present_name) {
    object* made = nullptr;
    change([&] { a->set_property(props::reference, reference(b)); });
    begin();
    made = thing("new");
    a->set_property(props::reference, reference(made));
    end();
    change([&] { a->delete_property(props::reference); });
    tran_begin_message* last = model->last_transaction();
    kept = model->delta_since(last);
    EXPECT_EQ(shown(props::reference), "new");
}

} // namespace
} // namespace kelm::test
