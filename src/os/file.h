#pragma once

#include <sys/stat.h>

// Open files by their descriptor. Every function may be called by any thread; the reason of a
// failure is left in errno.

// Status of the open file `fd`; `path` is not used. 0, or -1 on failure.
int GetFileStatusInfo(const char* path, int fd, struct stat& st);

// Cuts or extends the file to `size` bytes. False on failure.
bool ChangeOSFileSize(int fd, unsigned long size);

// Locks the whole file, to its end and beyond, against other processes, and waits until that is
// granted. An exclusive lock needs a descriptor open for writing, a shared one for reading. False
// on failure, a wait that a signal broke off included.
// The lock is advisory and belongs to the process: it keeps no other thread of this process out,
// and goes when this process closes any descriptor of the file.
bool LockOSFile(int fd, bool exclusive);

// Gives up this process's lock on the file. False on failure.
bool UnLockOSFile(int fd);
