// The binary form of the fields of messages.
// The form of values is value_record.cpp.
#include "message/archives.h"

#include "util/bytes.h"

#include <kelm/model.h>
#include <kelm/object.h>

#include <istream>
#include <ostream>

namespace kelm {

void binary_writer::number(const char*, u32 value) { put_u32(to_.out, value); }
void binary_writer::flag(const char*, bool value) { put_bool(to_.out, value); }
void binary_writer::text(const char*, const std::string& value) { put_string(to_.out, value); }
void binary_writer::object_id(const char* name, kelm::object* value) {
    number(name, value ? value->id() : 0);
}
void binary_writer::meta_type(const char* name, meta_object* value) { number(name, value ? value->id() : 0); }

void binary_reader::number(const char*, u32& value) {
    const u32 read = get_u32(from_.in);
    if (from_.in) value = read;
}

void binary_reader::flag(const char*, bool& value) {
    const bool read = get_bool(from_.in);
    if (from_.in) value = read;
}

void binary_reader::text(const char*, std::string& value) {
    std::string read = get_string(from_.in);
    if (from_.in) value = std::move(read);
}

void binary_reader::object_id(const char* name, kelm::object*& value) {
    u32 id = 0;
    number(name, id);
    if (from_.in) value = id != 0 && from_.model ? from_.model->find_object(id) : nullptr;
}

void binary_reader::meta_type(const char* name, meta_object*& value) {
    u32 id = 0;
    number(name, id);
    if (from_.in) value = id != 0 && from_.model ? from_.model->meta_model()->find_meta_object(id) : nullptr;
}

kelm::observer* binary_reader::observer(u32 id) const {
    return id != 0 && from_.model ? message_cast<kelm::observer>(from_.model->find_object(id)) : nullptr;
}

} // namespace kelm
