#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/argument.h"
#include "host/boxes.h"
#include "host/held_values.h"
#include "host/host_error.h"
#include "host/method_pattern.h"
#include "host/progress_line.h"
#include "host/terminal.h"
#include "host/value_json.h"

namespace quenlatrix::host {

class Host;

// What a command or statement has to say: one document, and the same for people.
struct Report {
  Document document = Document::object();
  std::string text;  // lines; empty when there is nothing to show
  // A failure: its text is not empty then, and stands in the document as "error".
  ExitStatus status = ExitStatus::Done;
  std::string error;

  void Fail(ExitStatus newStatus, const std::string& newError);
  // With the place in the statement where the reason stands, if it stands somewhere.
  void Fail(const HostError& error, std::string_view statement);
};

// METHOD and ARGs of a call, read and not yet looked up.
struct CallRequest {
  MethodPattern method;
  std::vector<Argument> arguments;
};

// What a statement does, with the names that it shares with others: makes beans, calls them,
// describes them, keeps what they give under names. Every operation answers with a report, of a
// failure too; no exception leaves one. For one thread, one operation at a time; gone before its
// Host and its names are.
class Session {
 public:
  Session(Host& host, HeldValues& names, const TextStyle& style = {});

  // The statement whose words the next operations take, for their messages. Must stay.
  void SetStatement(std::string_view line) { statement = line; }
  // Whatever the operation under way comes to, it changes no name any more. For any thread.
  void Abandon() { loan.Abandon(); }
  // The names that the operation under way uses. For any thread.
  std::vector<std::string> GetUsedNames() const { return loan.GetNames(); }
  // Of the walk under way; stays when the session goes. For any thread.
  ElementCount GetElements() const { return elements; }

  Report New(const Word& name, const Word& className);
  // Of a held name or, where nothing is held under it, of a class.
  Report Describe(const Word& nameOrClass);
  Report CallHeld(const Word& name, const CallRequest& request);
  // Keeps the result under `name`.
  Report Let(const Word& name, const Word& beanName, const CallRequest& request);
  // Makes a bean for this one call.
  Report CallClass(const Word& className, const CallRequest& request);
  Report Release(const Word& name);
  // Walks what is held under the name as a collection, without its first `skip` elements.
  Report Walk(const Word& name, int skip);
  // Makes a bean for this one walk.
  Report WalkClass(const Word& className, int skip);
  // What the collection held under the name says of its size.
  Report Size(const Word& name);

 private:
  struct PreparedCall;

  // Runs an operation that fills the report, turns what it throws into the report's failure and
  // frees what nobody holds any more.
  template <typename Operation>
  Report Reported(Operation operation);
  BeanObject Make(const Word& className, Report& report);
  BeanObject& GetObject(const Word& name);
  const std::vector<MethodDescription>& MethodsOf(BeanObject& bean);
  void DescribeBean(BeanObject& bean, Report& report);
  void Call(BeanObject& bean, const CallRequest& request, const Word& letName, Report& report);
  void Prepare(BeanObject& bean, const CallRequest& request, PreparedCall& call);
  void KeepResult(const Word& letName, PreparedCall& call);
  void ReportCall(const std::string& letName, PreparedCall& call, Report& report);
  void WalkBean(BeanObject& bean, int skip, Report& report);
  void KeepArrays(const CallRequest& request, PreparedCall& call);
  ObjectView View(const meta_object::type::Object& value, const std::string& letName);

  Host& host;
  Boxes boxes;
  HeldValues& names;
  HeldValues::Loan loan;
  const TextStyle style;
  std::string_view statement;
  std::shared_ptr<std::atomic<std::size_t>> elements;
};

}  // namespace quenlatrix::host
