#include "host/boxes.h"

#include <algorithm>

#include "host/host.h"
#include "host/host_error.h"
#include "host/outgoing_text.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

[[noreturn]] void Fail(const std::string& why) {
  throw HostError(ExitStatus::NothingToRunOn, "a literal for an object parameter needs the class " +
                                                  std::string(Host::kBoxingBean) +
                                                  " of beanhost.jar, which " + why +
                                                  "; put beanhost.jar beside the program beanhost");
}

}  // namespace

BeanObject& Boxes::GetBean() {
  if (!bean) {
    Host::Creation creation = host.Create(Host::MakeIdentity(Host::kBoxingBean));
    if (!creation.object) Fail("can't be made: " + creation.text);
    bean = std::move(creation.object);
  }
  return *bean;
}

// "java.lang.Integer" is made by boxInteger.
const MethodDescription& Boxes::FindMethod(const std::string& boxClass) {
  const std::wstring name = L"box" + Utf8ToWide(boxClass.substr(boxClass.rfind('.') + 1));
  const std::vector<MethodDescription>* methods = GetBean().Methods();
  if (methods == nullptr) Fail("can't be described");
  const auto method = std::find_if(methods->begin(), methods->end(), [&](const auto& each) {
    return each.name.compare(name.c_str(), 0) == 0;
  });
  if (method == methods->end()) Fail("has no method for " + boxClass);
  return *method;
}

BeanObject Boxes::Box(const std::string& boxClass, const std::string& text) {
  const MethodDescription& method = FindMethod(boxClass);
  std::vector<ValuePtr> parameters;
  parameters.emplace_back(new OutgoingText(method.parameters.at(0).type, text, false));
  const CallOutcome outcome = GetBean().Call(method, parameters);
  std::optional<BeanObject> object;
  if (outcome.result) object = BeanObject::FromValue(host, *outcome.result);
  if (!object) Fail("made no " + boxClass + " of " + text);
  return std::move(*object);
}

}  // namespace quenlatrix::host
