// The hooks of models that take part in reading: those for a newer version, and those behind loading.
// All other hooks stay silent while a model is read.
#include "tests/persistence/document_world.h"
#include "tests/persistence/stream_world.h"
#include "tests/support/dom_document.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kelm::test {
namespace {

/// What the hooks below do, and what they were told.
struct loading {
    static inline bool watched = false; ///< else they pass and do nothing, as in the tests of other files
    static inline std::vector<std::string> told;
    static inline bool answer = true;
    static inline std::function<void(kelm::model*)> also;
};

template <u32 Id>
class newer final : public read_newer_model_semantic {
public:
    u32 id() const override { return Id; }
    bool do_it(u32 version, u32 minor_version) override {
        if (!loading::watched) return true;
        loading::told.push_back("newer " + std::to_string(version) + "." + std::to_string(minor_version) +
                                (framework::instance().in_semantic() ? " marked" : ""));
        return loading::answer;
    }
};

template <u32 Id>
class loaded final : public post_model_load_semantic {
public:
    u32 id() const override { return Id; }
    bool do_it(kelm::model* which, u32 version, u32 minor_version) override {
        if (!loading::watched) return true;
        loading::told.push_back("loaded " + std::to_string(version) + "." + std::to_string(minor_version) +
                                " with " + names_of(which->as_object()->children()) +
                                (framework::instance().in_semantic() ? " marked" : ""));
        if (loading::also) loading::also(which);
        return loading::answer;
    }
};

/// Hooks are of the process: they are entered once, before the models of the test are made.
class with_loading_hooks {
protected:
    with_loading_hooks() {
        static const bool done = [] {
            meta_object* const type =
                started_framework().application_meta_model()->find_meta_object(type_id::model);
            return type->add_semantic(new newer<3100>) && type->add_semantic(new newer<3101>) &&
                   type->add_semantic(new loaded<3102>) && type->add_semantic(new loaded<3103>);
        }();
        EXPECT_TRUE(done);
        loading::watched = true;
    }
    ~with_loading_hooks() {
        loading::watched = false;
        loading::told.clear();
        loading::answer = true;
        loading::also = nullptr;
    }
};

class loading_hooks : protected with_loading_hooks, public stream_world {};

TEST_F(loading_hooks, run_once_the_objects_are_there) {
    thing("a");
    ASSERT_TRUE(load(saved()));
    EXPECT_EQ(loading::told,
              (std::vector<std::string>{"loaded 8.0 with a marked", "loaded 8.0 with a marked"}));
    EXPECT_FALSE(fw.in_semantic());
}

TEST_F(loading_hooks, keeps_the_mark_and_the_objects_when_one_refuses) {
    thing("a");
    loading::answer = false;
    EXPECT_FALSE(load(saved()));
    EXPECT_EQ(loading::told.size(), 1U) << "the first refusal is the last word";
    EXPECT_TRUE(fw.in_semantic());
    EXPECT_EQ(names_of(copy->as_object()->children()), "a");
    fw.set_in_semantic(false);
}

TEST_F(loading_hooks, are_all_asked_about_a_newer_version_which_is_refused_whatever_they_say) {
    thing("a");
    const std::string bytes = saved();
    for (const bool answer : {true, false}) {
        SCOPED_TRACE(answer);
        loading::told.clear();
        loading::answer = answer;
        EXPECT_FALSE(load(bytes, newest_version - 1));
        EXPECT_EQ(loading::told, (std::vector<std::string>{"newer 8.0 marked", "newer 8.0 marked"}));
        EXPECT_FALSE(fw.in_semantic());
    }
}

TEST_F(loading_hooks, may_change_the_model_and_leave_nothing_to_undo) {
    thing("a");
    loading::also = [](kelm::model* which) {
        which->begin_transaction("mended");
        which->as_object()->children().front()->set_property(props::text, text("mended"));
        which->end_transaction();
    };
    ASSERT_TRUE(load(saved(true)));
    EXPECT_EQ(as_text(copy->as_object()->children().front()->get_property(props::text)), "mended");
    EXPECT_FALSE(copy->can_undo());
    EXPECT_FALSE(copy->is_modified());
}

TEST_F(loading_hooks, run_for_documents_as_for_streams) {
    thing("a");
    const dom_document document;
    ASSERT_TRUE(model->write(nullptr, true, 0, false, document.root()));
    const auto read_by = [&](u32 version) {
        loading::told.clear();
        object* const made = fw.create_object(type_id::model, nullptr);
        made->model()->meta_model()->set_version(version);
        const bool was_read = made->model()->read(nullptr, document.root());
        const bool was_marked = fw.in_semantic();
        fw.set_in_semantic(false);
        fw.delete_object(made);
        fw.set_in_semantic(was_marked);
        return was_read;
    };
    EXPECT_TRUE(read_by(newest_version));
    EXPECT_EQ(loading::told,
              (std::vector<std::string>{"loaded 8.0 with a marked", "loaded 8.0 with a marked"}));
    EXPECT_FALSE(read_by(newest_version - 1));
    EXPECT_EQ(loading::told, (std::vector<std::string>{"newer 8.0 marked", "newer 8.0 marked"}));
    EXPECT_FALSE(fw.in_semantic());
    loading::answer = false;
    EXPECT_FALSE(read_by(newest_version));
    EXPECT_EQ(loading::told.size(), 1U) << "the first refusal is the last word";
    EXPECT_TRUE(fw.in_semantic());
    fw.set_in_semantic(false);
}

/// Reads a value from a document of its own, in which it lies deeper than a value may.
void read_too_deep_a_value() {
    std::string levels;
    for (int i = 0; i != 1001; ++i) levels += "<elem><datatype>1</datatype><value>";
    for (int i = 0; i != 1001; ++i) levels += "</value></elem>";
    const dom_document document{"<root>" + levels + "</root>"};
    vector_property value;
    std::vector<reference_record> references;
    value.read_xml(document.root(), props::list, references, nullptr);
}

class loading_documents : protected with_loading_hooks, public document_world {};

TEST_F(loading_documents, is_not_failed_by_what_a_hook_reads_meanwhile) {
    thing("a");
    begin();
    thing("b");
    end();
    int ran = 0;
    loading::also = [&](kelm::model*) {
        ++ran;
        read_too_deep_a_value();
    };
    EXPECT_TRUE(load(saved(true)));
    EXPECT_EQ(ran, 2);
    EXPECT_EQ(copy->message_count(), model->message_count()) << "the log is read behind the hooks";
}

TEST_F(loading_documents, and_writing_them_is_not_failed_by_what_a_handler_reads_meanwhile) {
    class reading final : public qdxml {
    public:
        explicit reading(bool reads) : reads_(reads) {}
        owned<qdxml*> clone() const override { return new reading(*this); }
        bool needs_xml_processing(u32) const override {
            if (reads_) read_too_deep_a_value();
            return false;
        }

    private:
        bool reads_;
    };
    begin();
    thing("a");
    thing("b");
    end();
    fw.set_xml_handler(reading{true});
    const dom_document into;
    EXPECT_TRUE(model->write(nullptr, true, 0, false, into.root()));
    EXPECT_TRUE(load(into.text()));
    fw.set_xml_handler(reading{false});
    EXPECT_EQ(dump_of(*copy), dump());
    EXPECT_EQ(copy->message_count(), model->message_count());
}

} // namespace
} // namespace kelm::test
