#include "host/nearest_names.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace quenlatrix::host {

namespace {

constexpr std::size_t kMostNames = 5;
constexpr std::size_t kMostListed = 20;
// A name that holds the one written, or is held by it, comes behind the mistyped ones.
constexpr std::size_t kContained = 10;
constexpr std::size_t kNotNear = 1000;

std::string InLowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  return lower;
}

// How many characters one has to insert, leave out or change.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

std::size_t DistanceOf(const std::string& written, const std::string& candidate) {
  const std::string lower = InLowerCase(candidate);
  const std::size_t edits = EditDistance(written, lower);
  if (edits <= std::max<std::size_t>(1, written.size() / 3)) return edits;
  const bool isPart = written.size() > 1 && lower.find(written) != std::string::npos;
  const bool isWhole = lower.size() > 2 && written.find(lower) != std::string::npos;
  return isPart || isWhole ? kContained + edits : kNotNear;
}

}  // namespace

std::vector<std::string> NearestNames(std::string_view name,
                                      const std::vector<std::string>& candidates) {
  const std::string written = InLowerCase(name);
  std::set<std::pair<std::size_t, std::string>> ranked;
  for (const std::string& candidate : candidates) {
    const std::size_t distance = DistanceOf(written, candidate);
    if (distance < kNotNear) ranked.emplace(distance, candidate);
  }
  std::vector<std::string> nearest;
  for (const auto& [distance, candidate] : ranked) {
    if (nearest.size() < kMostNames) nearest.push_back(candidate);
  }
  return nearest;
}

std::string DidYouMean(std::string_view name, const std::vector<std::string>& candidates) {
  const std::vector<std::string> nearest = NearestNames(name, candidates);
  return nearest.empty() ? std::string() : "; did you mean " + ListOf(nearest) + "?";
}

std::string ListOf(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kMostListed); ++i) {
    text += (i == 0 ? "" : ", ") + names[i];
  }
  if (names.size() > kMostListed) {
    text += " and " + std::to_string(names.size() - kMostListed) + " more";
  }
  return text;
}

}  // namespace quenlatrix::host
