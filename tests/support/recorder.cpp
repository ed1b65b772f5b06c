// An observer that writes down what it hears.
// It detaches from everything that still stands when it goes.
#include "tests/support/recorder.h"

namespace kelm::test {

recorder::~recorder() {
    for (subject* each : subjects()) each->detach(this);
}

bool recorder::update(subject*, message* what) {
    heard_ += (line ? line(what) : line_of(what)) + "\n";
    if (meanwhile) meanwhile(what);
    return answer;
}

std::string line_of(const message* what) {
    std::string text;
    return std::to_string(what->type()) + (what->is_first_run() ? " first " : " again ") +
           what->to_string(text);
}

} // namespace kelm::test
