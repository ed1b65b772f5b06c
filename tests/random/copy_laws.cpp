// The law of copy and paste: a snapshot of all objects below the root, pasted into an empty twin, is the same graph up to
// ids; undo leads back to the empty twin, redo to the graph; and nothing happens to the source.
// The histories are made by the law kit.
//
// Left out by design:
// - a top object of a type that the model may not own stays behind, with everything below it;
// - a value that leads to what stayed behind, or to null, is not set, and neither is a list without elements;
// - a value that is inherited when its object is made is not stored; a base, or a reference of one, that had to wait may
//   give another one later;
// - a base that comes behind its heir stands behind those that came before.
#include "tests/random/random_histories.h"
#include "tests/support/world.h"

#include "testing/read_model.h"

#include <kelm/copier.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <vector>

namespace kelm::test {

namespace {

using kelm::testing::player;

/// Puts the objects of a source and of its twin side by side, and compares each pair.
class pairing {
public:
    /// \param tops  objects below the source's root in the order of copying
    std::string difference(const std::vector<object*>& tops, object& twin_root) {
        pair_lists(tops, twin_root.children());
        for (const object* each : made_) compare(*each);
        return difference_;
    }

private:
    void pair_lists(std::vector<object*> sources, const std::vector<object*>& twins) {
        std::ranges::stable_sort(sources, {}, [](const object* each) { return each->type(); });
        if (sources.size() != twins.size()) return differ("the numbers of children");
        for (std::size_t i = 0; i != sources.size(); ++i) twin_of_[sources[i]] = twins[i];
        for (std::size_t i = 0; i != sources.size() && difference_.empty(); ++i) {
            if (sources[i]->type() != twins[i]->type()) return differ("types", sources[i]);
            made_.push_back(sources[i]);
            pair_lists(sources[i]->children(), twins[i]->children());
        }
    }

    void compare(const object& source) {
        const object& twin = *twin_of_.at(&source);
        const auto sorted = [](std::vector<u32> list) {
            std::ranges::sort(list);
            return list;
        };
        if (sorted(source.not_inheritable_properties()) != sorted(twin.not_inheritable_properties()))
            differ("marks", &source);
        if (bases_of(source) != twin.inherits_from_list(0)) differ("bases", &source);
        value_map values;
        source.own_properties(values);
        for (const auto& [id, value] : values) compare_value(source, twin, id, *value);
        value_map own;
        twin.own_properties(own);
        for (const auto& [id, value] : own)
            if (!values.contains(id)) differ("a value out of nothing", &source);
    }

    /// \returns the twins of the bases: those that were there when the object was made, then the others
    std::vector<object*> bases_of(const object& source) const {
        std::vector<object*> first;
        std::vector<object*> behind;
        for (const object* each : source.inherits_from_list(0))
            if (const auto found = twin_of_.find(each); found != twin_of_.end())
                (is_late(source, *each) ? behind : first).push_back(found->second);
        first.insert(first.end(), behind.begin(), behind.end());
        return first;
    }
    bool is_late(const object& heir, const object& base) const {
        return twin_of_.at(&heir)->id() < twin_of_.at(&base)->id();
    }

    void compare_value(const object& source, const object& twin, u32 id, const abstract_property& value) {
        const value_ptr stored = twin.get_own_property(id);
        if (!resolves(value)) {
            if (stored) differ("a value without a target", &source);
        } else if (stored) {
            if (twin_text(value) != dump_text(stored.get())) differ("a value", &source);
        } else if (!may_change_later(source, id)) {
            if (twin_text(value) != dump_text(twin.get_property(id).get()))
                differ("a value left to bases", &source);
        }
    }
    bool resolves(const abstract_property& value) const {
        if (const auto* const target = dynamic_cast<const property<object*>*>(&value))
            return twin_of_.contains(target->value);
        const auto* const list = dynamic_cast<const vector_property*>(&value);
        return !list ||
               (!list->elements.empty() && std::ranges::all_of(list->elements, [&](const auto* each) {
                   return each && resolves(*each);
               }));
    }
    std::string twin_text(const abstract_property& value) const {
        if (const auto* const target = dynamic_cast<const property<object*>*>(&value))
            return "#" + std::to_string(twin_of_.at(target->value)->id());
        const auto* const list = dynamic_cast<const vector_property*>(&value);
        if (!list) return dump_text(&value);
        std::string out = "[";
        for (const abstract_property* each : list->elements) out += twin_text(*each) + "|";
        return out + "]";
    }
    /// \returns whether something above an object had to wait that may give it another value
    bool may_change_later(const object& heir, u32 id) const {
        for (const object* base : heir.inherits_from_list(0)) {
            if (!twin_of_.contains(base)) continue;
            const value_ptr own = base->get_own_property(id);
            if (is_late(heir, *base) || dynamic_cast<const property<object*>*>(own.get()) ||
                dynamic_cast<const vector_property*>(own.get()) || may_change_later(*base, id))
                return true;
        }
        return false;
    }
    void differ(const char* what, const object* at = nullptr) {
        difference_ += std::string(what) + (at ? " of " + kelm::testing::code_of(at) : "") + " differ\n";
    }

    std::map<const object*, object*> twin_of_;
    std::vector<const object*> made_;
    std::string difference_;
};

std::vector<object*> tree_below(const object& top) {
    std::vector<object*> all = top.children();
    for (std::size_t i = 0; i != all.size(); ++i)
        for (object* each : all[i]->children()) all.push_back(each);
    return all;
}

class copy_law final : public kelm::testing::companion {
public:
    explicit copy_law(u64 seed) : numbers_(seed) {}

    void finished(player& at) override {
        hook_program::instance().clear();
        root_ = &at.root();
        const std::string before = at.state();
        shared_ptr<copier> clip = framework::instance().create_copier(&at.model());
        std::vector<object*> tops = fill(*clip);
        if (numbers_.one_in(2)) {
            std::stringstream bytes;
            clip->write(bytes);
            clip = framework::instance().create_copier(&at.model());
            if (!clip->read(bytes)) tell(at, "a snapshot that was written can be read");
        }
        const kelm::testing::read_model twin;
        const meta_object* const type = twin->meta_model()->find_meta_object(type_id::model);
        std::erase_if(tops, [&](const object* each) { return !type->has_composition(each->type()); });
        check_paste(at, *clip, tops, *twin);
        if (const std::string now = at.state(); now != before)
            tell(at, "copying changes nothing", kelm::testing::difference_of(before, now));
    }

private:
    static void tell(player& at, const char* what, const std::string& difference = {}) {
        at.fail(kelm::testing::law::own, what, difference);
    }

    /// \returns the top objects of what was copied, in the order of copying
    std::vector<object*> fill(copier& clip) {
        std::vector<object*> tops;
        const auto copy = [&](object* what) {
            if (clip.copy_object(what, true) && what->owner() == root_) tops.push_back(what);
        };
        const std::vector<object*> all = tree_below(*root_);
        for (std::size_t i = 0; i < all.size(); i += 3) copy(all[numbers_.below(all.size())]);
        for (object* each : root_->children()) copy(each);
        return tops;
    }

    static void check_paste(player& at, copier& clip, const std::vector<object*>& tops, kelm::model& twin) {
        object* const twin_root = twin.as_object();
        const std::string empty = kelm::testing::text_of(twin);
        std::vector<object*> pasted;
        if (!clip.paste(&twin, {nullptr, twin_root}, &pasted)) tell(at, "a paste succeeds");
        if (pasted.size() != tops.size()) tell(at, "what is pasted is told");
        if (const std::string wrong = pairing{}.difference(tops, *twin_root); !wrong.empty())
            tell(at, "a copy is the same up to ids", wrong + at.state() + kelm::testing::text_of(twin));
        if (const std::string wrong = kelm::testing::broken_links(twin); !wrong.empty())
            tell(at, "links of a copy equal what is stored", wrong);
        const std::string made = kelm::testing::text_of(twin);
        twin.undo();
        if (kelm::testing::text_of(twin) != empty) tell(at, "undo of a paste leads back");
        twin.redo();
        if (!tops.empty() && kelm::testing::text_of(twin) != made) tell(at, "redo of a paste leads to it");
    }

    kelm::testing::random_numbers numbers_;
    const object* root_ = nullptr;
};

} // namespace

std::unique_ptr<kelm::testing::companion> make_copy_law(u64 seed) { return std::make_unique<copy_law>(seed); }

} // namespace kelm::test
