#pragma once

#include <string>
#include <vector>

namespace quenlatrix::host {

// The installation root is the directory that holds "Configuration", and in it "handlers.ini".

// Where QUENLATRIX_PATH is unset and the registry finds no "handlers.ini" by its own rule, sets the
// variable to the first root beside the program that has one: "..", as in a build tree, or where an
// installed tree keeps it. To be called while the process has one thread.
void ChooseInstallationRoot();

// No registry is looked for in a longer root.
constexpr int kLongestInstallationRoot = 237;
bool IsInstallationRootTooLong();

// The root by the registry's rule. A relative path in "handlers.ini" starts there.
std::string InstallationRoot();

// The files that the registry was looked for in, in that order.
std::vector<std::string> PlacesOfRegistry();

}  // namespace quenlatrix::host
