// The open models, values by code, the XML handler, the trace.
// Start-up and what makes and deletes objects are defined with what they start and make.
#include "framework/framework_impl.h"

#include "framework/data_types.h"
#include "util/logger_impl.h"
#include "util/process_state.h"

#include <kelm/model.h>
#include <kelm/property.h>

#include <algorithm>

namespace kelm {

namespace {

std::string text_or_nothing(const char* text) { return text ? text : ""; }

} // namespace

framework& framework::instance() {
    static framework_impl the_one;
    return the_one;
}

framework_impl::framework_impl() = default;
framework_impl::~framework_impl() = default;

abstract_property* framework_impl::create_value(u32 code) { return data_types::create_value(code); }
u32 framework_impl::data_type_of(const abstract_property* value) { return data_types::data_type_of(value); }
std::string framework_impl::data_type_name(u32 code) { return data_types::data_type_name(code); }

void framework_impl::register_data_type(u32 code, const std::type_info& type, value_factory make,
                                        const std::string& name) {
    data_types::register_data_type(code, type, make, name);
}

// The clone is made before the old one goes: the argument may be that very one.
void framework_impl::set_xml_handler(const qdxml& handler) {
    xml_handler_ = std::unique_ptr<qdxml>{handler.clone()};
}

kelm::model* framework_impl::find_model(const GUID& id) const {
    const auto at = std::ranges::find_if(models_, [&](const kelm::model* each) {
        GUID its;
        each->model_id(its);
        return its == id;
    });
    return at == models_.end() ? nullptr : *at;
}

void framework_impl::remove_model(kelm::model* which) { std::erase(models_, which); }

bool framework_impl::in_semantic() const { return process().in_semantic; }
void framework_impl::set_in_semantic(bool running) { process().in_semantic = running; }

void framework_impl::set_logging(bool on) {
    logger_.reset(); // the file is closed before it is opened anew
    if (on) logger_ = std::make_unique<kelm_logger_impl>();
}

kelm_logger* framework_impl::logger() { return logger_.get(); }

void framework_impl::log(const char* a, const char* b, const char* c) {
    if (logger_) logger_->log(text_or_nothing(a), text_or_nothing(b), text_or_nothing(c));
}

void framework_impl::log(const char* a, const char* b) {
    if (logger_) logger_->log(text_or_nothing(a), text_or_nothing(b));
}

void framework_impl::log(const char* a) {
    if (logger_) logger_->log(text_or_nothing(a));
}

} // namespace kelm
