#include "host/overload_choice.h"

#include <algorithm>

#include "host/host_error.h"
#include "host/nearest_names.h"
#include "host/parameter_fit.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

constexpr std::size_t kShownOfArgument = 40;

struct Candidate {
  const MethodDescription* method;
  std::vector<int> ranks;
  bool fits = false;
  std::string why;           // why it doesn't fit, or can't be called though it does
  std::size_t misfit = 0;    // the first argument that `why` is about, or their number
  std::size_t distance = 0;  // how far from fitting
};

// "argument 2 (5.0)".
std::string NameOf(const std::vector<Argument>& arguments, std::size_t which) {
  const std::wstring source = Utf8ToWide(arguments[which].source);
  const bool isLong = source.size() > kShownOfArgument;
  const std::string shown =
      isLong ? WideToUtf8(source.substr(0, kShownOfArgument)) + "..." : arguments[which].source;
  return "argument " + std::to_string(which + 1) + (shown.empty() ? "" : " (" + shown + ")");
}

// Of an argument, or of what is missing behind the last one.
Place PlaceOf(const MethodPattern& pattern, const std::vector<Argument>& arguments,
              std::size_t which) {
  if (which < arguments.size()) return {arguments[which].at, arguments[which].source.size()};
  if (arguments.empty()) return {pattern.place.at + pattern.place.length + 1, 1};
  return {arguments.back().at + arguments.back().source.size() + 1, 1};
}

std::string Count(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " argument" : " arguments");
}

bool HasTypes(const MethodDescription& method, const std::vector<JavaType>& types) {
  return std::equal(method.parameters.begin(), method.parameters.end(), types.begin(), types.end(),
                    [](const ParameterDescription& parameter, const JavaType& type) {
                      return JavaTypeOf(parameter.type) == type;
                    });
}

std::vector<Candidate> CandidatesOf(const std::vector<MethodDescription>& methods,
                                    const std::string& name) {
  std::vector<Candidate> candidates;
  for (const MethodDescription& method : methods) {
    if (ToUtf8(method.name) == name) candidates.emplace_back().method = &method;
  }
  return candidates;
}

std::string List(const std::vector<Candidate>& candidates) {
  std::string text;
  for (const Candidate& candidate : candidates) {
    text += "\n    " + ToSourceForm(*candidate.method);
    if (!candidate.why.empty()) text += ": " + candidate.why;
  }
  return text;
}

void Rate(Candidate& candidate, const std::vector<Argument>& arguments) {
  constexpr std::size_t kOtherNumber = 1000;
  const std::vector<ParameterDescription>& parameters = candidate.method->parameters;
  const std::size_t common = std::min(parameters.size(), arguments.size());
  if (parameters.size() != arguments.size()) {
    candidate.why =
        "takes " + Count(parameters.size()) + ", found " + std::to_string(arguments.size());
    candidate.misfit = common;
    candidate.distance = kOtherNumber * (std::max(parameters.size(), arguments.size()) - common);
    return;
  }
  candidate.fits = true;
  for (std::size_t i = 0; i < common; ++i) {
    const Fit fit = FitArgument(arguments[i], JavaTypeOf(parameters[i].type));
    if (candidate.why.empty() && !fit.why.empty()) {
      candidate.why = NameOf(arguments, i) + ": " + fit.why;
      candidate.misfit = i;
    }
    candidate.fits = candidate.fits && !fit.IsNone();
    candidate.distance += fit.IsNone() ? 1 : 0;
    candidate.ranks.push_back(fit.rank);
  }
}

bool IsBetter(const Candidate& a, const Candidate& b) {
  bool better = false;
  for (std::size_t i = 0; i < a.ranks.size(); ++i) {
    if (a.ranks[i] > b.ranks[i]) return false;
    better = better || a.ranks[i] < b.ranks[i];
  }
  return better;
}

// One call that is being resolved, for its messages.
struct Sought {
  const std::string& className;
  const MethodPattern& pattern;
  const std::vector<Argument>& arguments;

  std::string Name() const { return ToSourceForm(className) + "." + pattern.name; }
};

[[noreturn]] void RefuseAll(const Sought& sought, std::vector<Candidate> candidates) {
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.distance < b.distance; });
  const Candidate& nearest = candidates.front();
  const Place place = PlaceOf(sought.pattern, sought.arguments, nearest.misfit);
  if (candidates.size() == 1) {
    throw HostError(ExitStatus::Failed,
                    sought.Name() + " can't be called like this; " + ToSourceForm(*nearest.method) +
                        ": " + nearest.why,
                    place);
  }
  throw HostError(ExitStatus::Failed,
                  "no " + sought.Name() +
                      " fits these arguments\nthere are, the nearest first:" + List(candidates),
                  place);
}

[[noreturn]] void RefuseName(const Sought& sought, const std::vector<MethodDescription>& methods) {
  std::vector<std::string> names;
  names.reserve(methods.size());
  for (const MethodDescription& method : methods) names.push_back(ToUtf8(method.name));
  throw HostError(ExitStatus::Failed,
                  "class " + ToSourceForm(sought.className) + " has no method \"" +
                      sought.pattern.name + "\"" + DidYouMean(sought.pattern.name, names) +
                      "\n\"describe\" lists those it has",
                  Place{sought.pattern.place.at, sought.pattern.name.size()});
}

// Of such an argument nothing is asked but why it is none, so the candidates go by their number of
// parameters.
void RefuseUnpassable(const Sought& sought, std::vector<Candidate> candidates) {
  const std::vector<Argument>& arguments = sought.arguments;
  for (const Argument& argument : arguments) {
    const std::string why = WhyUnpassable(argument);
    if (why.empty()) continue;
    std::stable_partition(candidates.begin(), candidates.end(), [&](const Candidate& candidate) {
      return candidate.method->parameters.size() == arguments.size();
    });
    const auto which = static_cast<std::size_t>(&argument - arguments.data());
    throw HostError(ExitStatus::Failed,
                    NameOf(arguments, which) + ": " + why + "\nthere are:" + List(candidates),
                    Place{argument.at, argument.source.size()});
  }
}

const MethodDescription& PickBest(const Sought& sought, const std::vector<Candidate>& candidates) {
  std::vector<Candidate> fitting;
  for (const Candidate& candidate : candidates) {
    if (candidate.fits) fitting.push_back(candidate);
  }
  if (fitting.empty()) RefuseAll(sought, candidates);
  std::vector<Candidate> best;
  for (const Candidate& candidate : fitting) {
    const bool beaten = std::any_of(fitting.begin(), fitting.end(), [&](const Candidate& other) {
      return IsBetter(other, candidate);
    });
    if (!beaten) best.push_back(candidate);
  }
  if (best.size() > 1) {
    throw HostError(
        ExitStatus::Failed,
        "several " + sought.Name() +
            " fit these arguments equally well\ngive METHOD with the parameter types of one:" +
            List(best),
        sought.pattern.place);
  }
  if (!best.front().why.empty()) RefuseAll(sought, best);
  return *best.front().method;
}

}  // namespace

std::string ToSourceForm(const MethodDescription& method) {
  std::string text = ToUtf8(method.name) + "(";
  for (const ParameterDescription& parameter : method.parameters) {
    if (text.back() != '(') text += ", ";
    text += ToSourceForm(JavaTypeOf(parameter.type));
  }
  return text + ")";
}

const MethodDescription& ChooseMethod(const std::vector<MethodDescription>& methods,
                                      const std::string& className, const MethodPattern& pattern,
                                      const std::vector<Argument>& arguments) {
  const Sought sought{className, pattern, arguments};
  std::vector<Candidate> candidates = CandidatesOf(methods, pattern.name);
  if (candidates.empty()) RefuseName(sought, methods);
  if (pattern.parameterTypes) {
    std::vector<Candidate> meant;
    for (const Candidate& candidate : candidates) {
      if (HasTypes(*candidate.method, *pattern.parameterTypes)) meant.push_back(candidate);
    }
    if (meant.empty()) {
      throw HostError(
          ExitStatus::Failed,
          "no " + sought.Name() + " has these parameter types\nthere are:" + List(candidates),
          pattern.place);
    }
    candidates = std::move(meant);
  }
  RefuseUnpassable(sought, candidates);
  for (Candidate& candidate : candidates) Rate(candidate, arguments);
  return PickBest(sought, candidates);
}

}  // namespace quenlatrix::host
