// The examples of docs/formats.md, each read by the library and compared with what the page says.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "config_file/config_file.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/identity.h"
#include "meta_object/info/property.h"
#include "meta_object/type_desc.h"
#include "os/event_log.h"
#include "tests/support/files.h"

namespace quenlatrix::meta_object {
namespace {

// The lines of the page's block of that kind.
std::vector<std::string> Block(const std::string& kind) {
  std::vector<std::string> lines;
  bool inside = false;
  for (const std::string& line : LinesOf(ReadFile(FORMATS_PAGE))) {
    if (inside && line == "```") return lines;
    if (inside) lines.push_back(line);
    if (line == "```" + kind) inside = true;
  }
  ADD_FAILURE() << "no whole block of kind " << kind;
  return lines;
}

// Every example "input => output" of a block.
void CheckExamples(const std::string& kind,
                   const std::function<std::string(const std::string&)>& describe) {
  const std::vector<std::string> lines = Block(kind);
  EXPECT_FALSE(lines.empty());
  for (const std::string& line : lines) {
    const std::size_t arrow = line.find(" => ");
    ASSERT_NE(arrow, std::string::npos) << line;
    EXPECT_EQ(describe(line.substr(0, arrow)), line.substr(arrow + 4)) << line;
  }
}

std::string Narrow(const WideString& text) {
  const char* narrow = text.getCharPtr();
  return narrow == nullptr ? "" : narrow;
}

std::string Named(const char* name, const WideString& text) {
  const std::string narrow = Narrow(text);
  return narrow.empty() ? "" : std::string(", ") + name + " " + narrow;
}

std::string DescribeType(const TypeDesc& desc) {
  if (desc.arrayInfo) {
    std::string text = "array";
    for (const auto& dimension : desc.arrayInfo->dimensions) {
      text +=
          " " + std::to_string(dimension.lowerBound) + "," + std::to_string(dimension.elementCount);
    }
    return text;
  }
  WideString plain;
  TypeDesc(desc.key, TypeDesc::RefType::ByValue, false).Serialize(plain);
  const std::string keyword = Narrow(plain);
  std::string text = "key " + keyword.substr(3, keyword.find('{') - 3);
  if (desc.refType == TypeDesc::RefType::ByRef) text += " by reference";
  if (desc.enumInfo) {
    for (const auto& item : desc.enumInfo->items) {
      text += " " + Narrow(item.name) + "=" + std::to_string(item.value);
    }
  }
  if (desc.structInfo) {
    text += " " + Narrow(desc.structInfo->structName) + " of " +
            std::to_string(desc.structInfo->members.size());
  }
  return text;
}

TEST(Formats, IdentitiesReadAsThePageSays) {
  CheckExamples("identity", [](const std::string& text) {
    const Identity identity(text.c_str());
    if (!identity.IsValid()) return std::string("not valid");
    std::string parts = "handler " + identity.handler + ", data " + identity.handlerData;
    for (const auto& attribute : identity.attributes) {
      parts += ", " + attribute->name + ": " + attribute->value;
    }
    return parts;
  });
}

TEST(Formats, MethodIdentifiersReadAsThePageSays) {
  namespace bean = handlers::bean;
  CheckExamples("method-identifier", [](const std::string& text) {
    WideString name;
    MethodType type = MethodType::Invoke;
    unsigned long index = 0;
    bean::ParseMethodID(text.c_str(), name, type, true);
    const char* kind = type == MethodType::Get ? "Get" : type == MethodType::Set ? "Set" : "Invoke";
    const bool hasIndex = bean::ReadMethodIndex(text.c_str(), index);
    return kind + (" " + Narrow(name)) + (hasIndex ? " " + std::to_string(index) : "");
  });
}

TEST(Formats, DescriptorTextsReadAndWriteAsThePageSays) {
  CheckExamples("descriptor", [](const std::string& text) {
    TypeDesc desc;
    desc.Deserialize(text.c_str());
    WideString written;
    desc.Serialize(written);
    EXPECT_EQ(Narrow(written), text);
    return DescribeType(desc) + Named("type name", desc.typeName) +
           Named("display name", desc.displayName) + Named("detail", desc.detail);
  });
}

TEST(Formats, PropertyRecordsHaveTheBytesThatThePageSays) {
  const std::regex form(
      "name (\\w+), code (\\d+), value (\\w+), number (\\d+), flag (\\d) => ([0-9a-f ]+)");
  for (const std::string& text : Block("property-record")) {
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(text, parts, form)) << text;
    Property property(parts[1].str().c_str(), parts[3].str().c_str(), parts[5] == "1");
    property.code = static_cast<std::uint32_t>(std::stoul(parts[2]));
    property.number = std::stol(parts[4]);
    void* buffer = nullptr;
    int size = 0;
    property.Serialize(&buffer, &size);
    const std::unique_ptr<char[]> record(static_cast<char*>(buffer));
    std::string hex;
    for (int i = 0; i < size; ++i) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(record[i]));
      hex += digits;
    }
    std::string shown = parts[6];
    std::erase(shown, ' ');
    EXPECT_EQ(hex, shown) << text;
  }
}

TEST(Formats, ConfigurationFilesAreWrittenAsThePageSays) {
  std::string shown;
  for (const std::string& line : Block("configuration")) shown += line + '\n';
  const TemporaryFile stored(shown);
  config_file::ConfigFile file(stored.path.c_str(), "Handlers");
  ASSERT_TRUE(file.parseConfigFile());
  ASSERT_TRUE(file.writeFile(false, false));
  EXPECT_EQ(LinesOf(stored.Read()), Block("configuration-written"));
}

TEST(Formats, EventsAreLoggedAsThePageSays) {
  const TemporaryFile log;
  ASSERT_TRUE(OpenSystemEventLog(log.path.c_str(), nullptr));
  std::size_t reported = 0;
  CheckExamples("event", [&](const std::string& text) {
    const std::size_t colon = text.find(": ");
    const bool isError = text.substr(0, colon) == "CONFIG ERROR";
    EXPECT_TRUE(isError || text.substr(0, colon) == "START INFO");
    EXPECT_TRUE(ReportSystemEvent(isError ? EVT_ERROR : EVT_INFO, isError ? CAT_CONFIG : CAT_START,
                                  "%s", text.substr(colon + 2).c_str()));
    const std::vector<std::string> lines = LinesOf(log.Read());
    EXPECT_EQ(lines.size(), ++reported);
    // The process and the time are those of the page.
    const std::regex prefix(R"(^\[ *\d+\] \d{4}-\d\d-\d\d \d\d:\d\d:\d\d )");
    return std::regex_replace(lines.back(), prefix, "[ 4711] 2026-03-05 14:07:09 ");
  });
  EXPECT_TRUE(CloseSystemEventLog());
}

}  // namespace
}  // namespace quenlatrix::meta_object
