// The examples of docs/formats.md, each read by the library and compared with what the page says.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
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

namespace quenlatrix::meta_object {
namespace {

namespace fs = std::filesystem;

// The lines of the page's block of that kind.
std::vector<std::string> Block(const std::string& kind) {
  std::ifstream page(FORMATS_PAGE);
  std::vector<std::string> lines;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
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
  const std::pair<TypeDesc::Key, const char*> names[] = {{TypeDesc::Key::Int, "Int"},
                                                         {TypeDesc::Key::Real, "Real"},
                                                         {TypeDesc::Key::Object, "Object"},
                                                         {TypeDesc::Key::Enum, "Enum"},
                                                         {TypeDesc::Key::Struct, "Struct"}};
  std::string text = "key ";
  for (const auto& [key, name] : names) {
    if (key == desc.key) text += name;
  }
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
  CheckExamples("property-record", [](const std::string& text) {
    const std::regex form("name (\\w+), code (\\d+), value (\\w+), number (\\d+), flag (\\d)");
    std::smatch parts;
    if (!std::regex_match(text, parts, form)) return "not understood: " + text;
    Property property(parts[1].str().c_str(), parts[3].str().c_str(), parts[5] == "1");
    property.code = static_cast<std::uint32_t>(std::stoul(parts[2]));
    property.number = std::stol(parts[4]);
    void* buffer = nullptr;
    int size = 0;
    property.Serialize(&buffer, &size);
    const std::unique_ptr<char[]> record(static_cast<char*>(buffer));
    // Grouped as the fields are: a presence byte, units of four bytes, a number of eight.
    std::string hex;
    const int groups[] = {1, 4, 4, 4, 1, 4, 4, 4, 8, 1, 2};
    int at = 0;
    for (const int length : groups) {
      if (!hex.empty()) hex += ' ';
      for (const int end = at + length; at < end && at < size; ++at) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(record[at]));
        hex += digits;
      }
    }
    return at == size ? hex : "a record of " + std::to_string(size) + " bytes";
  });
}

class FormatFiles : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = fs::temp_directory_path() / "formats.XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    directory = pattern;
  }
  void TearDown() override { fs::remove_all(directory); }

  std::vector<std::string> Lines(const fs::path& file) const {
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }

  fs::path directory;
};

TEST_F(FormatFiles, ConfigurationFilesAreWrittenAsThePageSays) {
  const fs::path path = directory / "handlers.ini";
  {
    std::ofstream stream(path);
    for (const std::string& line : Block("configuration")) stream << line << '\n';
  }
  config_file::ConfigFile file(path.c_str(), "Handlers");
  ASSERT_TRUE(file.parseConfigFile());
  ASSERT_TRUE(file.writeFile(false, false));
  EXPECT_EQ(Lines(path), Block("configuration-written"));
}

TEST_F(FormatFiles, EventsAreLoggedAsThePageSays) {
  const std::string log = directory / "events.log";
  ASSERT_TRUE(OpenSystemEventLog(log.c_str(), nullptr));
  std::size_t reported = 0;
  CheckExamples("event", [&](const std::string& text) {
    const std::size_t colon = text.find(": ");
    const bool isError = text.substr(0, colon) == "CONFIG ERROR";
    EXPECT_TRUE(isError || text.substr(0, colon) == "START INFO");
    EXPECT_TRUE(ReportSystemEvent(isError ? EVT_ERROR : EVT_INFO, isError ? CAT_CONFIG : CAT_START,
                                  "%s", text.substr(colon + 2).c_str()));
    const std::vector<std::string> lines = Lines(log);
    EXPECT_EQ(lines.size(), ++reported);
    // The process and the time are those of the page.
    const std::regex prefix(R"(^\[ *\d+\] \d{4}-\d\d-\d\d \d\d:\d\d:\d\d )");
    return std::regex_replace(lines.back(), prefix, "[ 4711] 2026-03-05 14:07:09 ");
  });
  EXPECT_TRUE(CloseSystemEventLog());
}

}  // namespace
}  // namespace quenlatrix::meta_object
