// Streams, buffers and handlers that fail or throw while a model is read or written, and writing at the wrong time.
// Bytes that no model has written are hostile_stream_test.cpp and hostile_history_test.cpp.
#include "tests/persistence/every_change.h"
#include "tests/persistence/hostile_world.h"
#include "tests/support/dom_document.h"
#include "tests/support/full_buffer.h"
#include "tests/support/throwing_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace kelm::test {
namespace {

constexpr auto every_failure = std::ios::failbit | std::ios::badbit | std::ios::eofbit;

class throwing_handler final : public qdxml {
    owned<qdxml*> clone() const override { return new throwing_handler; }
    bool needs_xml_processing(u32) const override { throw out_of_order{"handler"}; }
};
class quiet_handler final : public qdxml {
    owned<qdxml*> clone() const override { return new quiet_handler; }
    bool needs_xml_processing(u32) const override { return false; }
};

class failing_streams : public hostile_world {
protected:
    ~failing_streams() override { fw.set_xml_handler(quiet_handler{}); }

    /// Expects a model that has objects and nothing of a history.
    static void expect_without_history(kelm::model& what) {
        EXPECT_EQ(what.message_count(), 0U);
        EXPECT_FALSE(what.is_modified());
        EXPECT_FALSE(what.in_transaction());
        EXPECT_FALSE(what.can_undo());
        std::vector<u32> ids;
        what.object_ids(ids);
        EXPECT_FALSE(ids.empty());
        for (const u32 id : ids)
            EXPECT_EQ(what.find_object(id)->state(), state::normal) << "object " << id << " is deleted";
    }
    void change() {
        begin();
        ASSERT_TRUE(thing("a"));
        end();
        ASSERT_TRUE(model->is_modified());
    }
};

TEST_F(failing_streams, that_throw_inside_the_history_leave_a_model_without_one) {
    const std::string bytes = rich_stream();
    const std::size_t tree = saved().size(); // up to the byte that says whether a history follows
    ASSERT_LT(tree, bytes.size());
    for (std::size_t length = tree; length != bytes.size(); ++length) {
        SCOPED_TRACE(length);
        make_copy();
        std::istringstream in{bytes.substr(0, length)};
        in.exceptions(every_failure);
        EXPECT_THROW(copy->read(&in, nullptr), std::ios_base::failure);
        expect_without_history(*copy);
        EXPECT_EQ(broken_links(*copy), "");
    }
    make_copy();
    std::istringstream in{bytes};
    in.exceptions(every_failure);
    EXPECT_NO_THROW(EXPECT_TRUE(copy->read(&in, nullptr)));
    use();
}

TEST_F(failing_streams, that_fill_up_leave_the_model_modified) {
    change();
    const std::size_t size = saved(true).size();
    for (const bool throws : {false, true})
        for (std::size_t room = 0; room != size; ++room) {
            SCOPED_TRACE(std::to_string(room) + (throws ? " throwing" : ""));
            full_buffer buffer{room};
            std::ostream out{&buffer};
            if (throws) {
                out.exceptions(std::ios::failbit | std::ios::badbit);
                EXPECT_THROW(model->write(&out, true, 0, true, nullptr), std::ios_base::failure);
            } else {
                EXPECT_FALSE(model->write(&out, true, 0, true, nullptr));
            }
            ASSERT_TRUE(model->is_modified()) << "nothing was saved";
        }
    full_buffer buffer{size};
    std::ostream out{&buffer};
    EXPECT_TRUE(model->write(&out, true, 0, true, nullptr));
    EXPECT_FALSE(model->is_modified());
}

TEST_F(failing_streams, and_handlers_that_throw_leave_the_model_modified) {
    change();
    fw.set_xml_handler(throwing_handler{});
    const dom_document into;
    EXPECT_THROW(model->write(nullptr, true, 0, true, into.root()), out_of_order);
    EXPECT_TRUE(model->is_modified());
    fw.set_xml_handler(quiet_handler{});
    const dom_document again;
    EXPECT_TRUE(model->write(nullptr, true, 0, true, again.root()));
    EXPECT_FALSE(model->is_modified());
}

TEST_F(failing_streams, pass_what_their_buffer_throws_where_they_shall) {
    change();
    const std::string bytes = saved(true);
    for (std::size_t length = 0; length != bytes.size(); ++length) {
        SCOPED_TRACE(length);
        throwing_buffer into{bytes.substr(0, length)};
        std::ostream out{&into};
        out.exceptions(std::ios::badbit);
        EXPECT_THROW(model->write(&out, true, 0, true, nullptr), out_of_order);
        EXPECT_TRUE(out.bad());
        EXPECT_TRUE(model->is_modified());

        make_copy();
        throwing_buffer from{bytes.substr(0, length)};
        std::istream in{&from};
        in.exceptions(std::ios::badbit);
        EXPECT_THROW(copy->read(&in, nullptr), out_of_order);
        EXPECT_TRUE(in.bad());
        EXPECT_EQ(copy->message_count(), 0U);
    }
}

TEST_F(failing_streams, keep_to_themselves_what_their_buffer_throws_where_they_shall) {
    change();
    throwing_buffer into{""};
    std::ostream out{&into};
    EXPECT_FALSE(model->write(&out, true, 0, true, nullptr));
    EXPECT_TRUE(out.bad());
    EXPECT_TRUE(model->is_modified());
    make_copy();
    throwing_buffer from{saved(true).substr(0, 20)};
    std::istream in{&from};
    EXPECT_FALSE(copy->read(&in, nullptr));
    EXPECT_TRUE(in.bad());
}

/// Somebody who saves while being told of a change.
class saving_meanwhile : public every_change<stream_world> {
protected:
    void expect_refused() {
        GUID before{};
        model->model_id(before);
        const bool was_modified = model->is_modified();
        std::ostringstream out;
        const dom_document into;
        for (const bool with_history : {false, true}) {
            EXPECT_FALSE(model->write(&out, with_history, 0, true, nullptr));
            EXPECT_FALSE(model->write(nullptr, with_history, 0, true, into.root()));
            EXPECT_FALSE(model->save_as_new(&out, with_history, 0, nullptr));
            EXPECT_FALSE(model->save_as_new(nullptr, with_history, 0, into.root()));
        }
        EXPECT_EQ(out.str(), "");
        EXPECT_EQ(into.text(), "<root/>");
        EXPECT_EQ(model->is_modified(), was_modified);
        GUID now{};
        model->model_id(now);
        EXPECT_TRUE(now == before) << "nothing was saved as another model";
    }
};

TEST_F(saving_meanwhile, is_refused_during_undo_redo_and_rollback) {
    struct {
        const char* why;
        std::function<void()> first;
        std::function<void()> walk;
    } const rows[] = {
        {"undo", [] {}, [&] { model->undo(); }},
        {"redo", [&] { model->undo(); }, [&] { model->redo(); }},
        {"rollback of a closed transaction", [] {}, [&] { model->rollback_last_transaction(); }},
        {"rollback of an open transaction",
         [&] {
             begin();
             ASSERT_TRUE(a->set_property(props::text, text("open")));
         },
         [&] { model->rollback_transaction(); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        change([&] {
            ASSERT_TRUE(a->set_property(props::text, text("x")));
            ASSERT_TRUE(a->set_property(props::text, text("y")));
        });
        row.first();
        int told = 0;
        {
            recorder ears;
            ears.watch(a);
            ears.meanwhile = [&](message*) {
                ++told;
                expect_refused();
            };
            row.walk();
            a->detach(&ears);
        }
        EXPECT_GT(told, 0);
        model->clear_history();
        EXPECT_NE(saved(true), "") << "behind it all is as before";
    }
}

} // namespace
} // namespace kelm::test
