// What an observer of every object knows of a model, from nothing but the messages that it hears.
// It asks objects and the model nothing until it is compared with them, but for what an object is when its owner tells of
// it for the first time.
#pragma once

#include <kelm/message.h>
#include <kelm/object.h>
#include <kelm/subject.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace kelm {
class property_change_message;
}

namespace kelm::testing {

/// Keeps owners, children by type and position, own values, bases and marks of every object.
///
/// What messages cannot tell, and an observer therefore cannot know:
/// - an inherited value that is told after a change of bases looks like an own one;
/// - a mark that is told to those who inherit looks like a mark of their own;
/// - a base that undo or redo brings back is told without its place;
/// - user-defined properties and observers come and go unheard;
/// - marks of a deleted object stay on it: they are told neither when it goes nor when it comes back;
/// - what happens to an object before its owner tells of it, and it is asked then;
/// - what happens to the values of an object while a change of its bases is being told: what it inherited before is
///   then told as set or deleted behind it.
/// The first two are kept as possible: they may be there, and everything else must be.
class shadow_model final : public observer_impl {
public:
    ~shadow_model() override;

    /// Begins to listen; the root must be all there is.
    void listen_to(object& root);
    bool update(subject* from, message* what) override;
    /// No call is under way any more: what comes next is not part of what came before.
    void call_is_over();
    /// \returns whether what happens to an object now is told so that it can be understood
    bool understands(const object& what) const;
    /// \returns how the model differs from what was heard, a line a difference
    std::string difference_from(const kelm::model& real) const;

private:
    struct value {
        bool is_sure = true; ///< else it may be an inherited one
        bool is_list = false;
        std::string text;
        std::vector<std::string> elements;
    };
    struct thing {
        u32 owner = 0;
        std::map<u32, std::vector<u32>> children; // by type
        std::map<u32, value> values;
        std::vector<u32> bases;
        bool places_are_known = true; // of the bases
        std::map<u32, bool> marks;    // true: surely
        bool bases_have_changed = false;
    };

    thing& add(object& what, u32 owner);
    void adopt(object& what, u32 owner);
    static value value_of(const value_ptr& stored);
    void hear_of_value(thing& of, message& what, property_change_message& change);
    void hear_of_element(thing& of, message& what, property_change_message& change);
    void hear_of_mark(thing& of, message& what);
    void hear_of_child(thing& of, message& what);
    void hear_of_base(thing& of, message& what);
    void compare_values(std::string& out, const thing& heard, const object& real) const;
    void complain(const std::string& of_what);

    std::map<u32, thing> objects_;
    std::map<u32, std::map<u32, bool>> marks_of_the_deleted_;
    using told_at = std::map<const message*, u32>;
    told_at told_marks_;    // at whom a message of a mark was heard first
    told_at undone_marks_;  // the same of undo and redo, where messages follow one another at one address
    std::string complaint_; // about messages that make no sense
};

} // namespace kelm::testing
