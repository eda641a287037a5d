#include "host/description_text.h"

#include <algorithm>
#include <string_view>

#include "host/method_pattern.h"
#include "host/text_table.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

using meta_object::MethodType;

struct Property {
  std::string name;
  std::string type;
  bool isIndexed = false;
  std::string accessors;
};

bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }

// By the rule of JavaBeans: Name is name, URL stays URL.
std::string PropertyName(std::string_view accessor) {
  std::string name(accessor.substr(accessor.starts_with("is") ? 2 : 3));
  const bool staysUpper = name.size() > 1 && IsUpper(name[0]) && IsUpper(name[1]);
  if (!name.empty() && IsUpper(name[0]) && !staysUpper) {
    name[0] = static_cast<char>(name[0] - 'A' + 'a');
  }
  return name;
}

// The accessor as a property of its own.
Property PropertyOf(const MethodDescription& accessor) {
  const bool isReader = accessor.kind == MethodType::Get;
  const std::string name = ToUtf8(accessor.name);
  Property property;
  property.name = PropertyName(name);
  property.type =
      ToSourceForm(JavaTypeOf(isReader ? accessor.returnType : accessor.parameters.back().type));
  property.isIndexed = accessor.parameters.size() > (isReader ? 0U : 1U);
  property.accessors = name + (property.isIndexed ? "(int)" : "");
  return property;
}

bool AreOne(const Property& a, const Property& b) {
  return a.name == b.name && a.type == b.type && a.isIndexed == b.isIndexed;
}

bool IsAccessor(const MethodDescription& method) {
  return method.kind == MethodType::Get ||
         (method.kind == MethodType::Set && !method.parameters.empty());
}

std::vector<Property> PropertiesOf(const std::vector<MethodDescription>& methods) {
  std::vector<Property> properties;
  for (const MethodDescription& method : methods) {
    if (!IsAccessor(method)) continue;
    const Property one = PropertyOf(method);
    const auto known = std::find_if(properties.begin(), properties.end(),
                                    [&](const Property& other) { return AreOne(one, other); });
    if (known == properties.end()) {
      properties.push_back(one);
    } else if (method.kind == MethodType::Get) {
      known->accessors.insert(0, one.accessors + ", ");
    } else {
      known->accessors += ", " + one.accessors;
    }
  }
  return properties;
}

std::string Signature(const MethodDescription& method) {
  std::string text = ToUtf8(method.name) + "(";
  for (const ParameterDescription& parameter : method.parameters) {
    if (text.back() != '(') text += ", ";
    text += ToSourceForm(JavaTypeOf(parameter.type)) + " " + ToUtf8(parameter.name);
  }
  return text + ")";
}

std::string Counted(int count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

std::string DescriptionText(const std::string& className, const ObjectDescription& description,
                            const std::vector<MethodDescription>& methods, const TextStyle& style) {
  TextTable properties({"PROPERTY", "TYPE", "ACCESSORS"});
  for (const Property& property : PropertiesOf(methods)) {
    properties.Add({property.name, property.type, property.accessors});
  }
  TextTable others({"RETURNS", "METHOD"});
  for (const MethodDescription& method : methods) {
    if (IsAccessor(method)) continue;
    others.Add({ToSourceForm(JavaTypeOf(method.returnType)), Signature(method)});
  }
  std::string text = style.Heading(ToSourceForm(className)) + ": " +
                     Counted(description.attributeMethods, "accessor") + ", " +
                     Counted(description.regularMethods, "other method") + "\n";
  if (!properties.IsEmpty()) text += "\n" + properties.ToText(style, 0);
  if (!others.IsEmpty()) text += "\n" + others.ToText(style, 1);
  return text;
}

}  // namespace quenlatrix::host
