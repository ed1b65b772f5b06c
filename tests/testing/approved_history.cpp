// The law "undo and redo" is broken: redo leads to the state behind.
//     3 type 101 state 0 owner 1
//   +   103 = []
// Seed 1.  The function takes a fresh model.
#include <kelm/kelm.h>
#include <kelm/testing/laws.h>

#include <limits>
#include <memory>
#include <string>

/// \returns how the law is broken; empty when it holds
std::string broken_history(kelm::model& model);

std::string broken_history(kelm::model& model) {
    kelm::framework& fw = kelm::framework::instance();
    const auto o = [&](kelm::u32 id) { return model.find_object(id); };
    const auto list = [](const auto&... elements) {
        auto value = std::make_unique<kelm::vector_property>();
        (value->elements.push_back(elements.clone()), ...);
        return value;
    };
    model.begin_transaction("");
    fw.create_object(101, o(1));
    o(3)->set_property(103, *list());
    model.end_transaction();
    const std::string expected = kelm::testing::text_of(model);
    model.undo();
    model.redo();
    return kelm::testing::difference_of(expected, kelm::testing::text_of(model));
}
