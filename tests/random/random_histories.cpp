// The words of the test types, and who goes along in which mix.
// What they do is told in files of their own.
#include "tests/random/random_histories.h"
#include "tests/support/counted_value.h"
#include "tests/support/world.h"

#include "testing/law_companions.h"

namespace kelm::test {

namespace {

using kelm::testing::history_setting;
using kelm::testing::law_set;
using kelm::testing::played_history;
using kelm::testing::vocabulary;

constexpr u32 counted_kind = 700100;
constexpr u32 made_types[] = {types::thing,         types::part,   types::other,
                              types::special_thing, types::hooked, types::hooked_part};
constexpr u32 value_ids[] = {props::definition, props::text, props::number,         props::flag,
                             props::reference,  props::list, props::not_inheritable};

/// Everything is made anywhere, and has values of any kind.
vocabulary make_words(bool with_definitions) {
    vocabulary out;
    vocabulary::type any;
    for (const u32 id : value_ids)
        any.properties.push_back({id, id == props::list ? data_type::vector : 0, 0, {}});
    for (u32 id = property_id::first_user_defined + 1; with_definitions && id <= 50004; ++id)
        any.properties.push_back({id, 0, 0, {}});
    any.children.assign(std::begin(made_types), std::end(made_types));
    for (const u32 id : {type_id::model, type_id::user_defined_property, types::thing, types::part,
                         types::other, types::special_thing, types::hooked, types::hooked_part}) {
        any.id = id;
        out.types[id] = any;
    }
    out.has_hooks = true;
    // A reference is drawn more often than the others.
    out.wild_kinds = {
        data_type::string,           data_type::integer, data_type::real,  data_type::object_reference,
        data_type::object_reference, counted_kind,       data_type::vector};
    return out;
}

const vocabulary& words_of(const history_mix& mix) {
    static const vocabulary without = make_words(false);
    static const vocabulary with = make_words(true);
    return mix.definitions ? with : without;
}

kelm::testing::companions companions_of(u64 seed, const history_mix& mix) {
    kelm::testing::companions out;
    out.push_back(make_reactions(seed, mix, words_of(mix)));
    out.push_back(kelm::testing::make_link_law());
    if (mix.definitions) out.push_back(make_definition_steps());
    if (mix.stored) out.push_back(kelm::testing::make_stream_law(law_set::all(), {}));
    if (mix.summed) out.push_back(kelm::testing::make_delta_law());
    if (mix.replayed) out.push_back(make_replay_law(mix.answered));
    if (mix.copied) out.push_back(make_copy_law(seed));
    return out;
}

history_setting setting_of(const history_mix& mix) {
    started_framework();
    counted_value::enter();
    history_setting out;
    out.mix.bases = mix.bases;
    out.mix.in_circles = true;
    out.mix.limited = !mix.replayed;
    out.mix.stored = mix.stored;
    out.mix.heard = mix.shadowed;
    out.mix.repeated = mix.repeated;
    out.mix.summed = mix.summed;
    out.mix.undeclared = true;
    out.words = &words_of(mix);
    out.go_along = [mix](u64 seed) { return companions_of(seed, mix); };
    out.afterwards = [alive = counted_value::alive] {
        const long left = counted_value::alive - alive;
        counted_value::alive = alive;
        return left == 0 ? std::string{} : std::to_string(left) + " values are not freed";
    };
    return out;
}

} // namespace

played_history play(u64 seed, std::size_t steps, history_mix mix, bool writes) {
    return play_random(setting_of(mix), seed, steps, writes);
}

told_history play_for_bytes(u64 seed, std::size_t steps, history_mix mix) {
    const played_history played = play(seed, steps, mix, true);
    told_history out{played.broken.what + played.broken.difference, played.bytes};
    for (const std::string& each : played.lines) out.steps += each + "\n";
    return out;
}

std::string broken_law(u64 seed, std::size_t steps, history_mix mix) {
    constexpr std::size_t most_replays = 3000;
    const history_setting setting = setting_of(mix);
    const played_history played = play_random(setting, seed, steps);
    if (played.holds()) return {};
    const auto fewest = cut(setting, seed, played.steps, played.broken.broken, most_replays);
    const played_history again = play_steps(setting, seed, fewest, true);
    return printed(again.holds() ? played : again, seed);
}

} // namespace kelm::test
