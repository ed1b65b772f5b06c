// What values were at the start of a stretch, as a delta is to know them.
// Who is told of is delta_walk.h.
#pragma once

#include "testing/delta_walk.h"
#include "testing/model_picture.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kelm::testing {

/// Values of the picture before, but where the text of a delta is another one by design:
///
/// - A value that was set over an inherited one counts as the object's own from the start: it is what was inherited when
///   it was covered, which another change of the stretch may have brought.
/// - A value that equals nothing seems to have been made by a hook behind the read, which all types have: it counts as
///   the object's own, and what is there now as what was there at the start.
/// - A move of an element is made once more instead of being taken back.
/// - A told change (refresh_property) is taken at its word, whatever the value was.
///
/// Each of them shows in what inherits from the object as well.
class delta_values {
public:
    delta_values(kelm::model& in, const model_picture& before, const model_picture& now,
                 const delta_walk& walk)
        : in_(in), before_(before), now_(now), walk_(walk) {}

    /// \returns the value of an object of the start; "" for none.  `difference` is set when it is not that of the
    ///          picture before although none of the reasons above is there.
    const std::string& at_start(u32 id, u32 property, bool& difference);
    /// \returns "" for none
    std::string now(u32 id, u32 property) const;

private:
    struct found {
        std::string value;
        bool by_exception = false;
    };

    const found& look_up(u32 id, u32 property);
    found find(u32 id, u32 property);
    found find_inherited(u32 id, u32 property);
    found go_back_over(u32 id, u32 property, const std::vector<message*>& newest_first);
    bool counts_as_own(u32 id, u32 property) const;
    bool may_be_asked(const object_picture& from, const object_picture& base, u32 property) const;

    kelm::model& in_;
    const model_picture& before_;
    const model_picture& now_;
    const delta_walk& walk_;
    std::map<std::pair<u32, u32>, found> known_;
};

} // namespace kelm::testing
