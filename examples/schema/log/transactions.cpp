// One walk along the history.
// What is outside of any transaction cannot be undone, and is passed over.
#include "log/transactions.h"

namespace schema {

namespace {

/// Collects transactions while messages come by.
class collector {
public:
    void take(kelm::message& message) {
        if (const auto* begin = kelm::message_cast<kelm::tran_begin_message>(&message))
            take_begin(*begin);
        else if (const auto* end = kelm::message_cast<kelm::tran_end_message>(&message))
            take_end(*end);
        else if (open_)
            found_.back().messages.push_back(&message);
    }

    std::vector<transaction> found() && { return std::move(found_); }

private:
    void take_begin(const kelm::tran_begin_message& begin) {
        if (begin.level() != 0) return;
        found_.push_back({found_.size() + 1, begin.id(), begin.name(), {}, {}});
        open_ = true;
    }

    void take_end(const kelm::tran_end_message& end) {
        if (end.level() != 0 || !open_) return;
        found_.back().by = signature_of(end.processed_err_msg());
        open_ = false;
    }

    std::vector<transaction> found_;
    bool open_ = false;
};

} // namespace

std::vector<transaction> transactions(const kelm::model& of, std::size_t last) {
    collector collecting;
    for (std::size_t at = 0; at != of.message_count(); ++at) collecting.take(*of.message_at(at));
    std::vector<transaction> found = std::move(collecting).found();
    if (last != 0 && last < found.size())
        found.erase(found.begin(), found.end() - static_cast<std::ptrdiff_t>(last));
    return found;
}

std::string text_of(const kelm::message& message) {
    std::string text;
    return message.to_string(text);
}

} // namespace schema
