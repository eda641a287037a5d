#include <gmock/gmock.h>

// Starts no VM: listing the tests, which the build does, needs none.
int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
