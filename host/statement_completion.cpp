#include "host/statement_completion.h"

#include <algorithm>
#include <sstream>

#include "host/argument.h"
#include "host/method_pattern.h"

namespace quenlatrix::host {

namespace {

constexpr std::string_view kBlanks = " \t";

std::vector<std::string> WordsOf(const std::string& form) {
  std::vector<std::string> words;
  std::istringstream stream(form);
  for (std::string word; stream >> word;) {
    std::erase_if(word, [](char c) { return c == '[' || c == ']' || c == '.'; });
    words.push_back(word);
  }
  return words;
}

// Of the candidates those that the typed text begins.
Completion Matching(std::string_view line, std::size_t from, std::vector<std::string> candidates) {
  const std::string_view typed = line.substr(from);
  std::erase_if(candidates, [&](const std::string& each) { return !each.starts_with(typed); });
  std::sort(candidates.begin(), candidates.end());
  candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
  return {from, std::move(candidates)};
}

Completion CompleteMethod(std::string_view line, std::size_t from,
                          std::vector<std::string> methods) {
  const bool hasTypes = line.find('(', from) != std::string_view::npos;
  for (std::string& method : methods) {
    if (!hasTypes) method.resize(method.find('('));
  }
  return Matching(line, from, std::move(methods));
}

// Only a name behind "@" is completed.
Completion CompleteArgument(std::string_view line, std::size_t from,
                            std::vector<std::string> names) {
  const std::vector<std::string_view> arguments = SplitArguments(line.substr(from));
  if (arguments.empty() || arguments.back().data() + arguments.back().size() != line.end()) {
    return {};
  }
  if (!arguments.back().starts_with('@')) return {};
  for (std::string& name : names) name.insert(0, "@");
  return Matching(line, static_cast<std::size_t>(arguments.back().data() - line.data()),
                  std::move(names));
}

// Where the word that stands at `from` and is one of the form's kind ends.
std::size_t EndOf(std::string_view line, std::size_t from, const std::string& kind) {
  const std::string_view rest = line.substr(from);
  if (kind == "METHOD") return from + MethodPatternLength(rest);
  if (kind == "=" && rest.starts_with('=')) return from + 1;
  const std::string_view ends = kind == "NAME" ? " \t=" : kBlanks;
  return from + std::min(rest.find_first_of(ends), rest.size());
}

Completion CompleteWord(std::string_view line, std::size_t from, const std::string& kind,
                        const std::string& bean, const CompletionSource& source) {
  if (kind == "METHOD") return CompleteMethod(line, from, source.methodsOf(bean));
  if (kind == "NAME") return Matching(line, from, source.heldNames());
  if (kind == "CLASS") return Matching(line, from, source.classNames());
  if (kind == "NAME|CLASS") {
    std::vector<std::string> names = source.heldNames();
    for (std::string& name : source.classNames()) names.push_back(std::move(name));
    return Matching(line, from, std::move(names));
  }
  const bool isItself = kind == "=" || (kind[0] >= 'a' && kind[0] <= 'z');
  return isItself ? Matching(line, from, {kind}) : Completion();
}

}  // namespace

Completion CompleteStatement(std::string_view beforeCursor, const std::vector<std::string>& forms,
                             const CompletionSource& source) {
  const std::string_view line = beforeCursor;
  std::size_t at = std::min(line.find_first_not_of(kBlanks), line.size());
  const std::size_t end = line.find_first_of(kBlanks, at);
  std::vector<std::string> keywords;
  std::vector<std::string> kinds;
  for (const std::string& form : forms) {
    std::vector<std::string> words = WordsOf(form);
    keywords.push_back(words.front());
    if (line.substr(at, end - at) == words.front()) kinds = std::move(words);
  }
  if (end == std::string_view::npos) return Matching(line, at, std::move(keywords));
  at = end;
  std::string bean;
  for (std::size_t i = 1; i < kinds.size(); ++i) {
    at = std::min(line.find_first_not_of(kBlanks, at), line.size());
    if (kinds[i] == "ARG") return CompleteArgument(line, at, source.heldNames());
    const std::size_t wordEnd = EndOf(line, at, kinds[i]);
    if (wordEnd == line.size()) return CompleteWord(line, at, kinds[i], bean, source);
    if (kinds[i] == "NAME") bean = line.substr(at, wordEnd - at);
    at = wordEnd;
  }
  return {};
}

}  // namespace quenlatrix::host
