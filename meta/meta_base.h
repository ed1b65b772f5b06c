// What types, properties, compositions and meta models share: an id, attribute values, bases to inherit them from.
// What each of them describes is in its own header.
#pragma once

#include <kelm/property.h>
#include <kelm/subject.h>
#include <kelm/types.h>

#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace kelm {

/// The common implementation of every meta thing.
///
/// It observes its bases, so that it hears of their changes.  Bases are borrowed; a base that dies takes itself out
/// of what derives from it, so that the order in which meta things are freed does not matter.
class meta_base : public observer_impl, public subject_impl {
public:
    /// The id of a thing that has been given none.
    static constexpr u32 no_id = 65535;

    using own_values = std::map<u32, std::unique_ptr<abstract_property>>;

    explicit meta_base(u32 id = no_id) : id_(id) {}
    ~meta_base() override;

    /// \returns attribute 0, or "No Name!" when there is none
    virtual std::string name() const;
    /// \returns attribute 1, or an empty text
    virtual std::string definition() const;
    virtual u32 id() const { return id_; }
    /// \returns a clone of find_attribute(); empty when that is null
    virtual value_ptr attribute_value(u32 attribute) const;
    /// Stores a clone of `value`, which may be a value of this very thing.
    virtual void set_attribute_value(u32 attribute, const abstract_property& value);
    /// Marks this thing: stores a clone of the attribute's default.  Without a default nothing changes.
    virtual void set_attribute_default(u32 attribute);
    /// \returns false when the value is not set on this very thing
    virtual bool remove_attribute(u32 attribute);
    /// \returns clones of all values, own and inherited, of the registered attributes
    virtual value_map attributes() const;
    /// \returns borrowed: the own value; else, when the attribute is registered as inheritable, the first found
    ///          along the bases, depth first; else null
    virtual const abstract_property* find_attribute(u32 attribute) const;

    /// Appends a base and observes it.  Nothing happens for null, and for a base that is or derives from this.
    virtual void add_base(meta_base* base);
    /// Takes the first entry of `base` out; the last of them ends the observing.  Nothing happens for a stranger.
    virtual void remove_base(meta_base* base);

    /// Reads what write() wrote into this thing, from the element when there is one.
    /// \returns false when the stream has failed, and for an element with not exactly one "atts" below it; what came
    ///          before stays
    virtual bool read(std::istream* in, void* element);
    /// Writes the id and the own values, to the element when there is one: docs/stream_format.md and
    /// docs/document_format.md tell the fields.
    virtual void write(std::ostream* out, void* element) const;

    const own_values& own_attributes() const { return attributes_; }
    /// \returns the direct bases in the order of adding
    const std::vector<meta_base*>& bases_ref() const { return bases_; }
    /// \returns whether `other` is a direct or indirect base
    bool derives_from(const meta_base& other) const;

    /// Takes all bases out, without telling: this thing is about to die together with them.
    void release_bases();
    /// Detaches `who` from all that it is attached to.  Nothing is allocated for it, and so it cannot fail.
    static void leave_subjects(observer_impl& who);

    /// Sets attribute 0, and attribute 1 when `definition` is not empty.
    void describe(const std::string& name, const std::string& definition);
    void set_text(u32 attribute, const std::string& text);

protected:
    /// Where a look-up has been, noted from where lines of inheritance part: before that none can meet.
    using visited = std::optional<std::unordered_set<const meta_base*>>;

    /// find_attribute(), which asks each thing above once, however many lines lead to it.
    virtual const abstract_property* search(u32 attribute, visited& been) const;
    /// \returns the text of an attribute; `fallback` when there is none
    std::string text_of(u32 attribute, const char* fallback) const;

    /// The fields of the record in their order, for every form (meta_record.cpp).
    /// \returns false when they could not be read
    template <class Self, class Archive>
    static bool fields(Self& self, Archive& archive);

private:
    u32 id_;
    own_values attributes_;
    std::vector<meta_base*> bases_;
};

} // namespace kelm
