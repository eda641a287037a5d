#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quenlatrix::host {

// The few candidates that someone who wrote `name` may have meant, the nearest first: mistyped, in
// other case, or cut short. Candidates are taken once, whatever their number.
std::vector<std::string> NearestNames(std::string_view name,
                                      const std::vector<std::string>& candidates);

// "; did you mean add, addAll?"; empty when nothing is near.
std::string DidYouMean(std::string_view name, const std::vector<std::string>& candidates);

// "a, b, c"; of very many the first ones and how many more there are.
std::string ListOf(const std::vector<std::string>& names);

}  // namespace quenlatrix::host
