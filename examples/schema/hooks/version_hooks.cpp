// Hooks of the model that keep the version of a file that is read, also of one that is too new.
// They refuse nothing: who reads the file says what is wrong with it.
#include "hooks/hooks.h"

#include <kelm/model.h>

namespace schema {

namespace {

class version_is_newer final : public rule<kelm::read_newer_model_semantic> {
public:
    using rule::rule;
    bool do_it(kelm::u32 major, kelm::u32 minor) override {
        shared().note_version({major, minor});
        return true;
    }
};

class version_is_known final : public rule<kelm::post_model_load_semantic> {
public:
    using rule::rule;
    bool do_it(kelm::model*, kelm::u32 major, kelm::u32 minor) override {
        shared().note_version({major, minor});
        return true;
    }
};

} // namespace

void add_version_hooks(rules& shared) {
    add_hook<version_is_newer>(kelm::type_id::model, shared);
    add_hook<version_is_known>(kelm::type_id::model, shared);
}

} // namespace schema
