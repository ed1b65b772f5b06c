// Notification: subjects tell, observers hear; and the two implementations that applications derive from.
// What is told is a message (message.h).
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <memory>
#include <vector>

namespace kelm {

/// Something that tells others of its changes.  Every object has such a side, and every message_history.
class KELM_EXPORT subject {
public:
    virtual ~subject() = default;

    /// Has `who` told of changes from now on.
    ///
    /// \param who  borrowed: detach it before it dies
    /// \returns false for null, and when it is attached already
    virtual bool attach(observer* who) = 0;
    /// Has `who` told of nothing more, also of what is being told at the moment.
    ///
    /// \returns false when it was not attached
    virtual bool detach(observer* who) = 0;
    /// \returns a copy of the list, ordered by address
    virtual std::vector<observer*> observers() const = 0;
    /// \returns whether `who` is told of changes
    virtual bool is_attached(observer* who) const = 0;
    /// Tells every observer, synchronously, in the order of their addresses.  One that is detached meanwhile is
    /// passed over; one that is attached meanwhile hears only the next message.
    ///
    /// \param what  borrowed, and handed on as it is
    /// \returns false as soon as an observer answers false; those behind it are not told
    /// \throws  what an observer throws; those behind it are not told
    virtual bool notify(message* what) = 0;

protected:
    subject() = default;
    subject(const subject&) = default;
    subject& operator=(const subject&) = default;
};

/// Something that hears of changes.
class KELM_EXPORT observer {
public:
    virtual ~observer() = default;
    /// Hears of a change.
    ///
    /// \param from  the subject side of what changed
    /// \param what  borrowed, good during the call only; may be null where there is nothing to say but "changed"
    /// \returns false to end the notification; the mutation that is told of then ends with false as well
    virtual bool update(subject* from, message* what) = 0;

protected:
    observer() = default;
    observer(const observer&) = default;
    observer& operator=(const observer&) = default;
};

/// The subject's list, kept sorted by address.  The destructor detaches nobody: whoever destroys an attached
/// party detaches it first.
class KELM_EXPORT subject_impl : public subject {
public:
    subject_impl() = default;
    ~subject_impl() override = default;
    subject_impl(const subject_impl&) = delete;
    subject_impl& operator=(const subject_impl&) = delete;

    bool attach(observer* who) override;
    bool detach(observer* who) override;
    std::vector<observer*> observers() const override;
    bool is_attached(observer* who) const override;
    bool notify(message* what) override;

    /// \returns whether anybody listens; no allocation, no virtual call
    bool has_observers() const { return observers_ != nullptr; }

private:
    friend class object_impl;                           // ends links without a copy of the list
    friend class meta_base;                             // the same
    std::unique_ptr<std::vector<observer*>> observers_; // null while nobody is attached
};

/// An observer that knows what it is attached to.  The destructor detaches from nothing.
class KELM_EXPORT observer_impl : public observer {
public:
    observer_impl() = default;
    ~observer_impl() override = default;
    observer_impl(const observer_impl&) = delete;
    observer_impl& operator=(const observer_impl&) = delete;

    /// Answers true and does nothing.
    bool update(subject* from, message* what) override;
    /// \returns a copy of what this observer is attached to, ordered by address
    virtual std::vector<subject*> subjects() const;

private:
    friend class subject_impl;                        // keeps the two lists in step
    friend class object_impl;                         // ends links without a copy of the list
    friend class meta_base;                           // the same
    std::unique_ptr<std::vector<subject*>> subjects_; // null while attached to nothing
};

} // namespace kelm
