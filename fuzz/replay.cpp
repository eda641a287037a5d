#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

// The program around a fuzz target where there is no fuzzer: runs it once on each file of the
// folders that it is given. What the target finds wrong ends the process.

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);
extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);

int main(int argc, char** argv) {
  if (LLVMFuzzerInitialize != nullptr) LLVMFuzzerInitialize(&argc, &argv);
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      // Shown before it runs: the last one is at fault.
      std::fprintf(stderr, "%s\n", entry.path().c_str());
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
      ++count;
    }
  }
  std::fprintf(stderr, "%d files\n", count);
  return count > 0 ? 0 : 1;
}
