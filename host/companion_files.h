#pragma once

#include <filesystem>
#include <string>

namespace quenlatrix::host {

// What comes with the program: the plug-in and the jars. They lie beside it in a build tree and in
// the directories of its installation, which it finds from its own place. Any thread may ask.

// The directory of the running program's file.
std::filesystem::path ProgramDirectory();

// The companion of that name, beside the program before anywhere else; the path beside the program
// when it is at no place.
std::filesystem::path FindCompanion(const std::string& name);

}  // namespace quenlatrix::host
