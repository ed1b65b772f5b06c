// Cutting a failing history to its shortest form: fewer steps first, then simpler ones.
// What counts as failing is told by playing it again, see histories.cpp.
#include "testing/histories.h"

#include <algorithm>

namespace kelm::testing {

namespace {

/// One history while it is cut.
class cutter {
public:
    cutter(const history_setting& setting, u64 seed, std::vector<step> steps, law broken, std::size_t budget)
        : setting_(setting), seed_(seed), steps_(std::move(steps)), broken_(broken), budget_(budget) {}

    std::vector<step> result() {
        std::size_t before = 0;
        do {
            before = replays_;
            changed_ = false;
            leave_out_chunks();
            leave_out_pairs();
            simplify();
        } while (changed_ && replays_ != before && replays_ < budget_);
        return steps_;
    }

private:
    /// Takes over a history when it breaks the same law.
    bool take(const std::vector<step>& shorter) {
        if (replays_ >= budget_) return false;
        ++replays_;
        played_history played = play_steps(setting_, seed_, shorter);
        if (played.holds() || played.broken.broken != broken_) return false;
        steps_ = std::move(played.steps); // without what was passed over
        changed_ = true;
        return true;
    }

    std::vector<step> without(std::size_t from, std::size_t count) const {
        std::vector<step> out = steps_;
        const auto first = out.begin() + static_cast<std::ptrdiff_t>(from);
        out.erase(first, first + static_cast<std::ptrdiff_t>(std::min(count, out.size() - from)));
        return out;
    }

    /// Halves, quarters, and so on to single steps; the newest first, of which least depends.
    void leave_out_chunks() {
        for (std::size_t size = std::max<std::size_t>(steps_.size() / 2, 1);; size /= 2) {
            for (std::size_t end = steps_.size(); end != 0;) {
                const std::size_t from = end > size ? end - size : 0;
                take(without(from, end - from));
                end = std::min(from, steps_.size());
            }
            if (size == 1) return;
        }
    }

    /// A begin goes with its end, a creation with what takes it back.
    void leave_out_pairs() {
        constexpr std::size_t most = 24;
        for (std::size_t first = 0; first < steps_.size() && steps_.size() <= most; ++first)
            for (std::size_t second = first + 1; second < steps_.size(); ++second) {
                std::vector<step> fewer = without(second, 1);
                fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(first));
                if (take(fewer)) second = first; // steps have moved up
            }
    }

    template <class Change>
    void try_change(std::size_t which, Change change) {
        if (which >= steps_.size()) return;
        std::vector<step> simpler = steps_;
        change(simpler[which]);
        if (simpler != steps_) take(simpler);
    }

    void simplify() {
        for (std::size_t i = 0; i < steps_.size(); ++i) {
            if (steps_[i].what == action::set_mark) continue;
            try_change(i, [](step& each) {
                if (each.what == action::create_object) each.object = {};
            });
            try_change(i, [](step& each) {
                if (each.what != action::set_undo_levels) each.position = 0;
            });
            try_change(i, [](step& each) { each.to = 0; });
            try_change(i, [](step& each) { simplify(each.value); });
            try_change(i, [](step& each) { simplify(each.other_value); });
            while (i < steps_.size() && !steps_[i].value.elements.empty()) {
                const std::size_t before = steps_[i].value.elements.size();
                try_change(i, [](step& each) { each.value.elements.pop_back(); });
                if (i >= steps_.size() || steps_[i].value.elements.size() == before) break;
            }
        }
    }

    static void simplify(planned_value& value) {
        switch (value.kind) {
        case data_type::string: value.text.clear(); return;
        case data_type::short_integer:
        case data_type::integer:
        case data_type::long_integer:
        case data_type::long_long:
        case data_type::real: value.text = "0"; return;
        case data_type::vector:
            std::ranges::for_each(value.elements, [](auto& each) { simplify(each); });
            return;
        default: return;
        }
    }

    const history_setting& setting_;
    u64 seed_;
    std::vector<step> steps_;
    law broken_;
    std::size_t budget_;
    std::size_t replays_ = 0;
    bool changed_ = false;
};

} // namespace

std::vector<step> cut(const history_setting& setting, u64 seed, std::vector<step> steps, law broken,
                      std::size_t most_replays) {
    return cutter{setting, seed, std::move(steps), broken, most_replays}.result();
}

} // namespace kelm::testing
