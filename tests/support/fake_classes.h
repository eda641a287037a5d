#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

// The few Java classes of the fake VM (fake_jni.cpp), with what the shared handler's test asks
// them.
namespace quenlatrix::test::fake {

struct Object;
using ObjectPtr = std::shared_ptr<Object>;

// An argument or a result.
struct Value {
  ObjectPtr object = nullptr;
  jint number = 0;
};
using Values = std::vector<Value>;

struct Method {
  std::string name;
  std::string signature;
  Value (*body)(Object& self, const Values& arguments);
};

struct Class {
  std::string name;
  const Class* super;
  std::vector<Method> methods;
};

// Each class uses what it needs.
struct Object {
  const Class* cls;
  std::string text = {};                 // a string's, a throwable's, a list's
  std::vector<ObjectPtr> elements = {};  // an array's, an iterator's
  std::vector<jint> numbers = {};        // an int array's
  std::size_t position = 0;              // an iterator's
  const Class* described = nullptr;      // what an object of Class stands for
};

// What a body throws.
struct Thrown {
  std::string text;
};

// An object of the class of that name in slash form, without its constructor run.
ObjectPtr NewObject(const std::string& className);
ObjectPtr NewString(const std::string& text);
// The class's own object; null when there is none of that name.
ObjectPtr FindClass(const std::string& name);
// The method of a class or of those it derives from; null when there is none.
const Method* FindMethod(const Class* cls, const std::string& name, const std::string& signature);

}  // namespace quenlatrix::test::fake
