// Every step as a source: what is printed compiles, and does what the step did.
// Sources of caught histories are cutting_test.cpp.
#include "tests/testing/bookshelf.h"

#include "testing/histories.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

// Compiled here, under a name of its own.
#define broken_history every_step
#include "tests/testing/approved_every_step.inc"
#undef broken_history

namespace kelm::bookshelf {

namespace {

using kelm::testing::action;
using kelm::testing::object_name;
using kelm::testing::planned_value;
using kelm::testing::played_history;
using kelm::testing::step;

planned_value plain(u32 kind, const char* text) { return {kind, text, {}, {}}; }
planned_value reference(object_name to) { return {data_type::object_reference, {}, to, {}}; }
planned_value list(std::vector<planned_value> elements) {
    return {data_type::vector, {}, {}, std::move(elements)};
}

/// A history with every action and every kind of value.
std::vector<step> every_step_there_is() {
    std::vector<step> out;
    const auto add = [&](action what, object_name object = {}, u32 id = 0) -> step& {
        step next;
        next.number = static_cast<u32>(out.size()) + 1;
        next.what = what;
        next.object = object;
        next.id = id;
        return out.emplace_back(next);
    };
    const auto make = [&](u32 type, object_name owner = {}) {
        return object_name{add(action::create_object, owner, type).number, 0};
    };
    const auto with = [&](step& which, object_name other, std::size_t position = 0) {
        which.other = other;
        which.position = position;
    };
    add(action::begin);
    const object_name shelf = make(types::shelf);
    const object_name book = make(types::book, shelf);
    const object_name other = make(types::book, shelf);
    const object_name gone = make(types::note, shelf);
    add(action::set_undo_levels); // passed over: it is for between transactions
    for (const planned_value& value :
         {plain(data_type::string, "a \"b\"\n\xe9"
                                   "1"),
          plain(data_type::boolean, "True"), plain(data_type::short_integer, "-3"),
          plain(data_type::integer, "4"), plain(data_type::long_integer, "5"),
          plain(data_type::long_long, "6"), plain(data_type::real, "0.25"), plain(data_type::real, "nan"),
          plain(coin_kind, "7"), plain(kelm::testing::unsigned_number, "8"),
          plain(data_type::model_id, "{00000009-0000-0000-0000-000000000000}"), reference(book),
          planned_value{data_type::object_reference, {}, {}, {}},
          list({plain(data_type::integer, "1"), list({reference(shelf)})})})
        add(action::set_property, book, 200 + static_cast<u32>(out.size())).value = value;
    add(action::delete_property, book, 206);
    add(action::refresh_property, book, props::count).value = plain(data_type::integer, "1");
    add(action::refresh_property, book, props::authors).other_value = list({});
    add(action::set_mark, book, props::count).position = 1;
    for (const char* text : {"a", "b", "c"})
        add(action::append_element, book, props::authors).value = plain(data_type::string, text);
    add(action::insert_element, book, props::authors).value = plain(data_type::string, "d");
    add(action::set_element, book, props::authors).value = plain(data_type::string, "e");
    add(action::move_element, book, props::authors).to = 2;
    add(action::delete_element, book, props::authors).position = 1;
    with(add(action::add_base, book), other);
    with(add(action::insert_base, book), gone);
    with(add(action::move_base, book), gone, 1);
    with(add(action::replace_base, book), shelf, 1);
    with(add(action::cancel_base, book), shelf);
    with(add(action::attach, shelf), book);
    with(add(action::attach, shelf), other);
    with(add(action::detach, shelf), book);
    add(action::set_child_position, book).position = 1;
    add(action::remove_child, gone);
    add(action::add_child, gone);
    with(add(action::set_owner, gone), book);
    add(action::end);
    add(action::set_undo_levels).position = 5;
    add(action::set_undo_levels).position = npos;
    add(action::begin);
    add(action::cancel_all_bases, book);
    add(action::delete_object, gone);
    add(action::end);
    add(action::undo);
    add(action::redo);
    add(action::rollback_last);
    for (const action ending : {action::rollback, action::rollback_all}) {
        add(action::begin);
        add(action::delete_object, other);
        add(ending);
    }
    add(action::clear_history);
    return out;
}

} // namespace

TEST(printed_history, compiles_and_does_what_its_steps_did) {
    started_types();
    planted::clear();
    testing::vocabulary words;
    testing::history_setting setting;
    setting.mix.bases = true;
    setting.words = &words;
    std::string expected;
    setting.go_along = [&](u64) {
        /// Sees how the model ends, before all is undone.
        struct witness final : testing::companion {
            explicit witness(std::string& text) : text_(text) {}
            void finishing(testing::player& at) override { text_ = at.state(); }
            std::string& text_;
        };
        testing::companions out;
        out.push_back(std::make_unique<witness>(expected));
        return out;
    };
    const std::vector<step> all = every_step_there_is();
    played_history played = play_steps(setting, 1, all, true);
    EXPECT_EQ(played.broken.what, "") << played.broken.difference;
    EXPECT_EQ(played.steps.size() + 1, all.size()) << "all but one were played";
    played.broken = {testing::law::links, "it is not", "", npos};
    EXPECT_EQ(printed(played, 1), file_text(KELM_APPROVED_EVERY_STEP)) << printed(played, 1);
    object* const root = framework::instance().create_object(type_id::model, nullptr);
    EXPECT_EQ(every_step(*root->model()), "");
    EXPECT_EQ(testing::text_of(*root->model()), expected);
    framework::instance().delete_object(root);
}

} // namespace kelm::bookshelf
