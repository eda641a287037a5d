#include "host/overload_choice.h"

#include <algorithm>

#include "host/host_error.h"
#include "host/parameter_fit.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

struct Candidate {
  const MethodDescription* method;
  std::vector<int> ranks;
  bool fits = false;
  std::string why;  // why it doesn't fit, or can't be called though it does
};

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
    if (ToUtf8(method.name) == name) candidates.push_back({&method, {}, false, {}});
  }
  return candidates;
}

std::string List(const std::vector<Candidate>& candidates) {
  std::string text;
  for (const Candidate& candidate : candidates) {
    text += "\n  " + ToSourceForm(*candidate.method);
    if (!candidate.why.empty()) text += ": " + candidate.why;
  }
  return text;
}

void Rate(Candidate& candidate, const std::vector<Argument>& arguments) {
  const std::vector<ParameterDescription>& parameters = candidate.method->parameters;
  if (parameters.size() != arguments.size()) {
    candidate.why =
        "takes " + Count(parameters.size()) + ", found " + std::to_string(arguments.size());
    return;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Fit fit = FitArgument(arguments[i], JavaTypeOf(parameters[i].type));
    if (!fit.why.empty()) candidate.why = "argument " + std::to_string(i + 1) + ": " + fit.why;
    if (fit.IsNone()) return;
    candidate.ranks.push_back(fit.rank);
  }
  candidate.fits = true;
}

bool IsBetter(const Candidate& a, const Candidate& b) {
  bool better = false;
  for (std::size_t i = 0; i < a.ranks.size(); ++i) {
    if (a.ranks[i] > b.ranks[i]) return false;
    better = better || a.ranks[i] < b.ranks[i];
  }
  return better;
}

[[noreturn]] void RefuseAll(const std::string& called, const std::vector<Candidate>& candidates) {
  if (candidates.size() == 1) {
    const Candidate& only = candidates.front();
    throw HostError(ExitStatus::Failed, called + " can't be called like this; " +
                                            ToSourceForm(*only.method) + ": " + only.why);
  }
  throw HostError(ExitStatus::Failed,
                  "no " + called + " fits these arguments; there are:" + List(candidates));
}

const MethodDescription& PickBest(const std::string& called,
                                  const std::vector<Candidate>& candidates) {
  std::vector<Candidate> fitting;
  for (const Candidate& candidate : candidates) {
    if (candidate.fits) fitting.push_back(candidate);
  }
  if (fitting.empty()) RefuseAll(called, candidates);
  std::vector<Candidate> best;
  for (const Candidate& candidate : fitting) {
    const bool beaten = std::any_of(fitting.begin(), fitting.end(), [&](const Candidate& other) {
      return IsBetter(other, candidate);
    });
    if (!beaten) best.push_back(candidate);
  }
  if (best.size() > 1) {
    throw HostError(ExitStatus::Failed,
                    "several " + called +
                        " fit these arguments equally well; give METHOD with the "
                        "parameter types of one:" +
                        List(best));
  }
  if (!best.front().why.empty()) RefuseAll(called, best);
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
  for (const Argument& argument : arguments) RefuseUnpassable(argument);
  const std::string called = className + "." + pattern.name;
  std::vector<Candidate> candidates = CandidatesOf(methods, pattern.name);
  if (candidates.empty()) {
    throw HostError(ExitStatus::Failed, "class " + className + " has no method \"" + pattern.name +
                                            "\"; \"describe " + className +
                                            "\" lists those it has");
  }
  if (pattern.parameterTypes) {
    std::vector<Candidate> meant;
    for (const Candidate& candidate : candidates) {
      if (HasTypes(*candidate.method, *pattern.parameterTypes)) meant.push_back(candidate);
    }
    if (meant.empty()) {
      throw HostError(ExitStatus::Failed,
                      "no " + called + " has these parameter types; there are:" + List(candidates));
    }
    candidates = std::move(meant);
  }
  for (Candidate& candidate : candidates) Rate(candidate, arguments);
  return PickBest(called, candidates);
}

}  // namespace quenlatrix::host
