// Many edits in any order, good and bad, with each answer to a drop: undo and redo pass the same states again.
// What single edits do is tested in the files beside this one.
#include "tests/examples/schema_editing.h"

#include <random>
#include <vector>

namespace {

/// Lines made of a few words, many of them wrong.
class line_maker {
public:
    explicit line_maker(unsigned seed) : random_(seed) {}

    std::string line() {
        switch (number(16)) {
        case 0: return "rename table " + table() + ' ' + table();
        case 1: return "rename column " + column() + ' ' + part();
        case 2: return number(2) ? "undo" : "drop table " + table();
        case 3: return "drop column " + column();
        case 4: return "add column " + column() + " INT(" + std::to_string(number(9)) + ')';
        case 5: return "move column " + column() + ' ' + std::to_string(number(5));
        case 6: return "type column " + column() + " X" + std::to_string(number(9));
        case 7: return "add index " + index() + " on " + table() + " (" + part() + ", " + part() + ')';
        case 8: return "drop index " + index();
        case 9: return "add primary key on " + table() + " (" + part() + ')';
        case 10:
            return "add foreign key on " + table() + " (" + part() + ") to " + table() + " (" + part() + ')';
        case 11: return "add domain " + word() + " T" + std::to_string(number(3));
        case 12: return "use domain " + word() + " for " + column();
        case 13: return number(2) ? "drop domain " + word() : "type domain " + word() + " U";
        case 14: return (number(4) ? "define property " + word() + " on table" : "drop property " + word());
        default: return "set property " + word() + " of " + table() + " to " + word();
        }
    }

private:
    unsigned number(unsigned below) { return std::uniform_int_distribution<unsigned>(0, below - 1)(random_); }
    template <std::size_t N>
    std::string one_of(const char* const (&choices)[N]) {
        return choices[number(N)];
    }
    std::string table() { return one_of({"person", "pet", "missing", "lonely", "a", "b"}); }
    std::string part() {
        return one_of({"id", "name", "boss", "mail", "owner", "\"a b\"", "kind", "what", "only"});
    }
    std::string column() {
        return number(2) ? table() + '.' + part()
                         : one_of({"person.id", "person.name", "person.boss", "pet.owner", "pet.kind",
                                   "pet.\"a b\"", "lonely.only", "missing.what"});
    }
    std::string word() { return one_of({"d", "E", "f"}); }
    std::string index() { return one_of({"by_name", "\"lower kind\"", "i", "j"}); }

    std::mt19937 random_;
};

class random_editing : public schema_test::editing,
                       public testing::WithParamInterface<schema::referenced_drop> {};

TEST_P(random_editing, any_edits_undone_leave_what_was_and_redone_what_came) {
    schema_test::shared.on_referenced_drop = GetParam();
    const std::string before = all();
    std::size_t done = 0;
    std::size_t refused = 0;
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        line_maker make(seed);
        std::vector<std::string> states{before};
        for (int i = 0; i < 60; ++i) {
            const std::string line = make.line();
            SCOPED_TRACE(line);
            const bool backwards = line == "undo";
            if (complaint(line) == "printed: ") {
                ++done;
                if (backwards)
                    states.pop_back();
                else
                    states.push_back(all());
            } else
                ++refused;
            ASSERT_EQ(all(), states.back());
        }
        ASSERT_GT(states.size(), 1U);
        const std::string steps = std::to_string(states.size() - 1);
        run("undo " + steps);
        ASSERT_EQ(all(), before);
        for (std::size_t at = 1; at < states.size(); ++at) {
            run("redo");
            ASSERT_EQ(all(), states[at]);
        }
        run("undo " + steps);
    }
    EXPECT_GT(done, 150U);
    EXPECT_GT(refused, 150U);
}

INSTANTIATE_TEST_SUITE_P(answers_to_a_drop, random_editing,
                         testing::Values(schema::referenced_drop::refuse,
                                         schema::referenced_drop::drop_keys));

} // namespace
