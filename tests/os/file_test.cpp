#include "os/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/files.h"
#include "tests/support/workers.h"

namespace {

class FileTest : public testing::Test {
 protected:
  ~FileTest() override { close(fd); }

  // Whether another process could now lock the byte at `start` that way.
  bool FreeElsewhere(short type, off_t start) const {
    return Succeeded(StartProcess([&] {
      struct flock probe = {};
      probe.l_type = type;
      probe.l_start = start;
      probe.l_len = 1;
      return fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type == F_UNLCK;
    }));
  }

  const TemporaryFile file;
  const int fd = open(file.path.c_str(), O_RDWR);
};

TEST_F(FileTest, LocksTheWholeFileAgainstOtherProcesses) {
  for (const off_t start : {off_t{0}, off_t{1} << 40}) {
    EXPECT_TRUE(FreeElsewhere(F_WRLCK, start));
    ASSERT_TRUE(LockOSFile(fd, true));
    EXPECT_FALSE(FreeElsewhere(F_RDLCK, start));
    ASSERT_TRUE(LockOSFile(fd, false));
    EXPECT_TRUE(FreeElsewhere(F_RDLCK, start));
    EXPECT_FALSE(FreeElsewhere(F_WRLCK, start));
    ASSERT_TRUE(UnLockOSFile(fd));
    EXPECT_TRUE(FreeElsewhere(F_WRLCK, start));
  }
}

}  // namespace
