#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "config_file/config_file.h"
#include "config_file/held_file.h"
#include "config_file/stanza.h"
#include "config_file/tokenizer.h"
#include "os/event_log.h"
#include "os/file.h"

namespace quenlatrix::config_file {

namespace {

constexpr off_t kLargestFile = 131072;
// Names and keys are shorter.
constexpr std::size_t kNameLimit = 255;

// Reads stanzas off the bytes of a file: bytes in memory, so that the buffer for tokens holds the
// longest one even if the file grows meanwhile.
class StanzaReader {
 public:
  using Stanzas = std::vector<std::unique_ptr<ConfigFile::Stanza>>;

  // Keeps using `bytes`, of which there is one at least.
  explicit StanzaReader(std::vector<char>& bytes)
      : stream(fmemopen(bytes.data(), bytes.size(), "r")),
        token(std::max<std::size_t>(bytes.size() + 1, kValueRoom)),
        value(kValueRoom) {
    if (stream == nullptr) {
      throw std::bad_alloc();
    }
  }

  // Reads them all. False at a fault: those before it are read.
  bool Read(Stanzas& stanzas) {
    for (;;) {
      Token found = Token::EndOfLine;
      while (found == Token::EndOfLine) {
        found = Next();
      }
      if (found == Token::EndOfFile) {
        return true;
      }
      if (found != Token::StanzaName || !NameFits()) {
        return false;
      }
      const std::string name(token.data());
      std::vector<collect::Attribute> attributes;
      if (Next() != Token::EndOfLine || !ReadAttributes(attributes)) {
        return false;
      }
      stanzas.push_back(
          std::make_unique<ConfigFile::Stanza>(name.c_str(), collect::AttributeList(attributes)));
    }
  }

 private:
  struct CloseStream {
    void operator()(std::FILE* opened) const { std::fclose(opened); }
  };

  Token Next() { return getToken(stream.get(), token.data(), false); }
  bool NameFits() const { return std::strlen(token.data()) < kNameLimit; }

  bool ReadAttributes(std::vector<collect::Attribute>& attributes) {
    for (;;) {
      const Token found = Next();
      if (found == Token::EndOfLine || found == Token::EndOfFile) {
        return true;
      }
      if (found != Token::Word || !NameFits()) {
        return false;
      }
      const std::string key(token.data());
      if (Next() != Token::EqualsSign ||
          getToken(stream.get(), value.data(), true) != Token::Value) {
        return false;
      }
      attributes.emplace_back(key.c_str(), value.data());
    }
  }

  std::unique_ptr<std::FILE, CloseStream> stream;
  std::vector<char> token;
  std::vector<char> value;
};

// The file's bytes; none when they could not be read, which is reported, or are too few or many.
std::vector<char> ReadBytes(const HeldFile& file) {
  struct stat status = {};
  if (GetFileStatusInfo(file.Path(), file.Descriptor(), status) == -1) {
    file.Report("[%s] cannot retrieve file status data for %s");
    return {};
  }
  if (status.st_size <= 0 || status.st_size > kLargestFile) {
    const off_t size = std::min<off_t>(status.st_size, INT_MAX);
    ReportSystemEvent(EVT_ERROR, CAT_CONFIG, "Invalid size (%d) of the file %s",
                      static_cast<int>(size), file.Path());
    return {};
  }
  std::vector<char> bytes(static_cast<std::size_t>(status.st_size));
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.Stream()));
  if (ferror(file.Stream()) != 0) {
    file.Report("[%s] could not read file %s");
    return {};
  }
  return bytes;
}

}  // namespace

bool ConfigFile::IsReadable(const std::string& text) const {
  if (text.empty()) {
    return true;
  }
  std::vector<char> bytes(text.begin(), text.end());
  StanzaReader::Stanzas found;
  return bytes.size() <= kLargestFile && StanzaReader(bytes).Read(found) &&
         std::equal(found.begin(), found.end(), stanzas.begin(), stanzas.end(),
                    [](const std::unique_ptr<Stanza>& read, const Stanza* written) {
                      return read->getStanzaName().Equals(written->getStanzaName(), true) &&
                             read->getNumberOfAttributes() == written->getNumberOfAttributes();
                    });
}

bool ConfigFile::parseConfigFile() {
  HeldFile file(path.GetTextEx(), HeldFile::Access::Read);
  if (!file.IsHeld()) {
    file.ReportFailure();
    return false;
  }
  return ReadFrom(file);
}

bool ConfigFile::ReadFrom(HeldFile& file) {
  std::vector<char> bytes = ReadBytes(file);
  if (bytes.empty()) {
    return false;
  }
  StanzaReader::Stanzas found;
  const bool whole = StanzaReader(bytes).Read(found);
  const MutexLock hold(lock);
  Adopt(std::move(found));
  if (!whole) {
    return false;
  }
  // Not through getModificationDate: closing a second descriptor would give up the file's lock.
  struct stat status = {};
  const bool known = GetFileStatusInfo(file.Path(), file.Descriptor(), status) == 0;
  parseTimestamp = known ? status.st_mtime : 0;
  return true;
}

void ConfigFile::Adopt(OwnedStanzas read) {
  const std::vector<Stanza*> places(read.size());
  collect::Lists<Stanza*> list(places.begin(), places.end());
  removeAllStanzas();
  std::transform(read.begin(), read.end(), list.begin(),
                 [](std::unique_ptr<Stanza>& stanza) { return stanza.release(); });
  stanzas.swap(list);
}

}  // namespace quenlatrix::config_file
