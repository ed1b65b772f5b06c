// Runs the tests of the reference application's editor.
// A program of its own: a process knows the types of one application.
#include "schema/meta_model.h"
#include "tests/examples/schema_editing.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    schema::schema_types types(schema_test::shared);
    kelm::framework::instance().initialise(types);
    const int result = RUN_ALL_TESTS();
    kelm::framework::instance().shutdown();
    return result;
}
