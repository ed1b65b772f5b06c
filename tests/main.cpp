// Entry of the test program.
// Holds no set-up: what tests share is made by their fixtures.
#include <gmock/gmock.h>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
