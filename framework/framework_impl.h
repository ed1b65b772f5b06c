// The one implementation of the framework: the open models, the XML handler, the logger.
// What makes and deletes objects is defined with the objects.
#pragma once

#include <kelm/framework.h>
#include <kelm/qdxml.h>

#include <memory>
#include <vector>

namespace kelm {

class kelm_logger_impl;

/// Made on the first call of framework::instance().
class framework_impl final : public framework {
public:
    framework_impl();
    ~framework_impl() override;
    framework_impl(const framework_impl&) = delete;
    framework_impl& operator=(const framework_impl&) = delete;

    void initialise(meta_model_builder& builder) override;
    void shutdown() override;
    meta_model* application_meta_model() override;
    void add_meta_attribute(u32 id, const std::string& name, bool is_inheritable) override;
    void add_meta_attribute_with_default(u32 id, const std::string& name, const abstract_property& value,
                                         bool is_inheritable) override;
    meta_attribute* find_meta_attribute(u32 id) override;
    void meta_attribute_ids(std::vector<u32>& out) override;

    object* create_object(u32 type, object* owner) override;
    bool delete_object(object* what) override;
    bool delete_objects(const std::vector<object*>& objects) override;
    object* instantiate_object(u32 type, kelm::model* in, bool assign_id) override;

    owned<abstract_property*> create_value(u32 code) override;
    u32 data_type_of(const abstract_property* value) override;
    std::string data_type_name(u32 code) override;
    void register_data_type(u32 code, const std::type_info& type, value_factory make,
                            const std::string& name) override;
    void set_xml_handler(const qdxml& handler) override;
    qdxml* xml_handler() override { return xml_handler_.get(); }

    kelm::model* model_of(const object* what) override;
    kelm::model* library_of(object* what) override;
    bool set_property_transacted(object* what, u32 id, const abstract_property& value) override;
    bool delete_property_transacted(object* what, u32 id) override;
    object* create_object_with_properties(u32 type, object* owner, initial_values* values) override;
    object* create_object_transacted(u32 type, object* owner, initial_values* values) override;
    bool delete_object_transacted(object* what) override;

    shared_ptr<compare> create_compare(object* left, object* right) override;
    shared_ptr<compare> create_compare_with_options(object* left, object* right,
                                                    const meta_types_filter& filter) override;
    shared_ptr<copier> create_copier(kelm::model* from) override;

    std::vector<kelm::model*> models() const override { return models_; }
    kelm::model* find_model(const GUID& id) const override;
    void remove_model(kelm::model* which) override;
    bool in_semantic() const override;
    void set_in_semantic(bool running) override;
    bool is_object_type_of_udp(const object* what, u32 type) override;
    u32 udp_property_id(const object* what) override;

    void set_logging(bool on) override;
    bool logging_enabled() const override { return logger_ != nullptr; }
    kelm_logger* logger() override;
    void log(const char* a, const char* b, const char* c) override;
    void log(const char* a, const char* b) override;
    void log(const char* a) override;

private:
    object* create_model();
    bool close_model(object& root, bool by_force);
    void build_built_ins();

    std::vector<kelm::model*> models_; // in the order of their making
    bool initialised_ = false;
    bool initialising_ = false;
    bool built_ins_stand_ = false;
    std::unique_ptr<qdxml> xml_handler_;
    std::unique_ptr<kelm_logger_impl> logger_;
};

} // namespace kelm
