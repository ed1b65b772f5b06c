// The two mirrored lists of who hears whom, and the walk that tells.
// What objects add to it (records of observers that are objects, hooks behind update) is theirs.
#include <kelm/subject.h>

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <functional>

namespace kelm {

namespace {

/// A list that is absent while it is empty: most objects are heard by nobody.
template <class Party>
using party_list = std::unique_ptr<std::vector<Party*>>;

template <class Party>
bool contains(const party_list<Party>& list, const Party* who) {
    return list && std::binary_search(list->begin(), list->end(), who, std::less<>{});
}

/// \returns false when it is there already
template <class Party>
bool enter(party_list<Party>& list, Party* who) {
    if (!list) list = std::make_unique<std::vector<Party*>>();
    const auto place = std::lower_bound(list->begin(), list->end(), who, std::less<>{});
    if (place != list->end() && *place == who) return false;
    list->insert(place, who);
    return true;
}

/// \returns false when it is not there
template <class Party>
bool strike(party_list<Party>& list, Party* who) {
    if (!list) return false;
    const auto place = std::lower_bound(list->begin(), list->end(), who, std::less<>{});
    if (place == list->end() || *place != who) return false;
    list->erase(place);
    if (list->empty()) list.reset();
    return true;
}

} // namespace

bool subject_impl::attach(observer* who) {
    if (!who || !enter(observers_, who)) return false;
    try {
        if (auto* const other_side = dynamic_cast<observer_impl*>(who))
            enter<subject>(other_side->subjects_, this);
    } catch (...) { // a link has two ends, or none
        strike(observers_, who);
        throw;
    }
    return true;
}

bool subject_impl::detach(observer* who) {
    if (!strike(observers_, who)) return false;
    if (auto* const other_side = dynamic_cast<observer_impl*>(who))
        strike<subject>(other_side->subjects_, this);
    return true;
}

std::vector<observer*> subject_impl::observers() const {
    return observers_ ? *observers_ : std::vector<observer*>{};
}

bool subject_impl::is_attached(observer* who) const { return contains(observers_, who); }

bool subject_impl::notify(message* what) {
    if (!observers_) return true;
    const boost::container::small_vector<observer*, 8> as_it_was(observers_->begin(), observers_->end());
    for (observer* const who : as_it_was) {
        if (!is_attached(who)) continue; // taken off by one before it, and perhaps freed
        if (!who->update(this, what)) return false;
    }
    return true;
}

bool observer_impl::update(subject*, message*) { return true; }

std::vector<subject*> observer_impl::subjects() const {
    return subjects_ ? *subjects_ : std::vector<subject*>{};
}

} // namespace kelm
