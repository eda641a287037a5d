#include "tests/support/fake_classes.h"

#include <algorithm>
#include <map>

namespace quenlatrix::test::fake {

namespace {

Value Nothing(Object&, const Values&) { return {}; }
template <jint number>
Value Number(Object&, const Values&) {
  return {nullptr, number};
}
Value ToString(Object& self, const Values&) { return {NewString(self.text)}; }
Value FillRow(Object&, const Values& arguments) {
  arguments[2].object->elements.at(0) = NewString("equals");
  arguments[3].object->elements.at(0) = NewString("boolean");
  arguments[4].object->numbers.at(0) = 1;
  return {nullptr, 1};
}
Value FillParameter(Object&, const Values& arguments) {
  arguments[4].object->elements.at(0) = NewString("java.lang.Object");
  return {nullptr, 1};
}

const Class kObject = {
    "java/lang/Object",
    nullptr,
    {{"<init>", "()V", Nothing},
     {"toString", "()Ljava/lang/String;", ToString},
     {"equals", "(Ljava/lang/Object;)Z", [](Object& self, const Values& other) -> Value {
        return {nullptr, other[0].object->cls == self.cls ? 1 : 0};
      }}}};
const Class kClass = {"java/lang/Class", &kObject, {}};
const Class kReflected = {
    "java/lang/reflect/Constructor", &kObject, {{"getModifiers", "()I", Number<1>}}};
const Class kThrowable = {"java/lang/Throwable", &kObject, {}};
const Class kStrings = {"[Ljava/lang/String;", &kObject, {}};
const Class kNumbers = {"[I", &kObject, {}};
const Class kString = {"java/lang/String",
                       &kObject,
                       {{"<init>", "(Ljava/lang/String;)V",
                         [](Object& self, const Values& arguments) -> Value {
                           self.text = arguments[0].object->text;
                           return {};
                         }},
                        {"<init>", "()V", Nothing}}};
const Class kIterator = {
    "java/util/Iterator",
    &kObject,
    {{"hasNext", "()Z",
      [](Object& self, const Values&) -> Value {
        return {nullptr, self.position < self.elements.size() ? 1 : 0};
      }},
     {"next", "()Ljava/lang/Object;",
      [](Object& self, const Values&) -> Value { return {self.elements.at(self.position++)}; }}}};
const Class kThreeStrings = {
    "beans/ThreeStrings",
    &kObject,
    {{"<init>", "()V",
      [](Object& self, const Values&) -> Value {
        self.text = "[one, two, three]";
        return {};
      }},
     {"size", "()I", Number<3>},
     {"get", "(I)Ljava/lang/Object;",
      [](Object&, const Values& arguments) -> Value {
        if (arguments[0].number != 0) throw Thrown{"java.lang.IndexOutOfBoundsException"};
        return {NewString("one")};
      }},
     {"iterator", "()Ljava/util/Iterator;", [](Object&, const Values&) -> Value {
        const ObjectPtr iterator = NewObject("java/util/Iterator");
        for (const char* text : {"one", "two", "three"})
          iterator->elements.push_back(NewString(text));
        return {iterator};
      }}}};
const Class kPoint = {"beans/Point", &kObject, {}};
// One property and one method, whatever the class.
const Class kBeanHandler = {
    "BeanHandler",
    &kObject,
    {{"enumJavaBeans", "(Ljava/lang/String;)Z", Nothing},
     {"getBeanCount", "()I", Nothing},
     {"getBeanName", "(I)Ljava/lang/String;", Nothing},
     {"getBeanIndex", "(Ljava/lang/String;)I", Nothing},
     {"getPropertyCount", "(Ljava/lang/Class;)I", Number<1>},
     {"getPropertyInfo", "(Ljava/lang/Class;I[Ljava/lang/String;[Ljava/lang/String;[I)I", FillRow},
     {"getMethodCount", "(Ljava/lang/Class;)I", Number<1>},
     {"getMethodInfo", "(Ljava/lang/Class;I[Ljava/lang/String;[Ljava/lang/String;[I)I", FillRow},
     {"getParameterCount", "(Ljava/lang/Class;I)I", Number<1>},
     {"getParameterInfo", "(Ljava/lang/Class;II[Ljava/lang/String;[Ljava/lang/String;)I",
      FillParameter},
     {"getClassName", "(Ljava/lang/Class;)Ljava/lang/String;",
      [](Object&, const Values& arguments) -> Value {
        std::string name = arguments[0].object->described->name;
        std::replace(name.begin(), name.end(), '/', '.');
        return {NewString(name)};
      }}}};

const std::map<std::string, ObjectPtr>& Classes() {
  static const auto made = [] {
    std::map<std::string, ObjectPtr> classes;
    for (const Class* cls : {&kObject, &kClass, &kReflected, &kThrowable, &kStrings, &kNumbers,
                             &kString, &kIterator, &kThreeStrings, &kPoint, &kBeanHandler})
      classes[cls->name] = std::make_shared<Object>(Object{.cls = &kClass, .described = cls});
    return classes;
  }();
  return made;
}

}  // namespace

const Method* FindMethod(const Class* cls, const std::string& name, const std::string& signature) {
  for (; cls != nullptr; cls = name == "<init>" ? nullptr : cls->super) {
    for (const Method& method : cls->methods) {
      if (method.name == name && method.signature == signature) return &method;
    }
  }
  // Classes without a constructor here have the plain one.
  return name + signature == "<init>()V" ? &kObject.methods.front() : nullptr;
}

ObjectPtr NewObject(const std::string& className) {
  return std::make_shared<Object>(Object{.cls = FindClass(className)->described});
}

ObjectPtr NewString(const std::string& text) {
  ObjectPtr string = NewObject("java/lang/String");
  string->text = text;
  return string;
}

ObjectPtr FindClass(const std::string& name) {
  const auto found = Classes().find(name);
  return found == Classes().end() ? nullptr : found->second;
}

}  // namespace quenlatrix::test::fake
