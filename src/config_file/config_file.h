#pragma once

#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "collect/lists.h"
#include "os/mutex.h"
#include "text/zu_text.h"

namespace quenlatrix::config_file {

class HeldFile;

// A configuration file, read whole into memory, changed there and written back. It is made of
// stanzas of bytes between 1 and 131072 in all:
//
//   ; a comment, to the end of the line
//   [name]
//   key=value
//   key=another value
//
// A stanza ends at an empty line, a comment line or the end of the file; only empty lines and
// comments stand between stanzas. Blanks before a key are skipped, all others belong to the key or
// the value. In names, keys and values "\r" stands for a carriage return, "\n" for a line feed and
// "\\" for one backslash; before anything else a backslash is itself. A name or key of 255 bytes
// or more, or a NUL byte in one or in a value, makes the file invalid; a value is cut at 4095
// bytes. What this form can't carry is listed at Stanza.
//
// One stanza, the directory, lists the names of the others as its keys. Counting and enumerating
// stanzas goes by it: what it doesn't list is neither counted nor merged, but read and written.
//
// What there is no memory for throws std::bad_alloc. Nothing is lost by that: a file is either left
// as it is or gets all that is in memory, a list of stanzas is read whole or not at all, and a
// stanza that could not be added is still its maker's. (A merge in memory may have come half way.)
//
// Stanzas are looked up without regard to case, the first of a name counting. Failures with the
// file are reported as events; an invalid file isn't, it only makes reading fail.
//
// Threads: every operation may be called by any thread, but for the destructor. A stanza that is
// lent stays good until it is removed, its file is read again or destroyed.
// Processes: a file is read under a shared and written under an exclusive lock, so no process reads
// a half-written file; what reads, merges and writes does so under one lock and loses nobody's
// change. Threads of one process take turns at a file, through whatever object. Locks are taken in
// this order: the file (its turn, then its lock), the ConfigFile's lock, a stanza's lock; never two
// files, and of two ConfigFiles or two stanzas one after the other. A process forked while another
// thread of its parent is at a file must not use that file before it has called exec.
class ConfigFile {
 public:
  class Stanza;

  // Reads nothing. A null `path` leaves both texts empty.
  ConfigFile(const char* path, const char* directoryName);
  // Configuration files aren't copied: the copy has no path, no directory name and no stanzas, but
  // the parse timestamp. Assignment changes nothing.
  ConfigFile(const ConfigFile& other);
  ConfigFile& operator=(const ConfigFile& other);
  // Writes nothing.
  virtual ~ConfigFile();

  // Reads the file in place of the stanzas in memory. False when it can't be read, which leaves
  // those as they are, and when it is invalid; the stanzas before the fault then stay.
  bool parseConfigFile();

  // Writes the stanzas, attributes sorted by key. Without `merge` they replace the file, which is
  // made when it is missing. With it the file is read and they are merged into what it holds,
  // memory staying as it is; false, with the file untouched, when it can't be read or merged.
  // What could not be read again is not written: more bytes than a file may have, and names and
  // keys that make a file invalid or get lost in it. False then, with the file untouched. False
  // also when not all could be written: the file then holds a part. `flag` has no effect.
  bool writeFile(bool merge, bool flag);

  // Merges the stanzas that the other's directory lists, and that directory, into this object;
  // values of the other replace those of the same key. False, with nothing changed, unless both
  // have a stanza with this object's directory name. Nothing changes for itself.
  bool mergeConfigFiles(const ConfigFile& other);

  // Reads the file, merges this object into it, removes the stanza, writes it back, and removes the
  // stanza from memory too. False when it can't be read or merged, with memory as it was, and when
  // it can't be written: memory then has what the file should have.
  bool removeStanzaWithWrite(const char* name);

  // Brings the file's stanza to exactly the attributes that it has in memory, or adds it, with this
  // object's directory, to the file; the file's other stanzas stay. False when the file can't be
  // read or written. A stanza that is on neither side is none to write: true. `flag` has no effect.
  bool changeStanzaWithWrite(const char* name, bool flag);

  // When the file was last changed; 0 when that can't be told.
  std::time_t getModificationDate() const;
  // The same, as it was when the file was last read completely; 0 before.
  std::time_t GetParseTimestamp() const;

  // Null when there is none. Lent.
  Stanza* getStanza(const ZuText& name) const;
  bool findStanza(const ZuText& name) const;
  // Clears `out`, then gives the value; false when there is no such stanza or key.
  bool getValue(const ZuText& stanza, const ZuText& key, ZuText& out) const;
  // Sets the value of the first attribute with the key, or appends one; false when there is no such
  // stanza.
  bool changeValue(const ZuText& stanza, const ZuText& key, const ZuText& value);

  // Adopts a stanza, made with new, at the end; with `listIt` also lists it in the directory, if
  // there is one. False for null and for one that is here already.
  bool addStanza(Stanza* s, bool listIt);
  // Removes the stanza and its key in the directory; false when there is no such stanza.
  bool removeStanza(const ZuText& name);
  void removeAllStanzas();
  // Appends an empty directory if there is none. Always true.
  bool createDirectoryStanza();

  // The directory's keys: 0 without a directory; their names and the stanzas of those names by
  // position from 0, false and null when there is no such key or stanza.
  unsigned long getNumberOfStanzas() const;
  bool getStanzaInformationIndex(unsigned long i, ZuText& name) const;
  Stanza* getStanzaAtIndex(unsigned long i) const;

  // Walk the directory's keys with the object's one cursor. `name` is cleared; false at the end,
  // which sets the cursor back to the first key: the next getNextStanza gives the second.
  bool getFirstStanza(ZuText& name);
  bool getNextStanza(ZuText& name);

  // Writes the stanzas to standard error as they would go to the file.
  void dump() const;

  // Paths in the configuration directory: root + "/Configuration/", the root being the environment
  // variable QUENLATRIX_PATH, else what the start-up file of the user "quenlatrix" sets it to, else
  // "/Applications/Quenlatrix Server 7". Nothing is looked up in that directory or made there.
  //
  // The directory itself, in `out` of `size` bytes, of which there are at least 255. False, with
  // `out` untouched, when the root is too long for `size`.
  static bool getPlatformConfigPath(char* out, int size);
  // A file in that directory. False, with `out` unchanged, or empty when the root is too long, for
  // a directory of 255 and of 1024 bytes; false also when `out` has no room for the path.
  static bool buildConfigPath(const char* name, ZuText& out);
  static ZuText buildConfigPath(const ZuText& name);
  // The directory `dir` beside it, and a file in its sibling "MiscFiles". Empty when the root is
  // too long.
  static ZuText buildPath(const ZuText& dir);
  static ZuText buildMiscFilesPath(const ZuText& name);

 private:
  // What the others begin as: one that throws from then on is destroyed with its lock.
  ConfigFile();

  using OwnedStanzas = std::vector<std::unique_ptr<Stanza>>;

  // Copies of the directory and of the stanzas that it lists, in that order and once each; none
  // without it.
  OwnedStanzas CopyListed(const ZuText& directoryName) const;
  Stanza* Find(const ZuText& name) const REQUIRES(lock);
  void Append(std::unique_ptr<Stanza> stanza) REQUIRES(lock);
  // Merges the stanza into the one of its name here, or appends it.
  void MergeOrAppend(std::unique_ptr<Stanza> theirs) REQUIRES(lock);
  // Makes these all the stanzas.
  void Adopt(OwnedStanzas read) REQUIRES(lock);
  // What needs the file takes no file itself: it is held by the caller.
  // What the file is to hold. Nothing, which is reported, when it could not be read again.
  std::optional<std::string> MakeText() const REQUIRES(lock);
  // Would a reader of the text find these stanzas, with as many attributes?
  bool IsReadable(const std::string& text) const REQUIRES(lock);
  bool ReadFrom(HeldFile& file);
  bool WriteTo(HeldFile& file) const;
  void BringStanza(const ConfigFile& from, const ZuText& name);

  unsigned long cursor GUARDED_BY(lock) = 0;
  ZuText path;
  ZuText directoryStanzaName;
  std::time_t parseTimestamp GUARDED_BY(lock) = 0;
  // Owned.
  collect::Lists<Stanza*> stanzas GUARDED_BY(lock);
  mutable Mutex lock;
};

}  // namespace quenlatrix::config_file
