// Playing histories, and playing them twice.
// Drawing steps is random_steps.cpp, cutting a history cutting.cpp.
#include "testing/histories.h"
#include "testing/law_companions.h"
#include "testing/random_steps.h"

namespace kelm::testing {

namespace {

constexpr int attempts_at_a_step = 20;

/// One model, and who goes along.
class run {
public:
    run(const history_setting& setting, u64 seed, bool writes)
        : setting_(setting), with_(setting.go_along(seed)), player_(setting.mix, with_, writes) {}

    player& at() { return player_; }
    companions& with() { return with_; }

    bool play(const step& what) {
        if (!player_.play(what)) return false;
        steps_.push_back(what);
        return true;
    }

    played_history result() {
        played_history out;
        if (setting_.mix.repeated) {
            player_.end_all();
            if (!player_.has_failed()) {
                out.text = player_.state();
                out.bytes = bytes_of(player_.model());
            }
        }
        player_.finish();
        player_.close();
        with_.clear();
        if (setting_.afterwards)
            if (const std::string wrong = setting_.afterwards(); !wrong.empty())
                player_.fail(law::own, "what is left behind the history is nothing", wrong + "\n");
        out.broken = player_.broken();
        out.steps = std::move(steps_);
        out.lines = player_.lines();
        out.operations = player_.operations();
        return out;
    }

private:
    const history_setting& setting_;
    companions with_;
    player player_;
    std::vector<step> steps_;
};

played_history play_once(const history_setting& setting, u64 seed, const std::vector<step>& steps,
                         bool writes) {
    run history{setting, seed, writes};
    for (const step& each : steps) history.play(each);
    return history.result();
}

/// A second history of the same steps must come to the same.
void repeat(const history_setting& setting, u64 seed, played_history& once) {
    if (!setting.mix.repeated || !once.holds()) return;
    const played_history again = play_once(setting, seed, once.steps, false);
    once.operations += again.operations;
    if (!again.holds()) {
        once.broken = again.broken;
        once.broken.expected_at = npos;
    } else if (again.text != once.text) {
        once.broken = {law::repetition, "the same calls lead to the same state",
                       difference_of(once.text, again.text), npos};
    } else if (again.bytes != once.bytes) {
        once.broken = {law::repetition, "the same calls make the same bytes",
                       difference_of_bytes(once.bytes, again.bytes), npos};
    }
}

} // namespace

played_history play_random(const history_setting& setting, u64 seed, std::size_t size, bool writes) {
    played_history out;
    {
        run history{setting, seed, writes};
        random_numbers numbers{seed};
        random_steps steps{numbers, *setting.words, history.at()};
        u32 number = 0;
        for (const step& each : steps.beginning()) {
            number = each.number;
            history.play(each);
        }
        for (std::size_t i = 0; i != size && !history.at().has_failed(); ++i)
            for (int attempt = 0; attempt != attempts_at_a_step; ++attempt) {
                std::optional<step> next;
                for (const auto& each : history.with())
                    if (!next && history.at().levels() != 0) next = each->draw(history.at(), numbers);
                if (!next) next = steps.next();
                next->number = number + 1;
                if (!history.play(*next)) continue;
                ++number;
                break;
            }
        out = history.result();
    }
    repeat(setting, seed, out);
    return out;
}

played_history play_steps(const history_setting& setting, u64 seed, const std::vector<step>& steps,
                          bool writes) {
    played_history out = play_once(setting, seed, steps, writes);
    repeat(setting, seed, out);
    return out;
}

} // namespace kelm::testing
