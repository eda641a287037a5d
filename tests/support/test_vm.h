#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace quenlatrix::test {

// The Java VM of a test process: one, started at its first use with -Xcheck:jni on the JDK that
// QUENLATRIX_TEST_JAVA_HOME names (any that is found without it). A process that gets none ends.
class TestVm {
 public:
  // To be called before the first use. Classes that lie earlier on the class path win; by default
  // it holds the plug-in's jar, test_beans.jar and named_parameters.jar.
  static void AddOption(const std::string& option);
  static void SetClassPath(const std::vector<std::string>& entries);

  static JavaVM* Get();
  // The calling thread's environment; attaches the thread when it isn't. Not to be kept beyond a
  // detach.
  static JNIEnv* Env();
  // For a test whose process has to end although Java threads run: the end of the VM would wait.
  static void LeaveRunning();
  // To be called at the end of main(); see EndVm.
  static void End();

  // The JDK that the test runs on; empty when the environment names none.
  static std::string JavaHome();
  // A jar that was built for the tests, such as "test_beans.jar", or the plug-in's own
  // "javabean_handler.jar".
  static std::string Jar(const std::string& name);
};

}  // namespace quenlatrix::test
