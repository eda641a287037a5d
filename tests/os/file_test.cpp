#include "os/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

class FileTest : public testing::Test {
 protected:
  FileTest() : path(testing::TempDir() + "os_file_XXXXXX"), fd(mkstemp(path.data())) {}
  ~FileTest() override {
    close(fd);
    unlink(path.c_str());
  }

  // Whether another process could now lock the byte at `start` that way.
  bool FreeElsewhere(short type, off_t start) const {
    const pid_t child = fork();
    if (child == 0) {
      struct flock probe = {};
      probe.l_type = type;
      probe.l_start = start;
      probe.l_len = 1;
      _exit(fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type == F_UNLCK ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0;
  }

  std::string path;
  int fd;
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

TEST_F(FileTest, LockWaitsUntilItIsGranted) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_TRUE(LockOSFile(fd, true));
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    const char sign = 'x';
    _exit(write(ends[1], &sign, 1) == 1 && LockOSFile(fd, true) && write(ends[1], &sign, 1) == 1
              ? 0
              : 1);
  }
  char sign = 0;
  pollfd granted = {ends[0], POLLIN, 0};
  EXPECT_EQ(read(ends[0], &sign, 1), 1);
  EXPECT_EQ(poll(&granted, 1, 200), 0);
  EXPECT_TRUE(UnLockOSFile(fd));
  EXPECT_EQ(read(ends[0], &sign, 1), 1);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  close(ends[0]);
  close(ends[1]);
}

TEST_F(FileTest, SizeIsChangedAndReported) {
  for (const unsigned long size : {5000ul, 3ul, 0ul}) {
    struct stat st = {};
    EXPECT_TRUE(ChangeOSFileSize(fd, size));
    EXPECT_EQ(GetFileStatusInfo("another name", fd, st), 0);
    EXPECT_EQ(st.st_size, static_cast<off_t>(size));
  }
}

TEST(File, ThatIsNotOpenFailsEveryOperation) {
  struct stat st = {};
  EXPECT_FALSE(LockOSFile(-1, false));
  EXPECT_FALSE(UnLockOSFile(-1));
  EXPECT_FALSE(ChangeOSFileSize(-1, 0));
  EXPECT_EQ(GetFileStatusInfo("/", -1, st), -1);
}

}  // namespace
