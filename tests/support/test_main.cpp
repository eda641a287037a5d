#include <gmock/gmock.h>

#include "tests/support/test_vm.h"

// Starts no VM: listing the tests, which the build does, needs none.
int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  const int status = RUN_ALL_TESTS();
  quenlatrix::test::TestVm::End();
  return status;
}
