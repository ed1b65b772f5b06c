// Building the shared tree.
// Each package has 100 entities of 10 attributes; every 10th attribute refers to another entity's.
#include "workload_tree.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace workload {

namespace {

using namespace kelm;

constexpr std::size_t entities_a_package = 100;
constexpr std::size_t attributes_an_entity = 10;

class builder final : public meta_model_builder {
public:
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        meta_model* const app = framework::instance().application_meta_model();
        const auto add = [&](u32 id, const char* name) {
            meta_object* const type = app->add_meta_object(id, name, "", "");
            type->add_base_type(app->find_meta_object(type_id::generic_object));
            return type;
        };
        add(package_type, "Package");
        add(entity_type, "Entity");
        meta_object* const attribute = add(attribute_type, "Attribute");
        attribute->add_property(length_property, "Length", data_type::integer, "");
        attribute->add_property(nullable_property, "Nullable", data_type::boolean, "");
        attribute->add_property(refers_property, "Refers", data_type::object_reference, "");
        app->find_meta_object(type_id::model)->add_composition(package_type);
        app->find_meta_object(package_type)->add_composition(entity_type);
        app->find_meta_object(entity_type)->add_composition(attribute_type);
    }
};

object* make(tree& in, u32 type, object* owner, const std::string& name) {
    object* const made = framework::instance().create_object(type, owner);
    made->set_property(property_id::name, property<std::string>{name});
    in.objects.push_back(made);
    return made;
}

/// \param earlier  an attribute of another entity, or null
object* make_attribute(tree& in, object* owner, const std::string& name, std::size_t number,
                       object* earlier) {
    object* const made = make(in, attribute_type, owner, name);
    made->set_property(length_property, property<int>{static_cast<int>(number % 255)});
    made->set_property(nullable_property, property<bool>{number % 3 == 0});
    if (earlier && number % 10 == 0) made->set_property(refers_property, property<object*>{earlier});
    return made;
}

} // namespace

void start() {
    builder types;
    framework::instance().initialise(types);
}

tree build(std::size_t wanted) {
    const double per_package = 1.0 + entities_a_package * (1.0 + attributes_an_entity);
    const auto packages = std::max<std::size_t>(
        1, static_cast<std::size_t>(std::lround(static_cast<double>(wanted) / per_package)));
    tree out;
    out.root = framework::instance().create_object(type_id::model, nullptr);
    out.model = out.root->model();
    out.objects.reserve(static_cast<std::size_t>(per_package) * packages);
    transaction_object transaction{out.model, "Build"};
    std::size_t number = 0;
    object* earlier = nullptr;
    for (std::size_t p = 0; p != packages; ++p) {
        const std::string package_number = std::to_string(p);
        object* const package = make(out, package_type, out.root, "pkg_" + package_number);
        for (std::size_t e = 0; e != entities_a_package; ++e) {
            const std::string entity_number = package_number + "_" + std::to_string(e);
            object* const entity = make(out, entity_type, package, "ent_" + entity_number);
            object* last = nullptr;
            for (std::size_t a = 0; a != attributes_an_entity; ++a)
                last = make_attribute(out, entity, "att_" + entity_number + "_" + std::to_string(a), number++,
                                      earlier);
            earlier = last;
        }
    }
    transaction.commit();
    return out;
}

void close(tree& done) {
    framework::instance().delete_object(done.root);
    framework::instance().set_in_semantic(false);
    done = {};
}

std::size_t object_count(const tree& built) {
    std::vector<u32> ids;
    return built.model->object_ids(ids);
}

std::vector<object*> some_packages(const tree& built, std::size_t step) {
    std::vector<object*> packages;
    const std::vector<object*> all = built.root->children();
    for (std::size_t i = 0; i < all.size(); i += step) packages.push_back(all[i]);
    return packages;
}

} // namespace workload
