// Objects in streams, both ways.  A tree may be as deep as the model is big, so neither way recurses.
// The sections around them are model_stream and history_writer.
#include "persistence/object_record.h"

#include "framework/stored_value.h"
#include "framework/values.h"
#include "meta/meta_property_impl.h"
#include "object/model_impl.h"
#include "util/bytes.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <istream>
#include <map>
#include <ostream>
#include <unordered_map>
#include <vector>

namespace kelm {

namespace {

bool is_persistent(const object_impl& holder, u32 id) {
    const meta_object* const type = holder.meta();
    const meta_property* const which = type ? type->find_property(id) : nullptr;
    if (!which) return false;
    const auto* const mark = exact_cast<property<bool>>(find_attribute(*which, attribute_id::non_persistent));
    return !mark || !mark->value;
}

class object_writer {
public:
    explicit object_writer(std::ostream& out) : out_(out) {}

    void write(const object_impl& top) {
        std::vector<level> levels;
        write_fields(top, levels);
        while (!levels.empty() && out_) {
            level& at = levels.back();
            if (at.next == at.children.size()) {
                levels.pop_back();
                continue;
            }
            const object_impl& child = *impl_of(at.children[at.next++]);
            put_u32(out_, child.type());
            write_fields(child, levels);
        }
    }

private:
    struct level {
        std::vector<object*> children;
        std::size_t next = 0;
    };

    void write_fields(const object_impl& of, std::vector<level>& levels) {
        put_u32(out_, of.id());
        write_values(of);
        write_ids(of.not_inheritable_properties());
        write_bases(of);
        write_observers(of);
        level below;
        if (of.child_objects()) of.child_objects()->append_to(below.children);
        put_u32(out_, static_cast<u32>(below.children.size()));
        if (!below.children.empty()) levels.push_back(std::move(below));
    }

    void write_values(const object_impl& of) {
        kept_.clear();
        for (const auto& entry : of.values())
            if (keeps(of, entry.id)) kept_.push_back(&entry);
        put_u32(out_, static_cast<u32>(kept_.size()));
        for (const value_store::entry* entry : kept_) {
            put_u32(out_, entry->id);
            put_stored_value(out_, entry->value.get());
        }
    }

    void write_ids(const std::vector<u32>& ids) {
        put_u32(out_, static_cast<u32>(ids.size()));
        for (const u32 id : ids) put_u32(out_, id);
    }

    void write_bases(const object_impl& of) {
        const auto* const bases = of.bases();
        put_u32(out_, bases ? static_cast<u32>(bases->size()) : 0);
        if (!bases) return;
        for (const object_impl* base : *bases) put_u32(out_, base->id());
    }

    void write_observers(const object_impl& of) {
        const auto* const ids = of.observer_ids();
        put_u32(out_, ids ? static_cast<u32>(ids->size()) : 0);
        if (!ids) return;
        for (const u32 id : *ids) put_u32(out_, id);
    }

    /// Asked of the types once a property, not once an object.
    bool keeps(const object_impl& of, u32 id) {
        const auto [found, is_new] = answers_.try_emplace(u64{of.type()} << 32 | id, false);
        if (is_new) found->second = is_persistent(of, id);
        return found->second;
    }

    std::ostream& out_;
    std::unordered_map<u64, bool> answers_; // by type and property
    std::vector<const value_store::entry*> kept_;
};

class object_reader {
public:
    object_reader(std::istream& in, io_reference_manager& references, model_impl& model)
        : in_(in), references_(references), model_(model) {}

    bool read(object_impl& top) {
        std::vector<level> levels{{&top, read_fields(top)}};
        while (!levels.empty() && in_) {
            level& at = levels.back();
            if (at.left == 0) {
                levels.pop_back();
                continue;
            }
            --at.left;
            if (object_impl* const child = read_child(*at.object))
                levels.push_back({child, read_fields(*child)});
        }
        return !in_.fail();
    }

private:
    struct level {
        object_impl* object;
        u32 left; // children still to come
    };

    object_impl* read_child(object_impl& owner) {
        const u32 type = get_u32(in_);
        object_impl* const child = in_ ? make_stored_object(type, model_) : nullptr;
        if (!child) {
            in_.setstate(std::ios_base::failbit);
            return nullptr;
        }
        owner.insert_child(*child, owner.made_children().run_size(type));
        return child;
    }

    /// \returns the number of children that follow
    u32 read_fields(object_impl& into) {
        const u32 id = get_u32(in_);
        if (!in_) return 0;
        into.leave_id_map();
        into.set_id(id);
        into.enter_id_map();
        into.attach_semantics();
        read_values(into);
        for (u32 left = get_u32(in_); left != 0 && in_; --left) {
            const u32 marked = get_u32(in_);
            if (in_) into.mark_not_inheritable(marked, true);
        }
        read_ids(id, references_.inherits);
        read_ids(id, references_.observers);
        return get_u32(in_);
    }

    // Ids ascend: a value that came twice would free one that references wait for.
    void read_values(object_impl& into) {
        u32 next = 0;
        for (u32 left = get_u32(in_); left != 0 && in_; --left) {
            const u32 id = get_u32(in_);
            if (id < next) in_.setstate(std::ios_base::failbit);
            if (!in_) return;
            next = id + 1;
            if (auto value = get_stored_value(in_, references_.references, &into))
                into.exchange_value(id, std::move(value));
        }
    }

    void read_ids(u32 of, std::map<u32, std::vector<u32>*>& into) {
        const u32 count = get_u32(in_);
        if (count == 0 || !in_) return;
        auto& list = into[of];
        if (!list) list = new std::vector<u32>;
        for (u32 left = count; left != 0; --left) {
            const u32 id = get_u32(in_);
            if (!in_) return;
            list->push_back(id);
        }
    }

    std::istream& in_;
    io_reference_manager& references_;
    model_impl& model_;
};

} // namespace

void write_object(const object_impl& top, std::ostream& out) { object_writer{out}.write(top); }

bool read_object(object_impl& top, std::istream& in, io_reference_manager& references) {
    return object_reader{in, references, *top.owning_model()}.read(top);
}

// A model inside a model would be one more open document: no stream can ask for that.
object_impl* make_stored_object(u32 type, model_impl& in) {
    if (type == type_id::model) return nullptr;
    object* const made = framework::instance().instantiate_object(type, nullptr, false);
    if (!made) return nullptr;
    impl_of(made)->place_in(in);
    return impl_of(made);
}

} // namespace kelm
