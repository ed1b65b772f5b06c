// Saving and loading, to and from memory: files are the system's business.
// The tree is that of all workloads.
#include "measuring.h"
#include "workload_tree.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace workload {

namespace {

constexpr kelm::u32 newest_version = 8;
constexpr std::size_t transactions = 100'000;

kelm::model* fresh_model() {
    kelm::model* const made =
        kelm::framework::instance().create_object(kelm::type_id::model, nullptr)->model();
    made->meta_model()->set_version(newest_version);
    return made;
}

void close(kelm::model* done) { kelm::framework::instance().delete_object(done->as_object()); }

/// What is stored says the same of every object.
void verify_loaded(const tree& built, kelm::model& loaded) {
    std::vector<kelm::u32> ids;
    if (loaded.object_ids(ids) != built.objects.size() + 1) fail("not all objects are loaded");
    for (const kelm::object* each : built.objects) {
        const kelm::object* const twin = loaded.find_object(each->id());
        if (!twin || kelm::object_name(twin) != kelm::object_name(each)) fail("a loaded name is wrong");
    }
}

/// Saves and loads once for the warm-up, then as often as is measured.
template <class Save, class Load>
void measure(const tree& built, const char* save_name, const char* load_name, Save&& save, Load&& load) {
    figures saved{};
    figures loaded{};
    for (std::size_t run = 0; run != runs + 1; ++run) { // the first is the warm-up, and overwritten
        const std::size_t at = run == 0 ? 0 : run - 1;
        bool whole = false;
        saved[at] = seconds_of([&] { whole = save(); });
        if (!whole) fail("saving failed");
        kelm::model* const copy = fresh_model();
        loaded[at] = seconds_of([&] { whole = load(*copy); });
        if (!whole) fail("loading failed");
        verify_loaded(built, *copy);
        close(copy);
    }
    print(save_name, built.objects.size(), median(saved));
    print(load_name, built.objects.size(), median(loaded));
}

/// A document with one empty element.
class document {
public:
    document() { xercesc::XMLPlatformUtils::Initialize(); }
    document(const document&) = delete;
    document& operator=(const document&) = delete;
    ~document() {
        drop();
        xercesc::XMLPlatformUtils::Terminate();
    }

    /// \returns the element of a new document, which takes the place of the former
    void* renew() {
        drop();
        dom_ = xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS")->createDocument(
            nullptr, u"model", nullptr);
        return root();
    }
    void* root() const { return dom_->getDocumentElement(); }

private:
    void drop() {
        if (dom_) dom_->release();
        dom_ = nullptr;
    }

    xercesc::DOMDocument* dom_ = nullptr;
};

} // namespace

void measure_stream(std::size_t wanted) {
    tree built = build(wanted);
    built.model->meta_model()->set_version(newest_version);
    std::string bytes;
    const auto save = [&] {
        std::ostringstream out;
        const bool whole = built.model->write(&out, false, 0, false, nullptr);
        bytes = std::move(out).str();
        return whole;
    };
    const auto load = [&](kelm::model& into) {
        std::istringstream in{bytes};
        return into.read(&in, nullptr);
    };
    measure(built, "W5_save", "W5_load", save, load);
    close(built);
}

void measure_document(std::size_t wanted) {
    tree built = build(wanted);
    built.model->meta_model()->set_version(newest_version);
    document made;
    measure(
        built, "W6_save", "W6_load",
        [&] { return built.model->write(nullptr, false, 0, false, made.renew()); },
        [&](kelm::model& into) { return into.read(nullptr, made.root()); });
    close(built);
}

void measure_stored_history(std::size_t wanted) {
    tree built = build(wanted);
    built.model->meta_model()->set_version(newest_version);
    built.model->clear_history();
    for (std::size_t i = 0; i != transactions; ++i) {
        built.model->begin_transaction("Rename");
        built.objects[i % built.objects.size()]->set_property(
            kelm::property_id::name, kelm::property<std::string>{"renamed_" + std::to_string(i)});
        built.model->end_transaction();
    }
    std::ostringstream without;
    if (!built.model->write(&without, false, 0, false, nullptr)) fail("saving failed");
    std::string bytes;
    const auto save = [&] {
        std::ostringstream out;
        const bool whole = built.model->write(&out, true, 0, false, nullptr);
        bytes = std::move(out).str();
        return whole;
    };
    const auto load = [&](kelm::model& into) {
        std::istringstream in{bytes};
        return into.read(&in, nullptr) && into.can_undo();
    };
    measure(built, "history_save", "history_load", save, load);
    const std::size_t messages = 3 * transactions; // begin, set, end
    print("history_bytes_a_message", messages, 0,
          static_cast<double>(bytes.size() - without.str().size()) / static_cast<double>(messages));
    close(built);
}

} // namespace workload
