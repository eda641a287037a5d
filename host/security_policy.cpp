#include "host/security_policy.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "meta_object/info/security_info.h"

namespace quenlatrix::host {

namespace {

std::atomic<const SecurityPolicy*> installedPolicy = nullptr;

std::string WithDots(std::string_view name) {
  std::string dotted(name);
  std::replace(dotted.begin(), dotted.end(), '/', '.');
  return dotted;
}

const std::string* FindMatch(const std::vector<std::string>& patterns, std::string_view name) {
  const auto found =
      std::find_if(patterns.begin(), patterns.end(),
                   [name](const std::string& pattern) { return MatchesGlob(pattern, name); });
  return found == patterns.end() ? nullptr : &*found;
}

}  // namespace

bool MatchesGlob(std::string_view pattern, std::string_view text) {
  std::size_t at = 0;
  std::size_t position = 0;
  std::size_t lastStar = std::string_view::npos;
  std::size_t resume = 0;
  while (position < text.size()) {
    if (at < pattern.size() && pattern[at] == '*') {
      lastStar = at++;
      resume = position;
    } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == text[position])) {
      ++at;
      ++position;
    } else if (lastStar != std::string_view::npos) {
      // Only the last "*" ever has to take more: what stands before it has been matched.
      at = lastStar + 1;
      position = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

SecurityPolicy::SecurityPolicy(std::vector<std::string> allow, std::vector<std::string> deny,
                               std::string alwaysAllowed)
    : allow(std::move(allow)), deny(std::move(deny)), alwaysAllowed(std::move(alwaysAllowed)) {
  for (std::vector<std::string>* patterns : {&this->allow, &this->deny}) {
    for (std::string& pattern : *patterns) {
      pattern = WithDots(pattern);
    }
  }
}

bool SecurityPolicy::Allows(std::string_view className) const {
  return WhyRefused(className).empty();
}

std::string SecurityPolicy::WhyRefused(std::string_view className) const {
  const std::string name = WithDots(className);
  if (!alwaysAllowed.empty() && name == alwaysAllowed) {
    return {};
  }
  if (const std::string* pattern = FindMatch(deny, name)) {
    return "--deny " + *pattern + " matches";
  }
  if (!allow.empty() && FindMatch(allow, name) == nullptr) {
    return "no --allow pattern matches";
  }
  return {};
}

void SecurityPolicy::Install(const SecurityPolicy* policy) { installedPolicy = policy; }

bool SecurityPolicy::Check(meta_object::info::SecurityInfo* record) {
  const SecurityPolicy* policy = installedPolicy;
  if (policy == nullptr) {
    return true;
  }
  return record != nullptr && policy->Allows(record->secondValue);
}

}  // namespace quenlatrix::host
