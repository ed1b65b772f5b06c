// The law of deltas: what a delta tells is the difference between the model before the stretch and the model now.
// What values were is delta_values.cpp, who is told of delta_walk.cpp.
#include "testing/canonical_text.h"
#include "testing/delta_values.h"
#include "testing/law_companions.h"
#include "testing/player.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace kelm::testing {

namespace {

using lines = std::vector<std::string>;

std::string text_of(u32 id) { return std::to_string(id); }
std::string place_of(std::size_t at) { return at == npos ? "nowhere" : std::to_string(at); }
/// One that was in no list has no place.
std::string at_place(u32 at) { return at == npos32 ? "" : " at " + text_of(at); }

std::string line_of(const std::string& indent, u32 id, const std::string& value) {
    return indent + "  " + text_of(id) + " = " + value;
}

std::size_t index_in(const std::vector<u32>& list, u32 what) {
    const auto at = std::ranges::find(list, what);
    return at == list.end() ? npos : static_cast<std::size_t>(at - list.begin());
}

/// What the pictures before and now say of a stretch.  Where a delta is something else than the difference of the two by
/// design, messages are asked as well:
///
/// - Who is looked at: the objects that messages speak of, and those that inherit from them now, at any depth.  A value
///   that equals nothing is told with every object that is looked at, and never else.
/// - Values that `delta_values` names.
/// - New and deleted objects stand below who was their owner when they were made and deleted; a place is that of the
///   first removal, an order is what single moves add up to, a former owner what the first change of owners says.
/// - Objects that went with a new one that they had moved into are told on top.
/// - What moved and went is told as changed as well, with nothing but the former owner.
/// - So is one that had been deleted before, when the children that were put into it since are ordered: with the order alone.
class story {
public:
    story(kelm::model& in, const model_picture& before, const message* stop)
        : in_(in),
          before_(before),
          now_(picture_of(in)),
          walk_(in, stop),
          values_(in, before_, now_, walk_) {}

    /// \returns what a delta must tell
    std::string told() {
        for (const u32 each : walk_.top_of_gone) tell_gone(each, "");
        for (const u32 each : walk_.top_of_came) tell_came(each, "");
        std::set<u32> changed;
        for (const u32 each : walk_.looked_at)
            if (is_told(each)) changed.insert(each);
        for (const u32 each : changed) tell_changed(each);
        add_order([&](u32 id) { return changed.contains(id); }, walk_.looked_at);
        check_objects();
        return taken();
    }

    /// \returns the same of a delta; null tells nothing
    std::string told_by(const delta* is) {
        std::vector<u32> order;
        if (is) {
            for (delta_detail* each : is->deleted_details()) print_gone(*each, "");
            for (delta_detail* each : is->created_details()) print_came(*each, "");
            std::map<u32, delta_detail*> sorted;
            for (delta_detail* each : is->modified_details()) {
                sorted[each->object_id()] = each;
                order.push_back(each->object_id());
            }
            for (const auto& [id, each] : sorted) print_changed(*each);
        }
        add_order([](u32) { return true; }, order);
        return taken();
    }

private:
    void add(const std::string& line) { out_ += line + "\n"; }
    std::string taken() { return std::exchange(out_, {}); }
    void doubt(u32 id, const std::string& what) { add("doubtful: " + text_of(id) + " " + what); }

    /// The order of those that messages speak of; the others follow in the order of their addresses.
    template <class Condition>
    void add_order(Condition holds, const std::vector<u32>& of) {
        std::string line = "in the order";
        for (const u32 each : of)
            if (holds(each) && index_in(walk_.looked_at, each) < walk_.spoken_of) line += " " + text_of(each);
        add(line);
    }

    std::vector<meta_property*> properties_of(u32 type) const {
        return in_.meta_model()->find_meta_object(type)->properties();
    }

    std::string at_start(u32 id, u32 property) {
        bool difference = false;
        const std::string& value = values_.at_start(id, property, difference);
        if (difference) doubt(id, "had another value as " + text_of(property));
        return value;
    }

    // What is to be told.

    /// The messages and the pictures must agree on what came and went.
    void check_objects() {
        for (const auto& [id, each] : now_)
            if (before_.contains(id) == walk_.came(id)) doubt(id, "came");
        for (const auto& [id, each] : before_)
            if (now_.contains(id) == walk_.is_gone(id)) doubt(id, "went");
        for (const auto& [id, each] : walk_.parents_of_gone)
            if (!before_.contains(id)) doubt(id, "went, and was not there");
    }

    std::vector<u32> changed(u32 id) {
        std::vector<u32> out;
        if (!now_.contains(id)) return out;
        for (const meta_property* each : properties_of(now_.at(id).type)) {
            const std::string then = at_start(id, each->id());
            if (then != values_.now(id, each->id()) || equals_nothing(then)) out.push_back(each->id());
        }
        return out;
    }

    bool is_told(u32 id) {
        const auto orders = walk_.orders.find(id);
        return walk_.former_owners.contains(id) ||
               (orders != walk_.orders.end() && !orders->second.empty()) || !changed(id).empty();
    }

    void tell_values(u32 id, u32 type, const std::string& indent) {
        for (const meta_property* each : properties_of(type))
            if (const std::string value = at_start(id, each->id()); !value.empty())
                add(line_of(indent, each->id(), value));
    }

    void tell_gone(u32 id, const std::string& indent) {
        const u32 owner = walk_.owners_at_deletion[id];
        add(indent + "gone " + text_of(id) + " of " + (now_.contains(owner) ? text_of(owner) : "nobody") +
            (walk_.places.contains(id) ? at_place(walk_.places[id]) : ""));
        tell_values(id, before_.at(id).type, indent);
        for (const u32 each : walk_.below_gone[id]) tell_gone(each, indent + "  ");
    }

    void tell_came(u32 id, const std::string& indent) {
        add(indent + "came " + text_of(id));
        for (const u32 each : walk_.below_came[id]) tell_came(each, indent + "  ");
    }

    void tell_changed(u32 id) {
        add("changed " + text_of(id));
        for (const u32 each : changed(id)) add("  " + text_of(each));
        for (const auto& each : walk_.orders[id])
            add("  child " + text_of(each.child) + " from " + text_of(each.from) + " to " + text_of(each.to));
        if (walk_.former_owners.contains(id)) add("  owner " + text_of(walk_.former_owners[id]));
        if (!now_.contains(id)) return;
        tell_bases(before_.at(id).bases, now_.at(id).bases);
        tell_values(id, now_.at(id).type, "");
        check_orders(id);
    }

    void tell_bases(const std::vector<u32>& then, const std::vector<u32>& bases) {
        for (std::size_t i = 0; i != then.size(); ++i)
            if (index_in(bases, then[i]) != i) add_base(then[i], i, index_in(bases, then[i]));
        for (std::size_t i = 0; i != bases.size(); ++i)
            if (!contains(then, bases[i])) add_base(bases[i], npos, i);
    }

    void add_base(u32 base, std::size_t from, std::size_t to) {
        add("  base " + text_of(base) + " from " + place_of(from) + " to " + place_of(to));
    }

    /// Where nothing but one child moved in a run, its record is what the two pictures say.
    void check_orders(u32 id) {
        for (const auto& [run, children] : walk_.ordered_in_run) {
            if (run.first != id || children.size() != 1 || walk_.runs_that_grew_or_shrank.contains(run))
                continue;
            const u32 child = *children.begin();
            const u32 from = place_in_run(before_, id, child);
            const u32 to = place_in_run(now_, id, child);
            const auto record = std::ranges::find(walk_.orders[id], child, &delta_walk::order_change::child);
            const bool is_right =
                record == walk_.orders[id].end() ? from == to : record->from == from && record->to == to;
            if (!is_right) doubt(child, "moved otherwise");
        }
    }

    static u32 place_in_run(const model_picture& in, u32 owner, u32 child) {
        u32 at = 0;
        for (const u32 each : in.at(owner).children) {
            if (each == child) return at;
            at += in.at(each).type == in.at(child).type;
        }
        return npos32;
    }

    // What is told.

    void print_values(const delta_detail& of, const std::string& indent) {
        const auto& start = *detail_cast<const detail_base_original_properties>(&of);
        for (const meta_property* each : properties_of(of.object_type()))
            if (const value_ptr value = start.original_property(each->id(), nullptr))
                add(line_of(indent, each->id(), value_text(value.get())));
    }

    void print_gone(delta_detail& of, const std::string& indent) {
        const auto& gone = *detail_cast<detail_delete>(&of);
        add(indent + "gone " + text_of(of.object_id()) + " of " +
            (gone.owner() ? text_of(gone.owner()->id()) : "nobody") + at_place(gone.position()));
        print_values(of, indent);
        for (delta_detail* each : gone.child_details()) print_gone(*each, indent + "  ");
    }

    void print_came(delta_detail& of, const std::string& indent) {
        add(indent + "came " + text_of(of.object_id()));
        for (delta_detail* each : detail_cast<detail_create>(&of)->child_details())
            print_came(*each, indent + "  ");
    }

    void print_changed(delta_detail& of) {
        const auto& what = *detail_cast<detail_modified>(&of);
        add("changed " + text_of(of.object_id()));
        for (const u32 each : what.changed_properties()) add("  " + text_of(each));
        for (const child_order_change& each : what.child_order_changes())
            add("  child " + text_of(each.child->id()) + " from " + std::to_string(each.old_pos) + " to " +
                std::to_string(each.new_pos));
        if (what.old_owner()) add("  owner " + text_of(what.old_owner()->id()));
        for (const inherits_change& each : what.inherits_changes())
            add_base(each.object->id(), static_cast<std::size_t>(each.old_pos),
                     static_cast<std::size_t>(each.new_pos));
        print_values(of, "");
    }

    kelm::model& in_;
    const model_picture& before_;
    const model_picture now_;
    delta_walk walk_;
    delta_values values_;
    std::string out_;
};

/// \returns how a delta of the history behind `stop` differs from what it is to tell; empty when it does not
std::string difference(kelm::model& in, const model_picture& before, message* stop, const delta* is) {
    story what{in, before, stop};
    try {
        const std::string expected = what.told();
        return difference_of(expected, what.told_by(is));
    } catch (const std::out_of_range&) {
        return "messages speak of an object that neither was there nor is\n";
    }
}

class delta_law final : public companion {
public:
    void restarted(player& at) override { pictures_.assign(1, picture_of(at.model())); }
    void beginning(player& at) override {
        model_picture now = picture_of(at.model());
        if (level_pictures_.empty()) { // a transaction that was refused and redone has not been told of
            pictures_.resize(at.at());
            pictures_.push_back(now);
        }
        level_pictures_.push_back(std::move(now));
    }
    /// Deltas of all levels that are open.
    void ending(player& at) override {
        std::size_t level = 0;
        for (std::size_t i = 0; i != at.model().message_count(); ++i) {
            message* const each = at.model().message_at(i);
            const auto* const begun = message_cast<tran_begin_message>(each);
            if (begun && !begun->end_message()) check(at, level_pictures_.at(level++), each);
        }
    }
    void left(player& at) override { level_pictures_.resize(std::min(level_pictures_.size(), at.levels())); }
    void kept(player& at) override {
        pictures_.push_back(picture_of(at.model()));
        check_transactions(at);
    }
    void after(player& at, const step& what) override {
        if (what.what == action::undo || what.what == action::redo || what.what == action::rollback_last)
            check_transactions(at);
    }

private:
    static void check(player& at, const model_picture& before, message* stop) {
        if (at.has_failed()) return;
        const std::unique_ptr<delta> made{at.model().make_delta(stop)};
        const std::string wrong = difference(at.model(), before, stop, made.get());
        if (!wrong.empty()) at.fail(law::deltas, "a delta tells what differs", wrong);
    }
    void check_transactions(player& at);

    std::vector<model_picture> level_pictures_; // of the moments before the begins of the open levels
    std::vector<model_picture> pictures_;       // of the moments between transactions
};

/// Those of the last transaction, of all of the history, and of what lies between.
void delta_law::check_transactions(player& at) {
    if (at.has_failed()) return;
    kelm::model& in = at.model();
    std::vector<message*> begins;
    for (std::size_t i = 0; i != in.message_count(); ++i) {
        const auto* const begun = message_cast<tran_begin_message>(in.message_at(i));
        if (begun && begun->level() == 0) begins.push_back(in.message_at(i));
    }
    if (begins.empty()) return;
    const auto before = [&](std::size_t which) -> const model_picture& {
        return pictures_.at(at.at() - (begins.size() - which));
    };
    const std::size_t last = begins.size() - 1;
    for (const std::size_t each : std::set<std::size_t>{0, begins.size() / 2}) // the last one is asked below
        if (each != last) check(at, before(each), begins[each]);
    const std::string wrong = difference(in, before(last), begins[last], in.last_delta());
    if (!wrong.empty()) at.fail(law::deltas, "the last delta tells what differs", wrong);
}

} // namespace

std::unique_ptr<companion> make_delta_law() { return std::make_unique<delta_law>(); }

} // namespace kelm::testing
