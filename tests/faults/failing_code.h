// Code of an application that throws: hooks, observers, rules and values call here, and one of the calls fails.
// What must hold when it does is told by the tests.
#pragma once

#include "util/bytes.h"

#include <kelm/copier.h>
#include <kelm/delta.h>
#include <kelm/filters.h>
#include <kelm/framework.h>
#include <kelm/object.h>
#include <kelm/property.h>
#include <kelm/sorters.h>
#include <kelm/subject.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace kelm::test {

/// Whose code runs.
enum class code_of { hook, observer, rule, value };

/// What that code throws: nothing that anybody else throws.
struct thrown_by_code {};

/// Called by all code of an application on the stage.  \throws thrown_by_code where failing_code says so
void run_code(code_of whom);

/// Has code fail for the length of a scope.
class failing_code {
public:
    /// \param until_failure  the call that throws, counted from 1
    failing_code(code_of whom, long until_failure, bool for_good);
    failing_code(const failing_code&) = delete;
    failing_code& operator=(const failing_code&) = delete;
    ~failing_code();
    /// \returns how many calls have thrown
    static long failures();
};

/// An observer that runs code and passes.
class code_observer final : public observer_impl {
public:
    bool update(subject*, message*) override {
        run_code(code_of::observer);
        return true;
    }
};

/// A kind of value of the application's own, whose every answer runs code.
class code_value final : public abstract_property {
public:
    /// Makes it a kind that streams know; does nothing when that has been done.
    static void enter();

    explicit code_value(u32 number) : number_(number) {}
    owned<abstract_property*> clone() const override {
        run_code(code_of::value);
        return new code_value(number_);
    }
    bool equals(const abstract_property* other) const override {
        run_code(code_of::value);
        const auto* const same = dynamic_cast<const code_value*>(other);
        return same && same->number_ == number_;
    }
    std::string to_string() const override {
        run_code(code_of::value);
        return std::to_string(number_);
    }
    void to_string(std::string& out) const override { out = to_string(); }
    void from_string(const std::string& text) override {
        run_code(code_of::value);
        number_ = static_cast<u32>(std::strtoul(text.c_str(), nullptr, 10));
    }
    void write(std::ostream& out) const override {
        run_code(code_of::value);
        put_u32(out, number_);
    }
    void read(std::istream& in, std::vector<reference_record>&, object*) override {
        run_code(code_of::value);
        number_ = get_u32(in);
    }

private:
    u32 number_;
};

/// A filter that leaves nothing out.
class code_filter final : public filter {
public:
    bool do_it(const object*) const override {
        run_code(code_of::rule);
        return false;
    }
};

/// A sorter by descending ids.
class code_sorter final : public sorter {
public:
    bool do_it(const object* a, const object* b) const override {
        run_code(code_of::rule);
        return a->id() > b->id();
    }
};

/// Translates a value of the start of a stretch into another one.
class code_translation final : public original_properties_semantics {
public:
    owned<abstract_property*> do_it(detail_base_original_properties*, u32, abstract_property*) override {
        run_code(code_of::rule);
        return new code_value(5);
    }
};

/// The same for its text.
class code_words final : public original_properties_as_string_semantics {
public:
    std::string& do_it(std::string& result, detail_base_original_properties*, u32,
                       shared_ptr<abstract_property>, const std::string& text) override {
        run_code(code_of::rule);
        return result = text + " translated";
    }
};

/// Gives a copier a rule of each kind; all run code and leave everything as it would be.
void give_rules(copier& to);

} // namespace kelm::test
