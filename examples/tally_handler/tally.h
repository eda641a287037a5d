#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "os/mutex.h"
#include "os/thread_annotations.h"

namespace tally {

// How often each word has been seen: the real object behind a TallyHandler. Any thread may use it.
class Tally {
 public:
  // The tally of that name, shared by all who ask for it as long as one of them holds it.
  static std::shared_ptr<Tally> Open(const std::string& name);

  Tally() : mutex(Mutex::Private) {}
  ~Tally() { mutex.DestroyMutex(); }
  Tally(const Tally&) = delete;
  Tally& operator=(const Tally&) = delete;

  // Counts the word once more; how often it has been seen now.
  int Add(const std::wstring& word);
  int Count(const std::wstring& word) const;
  void Clear();
  // Every word seen, the most frequent first, equally frequent ones in their order.
  std::vector<std::wstring> Words() const;

 private:
  mutable Mutex mutex;
  std::map<std::wstring, int> counts GUARDED_BY(mutex);
};

}  // namespace tally
