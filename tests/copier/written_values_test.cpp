// Values in a stream that have no kind of their own there: what is stored as another kind, and what cannot be stored.
// The stored form of each kind is approved_snapshots_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/unregistered_value.h"

namespace kelm::test {
namespace {

class written_values : public copy_paste_world {
protected:
    /// Writes, and reads into a fresh copier.
    void write_and_read() {
        std::istringstream in{bytes_of(*clip)};
        clip = fw.create_copier(far_model);
        EXPECT_TRUE(clip->read(in));
    }
    object* const a = thing("a");
};

TEST_F(written_values, that_are_unsigned_come_back_as_integers) {
    vector_property list;
    list.elements = {new property<unsigned>{8}, new property<int>{9}};
    set(a, props::number, property<unsigned>{7});
    set(a, props::list, list);
    copy(a);
    write_and_read();
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::number), "'7'");
    EXPECT_EQ(own("a", props::list), "['8'|'9'|]");
    EXPECT_TRUE(number(7).equals(found("a")->get_own_property(props::number).get())) << "its kind is Integer";
}

TEST_F(written_values, that_are_unsigned_stay_so_without_a_stream) {
    set(a, props::number, property<unsigned>{7});
    copy(a);
    EXPECT_TRUE(paste());
    EXPECT_TRUE(property<unsigned>{7}.equals(found("a")->get_own_property(props::number).get()));
}

TEST_F(written_values, of_no_kind_make_the_writing_fail) {
    const auto list_of = [](abstract_property* element) {
        auto list = std::make_unique<vector_property>();
        list->elements = {new property<int>{1}, element};
        return list;
    };
    struct row {
        std::unique_ptr<abstract_property> value;
        const char* why;
    };
    row rows[] = {
        {std::make_unique<unregistered_value>(), "by itself"},
        {list_of(new unregistered_value), "in a list"},
        {list_of(nullptr), "an element that is null"},
        {list_of(list_of(nullptr).release()), "in a list inside a list"},
    };
    object* const heir = thing("heir");
    add_base(heir, a);
    for (const row& each : rows) {
        for (const bool as_extra : {false, true}) {
            SCOPED_TRACE(std::string{each.why} + (as_extra ? ", as an extra value" : ""));
            set(a, props::list, *each.value);
            clip = fw.create_copier(model);
            if (as_extra) clip->add_extra_property(types::thing, props::list);
            copy(as_extra ? heir : a);
            std::ostringstream out;
            EXPECT_FALSE(clip->write(out));
            std::istringstream in{out.str()};
            EXPECT_FALSE(fw.create_copier(model)->read(in)) << "nothing comes of what was written till then";
        }
    }
}

TEST_F(written_values, of_no_kind_can_be_pasted_without_a_stream) {
    set(a, props::real, unregistered_value{});
    copy(a);
    EXPECT_TRUE(paste());
    const value_ptr made = found("a")->get_own_property(props::real);
    EXPECT_TRUE(dynamic_cast<const unregistered_value*>(made.get()));
}

} // namespace
} // namespace kelm::test
