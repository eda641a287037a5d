#pragma once

#include <list>
#include <memory>

#include "config_file/stanza.h"
#include "meta_object/handler.h"
#include "text/zu_text.h"

namespace quenlatrix::meta_object {

// A handler as its stanza in the registry describes it. Plain data: threads that share one see to
// their own order.
class Handler::EnumInfo {
 public:
  EnumInfo() = default;
  EnumInfo(const EnumInfo&) = delete;
  EnumInfo& operator=(const EnumInfo&) = delete;
  virtual ~EnumInfo() = default;

  // Appends an attribute; nothing for a null `key` or `value`.
  void AddHandlerAttribute(const char* handlerName, const char* key, const char* value);
  // The value of the first attribute with exactly this key. Lent; null when there is none, and for
  // a null or empty key.
  const char* GetHandlerAttrbiute(const char* key) const;
  // A copy that needs no Enum, the attributes included. The caller's own.
  EnumInfo* CloneHandlerInfo() const;
  // Deletes the attributes; their places in the list stay, empty.
  void ClearHandlerInfo();

  ZuText shortName;
  // The stanza's name.
  ZuText handlerName;
  ZuText description;
  // The plug-in's file.
  ZuText serverPath;
  bool supportsScanning = false;
  // Is the handler switched on? One whose stanza doesn't say so isn't.
  bool loadHandler = false;
  // Every other key of the stanza, in the file's order.
  std::list<std::unique_ptr<Attribute>> attributes;
};

// The handlers that the installation's registry names: the configuration file "handlers.ini", one
// stanza a handler, its directory stanza "Handlers". Read at the first GetFirst and kept; the
// entries are lent and live until the registry is loaded again, reset or destroyed. For one thread
// at a time.
class Handler::Enum {
 public:
  Enum();
  Enum(const Enum&) = delete;
  Enum& operator=(const Enum&) = delete;
  virtual ~Enum();

  // The first entry, which becomes the current one; loads the registry when there are no entries.
  // Null when there are none then either. The argument is not used.
  virtual EnumInfo* GetFirst(bool);
  // The entry behind the current one, which becomes the current one; null past the last, and
  // before GetFirst.
  virtual EnumInfo* GetNext();
  // Is the file there?
  virtual bool IsRegistryAvailable() const;
  // The file's name, without its directory.
  virtual const char* GetRegistryName() const;

  // Reads the file anew. A handler that it switches off is reported by two events. False, with no
  // entries, when there is no path to the file; a file that can't be read or is invalid gives no
  // entries and true. Throws std::bad_alloc, with no entries, when memory runs out.
  bool LoadRegistryEntries();
  // Deletes the entries.
  void ResetObjectHandlerEnum();

 private:
  using Entries = std::list<std::unique_ptr<EnumInfo>>;

  std::unique_ptr<config_file::ConfigFile> configFile;
  Entries entries;
  Entries::iterator position;
};

// Is the switch on that the stanza's `key` stands for? A value that begins with 1, T, t, Y or y
// says so, and an empty one; any other, a missing one, and a null stanza or key don't.
bool IsStanzaValueTrue(config_file::ConfigFile::Stanza* stanza, const char* key);

}  // namespace quenlatrix::meta_object
