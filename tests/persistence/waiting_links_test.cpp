// Links that wait until all objects are there, as no model has written them: circles, id 0, two objects of one id.
// Links of honest models are told by the tests of streams and documents.
#include "tests/persistence/document_world.h"
#include "tests/support/consistency.h"
#include "tests/support/stored_fields.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kelm::test {
namespace {

/// Ids of objects and of their bases, in order.
using bases_by_id = std::map<u32, std::vector<u32>>;

/// Takes the links one after the other, depth first from the lowest id, and leaves out those that close a circle.
class without_circles {
public:
    explicit without_circles(bases_by_id links) : links_(std::move(links)) {
        for (const auto& [id, bases] : links_) walk(id);
    }
    const bases_by_id& kept() const { return kept_; }

private:
    void walk(u32 id) {
        if (!known_.insert(id).second) return;
        way_.insert(id);
        std::vector<u32>& kept = kept_[id];
        for (const u32 base : links_[id]) {
            if (way_.contains(base)) continue;
            walk(base);
            if (std::ranges::find(kept, base) == kept.end()) kept.push_back(base);
        }
        way_.erase(id);
    }

    bases_by_id links_;
    bases_by_id kept_;
    std::set<u32> known_;
    std::set<u32> way_;
};

std::string told(const bases_by_id& links) {
    std::string out;
    for (const auto& [id, bases] : links) {
        if (bases.empty()) continue;
        out += (out.empty() ? "" : ", ") + std::to_string(id) + ":";
        for (const u32 base : bases) out += " " + std::to_string(base);
    }
    return out;
}

class waiting_links : public document_world {
protected:
    /// A document of things 3 to `last` with these bases.
    static std::string with_bases(const bases_by_id& links, u32 last) {
        std::string out;
        for (u32 id = 3; id <= last; ++id) {
            out += "<child type='100' id='" + std::to_string(id) + "'><inherits>";
            if (const auto of = links.find(id); of != links.end())
                for (const u32 base : of->second) out += "<inherit>" + std::to_string(base) + "</inherit>";
            out += "</inherits></child>";
        }
        return document_with("<childs>" + out + "</childs>");
    }
    bases_by_id read_bases() const {
        bases_by_id out;
        for (object* const each : copy->as_object()->children())
            for (object* const base : each->inherits_from_list(0)) out[each->id()].push_back(base->id());
        return out;
    }
    /// Expects the copy to be sound, and to be read again as it is.
    void expect_sound() {
        EXPECT_EQ(broken_links(*copy), "");
        const std::string before = dump_of(*copy);
        ASSERT_TRUE(load(saved(*copy)));
        EXPECT_EQ(dump_of(*copy), before);
    }
};

TEST_F(waiting_links, that_close_a_circle_are_left_out_and_no_others) {
    struct {
        const char* why;
        bases_by_id links;
        const char* kept;
    } const rows[] = {
        {"no circle", {{3, {5, 4}}, {4, {5}}}, "3: 5 4, 4: 5"},
        {"its own base", {{3, {3, 4}}, {4, {4}}}, "3: 4"},
        {"named twice", {{3, {4, 5, 4}}, {4, {5, 5}}}, "3: 4 5, 4: 5"},
        {"round three", {{3, {4}}, {4, {5}}, {5, {3}}}, "3: 4, 4: 5"},
        {"round three, the other way", {{3, {5}}, {5, {4}}, {4, {3}}}, "3: 5, 5: 4"},
        {"out of the middle of a list", {{3, {4}}, {4, {5, 3, 6}}}, "3: 4, 4: 5 6"},
        {"two that share an object", {{3, {4}}, {4, {3, 5}}, {5, {4, 6}}}, "3: 4, 4: 5, 5: 6"},
        {"a circle away from the lowest id", {{4, {6}}, {6, {5}}, {5, {4, 3}}}, "4: 6, 5: 3, 6: 5"},
        {"a way into a circle", {{3, {5}}, {5, {6}}, {6, {5}}, {4, {6}}}, "3: 5, 4: 6, 5: 6"},
        {"two ways to one base", {{3, {4, 5}}, {4, {6}}, {5, {6}}, {6, {3}}}, "3: 4 5, 4: 6, 5: 6"},
        {"bases that are not there", {{3, {77, 4, 0}}, {4, {77, 3}}}, "3: 4"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ASSERT_TRUE(load(with_bases(row.links, 6)));
        EXPECT_EQ(told(read_bases()), row.kept);
        expect_sound();
    }
}

TEST_F(waiting_links, of_three_objects_are_kept_as_far_as_they_close_no_circle) {
    for (unsigned set = 0; set != 512; ++set) {
        bases_by_id links;
        for (unsigned at = 0; at != 9; ++at) // the bases of every second set stand backward
            if (const unsigned link = set % 2 == 0 ? at : 8 - at; (set >> link & 1U) != 0)
                links[3 + link / 3].push_back(3 + link % 3);
        SCOPED_TRACE(told(links));
        ASSERT_TRUE(load(with_bases(links, 5)));
        ASSERT_EQ(told(read_bases()), told(without_circles{links}.kept()));
        ASSERT_EQ(broken_links(*copy), "");
    }
}

TEST_F(waiting_links, close_no_circle_with_those_that_stand) {
    object* const a = thing("a");
    object* const b = thing("b");
    object* const c = thing("c");
    begin();
    ASSERT_TRUE(b->add_inherits_from(a));
    ASSERT_TRUE(c->add_inherits_from(b));
    end();
    object* const d = thing("d");
    io_reference_manager waiting;
    waiting.inherits[a->id()] = new std::vector<u32>{c->id(), d->id(), b->id()};
    waiting.inherits[d->id()] = new std::vector<u32>{a->id(), d->id()};
    ASSERT_TRUE(resolve_refs_post_read(model, waiting));
    EXPECT_EQ(a->inherits_from_list(0), (std::vector<object*>{d}));
    EXPECT_TRUE(d->inherits_from_list(0).empty()) << "the lower id has taken the link";
    EXPECT_EQ(broken_links(*model), "");
}

TEST_F(waiting_links, of_two_objects_of_one_id_belong_to_the_first) {
    ASSERT_TRUE(load(document_with(R"(<childs>
        <child type="100" id="3"><inherits><inherit>4</inherit></inherits>
            <observers><observer>4</observer></observers></child>
        <child type="100" id="3"><inherits><inherit>5</inherit></inherits>
            <observers><observer>5</observer></observers></child>
        <child type="100" id="4"/><child type="100" id="5"/></childs>)")));
    const auto children = copy->as_object()->children();
    ASSERT_EQ(children.size(), 4U);
    ASSERT_EQ(copied(3), children[0]);
    EXPECT_EQ(children[0]->inherits_from_list(0), (std::vector<object*>{copied(4)}));
    EXPECT_EQ(children[0]->observers().size(), 1U);
    EXPECT_TRUE(children[1]->inherits_from_list(0).empty());
    EXPECT_TRUE(children[1]->observers().empty());
    EXPECT_EQ(broken_links_of_hostile(*copy), "");
}

/// \returns the target of the reference that object 3 holds
object* target_of_three(kelm::model& in) {
    const value_ptr held = in.find_object(3)->get_own_property(props::reference);
    const auto* const box = dynamic_cast<const property<object*>*>(held.get());
    return box ? box->value : in.as_object();
}

TEST_F(waiting_links, that_lead_nowhere_do_not_lead_to_an_object_of_id_0) {
    for (const char* nowhere : {"", "0", "-1"}) {
        SCOPED_TRACE(nowhere);
        ASSERT_TRUE(load(document_with(R"(<childs><child type="100" id="0"/><child type="100" id="3">)"
                                       R"(<props><prop id="13"><datatype>8</datatype><value>)" +
                                       std::string{nowhere} + "</value></prop></props></child></childs>")));
        EXPECT_EQ(target_of_three(*copy), nullptr);
        EXPECT_TRUE(copy->as_object()->children()[0]->referencing_objects().empty());
        EXPECT_EQ(broken_links_of_hostile(*copy), "");
    }
}

TEST_F(waiting_links, of_streams_that_lead_nowhere_do_not_lead_to_an_object_of_id_0) {
    for (const u32 nowhere : {0U, npos32}) {
        SCOPED_TRACE(nowhere);
        stored_fields bytes;
        for (int i = 0; i != 16; ++i) bytes.byte(1);
        bytes.word(100).word(60000).word(version).word(0).word(0);
        bytes.word(1).word(0).word(0).word(0).word(0).word(2); // the root with two children
        bytes.word(types::thing).word(0).word(0).word(0).word(0).word(0).word(0);
        bytes.word(types::thing).word(3).word(1).word(props::reference).word(data_type::object_reference);
        bytes.word(nowhere).word(0).word(0).word(0).word(0).byte(0);
        make_copy();
        std::istringstream in{bytes.bytes()};
        ASSERT_TRUE(copy->read(&in, nullptr));
        EXPECT_EQ(target_of_three(*copy), nullptr);
        EXPECT_TRUE(copy->as_object()->children()[0]->referencing_objects().empty());
    }
}

} // namespace
} // namespace kelm::test
