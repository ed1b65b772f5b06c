// What the tests of the editor share: a schema made by hand, and an editor on it.
// No expectations but that edits come back, and that wrong lines change nothing.
#pragma once

#include "edits/editor.h"
#include "hooks/rules.h"
#include "printing/json_printer.h"
#include "printing/tree_printer.h"
#include "schema/foreign_keys.h"
#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <sstream>
#include <string>

namespace schema_test {

namespace property = schema::property;
namespace type = schema::type;

/// Of the hooks of the types that main() declares.
inline schema::rules shared;

inline kelm::object& add_table(kelm::object& root, const char* name,
                               std::initializer_list<const char*> columns) {
    kelm::object& made = schema::add(root, type::table, name);
    for (const char* column : columns) {
        kelm::object& part = schema::add(made, type::column, column);
        schema::set_text(part, property::declared_type, "TEXT");
        schema::set_text(part, property::collation, "BINARY");
    }
    return made;
}

/// \param name  null for a key
inline kelm::object& add_key(kelm::object& table, kelm::u32 kind, const char* name,
                             std::initializer_list<const char*> columns) {
    kelm::object& made = name ? schema::add(table, kind, name) : schema::add(table, kind);
    for (const char* column : columns) {
        kelm::object& part = schema::add(made, type::key_column);
        schema::set_target(part, property::column, *schema::find(table, type::column, column));
        schema::set_text(part, property::collation, "BINARY");
    }
    return made;
}

inline void add_foreign_key(kelm::object& table, const char* column, const char* target,
                            const char* target_column) {
    kelm::object& made = schema::add(table, type::foreign_key);
    schema::set_text(made, property::target_name, target);
    kelm::object& part = schema::add(made, type::foreign_key_column);
    schema::set_target(part, property::column, *schema::find(table, type::column, column));
    schema::set_text(part, property::target_name, target_column);
}

/// A schema with one of everything that an edit can meet.
inline kelm::object& new_schema() {
    kelm::object& root = *kelm::framework::instance().create_object(kelm::type_id::model, nullptr);
    kelm::object& person = add_table(root, "person", {"id", "name", "boss", "mail"});
    add_key(person, type::primary_key, nullptr, {"id"});
    add_key(person, type::unique_key, nullptr, {"mail"});
    add_foreign_key(person, "boss", "person", "id");
    kelm::object& by_name = add_key(person, type::index, "by_name", {"name"});
    schema::set_text(by_name, property::condition, "boss IS NOT 'mail'");
    schema::set_text(schema::add(person, type::trigger, "t"), property::sql, "CREATE TRIGGER t AFTER");
    kelm::object& pet = add_table(root, "pet", {"owner", "a b", "kind"});
    add_foreign_key(pet, "owner", "person", "id");
    add_foreign_key(pet, "kind", "missing", "what");
    kelm::object& lower = add_key(pet, type::index, "lower kind", {});
    schema::set_text(schema::add(lower, type::key_column), property::expression, "lower(\"Kind\")");
    schema::set_flag(add_table(root, "search", {"text"}), property::is_virtual);
    add_table(root, "lonely", {"only"});
    schema::add(schema::add(root, type::view, "view"), type::column, "x");
    schema::resolve_foreign_keys(root);
    root.model()->clear_history(); // what made the schema is not to be undone
    return root;
}

/// A line that is refused, and what is said of it.
struct wrong_line {
    std::string line;
    const char* why;
};

class editing : public testing::Test {
protected:
    ~editing() override {
        kelm::framework::instance().delete_object(&root_);
        shared.on_referenced_drop = schema::referenced_drop::refuse;
    }

    std::string run(const std::string& line) {
        out_.str({});
        editor_.run(line);
        return out_.str();
    }

    std::string run_all(std::initializer_list<const char*> lines) {
        std::string printed;
        for (const char* line : lines) printed += run(line);
        return printed;
    }

    std::string complaint(const std::string& line) {
        try {
            return "printed: " + run(line);
        } catch (const schema::script_error& error) {
            return error.what();
        }
    }

    std::string all() {
        std::ostringstream text;
        schema::print_tree(text, root_, schema::listings(root_));
        schema::print_json(text, root_, schema::listings(root_));
        return text.str();
    }

    /// Each row is refused with its reason and leaves schema and edits as they were, with nothing to redo.
    void each_is_refused(std::initializer_list<wrong_line> rows) {
        const std::string before = all();
        const std::string edits = run("history");
        for (const wrong_line& row : rows) {
            SCOPED_TRACE(row.line);
            EXPECT_EQ(complaint(row.line), row.why);
            EXPECT_EQ(all(), before);
            EXPECT_EQ(run("history"), edits);
            EXPECT_EQ(complaint("redo"), "there is nothing to redo");
        }
    }

    /// Each row is an edit that undo takes back and redo does again, byte for byte.
    void each_is_one_undo(std::initializer_list<const char*> lines) {
        const std::string before = all();
        for (const char* line : lines) {
            SCOPED_TRACE(line);
            ASSERT_EQ(complaint(line), "printed: ");
            const std::string after = all();
            EXPECT_EQ(run("history"), "1  " + std::string(line) + "\n");
            run("undo");
            EXPECT_EQ(all(), before);
            EXPECT_EQ(run("history"), "1  " + std::string(line) + "  (undone)\n");
            run("redo");
            EXPECT_EQ(all(), after);
            run("undo");
        }
    }

    /// The same where edits have gone before.
    void each_comes_back(std::initializer_list<const char*> lines) {
        const std::string before = all();
        for (const char* line : lines) {
            SCOPED_TRACE(line);
            run(line);
            const std::string after = all();
            EXPECT_NE(after, before);
            run("undo");
            EXPECT_EQ(all(), before);
            run("redo");
            EXPECT_EQ(all(), after);
            run("undo");
        }
    }

    /// \param steps  how many edits there are by now
    void all_comes_back(std::size_t steps, const std::string& before) {
        const std::string after = all();
        for (int round = 0; round < 2; ++round) {
            run("undo " + std::to_string(steps));
            EXPECT_EQ(all(), before);
            run("redo " + std::to_string(steps));
            EXPECT_EQ(all(), after);
        }
    }

    kelm::object& root() { return root_; }

private:
    kelm::object& root_ = new_schema();
    std::ostringstream out_;
    schema::editor editor_{*root_.model(), shared, out_};
};

} // namespace schema_test
