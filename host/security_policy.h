#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quenlatrix::meta_object::info {
struct SecurityInfo;
}

namespace quenlatrix::host {

// Which bean classes may be created. Patterns are globs ("*" any text, "?" one character) matched
// against the whole class name; "/" is read as "." in both. A class is allowed when no deny pattern
// matches and there is no allow pattern, or one that matches. Unchanging after construction, so any
// thread may ask.
class SecurityPolicy {
 public:
  // `alwaysAllowed`: one class that no pattern can refuse (the host's own helper); may be empty.
  SecurityPolicy(std::vector<std::string> allow, std::vector<std::string> deny,
                 std::string alwaysAllowed);

  bool Allows(std::string_view className) const;
  // Why the class is refused, for a message; empty when it is allowed.
  std::string WhyRefused(std::string_view className) const;

  // The plug-in's security callback takes no context, so one policy serves the whole process.
  // Null installs none: everything is then allowed. The policy is lent until another is installed.
  static void Install(const SecurityPolicy* policy);
  // The callback itself: the installed policy's answer for the record's class name.
  static bool Check(meta_object::info::SecurityInfo* record);

 private:
  std::vector<std::string> allow;
  std::vector<std::string> deny;
  std::string alwaysAllowed;
};

// Whether `text` matches the glob as a whole. Takes time linear in text × pattern at worst.
bool MatchesGlob(std::string_view pattern, std::string_view text);

}  // namespace quenlatrix::host
