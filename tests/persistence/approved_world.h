// A model that is read from an approved file, stream or document, by an application of the file's own version.
// What the files must say is told by the tests.
#pragma once

#include "tests/support/approved.h"
#include "tests/support/canonical_text.h"
#include "tests/support/world.h"

#include <sstream>
#include <string>

namespace kelm::test {

/// A fresh model with what a file says; closed behind the test.
class approved_model {
public:
    approved_model(const approved_model&) = delete;
    approved_model& operator=(const approved_model&) = delete;
    ~approved_model() {
        framework::instance().delete_object(root_);
        framework::instance().set_in_semantic(false); // closing leaves it set
    }

    bool was_read() const { return was_read_; }
    kelm::model* operator->() const { return model_; }
    object* operator[](u32 id) const { return model_->find_object(id); }

    /// In lines, the first one empty, so that it can be compared with a text that begins on a line of its own.
    std::string says() const { return "\n" + dump_of(*model_); }
    /// The messages, a line each: number, who made it, description.
    std::string log() const {
        std::string out = "\n";
        std::string words;
        for (std::size_t i = 0; i != model_->message_count(); ++i) {
            const message& each = *model_->message_at(i);
            out += std::to_string(each.type()) + (each.is_user_created() ? " user: " : " library: ") +
                   each.to_string(words) + "\n";
        }
        return out;
    }
    std::string written(bool with_history, u32 transactions = 0) const {
        std::ostringstream out;
        EXPECT_TRUE(model_->write(&out, with_history, transactions, false, nullptr));
        return out.str();
    }
    /// \returns the lines of the document that the model is written into (canonical_text.h)
    std::string document(bool with_history, u32 transactions = 0) const {
        const dom_document into{"<model/>"};
        EXPECT_TRUE(model_->write(nullptr, with_history, transactions, false, into.root()));
        return canonical_text(*into.root_element());
    }

protected:
    approved_model(u32 version, u32 minor_version)
        : root_(started_framework().create_object(type_id::model, nullptr)), model_(root_->model()) {
        model_->meta_model()->set_version(version);
        model_->meta_model()->set_minor_version(minor_version);
    }
    void read(std::istream* in, void* element) { was_read_ = model_->read(in, element); }

private:
    object* root_;
    kelm::model* model_;
    bool was_read_ = false;
};

/// What a stream says.
class model_of_stream : public approved_model {
public:
    explicit model_of_stream(const std::string& bytes)
        : model_of_stream(bytes, field(bytes, 24), field(bytes, 28)) {}
    model_of_stream(const std::string& bytes, u32 version, u32 minor_version)
        : approved_model(version, minor_version) {
        std::istringstream in{bytes};
        read(&in, nullptr);
    }

private:
    /// \returns the number that begins at a byte; 0 behind the end
    static u32 field(const std::string& bytes, std::size_t at) {
        u32 value = 0;
        for (std::size_t i = 4; i-- != 0;)
            value = value << 8U | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
        return value;
    }
};

/// What a document says, which is of version 8 or older.
class model_of_document : public approved_model {
public:
    explicit model_of_document(const std::string& text) : approved_model(8, 0) {
        const dom_document from{text};
        read(nullptr, from.root());
    }
};

} // namespace kelm::test
