// Laws of states: links, what has been heard, and the application's own; asked whenever no call is under way.
// Links are compared by links.cpp, what was heard by shadow_model.cpp.
#include "testing/law_companions.h"
#include "testing/player.h"

#include <optional>
#include <utility>

namespace kelm::testing {

namespace {

class link_law final : public companion {
public:
    void present(player& at) override {
        if (const std::string wrong = broken_links(at.model()); !wrong.empty())
            at.fail(law::links, "links equal what is stored", wrong);
    }
};

class own_laws final : public companion {
public:
    explicit own_laws(std::vector<own_law> laws) : laws_(std::move(laws)) {}
    void present(player& at) override {
        if (at.levels() != 0) return;
        for (const own_law& each : laws_)
            if (const std::string wrong = each.difference(at.model()); !wrong.empty())
                at.fail(law::own, each.name, wrong.ends_with('\n') ? wrong : wrong + '\n');
    }

private:
    std::vector<own_law> laws_;
};

class hearing_law final : public companion {
public:
    explicit hearing_law(shadow_model& shadow) : shadow_(shadow) {}
    void restarted(player& at) override { shadow_.listen_to(at.root()); }
    void after(player&, const step&) override { shadow_.call_is_over(); }
    void present(player& at) override {
        if (const std::string wrong = shadow_.difference_from(at.model()); !wrong.empty())
            at.fail(law::hearing, "what is heard equals what is there", wrong);
    }

private:
    shadow_model& shadow_;
};

/// Keeps its shadow where it hears before any object does, see law_companions.h.  There is one at a time.
class hearing_law_of_its_own final : public companion {
public:
    hearing_law_of_its_own() : law_(the_shadow().emplace()) {}
    ~hearing_law_of_its_own() override { the_shadow().reset(); }
    void restarted(player& at) override { law_.restarted(at); }
    void after(player& at, const step& what) override { law_.after(at, what); }
    void present(player& at) override { law_.present(at); }

private:
    static std::optional<shadow_model>& the_shadow() {
        static std::optional<shadow_model> shadow;
        return shadow;
    }
    hearing_law law_;
};

} // namespace

std::unique_ptr<companion> make_hearing_law() { return std::make_unique<hearing_law_of_its_own>(); }

std::unique_ptr<companion> make_link_law() { return std::make_unique<link_law>(); }
std::unique_ptr<companion> make_own_laws(std::vector<own_law> laws) {
    return std::make_unique<own_laws>(std::move(laws));
}
std::unique_ptr<companion> make_hearing_law(shadow_model& shadow) {
    return std::make_unique<hearing_law>(shadow);
}

} // namespace kelm::testing
