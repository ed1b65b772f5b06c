// The implementation of a model: the object side of a document, its ids, its meta model and its history.
// Walking the log is message_history_impl; user-defined properties are model_udp.cpp.
#pragma once

#include "message/message_history_impl.h"
#include "meta/meta_model_impl.h"
#include "object/id_counter.h"
#include "object/id_map.h"
#include "object/object_impl.h"
#include "object/object_pool.h"

#include <kelm/delta.h>
#include <kelm/model.h>

#include <map>
#include <memory>

namespace kelm {

class passed_message;
struct format_version;

/// A document.  Deleting it tears its objects down; framework_impl alone makes and deletes it.
class model_impl final : public kelm::model, public object_impl {
public:
    /// \param assign_id  gives the object side its id 1; a reader passes false and sets it
    explicit model_impl(bool assign_id);
    ~model_impl() override;
    static void* operator new(std::size_t size) { return ::operator new(size); }
    static void operator delete(void* memory) noexcept { ::operator delete(memory); }

    void model_id(GUID& out) const override { out = model_guid_; }
    object* as_object() override { return this; }
    kelm::meta_model* meta_model() override { return &instance_meta_model_; }

    tran_begin_message* begin_transaction(const std::string& name) override;
    tran_end_message* end_transaction() override;
    tran_begin_message* find_transaction(u32 id, std::size_t* index) const override;
    message* message_at(std::size_t index) const override;
    std::size_t message_count() const override { return history_.done().size(); }
    tran_begin_message* next_transaction(tran_begin_message* after) const override;
    tran_begin_message* previous_transaction(tran_begin_message* before) const override;
    bool in_transaction() const override { return history_.in_transaction(); }
    tran_begin_message* current_transaction() const override;
    void rollback_transaction_all() override;
    void rollback_transaction() override;
    void rollback_last_transaction() override;

    std::string undo_name() const override;
    std::string redo_name() const override;
    void undo_names(transaction_names& out, std::size_t max) const override;
    void redo_names(transaction_names& out, std::size_t max) const override;
    bool can_undo() const override { return history_.can_undo(); }
    bool can_redo() const override { return history_.can_redo(); }
    void undo() override;
    void redo() override;
    int undo_levels() const override;
    void set_undo_levels(int n) override;

    shared_ptr<delta> delta_since(tran_begin_message* from) override;
    tran_begin_message* last_transaction() const override;
    delta* last_delta() override;
    owned<delta*> make_delta(message* stop) override;
    bool last_transaction_is_empty() const override;
    object* find_object(const u32& id) const override { return objects_by_id_.find(id); }

    using object_impl::write; // the object side alone
    bool read(std::istream* in, void* element) override;
    bool write(std::ostream* out, bool with_history, u32 transaction_count, bool reset_modified,
               void* element) override;
    bool save_as_new(std::ostream* out, bool with_history, u32 transaction_count, void* element) override;

    void generate_model_id() override { model_guid_ = make_guid(); }
    bool is_modified() const override { return history_.trans_executed() != 0; }
    void clear_history() override;
    void clear_modified() override { history_.set_trans_executed(0); }
    bool is_undoing() const override { return history_.is_undoing(); }
    bool is_redoing() const override { return history_.is_redoing(); }
    bool is_rolling_back() const override { return history_.is_rolling_back(); }
    std::size_t object_ids(std::vector<u32>& out) const override;
    bool post_load() override;
    bool remember_object_ids(object* what) override;
    u32 last_object_id() const override { return last_object_id_.last(); }
    u32 last_transaction_id() const override { return last_transaction_id_.last(); }
    message_history* history() override { return &history_; }

    meta_property* add_user_defined_property(u32 type, const std::string& name, u32 property_class,
                                             const std::string& definition, u32 id) override;
    bool set_user_defined_property_attribute(meta_object* type, meta_property* which, u32 attribute,
                                             const abstract_property& value) override;
    bool remove_user_defined_property(u32 type, u32 id) override;

    // For the rest of this folder.
    message_history_impl& log() { return history_; }
    const message_history_impl& log() const { return history_; }
    meta_model_impl& types() { return instance_meta_model_; }
    u32 next_object_id() { return last_object_id_.next(); }
    /// For a reader: the counters go on behind what a stream has used.
    void restore_ids(u32 last_object, u32 last_udp) {
        last_object_id_.set_last(last_object);
        last_udp_id_.set_last(last_udp);
    }
    void restore_transaction_id(u32 last) { last_transaction_id_.set_last(last); }
    u32 last_udp_id() const { return last_udp_id_.last(); }
    void set_model_id(const GUID& id) { model_guid_ = id; }
    /// The messages that are being passed to inheritors, see passed_message.
    passed_message*& innermost_passed() { return innermost_passed_; }
    id_map& objects_by_id() { return objects_by_id_; }
    object_pool& pool() { return pool_; }
    /// Keeps a value that left the graph in no message, so that it lives as long as the model.
    void keep_lost(std::unique_ptr<abstract_property> value) { lost_values_.push_back(std::move(value)); }
    /// Drops what last_delta() has handed out: it borrows from messages that may go.
    void forget_last_delta() { last_delta_.reset(); }
    /// \returns whether the model still stands
    static bool is_alive(const kelm::model* which);

private:
    // The archives are those of framework/field_archives.h.
    template <class Archive>
    bool write_to(Archive to);
    template <class Archive>
    bool read_from(Archive from);
    template <class Archive>
    bool read_history(Archive from, const format_version& version);
    bool pass_loading_hooks(const format_version& version);
    bool is_between_transactions() const { return !history_.transaction_open() && !history_.is_walking(); }
    void take_over_transaction_id();

    object_pool pool_; // first, so that it goes last
    GUID model_guid_;
    id_map objects_by_id_;
    id_counter last_object_id_;
    id_counter last_udp_id_;
    id_counter last_transaction_id_;
    std::vector<std::unique_ptr<abstract_property>> lost_values_;
    std::map<u32, std::map<u32, u32>> remembered_ids_; // for the application: nothing here reads them
    bool in_post_load_ = false;
    passed_message* innermost_passed_ = nullptr;
    meta_model_impl instance_meta_model_;
    message_history_impl history_;              // it goes early, while objects still stand
    std::unique_ptr<delta> last_delta_;         // last: it borrows from the history
    const message* last_delta_begin_ = nullptr; // of the transaction that it sums up
};

/// Comes first where a change asks anything before it goes the road of every change.
inline void take_back_interrupted(const object_impl& at) {
    if (model_impl* const in = at.owning_model()) in->log().take_back_interrupted();
}

} // namespace kelm
