#pragma once

#include <jni.h>

#include <list>
#include <string>

namespace quenlatrix::meta_object::handlers::bean {

// The Java class path, and which beans there are. The class path is what the environment variable
// "CLASSPATH" holds, followed by the lines of the file "beanpaths.ini" in the plug-in's directory:
// one entry a line, empty lines skipped, no comments, nothing trimmed; a line of more than 2047
// bytes is read in pieces, each an entry of its own.

// The file's name without its directory.
extern const char* const ClassPathFile;

// The file's full name, or the bare name when the plug-in's directory isn't known. Always true. It
// is computed at the first call, which InitHandler must precede.
bool GetClassPathFileName(std::string& name);

// Appends the file's entries, each behind a ":" unless the class path ends in one. A file that
// can't be opened adds nothing. Any thread may call it.
void getPathFromFile(std::string& classPath);

// The class path; true when it is not empty. False, with the file unread, when "CLASSPATH" is
// unset, and when the lock that guards the file is unavailable; one that is set but empty leaves
// what was in `classPath`.
bool GetClassPath(std::string& classPath);

// The same two with a file of the caller's choice; the first answers whether the lock was held.
bool getPathFromFile(const std::string& fileName, std::string& classPath);
bool GetClassPath(const std::string& fileName, std::string& classPath);

// Is the path of a marked jar nowhere in the class path? Looked for as a part of the whole text.
bool NotFoundPathInClassPath();

// Accepted and without effect: 0.
int AddPath2ClassPath();

// Appends the names of the bean classes in a jar or directory, each a new `char[]` that the caller
// deletes; gives their count, 0 when it can't be examined. Names are modified UTF-8. A name that
// can't be had ends the list and is counted.
int GetBeanNames(JNIEnv* env, const char* jarPath, std::list<char*>& names);

// Accepted and without effect: 1.
int GetDisplayName(const char* jarPath, const char* beanName, char* displayName, int size);

}  // namespace quenlatrix::meta_object::handlers::bean
