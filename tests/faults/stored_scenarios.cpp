// Scenarios of streams and documents: models, logs, and replay.
// What must hold behind a failure is fault_stage.
#include "tests/faults/fault_stage.h"

#include <kelm/message_history.h>

#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

#include <cstdlib>

namespace kelm::test {

namespace {

bool write_stream(fault_stage& s) {
    std::ostringstream out;
    return s.model->write(&out, true, 0, false, nullptr) && !out.str().empty();
}

/// Memory of Xerces-C that does not run out: what it does then is its own affair.
class xerces_memory final : public xercesc::MemoryManager {
public:
    xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }
    void* allocate(XMLSize_t size) override { return std::malloc(size); }
    void deallocate(void* memory) override { std::free(memory); }
};

void open_document(fault_stage& s) {
    static xerces_memory memory;
    static const bool is_running = (xercesc::XMLPlatformUtils::Initialize(
                                        xercesc::XMLUni::fgXercescDefaultLocale, nullptr, nullptr, &memory),
                                    true); // for good: the first to start it decides about its memory
    EXPECT_TRUE(is_running);
    s.document = std::make_unique<dom_document>();
}

bool write_document(fault_stage& s) { return s.model->write(nullptr, true, 0, false, s.document->root()); }

void written_stream(fault_stage& s) {
    s.keep_bytes(true);
    s.open_other();
}

void written_document(fault_stage& s) {
    open_document(s);
    EXPECT_TRUE(write_document(s));
    s.open_other();
}

void much_behind(fault_stage& s) {
    EXPECT_TRUE(s.change([&] {
        return s.b->delete_vector_element(props::list, 1) && s.a->set_property(props::text, text("x")) &&
               s.d->cancel_inherits_from(s.c) && s.fw.delete_object(s.r);
    }));
}

template <void (*Prepare)(fault_stage&)>
void behind_much(fault_stage& s) {
    much_behind(s);
    Prepare(s);
}

bool read_stream(fault_stage& s) {
    std::istringstream in{s.bytes};
    return s.other->read(&in, nullptr);
}

/// Another model as it was before what comes now, and the log of that.
void log_for_replay(fault_stage& s) {
    s.keep_bytes(false);
    s.open_other();
    EXPECT_TRUE(read_stream(s));
    much_behind(s);
    std::ostringstream log;
    s.model->history()->write_messages(nullptr, &log, 1, true);
    s.bytes = log.str();
}

bool replay(fault_stage& s) {
    std::istringstream in{s.bytes};
    return s.read_log(in, true);
}

bool read_document(fault_stage& s) { return s.other->read(nullptr, s.document->root()); }

} // namespace

std::vector<fault_scenario> stored_scenarios() {
    return {
        {"write_stream", much_behind, write_stream},
        {"write_document", behind_much<open_document>, write_document},
        {"read_stream", behind_much<written_stream>, read_stream},
        {"replay", log_for_replay, replay},
        {"read_document", behind_much<written_document>, read_document},
    };
}

} // namespace kelm::test
