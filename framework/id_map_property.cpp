// The kind that holds pairs of ids, for one process: neither text nor stream carries the pairs.
// Who fills and uses them is the business of whoever copies between models.
#include "framework/property_members.h"

#include <array>
#include <istream>
#include <ostream>

namespace kelm {

namespace {

/// What the value takes in a stream: zeros, and their number is fixed by the streams that exist.
constexpr std::array<char, 16> place_in_stream{};

} // namespace

template <>
struct value_rules<id_multimap> {
    static bool same(const id_multimap& a, const id_multimap& b) { return a == b; }
    static bool same_elsewhere(const id_multimap&, const abstract_property&) { return false; }

    // Kept: the kind has no text form; documents hold these very words and drop them on reading.
    static void text(const id_multimap&, std::string& out) { out = "TO DO"; }
    static void parse(id_multimap&, const std::string&) {}

    static void write(const id_multimap&, std::ostream& out) {
        out.write(place_in_stream.data(), place_in_stream.size());
    }
    static void read(property<id_multimap>& box, std::istream& in, std::vector<reference_record>&, object*) {
        auto passed_over = place_in_stream;
        in.read(passed_over.data(), passed_over.size());
        box.value.clear();
    }
};

template class KELM_EXPORT property<id_multimap>;

} // namespace kelm
