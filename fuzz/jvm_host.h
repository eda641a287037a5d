#pragma once

#include <functional>
#include <string>

#include "host/host.h"

// What the fuzz targets with a Java VM share. For the fuzzer's thread alone.

// The host of this process: started by the first call, with -Xcheck:jni, a small heap and a policy
// that allows only the classes which the targets make, none of which reaches out of the process.
// Ends the process with a text where there is none.
quenlatrix::host::Host& GetHost();

// The calling thread's environment.
JNIEnv* GetEnv();

// A new bean; ends the process where it can't be made.
quenlatrix::host::BeanObject MakeBean(const std::string& className);

// Runs what must leave things as they were: no JNI reference, frame or exception, no handler, and
// no warning of the VM. What is made once and kept counts at a second run.
void RequireNothingLeft(const std::function<void()>& run);
