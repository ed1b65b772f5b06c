// Which histories are played of an application's types, and what is told of the first that breaks a law.
// Playing, cutting and printing are histories.h.
#include "testing/histories.h"
#include "testing/law_companions.h"
#include "testing/vocabulary.h"

#include <kelm/framework.h>

#include <algorithm>
#include <ostream>

namespace kelm::testing {

namespace {

constexpr u64 operations_a_line = 1'000'000;
constexpr std::size_t fewest_steps = 10;

/// The mixes that histories take in turn.
std::vector<history_mix> mixes_of(const law_options& options, const vocabulary& words) {
    const auto wants = [&](law which) { return options.laws.has(which); };
    std::vector<history_mix> out{{.bases = true}};
    if (wants(law::streams) || wants(law::reloading)) out.push_back({.bases = true, .stored = true});
    if (wants(law::documents) && options.elements)
        out.push_back({.bases = true, .stored = true, .documented = true});
    if (wants(law::hearing)) out.push_back({.bases = !words.has_hooks, .heard = true});
    if (wants(law::deltas) && !words.has_read_hooks) out.push_back({.bases = true, .summed = true});
    if (wants(law::repetition))
        out.push_back({.bases = !words.has_hooks, .observing = false, .repeated = true});
    return out;
}

class law_keeper {
public:
    law_keeper(meta_model& types, const law_options& options)
        : options_(options),
          words_(vocabulary_of(types, options.element_kinds, options.texts)),
          mixes_(mixes_of(options, words_)) {}

    law_report keep() {
        for (u64 seed = options_.seed; report_.holds && !is_done(); ++seed) hold(seed);
        return std::move(report_);
    }

private:
    bool is_done() const {
        return options_.operations != 0 ? report_.operations >= options_.operations
                                        : report_.histories >= options_.histories;
    }

    history_setting setting_for(u64 seed) const {
        const u64 round = seed / mixes_.size();
        history_setting out;
        out.mix = mixes_[seed % mixes_.size()];
        out.mix.bases = out.mix.bases && round % 3 != 0;
        out.mix.in_circles = !words_.has_hooks;
        out.words = &words_;
        out.go_along = [this, mix = out.mix](u64) { return companions_for(mix); };
        return out;
    }

    companions companions_for(const history_mix& mix) const {
        companions out;
        if (mix.heard) out.push_back(make_hearing_law()); // it hears before anybody else reacts
        if (options_.laws.has(law::links)) out.push_back(make_link_law());
        if (mix.stored) {
            const law_set left_out = law_set::none().with(law::documents);
            const law_set now = mix.documented ? left_out : options_.laws.without(law::documents);
            out.push_back(make_stream_law(now, options_.elements));
        }
        if (mix.summed) out.push_back(make_delta_law());
        if (options_.laws.has(law::own)) out.push_back(make_own_laws(options_.own_laws));
        return out;
    }

    void hold(u64 seed) {
        const history_setting setting = setting_for(seed);
        const std::size_t fewest = std::min(fewest_steps, options_.steps);
        const std::size_t size = fewest + seed % (options_.steps - fewest + 1);
        played_history played = play_random(setting, seed, size);
        ++report_.histories;
        const u64 line = report_.operations / operations_a_line;
        report_.operations += played.operations;
        if (options_.progress && report_.operations / operations_a_line != line)
            *options_.progress << report_.operations << " operations, " << report_.histories << " histories"
                               << std::endl;
        if (!played.holds() && is_held(played.broken.broken)) tell(setting, seed, std::move(played));
    }

    bool is_held(law which) const { return options_.laws.has(which); }

    void tell(const history_setting& setting, u64 seed, played_history played) {
        report_.holds = false;
        report_.seed = seed;
        const law broken = played.broken.broken;
        const auto shortest = cut(setting, seed, played.steps, broken, options_.most_replays);
        played_history again = play_steps(setting, seed, shortest, true);
        if (!again.holds()) played = std::move(again); // else it depends on what lies outside the model
        report_.broken = played.broken.broken;
        report_.what = played.broken.what;
        report_.difference = played.broken.difference;
        report_.steps = played.steps.size();
        report_.code = printed(played, seed);
    }

    const law_options& options_;
    vocabulary words_;
    std::vector<history_mix> mixes_;
    law_report report_;
};

} // namespace

const char* name_of(law which) {
    switch (which) {
    case law::undo_and_redo: return "undo and redo";
    case law::rollback: return "rollback";
    case law::links: return "links";
    case law::streams: return "streams";
    case law::documents: return "documents";
    case law::reloading: return "reloading";
    case law::hearing: return "hearing";
    case law::deltas: return "deltas";
    case law::repetition: return "repetition";
    case law::own: break;
    }
    return "own";
}

std::string law_report::to_string() const {
    const std::string played =
        std::to_string(histories) + " histories, " + std::to_string(operations) + " operations";
    if (holds) return "all laws hold: " + played + "\n";
    return "the law \"" + std::string(name_of(broken)) + "\" is broken in " + std::to_string(steps) +
           " steps of seed " + std::to_string(seed) + ", behind " + played + "\n" + code;
}

law_report check_laws(meta_model_builder& types, const law_options& options) {
    framework& all = framework::instance();
    all.initialise(types);
    return law_keeper{*all.application_meta_model(), options}.keep();
}

} // namespace kelm::testing
