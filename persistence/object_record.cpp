// Objects in streams and documents, both ways.  A tree may be as deep as the model is big, so neither way recurses.
// The sections around them are model_stream and history_writer.
#include "persistence/object_record.h"

#include "framework/values.h"
#include "meta/marked_property.h"
#include "object/model_impl.h"

#include <kelm/meta_model.h>

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace kelm {

namespace {

/// What is stored of one object, but for the objects below it.
/// \tparam Box  a borrowed value for writing, an owned one for reading
template <class Box>
struct stored_object {
    struct value {
        u32 id = 0;
        Box box{};
    };

    u32 id = 0;
    std::vector<value> values; // ascending by id
    std::vector<u32> not_inheritable;
    std::vector<u32> bases;
    std::vector<u32> observers;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive, const value_sink& sink) {
        archive.attribute("id", self.id);
        record_list(archive, "props", "prop", self.values, [&sink](auto& item, auto& value) {
            item.attribute("id", value.id);
            item.stored_value(value.box, value.id, sink);
        });
        id_list(archive, "not_inh_props", "not_inh_prop", self.not_inheritable);
        id_list(archive, "inherits", "inherit", self.bases);
        id_list(archive, "observers", "observer", self.observers);
    }

    /// For the next object; the memory stays.
    void clear() {
        values.clear();
        not_inheritable.clear();
        bases.clear();
        observers.clear();
    }
};

using written_object = stored_object<const abstract_property*>;
using read_object_record = stored_object<std::unique_ptr<abstract_property>>;

bool is_persistent(const object_impl& holder, u32 id) {
    const meta_object* const type = holder.meta();
    const meta_property* const which = type ? type->find_property(id) : nullptr;
    return which && !is_marked(*which, attribute_id::non_persistent);
}

template <class Archive>
class object_writer {
public:
    void write(const object_impl& top, Archive to) {
        write_fields(top, to);
        while (!levels_.empty() && to.good()) {
            level& at = levels_.back();
            if (at.next == at.children.size()) {
                const Archive done = at.self;
                levels_.pop_back();
                if (!levels_.empty()) levels_.back().items.end_item(done);
                continue;
            }
            const object_impl& child = *impl_of(at.children[at.next++]);
            typename Archive::list items = at.items;
            Archive item = items.begin_item();
            item.attribute("type", child.type());
            if (!write_fields(child, item)) items.end_item(item);
        }
    }

private:
    struct level {
        Archive self;
        std::vector<object*> children;
        typename Archive::list items;
        std::size_t next = 0;
    };

    /// \returns whether children follow
    bool write_fields(const object_impl& of, Archive& to) {
        record_.clear();
        fill_record(of);
        written_object::fields(std::as_const(record_), to, value_sink{});
        std::vector<object*> children;
        if (of.child_objects()) of.child_objects()->append_to(children);
        auto items = to.open("childs", "child", children.size());
        if (children.empty()) return false;
        levels_.push_back({to, std::move(children), items});
        return true;
    }

    void fill_record(const object_impl& of) {
        record_.id = of.id();
        for (const auto& [id, value] : of.values())
            if (keeps(of, id)) record_.values.push_back({id, value});
        record_.not_inheritable = of.not_inheritable_properties();
        if (const auto* const bases = of.bases())
            for (const object_impl* base : *bases) record_.bases.push_back(base->id());
        if (const auto* const ids = of.observer_ids()) record_.observers.assign(ids->begin(), ids->end());
    }

    /// Asked of the types once a property, not once an object.
    bool keeps(const object_impl& of, u32 id) {
        const auto [found, is_new] = answers_.try_emplace(u64{of.type()} << 32 | id, false);
        if (is_new) found->second = is_persistent(of, id);
        return found->second;
    }

    std::unordered_map<u64, bool> answers_; // by type and property
    written_object record_;
    std::vector<level> levels_;
};

template <class Archive>
class object_reader {
public:
    object_reader(io_reference_manager& references, model_impl& model)
        : references_(references), model_(model) {}

    bool read(object_impl& top, Archive from) {
        read_fields(top, from);
        while (!levels_.empty() && from.good()) {
            auto item = levels_.back().items.next();
            if (!item)
                levels_.pop_back();
            else if (object_impl* const child = make_child(*levels_.back().object, *item))
                read_fields(*child, *item);
        }
        return from.good();
    }

private:
    struct level {
        object_impl* object;
        typename Archive::list items;
    };

    object_impl* make_child(object_impl& owner, Archive& item) {
        u32 type = 0;
        item.attribute("type", type);
        object_impl* const child = item.good() ? object_impl::make_stored(type, model_) : nullptr;
        if (!child) {
            item.fail();
            return nullptr;
        }
        owner.insert_child(*child, owner.made_children().run_size(type));
        return child;
    }

    void read_fields(object_impl& into, Archive& from) {
        record_.clear();
        const std::size_t first = references_.references.size();
        read_object_record::fields(record_, from, value_sink{&references_.references, &into});
        if (!from.good() || !values_are_unique()) {
            references_.references.resize(first); // they point into the record
            return from.fail();
        }
        into.leave_id_map();
        into.set_id(record_.id);
        into.enter_id_map();
        into.attach_semantics();
        for (auto& value : record_.values) into.exchange_value(value.id, value.box);
        into.mark_not_inheritable(record_.not_inheritable);
        if (model_.find_object(record_.id) == &into) { // of two with one id the first has the links
            keep_for_later(record_.bases, references_.inherits);
            keep_for_later(record_.observers, references_.observers);
        }
        if (auto items = from.open("childs", "child"); from.good())
            levels_.push_back({&into, std::move(items)});
    }

    // A value that came twice would free one that references wait for.
    bool values_are_unique() {
        constexpr auto id_of = &read_object_record::value::id;
        if (!std::ranges::is_sorted(record_.values, {}, id_of)) std::ranges::sort(record_.values, {}, id_of);
        return std::ranges::adjacent_find(record_.values, {}, id_of) == record_.values.end();
    }

    void keep_for_later(const std::vector<u32>& ids, std::map<u32, std::vector<u32>*>& into) {
        if (ids.empty()) return;
        auto& list = into[record_.id];
        if (!list) list = new std::vector<u32>;
        list->insert(list->end(), ids.begin(), ids.end());
    }

    io_reference_manager& references_;
    model_impl& model_;
    read_object_record record_;
    std::vector<level> levels_;
};

} // namespace

template <class Archive>
void write_object(const object_impl& top, Archive to) {
    object_writer<Archive>{}.write(top, to);
}

template <class Archive>
bool read_object(object_impl& top, Archive from, io_reference_manager& references) {
    return object_reader<Archive>{references, *top.owning_model()}.read(top, from);
}

template void write_object(const object_impl&, binary_out);
template void write_object(const object_impl&, document_out);
template bool read_object(object_impl&, binary_in, io_reference_manager&);
template bool read_object(object_impl&, document_in, io_reference_manager&);

} // namespace kelm
