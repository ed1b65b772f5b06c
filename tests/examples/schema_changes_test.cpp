// Changes that no edit of kelm-schema makes, but that a history may tell of: parts that go from table to table, bases
// that go, columns of keys.
// What edits come to is tested with the program.
#include "tests/examples/schema_editing.h"

#include "changes/changes.h"
#include "changes/changes_printer.h"

#include <kelm/model.h>
#include <kelm/transaction.h>

namespace {

namespace type = schema::type;
namespace property = schema::property;

class changes : public schema_test::editing {
protected:
    /// \returns what is told of a transaction that does it
    template <class Change>
    std::string told(Change change) {
        kelm::model& model = *root().model();
        kelm::transaction_object transaction(&model, "change");
        const kelm::u32 id = model.last_transaction_id();
        change();
        transaction.commit();
        std::ostringstream out;
        schema::print_changes(out, schema::changes_since(model, id));
        return out.str();
    }

    kelm::object& table(const char* name) { return schema::table(root(), name); }
    kelm::object& column(const char* of, const char* name) { return schema::column(table(of), name); }
};

TEST_F(changes, a_part_that_goes_to_another_table_is_told_there) {
    EXPECT_EQ(told([&] { EXPECT_TRUE(column("person", "name").set_owner(&table("lonely"))); }),
              "~ column lonely.name  moved here from person\n");
}

TEST_F(changes, a_domain_that_is_given_up_is_told_with_what_it_gave) {
    run_all({"add domain money DECIMAL", "use domain money for lonely.only"});
    EXPECT_EQ(told([&] { EXPECT_TRUE(column("lonely", "only").cancel_all_inherits_from()); }),
              "~ column lonely.only  uses domain money no more\n"
              "~ column lonely.only  Declared Type  DECIMAL -> (none)\n");
}

TEST_F(changes, a_column_of_a_key_is_called_after_its_table) {
    kelm::object& key = *table("person").child_at(type::primary_key, 0);
    EXPECT_EQ(told([&] {
                  schema::set_flag(*key.child_at(type::key_column, 0), property::descending);
                  schema::set_target(schema::add(key, type::key_column), property::column,
                                     column("person", "boss"));
              }),
              "~ key column person.id  Descending  (none) -> True\n"
              "+ key column person.boss\n");
}

TEST_F(changes, a_trigger_that_moves_is_told_of_its_view) {
    kelm::object& view = schema::relation(root(), "view");
    schema::add(view, type::trigger, "first");
    kelm::object& second = schema::add(view, type::trigger, "second");
    EXPECT_EQ(told([&] { EXPECT_TRUE(view.set_child_position(&second, 0)); }),
              "~ trigger second on \"view\"  moved from position 2 to 1\n");
}

} // namespace
