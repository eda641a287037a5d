#include "os/file.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

bool SetWholeFileLock(int fd, short type) {
  struct flock request = {};
  request.l_type = type;
  request.l_whence = SEEK_SET;
  return fcntl(fd, F_SETLKW, &request) != -1;
}

}  // namespace

int GetFileStatusInfo(const char* /*path*/, int fd, struct stat& st) { return fstat(fd, &st); }

bool ChangeOSFileSize(int fd, unsigned long size) {
  return ftruncate(fd, static_cast<off_t>(size)) != -1;
}

bool LockOSFile(int fd, bool exclusive) {
  return SetWholeFileLock(fd, exclusive ? F_WRLCK : F_RDLCK);
}

bool UnLockOSFile(int fd) { return SetWholeFileLock(fd, F_UNLCK); }
