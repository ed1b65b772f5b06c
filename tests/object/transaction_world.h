// A model with one object whose text changes, and an ear at the model.
// What transactions, undo and rollback are tested with.
#pragma once

#include "tests/support/model_hooks.h"

namespace kelm::test {

class transaction_world : public hooked_model_world {
protected:
    transaction_world() : a(hooked("a")) {}

    void set(const std::string& value) { a->set_property(props::text, text(value)); }
    std::string value() { return as_text(a->get_property(props::text)); }
    void change(const std::string& to) {
        begin(to);
        set(to);
        end();
    }
    void listen() { ear.watch(root); }
    void expect_heard(const char* when, const std::string& lines) {
        SCOPED_TRACE(when);
        EXPECT_EQ(ear.take(), lines);
    }

    object* const a;
    recorder ear;
};

} // namespace kelm::test
