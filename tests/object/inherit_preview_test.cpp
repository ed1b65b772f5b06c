// Which hooks each change of a list of bases asks about which values, and what is told: a row a case.
// What the operations refuse is inherit_list_test; roads of several objects are inherit_roads_test.
#include "tests/object/inherit_lines.h"

#include <functional>
#include <map>
#include <sstream>
#include <vector>

namespace kelm::test {

namespace {

/// Objects with hooks, by name.  `below` inherits from `a`, which is the one that is changed and listened to.
class inherit_preview : public inherit_world {
protected:
    using cast = std::map<std::string, object*>;

    /// \param givers  names of objects that store their own name as a text
    /// \param links   "inheritor base" pairs, joined by commas, in the order of linking
    cast play(const std::string& givers, const std::string& links) {
        cast out;
        for (const char* name : {"a", "below", "b", "c", "d", "e", "top"}) out[name] = hooked(name);
        std::string name;
        for (std::istringstream in{givers}; in >> name;) give(out[name], name);
        std::string pair;
        for (std::istringstream in{"below a," + links}; std::getline(in, pair, ',');) {
            std::istringstream both{pair};
            std::string from, to;
            both >> from >> to;
            link(out[from], out[to]);
        }
        forget();
        listen({out["a"], out["below"]});
        hooks.record(true);
        return out;
    }
};

struct preview_row {
    const char* why;
    const char* givers;
    const char* links;
    std::function<bool(std::map<std::string, object*>&)> change;
    const char* asked; ///< hooks
    const char* first; ///< told at once
    const char* undone;
    const char* redone;
};

auto add(const char* base) {
    return [=](auto& of) { return of["a"]->add_inherits_from(of[base]); };
}
auto insert(const char* base, std::size_t at) {
    return [=](auto& of) { return of["a"]->insert_inherits_from(of[base], at); };
}
auto cancel(const char* base) {
    return [=](auto& of) { return of["a"]->cancel_inherits_from(of[base]); };
}
auto replace(const char* base, const char* by) {
    return [=](auto& of) { return of["a"]->replace_inherits_from(of[by], of[base]); };
}
auto move(const char* base, std::size_t to) {
    return [=](auto& of) { return of["a"]->set_inherits_from_position(of[base], to); };
}

const preview_row preview_rows[] = {
    {"an added base without a value", "", "", add("b"), "29 a b\n30 a b\n", "19 first a: + b\n",
     "20 again a: - b\n", "19 again a: + b\n"},
    {"an added base that has its value from another", "top", "a e,b e,b top", add("b"),
     "29 a b\n7 a top 10 'top'\n7 below top 10 'top'\n"
     "30 a b\n8 a top null 10 'top' 'none'\n8 below top null 10 'top' 'none'\n",
     "19 first a: + b\n7 first a: 10 none of nobody -> top in a\n7 first below: 10 none of nobody -> top in "
     "a\n",
     "20 again a: - b\n10 again a: 10 lost top\n10 again below: 10 lost top\n",
     "19 again a: + b\n7 again a: 10 none of nobody -> top in a\n7 again below: 10 none of nobody -> top in "
     "a\n"},
    {"an added base whose value is there already on another road", "top", "a b,b top,c top", add("c"),
     "29 a c\n30 a c\n", "19 first a: + c\n", "20 again a: - c\n", "19 again a: + c\n"},
    {"the only base, added once more", "b", "a b", add("b"), "29 a b\n30 a b\n", "19 first a: + b\n",
     "20 again a: - b\n", "19 again a: + b\n"},

    {"a base put into an empty list", "b", "", insert("b", 0),
     "35 a b 0\n7 a b 10 'b'\n7 below b 10 'b'\n"
     "36 a b 0\n8 a b null 10 'b' 'none'\n8 below b null 10 'b' 'none'\n",
     "21 first a: + b at 0\n7 first a: 10 none of nobody -> b in a\n7 first below: 10 none of nobody -> b in "
     "a\n",
     "20 again a: - b\n10 again a: 10 lost b\n10 again below: 10 lost b\n",
     "21 again a: + b at 0\n7 again a: 10 none of nobody -> b in a\n7 again below: 10 none of nobody -> b in "
     "a\n"},
    {"a base put at the end, where nobody gives", "b", "a d,a e", insert("b", 2),
     "35 a b 2\n7 a b 10 'b'\n7 below b 10 'b'\n"
     "36 a b 2\n8 a b null 10 'b' 'none'\n8 below b null 10 'b' 'none'\n",
     "21 first a: + b at 2\n7 first a: 10 none of nobody -> b in a\n7 first below: 10 none of nobody -> b in "
     "a\n",
     "20 again a: - b\n10 again a: 10 lost b\n10 again below: 10 lost b\n",
     "21 again a: + b at 2\n7 again a: 10 none of nobody -> b in a\n7 again below: 10 none of nobody -> b in "
     "a\n"},
    {"a base put behind the giver", "b c", "a b,a e", insert("c", 1), "35 a c 1\n36 a c 1\n",
     "21 first a: + c at 1\n", "20 again a: - c\n", "21 again a: + c at 1\n"},
    {"a base without a value put in front of the giver", "b", "a d,a b", insert("c", 0),
     "35 a c 0\n36 a c 0\n", "21 first a: + c at 0\n", "20 again a: - c\n", "21 again a: + c at 0\n"},

    {"a cancelled base behind the giver", "b c", "a b,a c", cancel("c"), "31 a c\n32 a c\n",
     "20 first a: - c\n", "19 again a: + c\n", "20 again a: - c\n"},
    {"a cancelled base without a value in front of the giver", "b", "a e,a b", cancel("e"),
     "31 a e\n32 a e\n", "20 first a: - e\n", "19 again a: + e\n", "20 again a: - e\n"},
    {"a cancelled road to a value that another road leads to: asked about, and no change", "top",
     "a b,a c,b top,c top", cancel("b"), "31 a b\n7 a top 10 'top'\n7 below top 10 'top'\n32 a b\n",
     "20 first a: - b\n", "19 again a: + b\n", "20 again a: - b\n"},
    {"the last road to a value of a base's base", "top", "a b,b top", cancel("b"),
     "31 a b\n15 a top 10\n15 below top 10\n32 a b\n16 a top 10 'top'\n16 below top 10 'top'\n",
     "20 first a: - b\n10 first a: 10 lost top\n10 first below: 10 lost top\n",
     "19 again a: + b\n7 again a: 10 none of nobody -> top in a\n7 again below: 10 none of nobody -> top in "
     "a\n",
     "20 again a: - b\n10 again a: 10 lost top\n10 again below: 10 lost top\n"},
    {"what is no base is cancelled without a word, behind its hooks", "b c", "a b", cancel("c"), "31 a c\n",
     "", "", ""},

    {"a giver replaced by one without a value, in front of the next", "b c", "a b,a d,a c", replace("b", "e"),
     "33 a e b\n7 a c 10 'c'\n7 below c 10 'c'\n34 a e b\n8 a c b 10 'c' 'b'\n8 below c b 10 'c' 'b'\n",
     "23 first a: b by e\n7 first a: 10 b of b -> c in a\n7 first below: 10 b of b -> c in a\n",
     "23 again a: e by b\n7 again a: 10 c of c -> b in a\n7 again below: 10 c of c -> b in a\n",
     "23 again a: b by e\n7 again a: 10 b of b -> c in a\n7 again below: 10 b of b -> c in a\n"},
    {"a base replaced behind the giver", "b c", "a b,a e", replace("e", "c"), "33 a c e\n34 a c e\n",
     "23 first a: e by c\n", "23 again a: c by e\n", "23 again a: e by c\n"},
    {"a base replaced in front of the giver", "b c", "a e,a b", replace("e", "c"),
     "33 a c e\n7 a c 10 'c'\n7 below c 10 'c'\n34 a c e\n8 a c b 10 'c' 'b'\n8 below c b 10 'c' 'b'\n",
     "23 first a: e by c\n7 first a: 10 b of b -> c in a\n7 first below: 10 b of b -> c in a\n",
     "23 again a: c by e\n7 again a: 10 c of c -> b in a\n7 again below: 10 c of c -> b in a\n",
     "23 again a: e by c\n7 again a: 10 b of b -> c in a\n7 again below: 10 b of b -> c in a\n"},
    {"a base replaced in front of the giver by one without a value", "b", "a e,a b", replace("e", "c"),
     "33 a c e\n34 a c e\n", "23 first a: e by c\n", "23 again a: c by e\n", "23 again a: e by c\n"},
    {"a base replaced where nobody gives", "c", "a d,a e", replace("d", "c"),
     "33 a c d\n7 a c 10 'c'\n7 below c 10 'c'\n"
     "34 a c d\n8 a c null 10 'c' 'none'\n8 below c null 10 'c' 'none'\n",
     "23 first a: d by c\n7 first a: 10 none of nobody -> c in a\n7 first below: 10 none of nobody -> c in "
     "a\n",
     "23 again a: c by d\n",
     "23 again a: d by c\n7 again a: 10 none of nobody -> c in a\n7 again below: 10 none of nobody -> c in "
     "a\n"},
    {"a base replaced by its own base: asked about, and no change", "top", "a b,b top", replace("b", "top"),
     "33 a top b\n7 a top 10 'top'\n7 below top 10 'top'\n34 a top b\n", "23 first a: b by top\n",
     "23 again a: top by b\n", "23 again a: b by top\n"},

    {"the giver moved back past nobody who gives", "b c", "a b,a d,a c", move("b", 1),
     "37 a b 1\n38 a b 1 0\n", "22 first a: b 0 to 1\n", "22 again a: b 1 to 0\n", "22 again a: b 0 to 1\n"},
    {"the giver moved back past the next", "b c", "a b,a d,a c", move("b", 2),
     "37 a b 2\n7 a c 10 'c'\n7 below c 10 'c'\n38 a b 2 0\n8 a c b 10 'c' 'b'\n8 below c b 10 'c' 'b'\n",
     "22 first a: b 0 to 2\n7 first a: 10 b of b -> c in a\n7 first below: 10 b of b -> c in a\n",
     "22 again a: b 2 to 0\n7 again a: 10 c of c -> b in a\n7 again below: 10 c of c -> b in a\n",
     "22 again a: b 0 to 2\n7 again a: 10 b of b -> c in a\n7 again below: 10 b of b -> c in a\n"},
    {"the giver moved to the size of the list: hooks are told that, messages the place", "b c", "a b,a c",
     move("b", 2),
     "37 a b 2\n7 a c 10 'c'\n7 below c 10 'c'\n38 a b 2 0\n8 a c b 10 'c' 'b'\n8 below c b 10 'c' 'b'\n",
     "22 first a: b 0 to 1\n7 first a: 10 b of b -> c in a\n7 first below: 10 b of b -> c in a\n",
     "22 again a: b 1 to 0\n7 again a: 10 c of c -> b in a\n7 again below: 10 c of c -> b in a\n",
     "22 again a: b 0 to 1\n7 again a: 10 b of b -> c in a\n7 again below: 10 b of b -> c in a\n"},
    {"the giver moved nearer to the front", "b", "a d,a e,a b", move("b", 0), "37 a b 0\n38 a b 0 2\n",
     "22 first a: b 2 to 0\n", "22 again a: b 0 to 2\n", "22 again a: b 2 to 0\n"},
    {"a base without a value moved past the giver", "b", "a b,a e", move("e", 0), "37 a e 0\n38 a e 0 1\n",
     "22 first a: e 1 to 0\n", "22 again a: e 0 to 1\n", "22 again a: e 1 to 0\n"},
    {"another base moved behind the giver", "b c", "a c,a b", move("b", 1), "37 a b 1\n38 a b 1 1\n",
     "22 first a: b 1 to 1\n", "22 again a: b 1 to 1\n", "22 again a: b 1 to 1\n"},
};

} // namespace

TEST_F(inherit_preview, each_change_asks_about_what_it_will_bring_and_tells_what_it_brought) {
    for (const preview_row& row : preview_rows) {
        SCOPED_TRACE(row.why);
        cast of = play(row.givers, row.links);
        const std::string before = dump();
        EXPECT_TRUE(change([&] { return row.change(of); }));
        EXPECT_EQ(hook_log(), row.asked);
        EXPECT_EQ(ears.take(), row.first);
        const std::string after = dump();
        for (int round = 0; round != 2 && model->can_undo(); ++round) {
            model->undo();
            EXPECT_EQ(ears.take(), row.undone);
            EXPECT_EQ(dump(), before);
            model->redo();
            EXPECT_EQ(ears.take(), row.redone);
            EXPECT_EQ(dump(), after);
        }
        EXPECT_EQ(hook_log(), "") << "undo and redo call no hooks around changes";
        hooks.record(false);
    }
}

} // namespace kelm::test
