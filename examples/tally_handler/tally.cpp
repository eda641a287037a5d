#include "tally.h"

#include <algorithm>
#include <utility>

namespace tally {

namespace {

struct OpenTallies {
  OpenTallies() : mutex(Mutex::Private) {}
  ~OpenTallies() { mutex.DestroyMutex(); }
  OpenTallies(const OpenTallies&) = delete;
  OpenTallies& operator=(const OpenTallies&) = delete;

  Mutex mutex;
  std::map<std::string, std::weak_ptr<Tally>> byName GUARDED_BY(mutex);
};

OpenTallies openTallies;

}  // namespace

std::shared_ptr<Tally> Tally::Open(const std::string& name) {
  const MutexLock lock(openTallies.mutex);
  std::erase_if(openTallies.byName, [](const auto& entry) { return entry.second.expired(); });
  std::shared_ptr<Tally> tally = openTallies.byName[name].lock();
  if (tally == nullptr) {
    tally = std::make_shared<Tally>();
    openTallies.byName[name] = tally;
  }
  return tally;
}

int Tally::Add(const std::wstring& word) {
  const MutexLock lock(mutex);
  return ++counts[word];
}

int Tally::Count(const std::wstring& word) const {
  const MutexLock lock(mutex);
  const auto found = counts.find(word);
  return found == counts.end() ? 0 : found->second;
}

void Tally::Clear() {
  const MutexLock lock(mutex);
  counts.clear();
}

std::vector<std::wstring> Tally::Words() const {
  std::vector<std::pair<std::wstring, int>> ranked;
  {
    const MutexLock lock(mutex);
    ranked.assign(counts.begin(), counts.end());
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& one, const auto& other) { return one.second > other.second; });
  std::vector<std::wstring> words;
  words.reserve(ranked.size());
  for (auto& [word, count] : ranked) {
    words.push_back(std::move(word));
  }
  return words;
}

}  // namespace tally
