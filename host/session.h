#pragma once

#include <string>
#include <vector>

#include "host/argument.h"
#include "host/boxes.h"
#include "host/held_values.h"
#include "host/host_error.h"
#include "host/method_pattern.h"
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
};

// METHOD and ARGs of a call, read and not yet looked up.
struct CallRequest {
  MethodPattern method;
  std::vector<Argument> arguments;
};

// What commands and statements do: makes beans, calls them, describes them, keeps what they give
// under names. Every operation answers with a report, of a failure too; no exception leaves one.
// For one thread; gone before its Host is.
class Session {
 public:
  explicit Session(Host& host) : host(host), boxes(host), held(host) {}

  Report New(const std::string& name, const std::string& className);
  // Of a held name or, where nothing is held under it, of a class.
  Report Describe(const std::string& nameOrClass);
  Report CallHeld(const std::string& name, const CallRequest& request);
  // Keeps the result under `name`.
  Report Let(const std::string& name, const std::string& beanName, const CallRequest& request);
  // Makes a bean for this one call.
  Report CallClass(const std::string& className, const CallRequest& request);
  Report Release(const std::string& name);
  // Walks what is held under the name as a collection, without its first `skip` elements.
  Report Walk(const std::string& name, int skip);
  // Makes a bean for this one walk.
  Report WalkClass(const std::string& className, int skip);
  // What the collection held under the name says of its size.
  Report Size(const std::string& name);

 private:
  struct PreparedCall;

  // Runs an operation that fills the report, turns what it throws into the report's failure and
  // frees what nobody holds any more.
  template <typename Operation>
  Report Reported(Operation operation);
  BeanObject Make(const std::string& className, Report& report);
  const std::vector<MethodDescription>& MethodsOf(BeanObject& bean);
  void DescribeBean(BeanObject& bean, Report& report);
  void Call(BeanObject& bean, const CallRequest& request, const std::string& letName,
            Report& report);
  void Prepare(BeanObject& bean, const CallRequest& request, PreparedCall& call);
  void KeepResult(const std::string& letName, PreparedCall& call);
  void ReportCall(const std::string& letName, PreparedCall& call, Report& report);
  void WalkBean(BeanObject& bean, int skip, Report& report);
  void KeepArrays(const CallRequest& request, PreparedCall& call);
  ObjectView View(const meta_object::type::Object& value, const std::string& letName);

  Host& host;
  Boxes boxes;
  HeldValues held;
};

}  // namespace quenlatrix::host
