// Hooks on the Model type that a test can program.
// They pass unless programmed, and are registered once a process: models made before do not have them.
#pragma once

#include "tests/support/world.h"

#include <functional>

namespace kelm::test {

/// What the hooks of models do.
class model_hooks {
protected:
    using action = std::function<bool(object*)>;
    using end_action = std::function<bool(kelm::model*)>;

    model_hooks() { register_once(); }
    static void clear() { at_create = at_delete = at_pre_delete = nullptr, at_end = nullptr; }

    static inline action at_create;
    static inline action at_delete;
    static inline action at_pre_delete;
    static inline end_action at_end; ///< behind the end of an outermost transaction

private:
    template <class Kind, class Argument, std::function<bool(Argument)>* Action>
    class hook final : public Kind {
    public:
        u32 id() const override { return 3000 + static_cast<u32>(Kind::kind); }
        bool do_it(Argument what) override {
            if (!*Action) return true;
            const auto copy = *Action; // it may be reprogrammed meanwhile
            return copy(what);
        }
    };

    static void register_once() {
        static const bool done = [] {
            meta_object* const type =
                started_framework().application_meta_model()->find_meta_object(type_id::model);
            return type->add_semantic(new hook<obj_create_semantic, object*, &at_create>) &&
                   type->add_semantic(new hook<obj_delete_semantic, object*, &at_delete>) &&
                   type->add_semantic(new hook<obj_pre_delete_semantic, object*, &at_pre_delete>) &&
                   type->add_semantic(new hook<post_end_transaction_semantic, kelm::model*, &at_end>);
        }();
        if (!done) throw std::logic_error("the hooks of models are registered already");
    }
};

/// A fresh model with these hooks: they are registered before it is made, and pass again before it is closed.
class hooked_model_world : protected model_hooks, public world {
protected:
    ~hooked_model_world() override { clear(); }
};

} // namespace kelm::test
