// Types by id: those of the process, and those of one model.
// What a type is, is meta_object_impl.h; how a model shows a type of the process, meta_object_proxy.h.
#pragma once

#include "meta/flattening.h"
#include "meta/meta_object_base.h"
#include "meta/meta_thing.h"

#include <memory>
#include <string>
#include <vector>

namespace kelm {

/// Asks for the meta model of one model, as against the application's.
struct instance_of_application {};

/// A meta model.  It owns its types.
///
/// One that is made from another, its application meta model, starts with a proxy for each type of it, and finds
/// types that were added to it later there; it must die before that one is destroyed.
class meta_model_impl final : public meta_thing<meta_model> {
public:
    meta_model_impl(u32 id, const std::string& name, const std::string& definition);
    /// The "Instance Meta Model" of a model.
    explicit meta_model_impl(instance_of_application);
    /// The same, of the types of `application`, which is borrowed.
    explicit meta_model_impl(meta_model_impl& application);
    ~meta_model_impl() override;

    std::vector<meta_object*> meta_objects() const override { return objects_; }
    meta_object* find_meta_object(const std::string& name) const override;
    meta_object* find_meta_object(u32 id) const override { return find_type(id); }
    meta_object* add_meta_object(u32 id, const std::string& name, const std::string& definition,
                                 const std::string& alternative_name) override;
    void set_version(u32 version) override { version_ = version; }
    void set_minor_version(u32 version) override { minor_version_ = version; }
    u32 version() const override { return version_; }
    u32 minor_version() const override { return minor_version_; }
    void clear() override;

    const std::vector<meta_object*>& meta_objects_ref() const { return objects_; }
    /// Takes over a type made elsewhere, and owns it whatever the answer.
    /// \returns it; null, and it is freed, when this meta model itself has one of its id
    meta_object_base* add_existing_meta_object(std::unique_ptr<meta_object_base> made);
    /// find_meta_object() by id as the library sees it: own types, then those of the application meta model.
    meta_object_base* find_type(u32 id) const;
    /// Makes room for that many types.
    void reserve(std::size_t types);

    /// \returns a type that changes made to it do not leave this meta model; a proxy is made when the type was
    ///          added to the application meta model after this one was made; null when the id is unknown there too
    meta_object_base* own_or_proxy(u32 id);
    /// \returns borrowed: what this one was made from; null when it is nobody's instance
    meta_model_impl* application_meta_model() const { return application_; }

private:
    std::vector<std::unique_ptr<meta_object_base>> owned_; // parallel to objects_
    std::vector<meta_object*> objects_;                    // ascending by id
    id_index<meta_object_base> by_id_;
    u32 version_ = 0;
    u32 minor_version_ = 0;
    meta_model_impl* application_ = nullptr;
};

/// \returns the meta model of the process; never destroyed, since models may be read to the very end
meta_model_impl& application_meta_model();

/// \returns borrowed, as long as the application's type lives: all hooks of a type in the application meta model;
///          null when the type is unknown or has none
const semantic_table* application_semantics(u32 type);

} // namespace kelm
