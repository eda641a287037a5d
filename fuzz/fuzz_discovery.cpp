#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "fuzz/jvm_host.h"
#include "fuzz/require.h"
#include "meta_object/handlers/bean/class_path.h"

// Beans are looked for in jars and folders of any content: what is found are names, each once and
// in order, and nothing else comes of it.
namespace {

namespace fs = std::filesystem;

struct File {
  std::string name;
  std::string bytes;
  std::uint32_t claimedSize;
};

void Append(std::string& zip, std::uint32_t number, int bytes) {
  for (; bytes > 0; --bytes, number >>= 8) zip += static_cast<char>(number & 0xFF);
}

// What the header before a file and the one in the directory at the end have in common.
void AppendHeader(std::string& zip, const File& file) {
  Append(zip, 20, 2);  // version needed
  Append(zip, 0, 2);   // flags
  Append(zip, 0, 2);   // stored
  Append(zip, 0, 4);   // time
  Append(zip, 0, 4);   // checksum, which nobody looks at
  Append(zip, static_cast<std::uint32_t>(file.bytes.size()), 4);
  Append(zip, file.claimedSize, 4);
  Append(zip, static_cast<std::uint32_t>(file.name.size()), 2);
  Append(zip, 0, 2);  // extra field
}

std::string MakeZip(const std::vector<File>& files) {
  std::string zip;
  std::string directory;
  for (const File& file : files) {
    const auto offset = static_cast<std::uint32_t>(zip.size());
    zip += "PK\3\4";
    AppendHeader(zip, file);
    zip += file.name + file.bytes;
    directory += "PK\1\2";
    Append(directory, 20, 2);  // version made by
    AppendHeader(directory, file);
    Append(directory, 0, 2 + 2 + 2 + 4);  // comment, disk, attributes
    Append(directory, offset, 4);
    directory += file.name;
  }
  const auto start = static_cast<std::uint32_t>(zip.size());
  zip += directory + "PK\5\6";
  Append(zip, 0, 4);
  Append(zip, static_cast<std::uint32_t>(files.size()), 2);
  Append(zip, static_cast<std::uint32_t>(files.size()), 2);
  Append(zip, static_cast<std::uint32_t>(directory.size()), 4);
  Append(zip, start, 4);
  Append(zip, 0, 2);
  return zip;
}

std::string RandomName(FuzzedDataProvider& data) {
  const std::string names[] = {"META-INF/MANIFEST.MF",  "beans/Point.class", "[I.class",
                               "java/lang/Point.class", "../x.class",        "a/b/C$D.class"};
  return data.ConsumeBool() ? data.PickValueInArray(names)
                            : data.ConsumeRandomLengthString(20) + ".class";
}

std::string RandomBytes(FuzzedDataProvider& data) {
  switch (data.ConsumeIntegralInRange(0, 2)) {
    case 0:
      return "Manifest-Version: 1.0\n\nName: " + data.ConsumeRandomLengthString(20) +
             "\nJava-Bean: True\n\n";
    case 1:
      return "\xCA\xFE\xBA\xBE" + std::string("\0\0\0\x34", 4) +
             data.ConsumeRandomLengthString(200);
    default:
      return data.ConsumeRandomLengthString(100);
  }
}

// Below the folder, and nowhere else.
void MakeTree(FuzzedDataProvider& data, const fs::path& folder) {
  std::vector<fs::path> folders = {folder};
  for (int i = data.ConsumeIntegralInRange(0, 12); i > 0; --i) {
    const fs::path place = folders[data.ConsumeIntegralInRange<std::size_t>(0, folders.size() - 1)];
    const fs::path made = place / std::to_string(i);
    switch (data.ConsumeIntegralInRange(0, 2)) {
      case 0:
        fs::create_directory(made);
        folders.push_back(made);
        break;
      case 1:
        fs::create_symlink(folders[data.ConsumeIntegralInRange<std::size_t>(0, folders.size() - 1)],
                           made);
        break;
      default:
        std::ofstream(made.string() + ".class") << RandomBytes(data);
    }
  }
}

void Discover(const fs::path& place) {
  RequireNothingLeft([&place] {
    std::list<char*> found;
    quenlatrix::meta_object::handlers::bean::GetBeanNames(GetEnv(), place.c_str(), found);
    std::vector<std::string> names;
    for (char* const name : found) names.emplace_back(std::unique_ptr<char[]>(name).get());
    Require(std::is_sorted(names.begin(), names.end()));
    Require(std::adjacent_find(names.begin(), names.end()) == names.end());
    for (const std::string& name : names) {
      Require(!name.empty() && name.find_first_of("/[;") == std::string::npos);
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  static const fs::path scratch = [] {
    std::string name = (fs::temp_directory_path() / "discoveryXXXXXX").string();
    Require(mkdtemp(name.data()) != nullptr);
    return fs::path(name);
  }();
  const fs::path place = scratch / "place";
  const int kind = data.ConsumeIntegralInRange(0, 3);
  if (kind == 0) {
    fs::create_directory(place);
    MakeTree(data, place);
  } else {
    std::vector<File> files;
    for (int i = data.ConsumeIntegralInRange(0, 6); kind != 1 && i > 0; --i) {
      File file{RandomName(data), RandomBytes(data), 0};
      file.claimedSize = data.ConsumeBool() ? static_cast<std::uint32_t>(file.bytes.size())
                                            : data.ConsumeIntegral<std::uint32_t>();
      files.push_back(std::move(file));
    }
    std::ofstream(place) << MakeZip(files)
                         << (kind == 1 ? data.ConsumeRemainingBytesAsString() : "");
  }
  Discover(place);
  fs::remove_all(scratch);
  fs::create_directory(scratch);
  return 0;
}
