// Scenarios of copy and paste, and of stored snapshots.
// What must hold behind a failure is fault_stage.
#include "tests/faults/fault_stage.h"

namespace kelm::test {

namespace {

bool copy_all(fault_stage& s) {
    return s.clip->copy_object(s.a, true) && s.clip->copy_object(s.b, true) &&
           s.clip->copy_object(s.linked, true);
}

void with_copier(fault_stage& s) {
    s.clip = s.fw.create_copier(s.model);
    give_rules(*s.clip);
}

void with_snapshot(fault_stage& s) {
    with_copier(s);
    EXPECT_TRUE(copy_all(s));
}

void with_written_snapshot(fault_stage& s) {
    with_snapshot(s);
    std::ostringstream out;
    EXPECT_TRUE(s.clip->write(out));
    s.bytes = out.str();
    with_copier(s);
}

bool paste_here(fault_stage& s) {
    std::vector<object*> pasted;
    return s.clip->paste(s.model, {s.root}, &pasted) && !pasted.empty();
}

} // namespace

std::vector<fault_scenario> copy_scenarios() {
    return {
        {"copy", with_copier, copy_all},
        {"create_copier_and_copy", nullptr,
         [](fault_stage& s) {
             with_copier(s);
             return copy_all(s);
         }},
        {"paste", with_snapshot, paste_here},
        {"paste_into_another_model",
         [](fault_stage& s) {
             with_snapshot(s);
             s.open_other();
         },
         [](fault_stage& s) { return s.clip->paste(s.other, {s.other->as_object()}, nullptr); }},
        {"write_snapshot", with_snapshot,
         [](fault_stage& s) {
             std::ostringstream out;
             return s.clip->write(out) && !out.str().empty();
         }},
        {"read_snapshot", with_written_snapshot,
         [](fault_stage& s) {
             std::istringstream in{s.bytes};
             return s.clip->read(in);
         }},
    };
}

} // namespace kelm::test
