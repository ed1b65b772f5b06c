// An observer that writes down what it hears.
// Comparing the lines as one block of text shows order, kinds and flags at once.
#pragma once

#include <kelm/message.h>
#include <kelm/object.h>
#include <kelm/subject.h>

#include <functional>
#include <string>
#include <vector>

namespace kelm::test {

/// Writes each message as a line: its number, "first" or "again", and its description.
class recorder final : public observer_impl {
public:
    recorder() = default;
    ~recorder() override;

    /// Hears `what` until the end of the test; the object must live until then, or be closed with its model.
    void watch(object* what) { what->attach(this); }
    bool update(subject* from, message* what) override;
    /// \returns what was heard since the last call
    std::string take() { return std::exchange(heard_, {}); }

    bool answer = true;                        ///< what update() returns
    std::function<void(message*)> meanwhile;   ///< done while being told
    std::function<std::string(message*)> line; ///< another form of a line

private:
    std::string heard_;
};

/// \returns "number first|again description"
std::string line_of(const message* what);

} // namespace kelm::test
