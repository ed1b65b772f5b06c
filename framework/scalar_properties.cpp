// The kinds that are one plain value: truth, numbers, text and model ids.
// References, maps and vectors have files of their own.
#include "framework/property_members.h"
#include "util/ascii.h"
#include "util/bytes.h"
#include "util/document_state.h"
#include "util/text.h"

#include <kelm/framework.h>
#include <kelm/qdxml.h>
#include <kelm/xml_helpers.h>

#include <bit>
#include <cmath>
#include <istream>
#include <limits>
#include <optional>
#include <ostream>

namespace kelm {

namespace {

// The widths of the stream format.
static_assert(sizeof(stored_value<short>) == 2);
static_assert(sizeof(stored_value<int>) == 4);
static_assert(sizeof(stored_value<long>) == 4);
static_assert(sizeof(stored_value<unsigned>) == 4);
static_assert(sizeof(stored_value<long long>) == 8);
static_assert(sizeof(stored_value<double>) == 8 && std::numeric_limits<double>::is_iec559);

using references = std::vector<reference_record>;

/// A kind whose boxes never equal a box of another kind.
struct apart_from_other_kinds {
    template <class Value>
    static bool same_elsewhere(const Value&, const abstract_property&) {
        return false;
    }
};

/// \returns the bits of the number in a box of one of the three 32-bit kinds; nothing for other boxes
std::optional<u32> number_of_32_bits(const abstract_property& box) {
    const std::type_info& type = typeid(box);
    if (type == typeid(property<int>)) return static_cast<u32>(static_cast<const property<int>&>(box).value);
    if (type == typeid(property<long>))
        return static_cast<u32>(static_cast<const property<long>&>(box).value);
    if (type == typeid(property<unsigned>)) return static_cast<const property<unsigned>&>(box).value;
    return std::nullopt;
}

} // namespace

template <>
struct value_rules<bool> : apart_from_other_kinds {
    static bool same(bool a, bool b) { return a == b; }
    static void text(bool value, std::string& out) { out = value ? "True" : "False"; }
    static void parse(bool& value, const std::string& text) { value = same_bytes_no_case(text, "True"); }
    static void write(bool value, std::ostream& out) { put_bool(out, value); }
    static void read(property<bool>& box, std::istream& in, references&, object*) {
        box.value = get_bool(in);
    }
};

template <>
struct value_rules<short> : apart_from_other_kinds {
    static bool same(short a, short b) { return a == b; }
    static void text(short value, std::string& out) { out = text_of(value); }
    static void parse(short& value, const std::string& text) { value = static_cast<short>(parse_int(text)); }
    static void write(short value, std::ostream& out) { put_u16(out, static_cast<u16>(value)); }
    static void read(property<short>& box, std::istream& in, references&, object*) {
        box.value = static_cast<short>(get_u16(in));
    }
};

/// What the three 32-bit kinds share.
template <class T>
struct rules_of_32_bits {
    using number = stored_value<T>;

    static bool same(number a, number b) { return a == b; }
    static bool same_elsewhere(number value, const abstract_property& other) {
        return number_of_32_bits(other) == static_cast<u32>(value);
    }
    static void text(number value, std::string& out) {
        // Kept: an unsigned number above the signed range prints as a negative one, as readers of stored texts
        // expect it.
        out = text_of(static_cast<std::int32_t>(value));
    }
    static void parse(number& value, const std::string& text) {
        value = static_cast<number>(parse_int(text));
    }
    static void write(number value, std::ostream& out) { put_u32(out, static_cast<u32>(value)); }
    static void read(property<T>& box, std::istream& in, references&, object*) {
        box.value = static_cast<number>(get_u32(in));
    }
};

template <>
struct value_rules<int> : rules_of_32_bits<int> {};
template <>
struct value_rules<long> : rules_of_32_bits<long> {};
template <>
struct value_rules<unsigned> : rules_of_32_bits<unsigned> {};

template <>
struct value_rules<long long> : apart_from_other_kinds {
    static bool same(long long a, long long b) { return a == b; }
    static void text(long long value, std::string& out) { out = text_of(value); }
    static void parse(long long& value, const std::string& text) {
        // Kept: read as a number without a sign, so that the text of a negative value gives 0.
        value = static_cast<long long>(parse_unsigned(text));
    }
    static void write(long long value, std::ostream& out) { put_u64(out, static_cast<u64>(value)); }
    static void read(property<long long>& box, std::istream& in, references&, object*) {
        box.value = static_cast<long long>(get_u64(in));
    }
};

template <>
struct value_rules<double> : apart_from_other_kinds {
    // Kept: relative where b is not near zero, absolute where it is.  So a just below the tolerance may equal b
    // just above it while b does not equal a, and a number that is none equals nothing.
    static bool same(double a, double b) {
        constexpr double tolerance = 5e-8;
        if (std::abs(b) < tolerance) return std::abs(a) < tolerance;
        return std::abs(1 - a / b) < tolerance;
    }
    static void text(double value, std::string& out) { out = format_double(value); }
    static void parse(double& value, const std::string& text) { value = parse_double(text); }
    static void write(double value, std::ostream& out) { put_u64(out, std::bit_cast<u64>(value)); }
    static void read(property<double>& box, std::istream& in, references&, object*) {
        box.value = std::bit_cast<double>(get_u64(in));
    }
};

template <>
struct value_rules<std::string> : apart_from_other_kinds {
    static bool same(const std::string& a, const std::string& b) { return a == b; }
    static void text(const std::string& value, std::string& out) { out = value; }
    static void parse(std::string& value, const std::string& text) { value = text; }
    static void write(const std::string& value, std::ostream& out) { put_string(out, value); }
    static void read(property<std::string>& box, std::istream& in, references&, object*) {
        box.value = get_string(in);
    }

    /// Texts of the properties that the application names are escaped; without a handler none are.
    static bool is_escaped(u32 id) {
        const qdxml* const handler = framework::instance().xml_handler();
        const document_pass of_the_application; // what it does in there is not of this document
        return handler && handler->needs_xml_processing(id);
    }
    static void write_xml(const std::string& value, void* element, u32 id) {
        if (!value.empty()) add_xml_text(element, is_escaped(id) ? process_xml_data(value) : value);
    }
    static void read_xml(property<std::string>& box, void* element, u32 id, references&, object*) {
        get_xml_text(element, box.value, is_escaped(id));
    }
};

template <>
struct value_rules<GUID> : apart_from_other_kinds {
    static bool same(const GUID& a, const GUID& b) { return a == b; }
    static void text(const GUID& value, std::string& out) { out = guid_to_string(value); }
    static void parse(GUID& value, const std::string& text) { guid_from_string(text, value); }
    static void write(const GUID& value, std::ostream& out) { put_guid(out, value); }
    static void read(property<GUID>& box, std::istream& in, references&, object*) {
        box.value = get_guid(in);
    }
};

template class KELM_EXPORT property<bool>;
template class KELM_EXPORT property<short>;
template class KELM_EXPORT property<int>;
template class KELM_EXPORT property<long>;
template class KELM_EXPORT property<unsigned>;
template class KELM_EXPORT property<long long>;
template class KELM_EXPORT property<double>;
template class KELM_EXPORT property<std::string>;
template class KELM_EXPORT property<GUID>;

} // namespace kelm
