#pragma once

#include <gtest/gtest.h>

#include "host/host.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::host {

// A host with the beans of the tests, its VM watching its native callers. Without a plug-in's file
// it serves what the registry names.
inline std::unique_ptr<Host> StartHost(const std::string& pluginFile) {
  Host::Options options;
  options.pluginFile = pluginFile;
  options.javaHome = test::TestVm::JavaHome();
  options.classPath = test::TestVm::Jar("test_beans.jar");
  options.javaOptions = {"-Xcheck:jni"};
  std::string why;
  std::unique_ptr<Host> host = Host::Start(options, why);
  EXPECT_NE(host, nullptr) << why;
  return host;
}

}  // namespace quenlatrix::host
