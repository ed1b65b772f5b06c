// Keeping the shadow, and comparing it.
// When it is compared is random_laws.cpp.
#include "testing/shadow_model.h"

#include "testing/canonical_text.h"

#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <algorithm>

namespace kelm::testing {

namespace {

template <class Number>
std::string joined(const std::vector<Number>& numbers) {
    std::string out;
    for (const Number each : numbers) out += " " + std::to_string(each);
    return out;
}

template <class List>
void put_in(List& list, std::size_t position, typename List::value_type what) {
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(position), std::move(what));
}

template <class List>
typename List::value_type take_out(List& list, std::size_t position) {
    const auto at = list.begin() + static_cast<std::ptrdiff_t>(position);
    typename List::value_type out = std::move(*at);
    list.erase(at);
    return out;
}

std::string text_of(const value_ptr& value) { return value_text(value.get()); }

std::string at_of(const message& what) {
    return "message " + std::to_string(what.type()) + " at " + std::to_string(what.object()->id()) + " ";
}

} // namespace

shadow_model::~shadow_model() {
    for (subject* each : subjects()) each->detach(this);
}

void shadow_model::listen_to(object& root) { add(root, 0); }

shadow_model::thing& shadow_model::add(object& what, u32 owner) {
    what.attach(this); // it may be attached already: then this does nothing
    thing& made = objects_.try_emplace(what.id()).first->second;
    made.owner = owner;
    if (const auto marks = marks_of_the_deleted_.extract(what.id())) made.marks = marks.mapped();
    return made;
}

/// Takes over what has happened to an object before anybody could listen to it: hooks of its creation may have changed it.
void shadow_model::adopt(object& what, u32 owner) {
    add(what, owner);
    value_map own;
    what.own_properties(own);
    for (const auto& [id, stored] : own) objects_[what.id()].values[id] = value_of(stored);
    thing& made = objects_[what.id()];
    made.bases = ids_of(what.inherits_from_list(0));
    for (const u32 mark : what.not_inheritable_properties()) made.marks[mark] = true;
    for (object* const child : what.children()) {
        objects_[what.id()].children[child->type()].push_back(child->id());
        if (!objects_.contains(child->id())) adopt(*child, what.id());
    }
}

shadow_model::value shadow_model::value_of(const value_ptr& stored) {
    value out;
    const auto* const list = dynamic_cast<const vector_property*>(stored.get());
    out.is_list = list != nullptr;
    if (list)
        for (const abstract_property* each : list->elements) out.elements.push_back(value_text(each));
    else
        out.text = text_of(stored);
    return out;
}

void shadow_model::call_is_over() {
    told_marks_.clear();
    undone_marks_.clear();
    for (auto& [id, each] : objects_) each.bases_have_changed = false;
}

bool shadow_model::understands(const object& what) const {
    const auto found = objects_.find(what.id());
    return found != objects_.end() && !found->second.bases_have_changed;
}

void shadow_model::complain(const std::string& of_what) {
    if (complaint_.empty()) complaint_ = of_what + "\n";
}

bool shadow_model::update(subject*, message* what) {
    const u32 type = what->type();
    if (type < message_type::obj_create) return true; // transactions change nothing
    if (const auto* const said = message_cast<obj_create_message>(what)) {
        add(*what->object(), said->owner() ? said->owner()->id() : 0);
        return true;
    }
    const auto known = objects_.find(what->object()->id());
    if (known == objects_.end()) return true;
    thing& of = known->second;
    const bool is_mark = type == message_type::property_set_not_inheritable;
    const bool is_value = type == message_type::property_set || type == message_type::property_delete;
    if (!what->is_first_run()) {
        // Nobody reacts to undo and redo: what belongs to a change follows it at once.
        if (!is_mark) undone_marks_.clear();
        if (!is_value) of.bases_have_changed = false;
    }
    if (type == message_type::obj_delete) {
        marks_of_the_deleted_[known->first] = of.marks;
        objects_.erase(known);
    } else if (is_mark) {
        hear_of_mark(of, *what);
    } else if (auto* const change = message_cast<property_change_message>(what)) {
        // Else it is told to one who inherits, and may see a base in front.
        if (change->real_owner() != what->object()) return true;
        is_value ? hear_of_value(of, *what, *change) : hear_of_element(of, *what, *change);
    } else if (type >= message_type::inherits_add) {
        hear_of_base(of, *what);
    } else {
        hear_of_child(of, *what);
    }
    return true;
}

void shadow_model::hear_of_value(thing& of, message& what, property_change_message& change) {
    const u32 id = change.property_type();
    const auto* const set = message_cast<property_set_message>(&change);
    const auto former = of.values.find(id);
    const bool was_own = former != of.values.end() && former->second.is_sure;
    if (!set) {
        of.values.erase(id);
        return;
    }
    value next = value_of(set->new_value());
    next.is_sure = was_own || set->old_owner() == what.object() || !of.bases_have_changed;
    of.values[id] = std::move(next);
}

void shadow_model::hear_of_element(thing& of, message& what, property_change_message& change) {
    const auto found = of.values.find(change.property_type());
    if (found == of.values.end() || !found->second.is_list)
        return complain(at_of(what) + "tells of an element of no list");
    found->second.is_sure = true;
    std::vector<std::string>& elements = found->second.elements;
    if (const auto* const put = message_cast<property_insert_vec_prop_message>(&change)) {
        // An insertion behind the end is told and puts nothing in; so nothing goes when it is undone.
        if (put->pos() <= elements.size()) put_in(elements, put->pos(), text_of(put->value()));
    } else if (const auto* const gone = message_cast<property_delete_vec_prop_message>(&change)) {
        if (gone->pos() >= elements.size()) return;
        if (take_out(elements, gone->pos()) != text_of(gone->value()))
            complain(at_of(what) + "tells of another element than the one that was there");
    } else if (const auto* const set = message_cast<property_set_vec_prop_message>(&change)) {
        if (set->pos() >= elements.size() || elements[set->pos()] != text_of(set->old_value()))
            return complain(at_of(what) + "tells of another element than the one that was there");
        elements[set->pos()] = text_of(set->new_value());
    } else if (const auto* const moved = message_cast<element_position_vec_prop_message>(&change)) {
        if (moved->old_pos() >= elements.size() || moved->new_pos() >= elements.size()) return;
        put_in(elements, moved->new_pos(), take_out(elements, moved->old_pos()));
    }
}

void shadow_model::hear_of_mark(thing& of, message& what) {
    const auto& said = *message_cast<property_set_not_inheritable_message>(&what);
    const u32 id = said.property_type();
    const u32 here = what.object()->id();
    told_at& told = what.is_first_run() ? told_marks_ : undone_marks_;
    const bool is_own = told.try_emplace(&what, here).first->second == here || of.bases.empty();
    const auto mark = of.marks.find(id);
    if (is_own || (mark != of.marks.end() && mark->second)) { // those with a mark are told of no other's
        if (said.not_inheritable())
            of.marks[id] = true;
        else
            of.marks.erase(id);
    } else if (said.not_inheritable()) {
        of.marks[id] = false;
    }
}

void shadow_model::hear_of_child(thing& of, message& what) {
    const u32 here = what.object()->id();
    if (const auto* const set = message_cast<owner_set_message>(&what)) {
        of.owner = set->new_owner()->id();
        return;
    }
    const auto run_of = [&](const object& child) -> std::vector<u32>& { return of.children[child.type()]; };
    if (const auto* const came = message_cast<child_add_message>(&what)) {
        object& child = *came->child();
        objects_.contains(child.id()) ? void(add(child, here)) : adopt(child, here);
        std::vector<u32>& run = run_of(child);
        if (came->pos() == npos32) return; // it went from no list, and comes back to none
        if (came->pos() > run.size()) return complain(at_of(what) + "tells of a child behind the end");
        put_in(run, came->pos(), child.id());
    } else if (const auto* const went = message_cast<child_remove_message>(&what)) {
        std::vector<u32>& run = run_of(*went->child());
        if (went->pos() == npos32) return;
        if (went->pos() >= run.size() || take_out(run, went->pos()) != went->child()->id())
            complain(at_of(what) + "tells of another child than the one that was there");
    } else if (const auto* const moved = message_cast<child_order_message>(&what)) {
        std::vector<u32>& run = run_of(*moved->child());
        if (moved->old_pos() >= run.size() || run[moved->old_pos()] != moved->child()->id() ||
            moved->new_pos() >= run.size())
            return complain(at_of(what) + "tells of another child than the one that was there");
        put_in(run, moved->new_pos(), take_out(run, moved->old_pos()));
    }
}

void shadow_model::hear_of_base(thing& of, message& what) {
    of.bases_have_changed = true;
    std::vector<u32>& bases = of.bases;
    const auto place_of = [&](const object& base) { return std::ranges::find(bases, base.id()); };
    if (const auto* const came = message_cast<inherits_add_message>(&what)) {
        if (place_of(*came->inherits_from()) != bases.end())
            return complain(at_of(what) + "tells of a base that is there");
        if (!what.is_first_run() && !bases.empty()) of.places_are_known = false;
        bases.push_back(came->inherits_from()->id());
    } else if (const auto* const put = message_cast<inherits_insert_message>(&what)) {
        if (put->pos() > bases.size()) return complain(at_of(what) + "tells of a base behind the end");
        put_in(bases, put->pos(), put->inherits_from()->id());
    } else if (const auto* const went = message_cast<inherits_cancel_message>(&what)) {
        if (place_of(*went->inherits_from()) == bases.end())
            return complain(at_of(what) + "tells of a base that was not there");
        bases.erase(place_of(*went->inherits_from()));
        if (bases.size() < 2) of.places_are_known = true;
    } else if (const auto* const changed = message_cast<inherits_replace_message>(&what)) {
        if (place_of(*changed->old_inherits_from()) == bases.end())
            return complain(at_of(what) + "tells of a base that was not there");
        *place_of(*changed->old_inherits_from()) = changed->inherits_from()->id();
    } else if (const auto* const moved = message_cast<inherits_from_order_message>(&what)) {
        if (place_of(*moved->inherits_from()) == bases.end() || moved->new_pos() >= bases.size())
            return complain(at_of(what) + "tells of a base that was not there");
        bases.erase(place_of(*moved->inherits_from()));
        put_in(bases, moved->new_pos(), moved->inherits_from()->id());
    }
}

void shadow_model::compare_values(std::string& out, const thing& heard, const object& real) const {
    value_map own;
    real.own_properties(own);
    const auto say = [&](u32 id, const std::string& text) {
        out += std::to_string(real.id()) + " property " + std::to_string(id) + " " + text + "\n";
    };
    for (const auto& [id, each] : heard.values)
        if (each.is_sure && !own.contains(id)) say(id, "was heard of, and is not there");
    for (const auto& [id, stored] : own) {
        const auto found = heard.values.find(id);
        if (found == heard.values.end()) {
            say(id, "is " + text_of(stored) + ", of which nothing was heard");
            continue;
        }
        std::string text = found->second.text;
        if (found->second.is_list) {
            text = "[";
            for (const std::string& element : found->second.elements) text += element + "|";
            text += "]";
        }
        if (text != text_of(stored)) say(id, "is " + text_of(stored) + ", heard was " + text);
    }
}

std::string shadow_model::difference_from(const kelm::model& real) const {
    std::string out = complaint_;
    std::vector<u32> ids;
    real.object_ids(ids);
    for (const auto& [id, each] : objects_)
        if (!std::ranges::binary_search(ids, id)) out += std::to_string(id) + " is gone, unheard\n";
    for (const u32 id : ids) {
        const object& there = *real.find_object(id);
        const std::string name = std::to_string(id);
        const auto found = objects_.find(id);
        if (found == objects_.end()) {
            out += name + " is there, unheard\n";
            continue;
        }
        const thing& heard = found->second;
        if (heard.owner != (there.owner() ? there.owner()->id() : 0)) out += name + " has another owner\n";
        std::vector<u32> children;
        for (const auto& [type, run] : heard.children)
            children.insert(children.end(), run.begin(), run.end());
        if (const std::vector<u32> listed = ids_of(there.children()); listed != children)
            out += name + " has the children" + joined(listed) + ", heard were" + joined(children) + "\n";
        compare_values(out, heard, there);
        std::vector<u32> bases = ids_of(there.inherits_from_list(0));
        std::vector<u32> heard_bases = heard.bases;
        if (!heard.places_are_known) {
            std::ranges::sort(bases);
            std::ranges::sort(heard_bases);
        }
        if (bases != heard_bases)
            out += name + " has the bases" + joined(bases) + ", heard were" + joined(heard_bases) + "\n";
        const std::vector<u32> marks = there.not_inheritable_properties();
        for (const u32 mark : marks)
            if (!heard.marks.contains(mark)) out += name + " has a mark of which nothing was heard\n";
        for (const auto& [mark, is_sure] : heard.marks)
            if (is_sure && std::ranges::find(marks, mark) == marks.end())
                out += name + " has lost a mark, unheard\n";
    }
    return out;
}

} // namespace kelm::testing
