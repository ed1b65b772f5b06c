// A scoped guard around a model's transaction: rolled back unless committed.
// Misuse is reported on the diagnostic channel; it never throws by itself.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <string>

namespace kelm {

/// Opens a transaction and rolls it back in its destructor unless it was committed.  Open a guard only when
/// the model is in no transaction: one that is nested in another cannot commit.  One whose model has been
/// closed, or whose transaction others have ended, does nothing.  Nothing throws but what hooks and observers
/// do, and the constructor and open() as model::begin_transaction; what comes out of a rollback in the
/// destructor ends the process.
class KELM_EXPORT transaction_object {
public:
    /// A closed guard.
    transaction_object() = default;
    /// Opens a transaction on `in`, which is borrowed.  Null leaves the guard closed, and so does an observer
    /// that refuses.
    transaction_object(kelm::model* in, const std::string& name);
    transaction_object(const transaction_object&) = delete;
    transaction_object& operator=(const transaction_object&) = delete;
    /// Rolls back.
    ~transaction_object();

    /// Opens a transaction on `in`, as the constructor; one that is still held is complained of and rolled
    /// back first.
    void open(kelm::model* in, const std::string& name);
    /// Ends the transaction.  Silent on a closed guard.  When the transaction was ended by others, or another
    /// one is the outermost, this is complained of, and nothing ends.
    void commit();
    /// Takes the current level of the transaction back.  Silent when none is open; when another one is the
    /// outermost, this is complained of, and nothing is taken back.
    void rollback();
    /// Forgets the transaction and leaves it open.
    void reset();
    /// \returns whether the guard holds the outermost transaction of its model, which is open
    bool is_open() const;
    /// \returns the id of the transaction; 0 when none is held
    u32 id() const { return transaction_id_; }
    /// \returns the name that was given last; empty when none was
    std::string name() const { return transaction_name_; }

private:
    void begin(kelm::model* in, const std::string& name);

    kelm::model* transaction_model_ = nullptr;
    u32 transaction_id_ = 0;
    std::string transaction_name_;
};

} // namespace kelm
