// Deltas as lines.
// What the lines must be is told by the tests.
#include "tests/delta/delta_text.h"
#include "tests/support/world.h"

#include <map>
#include <sstream>

namespace kelm::test {

namespace {

class printer {
public:
    printer(const delta& of, kelm::model& in) : of_(of), in_(in) {
        for (const delta_detail* each : of.deleted_details()) remember_name(*each);
    }

    std::string text() {
        for (delta_detail* each : of_.deleted_details()) print_deleted(*each, nullptr, "");
        for (delta_detail* each : of_.created_details()) print_created(*each, nullptr, "");
        for (delta_detail* each : of_.modified_details()) print_modified(*each);
        return out_.str();
    }

private:
    void remember_name(const delta_detail& of) {
        of.name(names_[of.object_id()]);
        for (const delta_detail* each : detail_cast<const detail_delete>(&of)->child_details())
            remember_name(*each);
    }

    std::string name_of(const object* what) {
        if (!what) return "nobody";
        if (what->type() == type_id::model) return "root";
        const auto gone = names_.find(what->id());
        return gone == names_.end() ? object_name(what) : gone->second;
    }

    void print_line(const delta_detail& of, int kind, const char* what, const std::string& indent) {
        std::string name = "a name before";
        of.name(name);
        out_ << indent << what << ' ' << name;
        if (of.kind() != kind) out_ << " (kind " << of.kind() << ")";
        if (of.owning_delta() != &of_) out_ << " (of another delta)";
        if ((detail_cast<const detail_delete>(&of) != nullptr) != (kind == delta_detail::deleted) ||
            (detail_cast<const detail_create>(&of) != nullptr) != (kind == delta_detail::created) ||
            (detail_cast<const detail_modified>(&of) != nullptr) != (kind == delta_detail::modified) ||
            (detail_cast<const detail_base_original_properties>(&of) == nullptr) !=
                (kind == delta_detail::created))
            out_ << " (with other faces)";
    }

    void print_deleted(delta_detail& of, const delta_detail* parent, const std::string& indent) {
        print_line(of, delta_detail::deleted, "deleted", indent);
        const auto& what = *detail_cast<detail_delete>(&of);
        out_ << " of " << name_of(what.owner());
        if (what.position() != npos32) out_ << " at " << what.position();
        if (what.parent_detail() != parent) out_ << " (below another)";
        out_ << '\n';
        const auto& before = *detail_cast<detail_base_original_properties>(&of);
        for (const meta_property* each : properties_of(of))
            if (each->id() != property_id::name && before.has_original_property(each->id()))
                out_ << indent << "  " << each->id() << " = "
                     << text_of(before.original_property(each->id(), nullptr)) << '\n';
        for (delta_detail* each : what.child_details()) print_deleted(*each, &of, indent + "  ");
    }

    void print_created(delta_detail& of, const delta_detail* parent, const std::string& indent) {
        print_line(of, delta_detail::created, "created", indent);
        const auto& what = *detail_cast<detail_create>(&of);
        if (what.parent_detail() != parent) out_ << " (below another)";
        out_ << '\n';
        for (delta_detail* each : what.child_details()) print_created(*each, &of, indent + "  ");
    }

    void print_modified(delta_detail& of) {
        print_line(of, delta_detail::modified, "modified", "");
        out_ << '\n';
        const auto& what = *detail_cast<detail_modified>(&of);
        const auto& before = *detail_cast<detail_base_original_properties>(&of);
        const object* const now = in_.find_object(of.object_id());
        for (const u32 id : what.changed_properties()) {
            out_ << "  " << id << ": " << text_of(before.original_property(id, nullptr)) << " -> "
                 << text_of(now ? now->get_property(id) : value_ptr{});
            if (before.had_property(id) != (before.original_property(id, nullptr) != nullptr))
                out_ << " (had it and had it not)";
            out_ << '\n';
        }
        for (const child_order_change& each : what.child_order_changes())
            out_ << "  child " << name_of(each.child) << ' ' << each.old_pos << " -> " << each.new_pos
                 << '\n';
        for (const inherits_change& each : what.inherits_changes())
            out_ << "  base " << name_of(each.object) << ' ' << each.old_pos << " -> " << each.new_pos
                 << '\n';
        if (what.old_owner()) out_ << "  owner was " << name_of(what.old_owner()) << '\n';
    }

    std::vector<meta_property*> properties_of(const delta_detail& of) {
        return in_.meta_model()->find_meta_object(of.object_type())->properties();
    }

    std::string text_of(const abstract_property* value) {
        if (const auto* const target = dynamic_cast<const property<object*>*>(value))
            return "->" + name_of(target->value);
        if (const auto* const list = dynamic_cast<const vector_property*>(value)) {
            std::string text = "[";
            for (const abstract_property* each : list->elements)
                text += (text == "[" ? "" : " ") + text_of(each);
            return text + "]";
        }
        return value ? "'" + value->to_string() + "'" : "none";
    }
    std::string text_of(const value_ptr& value) { return text_of(value.get()); }

    const delta& of_;
    kelm::model& in_;
    std::map<u32, std::string> names_; // of what is gone
    std::ostringstream out_;
};

} // namespace

std::string text_of(const delta* of, kelm::model& in) { return of ? printer{*of, in}.text() : "none\n"; }

} // namespace kelm::test
