// Declaring the types, and asking what was planted.
// What is planted is told by the tests.
#include "tests/testing/bookshelf.h"

#include <fstream>
#include <istream>
#include <ostream>
#include <sstream>

namespace kelm::bookshelf {

namespace {

/// A number of a kind that an application adds.
class coin final : public abstract_property {
public:
    owned<abstract_property*> clone() const override { return new coin(*this); }
    bool equals(const abstract_property* other) const override {
        const auto* const same = dynamic_cast<const coin*>(other);
        return same && same->value_ == value_;
    }
    std::string to_string() const override { return value_; }
    void to_string(std::string& out) const override { out = value_; }
    void from_string(const std::string& text) override { value_ = text.substr(0, 1); }
    void write(std::ostream& out) const override { out.put(value_.empty() ? ' ' : value_[0]); }
    void read(std::istream& in, std::vector<reference_record>&, object*) override {
        const char read = static_cast<char>(in.get());
        value_ = planted::coins_are_lost ? "0" : std::string(read == ' ' ? 0 : 1, read);
    }

private:
    std::string value_;
};

template <class Action, class... Arguments>
bool ask(const Action& what, Arguments... arguments) {
    if (!what) return true;
    const Action copy = what; // it may be planted anew meanwhile
    return copy(arguments...);
}

struct behind_set final : post_prop_set_semantic {
    u32 id() const override { return 100; }
    bool do_it(object* at, u32 id, const abstract_property&, value_ptr, object*, object*) override {
        return ask(planted::behind_set, at, id);
    }
};
struct behind_add final : post_add_child_semantic {
    u32 id() const override { return 100; }
    bool do_it(object* at, object* child) override { return ask(planted::behind_add, at, child); }
};
struct behind_remove final : post_remove_child_semantic {
    u32 id() const override { return 100; }
    bool do_it(object* at, object* child) override { return ask(planted::behind_remove, at, child); }
};
struct behind_create final : obj_create_semantic {
    u32 id() const override { return 100; }
    bool do_it(object* at) override { return ask(planted::behind_create, at); }
};
struct before_delete final : obj_pre_delete_semantic {
    u32 id() const override { return 100; }
    bool do_it(object* at) override { return ask(planted::before_delete, at); }
};
struct at_delete final : obj_delete_semantic {
    u32 id() const override { return 100; }
    bool do_it(object* at) override { return ask(planted::at_delete, at); }
};
struct told final : update_semantic {
    u32 id() const override { return 100; }
    bool do_it(object* at, subject*, message* what) override { return ask(planted::told, at, what); }
};
struct at_end final : post_end_transaction_semantic {
    u32 id() const override { return 100; }
    bool do_it(kelm::model* in) override { return ask(planted::at_end, in); }
};
struct behind_load final : post_model_load_semantic {
    u32 id() const override { return 100; }
    bool do_it(kelm::model* in, u32, u32) override { return ask(planted::behind_load, in); }
};

class builder final : public meta_model_builder {
public:
    void define_data_types() override {
        framework::instance().register_data_type(
            coin_kind, typeid(coin), []() -> abstract_property* { return new coin; }, "Coin");
    }
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model& all = *framework::instance().application_meta_model();
        for (const u32 id : {types::shelf, types::book, types::note}) {
            meta_object& type = *all.add_meta_object(id, "Type " + std::to_string(id), "", "");
            type.add_base_type(all.find_meta_object(type_id::generic_object));
            type.add_property(props::count, "Count", data_type::integer, "");
            type.add_property(props::title, "Title", data_type::string, "");
            type.add_property(props::next, "Next", data_type::object_reference, "");
            type.add_property(props::authors, "Authors", data_type::vector, "");
            type.add_property(props::price, "Price", coin_kind, "");
            if (id != types::note) add_hooks(type);
        }
        for (const u32 owner : {type_id::model, types::shelf, types::book})
            for (const u32 child : {types::shelf, types::book, types::note})
                all.find_meta_object(owner)->add_composition(child);
        all.find_meta_object(type_id::model)->add_semantic(new at_end);
        all.find_meta_object(type_id::model)->add_semantic(new behind_load);
    }

private:
    static void add_hooks(meta_object& type) {
        type.add_semantic(new behind_set);
        type.add_semantic(new behind_add);
        type.add_semantic(new behind_remove);
        type.add_semantic(new behind_create);
        type.add_semantic(new before_delete);
        type.add_semantic(new at_delete);
        type.add_semantic(new told);
    }
};

} // namespace

void planted::clear() {
    behind_set = nullptr;
    behind_add = behind_remove = nullptr;
    behind_create = before_delete = at_delete = nullptr;
    told = nullptr;
    at_end = behind_load = nullptr;
    coins_are_lost = false;
}

meta_model_builder& started_types() {
    static builder types;
    framework::instance().initialise(types);
    return types;
}

testing::law_report hold(testing::law_set laws, testing::law_options options) {
    options.laws = laws;
    return testing::check_laws(started_types(), options);
}

std::string file_text(const char* path) {
    std::ifstream in{path};
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

} // namespace kelm::bookshelf
