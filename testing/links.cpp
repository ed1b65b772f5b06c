// Walking a model once and comparing both sides of each link.
// Everything goes through the public interface.
#include "testing/links.h"

#include <kelm/object.h>
#include <kelm/property.h>
#include <kelm/subject.h>
#include <kelm/testing/laws.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <vector>

namespace kelm::testing {

namespace {

/// \returns the targets of the references that a value holds
std::vector<object*> targets_of(const abstract_property* value) {
    std::vector<object*> out;
    const auto add = [&](const abstract_property* each) {
        const auto* const target = dynamic_cast<const property<object*>*>(each);
        if (target && target->value) out.push_back(target->value);
    };
    add(value);
    if (const auto* const list = dynamic_cast<const vector_property*>(value))
        std::ranges::for_each(list->elements, add);
    return out;
}

std::string ids_of(const std::set<object*>& objects) {
    std::set<u32> ids;
    for (const object* each : objects) ids.insert(each->id());
    std::string out;
    for (const u32 id : ids) out += " " + std::to_string(id);
    return out;
}

std::set<object*> as_set(const std::vector<object*>& list) { return {list.begin(), list.end()}; }

class link_check {
public:
    link_check(kelm::model& of, bool is_hostile) : model_(of), is_hostile_(is_hostile) {}

    std::string result() {
        std::vector<u32> ids;
        model_.object_ids(ids);
        for (const u32 id : ids) {
            object* const each = model_.find_object(id);
            if (each && each->id() == id && (is_hostile_ || each->state() != state::deleted))
                all_.insert(each);
            else
                wrong_ << "id " << id << " leads to no living object of that id\n";
        }
        if (is_hostile_) reach_all();
        for (object* const each : all_) look_at(*each);
        for (object* const each : all_) compare_back_lists(*each);
        look_for_the_gone();
        return wrong_.str();
    }

private:
    using links = std::map<object*, std::set<object*>>;

    /// Adds what is linked and has no id of its own.
    void reach_all() {
        std::vector<object*> to_visit{all_.begin(), all_.end()};
        while (!to_visit.empty()) {
            object& at = *to_visit.back();
            to_visit.pop_back();
            for (const auto& list : {at.children(), at.inherits_from_list(0), at.inheritors(),
                                     at.referenced_objects(), at.referencing_objects()})
                for (object* const each : list)
                    if (all_.insert(each).second) to_visit.push_back(each);
        }
    }

    void look_at(object& at) {
        value_map own;
        at.own_properties(own);
        for (const auto& [property, stored] : own)
            for (object* const target : targets_of(stored.get())) referrers_[target].insert(&at);
        for (object* const base : at.inherits_from_list(0)) heirs_[base].insert(&at);
        look_at_observers(at);
        look_at_children(at);
    }

    void look_at_observers(object& at) {
        for (observer* const who : at.observers()) {
            const auto* const watching = dynamic_cast<object*>(who);
            if (!watching) continue;
            const std::vector<subject*> subjects = watching->subjects();
            if (std::ranges::find(subjects, dynamic_cast<subject*>(&at)) == subjects.end())
                wrong_ << watching->id() << " observes " << at.id() << " and does not know it\n";
        }
        for (subject* const watched : at.subjects())
            if (!watched->is_attached(dynamic_cast<observer*>(&at)))
                wrong_ << at.id() << " believes to observe somebody\n";
    }

    void look_at_children(object& at) {
        u32 type = 0;
        for (object* const child : at.children()) {
            if (child->owner() != &at && !is_hostile_)
                wrong_ << at.id() << " lists " << child->id() << ", which has another owner\n";
            if (!listed_in_.emplace(child, &at).second) wrong_ << child->id() << " is listed twice\n";
            if (child->type() < type)
                wrong_ << "children of " << at.id() << " are not in the order of their types\n";
            type = child->type();
        }
    }

    void compare_back_lists(object& at) {
        if (const auto told = as_set(at.referencing_objects()); told != referrers_[&at])
            wrong_ << at.id() << " is referred to by" << ids_of(referrers_[&at]) << ", told are"
                   << ids_of(told) << "\n";
        if (const auto told = as_set(at.inheritors()); told != heirs_[&at])
            wrong_ << at.id() << " is inherited by" << ids_of(heirs_[&at]) << ", told are" << ids_of(told)
                   << "\n";
    }

    void look_for_the_gone() {
        for (const links* const map : {&referrers_, &heirs_})
            for (const auto& [target, from] : *map)
                if (!all_.contains(target))
                    wrong_ << "there are links to " << target->id() << ", which is gone\n";
        for (const auto& [child, owner] : listed_in_)
            if (!all_.contains(child))
                wrong_ << owner->id() << " lists " << child->id() << ", which is gone\n";
    }

    kelm::model& model_;
    bool is_hostile_;
    std::set<object*> all_;
    links referrers_;
    links heirs_;
    std::map<object*, object*> listed_in_;
    std::ostringstream wrong_;
};

} // namespace

std::string broken_links(kelm::model& of) { return link_check{of, false}.result(); }
std::string broken_links_of_hostile(kelm::model& of) { return link_check{of, true}.result(); }

} // namespace kelm::testing
