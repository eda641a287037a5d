#include <sys/stat.h>

#include <string>

#include "config_file/config_file.h"
#include "config_file/held_file.h"
#include "config_file/stanza.h"
#include "os/event_log.h"
#include "os/file.h"
#include "text/whole_text.h"

namespace quenlatrix::config_file {

// Each operation takes the file before the lock of this object, and keeps both until it is done.

bool ConfigFile::writeFile(bool merge, bool /*flag*/) {
  // Before a file is made.
  if (const MutexLock hold(lock); !merge && !MakeText()) {
    return false;
  }
  HeldFile file(path.GetTextEx(), merge ? HeldFile::Access::Change : HeldFile::Access::Replace);
  if (!file.IsHeld()) {
    file.ReportFailure();
    return false;
  }
  const MutexLock hold(lock);
  if (!merge) {
    return WriteTo(file);
  }
  ConfigFile stored(path.GetTextEx(), directoryStanzaName.GetTextEx());
  return stored.ReadFrom(file) && stored.mergeConfigFiles(*this) && stored.WriteTo(file);
}

bool ConfigFile::removeStanzaWithWrite(const char* name) {
  HeldFile file(path.GetTextEx(), HeldFile::Access::Change);
  if (!file.IsHeld()) {
    file.ReportFailure();
    return false;
  }
  ZuText removed;
  text::SetWhole(removed, name);
  const MutexLock hold(lock);
  ConfigFile stored(path.GetTextEx(), directoryStanzaName.GetTextEx());
  if (!stored.ReadFrom(file) || !stored.mergeConfigFiles(*this)) {
    return false;
  }
  stored.removeStanza(removed);
  const bool written = stored.WriteTo(file);
  removeStanza(removed);
  return written;
}

bool ConfigFile::changeStanzaWithWrite(const char* name, bool /*flag*/) {
  HeldFile file(path.GetTextEx(), HeldFile::Access::Change);
  if (!file.IsHeld()) {
    file.ReportFailure();
    return false;
  }
  ZuText changed;
  text::SetWhole(changed, name);
  const MutexLock hold(lock);
  ConfigFile stored(path.GetTextEx(), directoryStanzaName.GetTextEx());
  if (!stored.ReadFrom(file)) {
    return false;
  }
  if (!findStanza(changed) && !stored.findStanza(changed)) {
    return true;
  }
  stored.BringStanza(*this, changed);
  return stored.WriteTo(file);
}

void ConfigFile::BringStanza(const ConfigFile& from, const ZuText& name) {
  const Stanza* const theirs = from.getStanza(name);
  if (theirs == nullptr) {
    return;
  }
  const MutexLock hold(lock);
  if (Stanza* const ours = Find(name); ours != nullptr) {
    ours->SetAttributes(theirs->CopyAttributes());
    return;
  }
  if (const Stanza* const directory = from.getStanza(directoryStanzaName); directory != nullptr) {
    MergeOrAppend(std::make_unique<Stanza>(*directory));
  }
  MergeOrAppend(std::make_unique<Stanza>(*theirs));
}

bool ConfigFile::WriteTo(HeldFile& file) const {
  const MutexLock hold(lock);
  // Made whole before the file is cut: memory that runs out must not cost what the file holds.
  const std::optional<std::string> text = MakeText();
  if (!text) {
    return false;
  }
  std::FILE* const stream = file.Stream();
  std::rewind(stream);
  if (!ChangeOSFileSize(file.Descriptor(), 0)) {
    return file.Report("[%s] could not change size of the file %s");
  }
  if (std::fwrite(text->data(), 1, text->size(), stream) != text->size() ||
      std::fflush(stream) != 0) {
    return file.Report("[%s] could not write file %s");
  }
  return true;
}

std::optional<std::string> ConfigFile::MakeText() const {
  std::string text;
  for (const Stanza* const stanza : stanzas) {
    stanza->AppendTo(text);
  }
  if (!IsReadable(text)) {
    ReportSystemEvent(EVT_ERROR, CAT_CONFIG,
                      "could not write file %s: what it would hold could not be read again (%zu "
                      "bytes; too many, or a name or key that the file form cannot carry)",
                      path.GetTextEx(), text.size());
    return std::nullopt;
  }
  return text;
}

std::time_t ConfigFile::getModificationDate() const {
  const HeldFile file(path.GetTextEx(), HeldFile::Access::Read);
  if (!file.IsOpen()) {
    file.ReportFailure();
  }
  struct stat status = {};
  const bool known =
      file.IsHeld() && GetFileStatusInfo(file.Path(), file.Descriptor(), status) == 0;
  return known ? status.st_mtime : 0;
}

}  // namespace quenlatrix::config_file
