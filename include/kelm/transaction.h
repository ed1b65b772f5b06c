// A scoped guard around a model's transaction: rolled back unless committed.
// Misuse is reported on the diagnostic channel; it never throws by itself.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <string>

namespace kelm {

/// Opens a transaction and rolls it back in its destructor unless it was committed.
/// Open a guard only when the model is in no transaction: one that is nested in another cannot commit.
class KELM_EXPORT transaction_object {
public:
    /// A closed guard.
    transaction_object() = default;
    /// Opens a transaction on `in`, which is borrowed; null leaves the guard closed.
    transaction_object(kelm::model* in, const std::string& name);
    transaction_object(const transaction_object&) = delete;
    transaction_object& operator=(const transaction_object&) = delete;
    ~transaction_object();

    /// Opens a transaction; one that is still held is complained of and rolled back first.
    void open(kelm::model* in, const std::string& name);
    /// Ends the transaction.  Silent on a closed guard.
    void commit();
    /// Takes the current level of the transaction back.  Silent when none is open.
    void rollback();
    /// Forgets the transaction and leaves it open.
    void reset();
    bool is_open() const;
    u32 id() const { return transaction_id_; }
    std::string name() const { return transaction_name_; }

private:
    void begin(kelm::model* in, const std::string& name);

    kelm::model* transaction_model_ = nullptr;
    u32 transaction_id_ = 0;
    std::string transaction_name_;
};

} // namespace kelm
