// Where objects lie: a model gets the places of the one before it in the order of their making.
// Nothing may rely on it but the price of lists that are sorted by address.
#include "tests/support/world.h"
#include "util/free_list.h"

#include <gtest/gtest.h>

#include <vector>

namespace kelm::test {

#if KELM_FREE_LISTS
namespace {

/// \returns the places of the objects of a model that is closed again
std::vector<const void*> places_of_a_model() {
    framework& fw = started_framework();
    object* const root = fw.create_object(type_id::model, nullptr);
    root->model()->begin_transaction("Make");
    std::vector<const void*> out;
    for (int i = 0; i != 500; ++i) out.push_back(fw.create_object(types::thing, root));
    root->model()->end_transaction();
    fw.delete_object(root);
    fw.set_in_semantic(false);
    return out;
}

} // namespace

TEST(object_places, are_given_again_in_the_same_order) {
    const std::vector<const void*> first = places_of_a_model();
    EXPECT_EQ(places_of_a_model(), first);
    EXPECT_EQ(places_of_a_model(), first);
}
#endif

} // namespace kelm::test
