#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "config_file/config_file.h"
#include "config_file/stanza.h"
#include "fuzz/require.h"

namespace {

using quenlatrix::collect::Attribute;
using quenlatrix::collect::AttributeList;
using quenlatrix::config_file::ConfigFile;

// A file in memory alone.
class MemoryFile {
 public:
  MemoryFile() : fd(memfd_create("config_file", MFD_CLOEXEC)) {
    Require(fd != -1);
    path = "/proc/self/fd/" + std::to_string(fd);
  }
  ~MemoryFile() { close(fd); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  void Write(const unsigned char* data, std::size_t size) const {
    Require(ftruncate(fd, 0) == 0);
    Require(pwrite(fd, data, size, 0) == static_cast<ssize_t>(size));
  }
  std::string Read() const {
    std::string bytes(static_cast<std::size_t>(lseek(fd, 0, SEEK_END)), '\0');
    Require(pread(fd, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    return bytes;
  }

  std::string path;

 private:
  int fd;
};

// Whether what was read may be what can't be written so that it is read again: a key with a bracket
// or without a character, or a text that escapes and line ends make too long.
bool MayBeRefused(const std::string& bytes) {
  if (bytes.size() > 131072 / 4 || bytes.find("\\[") != std::string::npos) {
    return true;
  }
  for (std::size_t sign = bytes.find('='); sign != std::string::npos;
       sign = bytes.find('=', sign + 1)) {
    const std::size_t before =
        sign == 0 ? std::string::npos : bytes.find_last_not_of(" \t", sign - 1);
    if (before == std::string::npos || bytes[before] == '\n') {
      return true;
    }
  }
  return false;
}

// Operations on what was read keep their promises.
void CheckStanzas(ConfigFile& file) {
  ZuText name;
  for (unsigned long i = 0; file.getStanzaInformationIndex(i, name); ++i) {
    ConfigFile::Stanza* const stanza = file.getStanza(name);
    Require(file.getStanzaAtIndex(i) == stanza);
    if (stanza == nullptr || stanza->getNumberOfAttributes() == 0) {
      continue;
    }
    Attribute first;
    Require(stanza->getAttributeIndex(0, first));
    AttributeList members;
    Require(stanza->getAttributeList(first.key.GetTextEx(), members));
    Require(members.getNumberOfAttributes() <= first.getValueListElementCount());
    stanza->changeAttributeList(first.key.GetTextEx(), members);
    stanza->removeAttributeList(first.key.GetTextEx());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const MemoryFile memory;
  memory.Write(data, size);
  ConfigFile first(memory.path.c_str(), "D");
  first.parseConfigFile();
  if (const std::string stored = memory.Read(); !first.writeFile(false, false)) {
    Require(memory.Read() == stored && MayBeRefused(stored));
  } else if (const std::string written = memory.Read(); !written.empty()) {
    ConfigFile second(memory.path.c_str(), "d");
    Require(second.parseConfigFile());
    Require(second.writeFile(false, false));
    Require(memory.Read() == written);
    Require(first.mergeConfigFiles(second) == first.findStanza("D"));
  }
  CheckStanzas(first);
  return 0;
}
