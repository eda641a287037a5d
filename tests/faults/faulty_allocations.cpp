#include "tests/faults/faulty_allocations.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <new>
#include <span>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "tests/support/patched_jni.h"

namespace quenlatrix::test {

namespace {

// The blocks of watched images; for what is freed when the program ends, too.
std::unordered_set<void*>& Blocks() {
  static auto& blocks = *new std::unordered_set<void*>;
  return blocks;
}

// The set's own memory is freed through this program's jump table as well.
bool isNoting = false;

void* NoteMade(void* block) {
  isNoting = true;
  Blocks().insert(block);
  isNoting = false;
  return block;
}

void NoteFreed(void* block) {
  if (std::exchange(isNoting, true)) return;
  Blocks().erase(block);
  isNoting = false;
}

bool IsTurn(const char* name) { return FaultyAllocations::AreCounted() && FaultyJni::IsTurn(name); }

// What stands in for the functions. This program's jump table leads to the allocating ones
// themselves.

void* New(std::size_t size) {
  return IsTurn("operator new") ? throw std::bad_alloc() : NoteMade(::operator new(size));
}

void* NewArray(std::size_t size) {
  return IsTurn("operator new[]") ? throw std::bad_alloc() : NoteMade(::operator new[](size));
}

void* Malloc(std::size_t size) { return IsTurn("malloc") ? nullptr : NoteMade(std::malloc(size)); }

void* Calloc(std::size_t count, std::size_t size) {
  return IsTurn("calloc") ? nullptr : NoteMade(std::calloc(count, size));
}

void* Realloc(void* old, std::size_t size) {
  if (IsTurn("realloc")) return nullptr;
  NoteFreed(old);
  return NoteMade(std::realloc(old, size));
}

constexpr char kFree[] = "free";
constexpr char kDelete[] = "_ZdlPv";
constexpr char kDeleteSized[] = "_ZdlPvm";
constexpr char kDeleteArray[] = "_ZdaPv";

template <const char* name, class... Size>
void Free(void* block, Size... size) {
  static auto* const real = reinterpret_cast<void (*)(void*, Size...)>(dlsym(RTLD_DEFAULT, name));
  NoteFreed(block);
  real(block, size...);
}

template <class Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

using StandIns = std::map<std::string_view, void*>;

const StandIns kAllocating = {
    {"_Znwm", Address(New)},     {"_Znam", Address(NewArray)},  {"malloc", Address(Malloc)},
    {"calloc", Address(Calloc)}, {"realloc", Address(Realloc)},
};
const StandIns kFreeing = {
    {kFree, Address(Free<kFree>)},
    {kDelete, Address(Free<kDelete>)},
    {kDeleteSized, Address(Free<kDeleteSized, std::size_t>)},
    {kDeleteArray, Address(Free<kDeleteArray>)},
};

// The jump table may be read-only once it is filled.
void Write(ElfW(Addr) place, void* function) {
  const ElfW(Addr) page = place & ~static_cast<ElfW(Addr)>(sysconf(_SC_PAGESIZE) - 1);
  auto* const start = reinterpret_cast<void*>(page);
  ASSERT_EQ(mprotect(start, place + sizeof function - page, PROT_READ | PROT_WRITE), 0);
  *reinterpret_cast<void**>(place) = function;
}

// Has the image, a handle of dlopen, call the stand-ins; gives the number of places changed.
std::size_t Redirect(void* image, const StandIns& standIns) {
  link_map* map = nullptr;
  EXPECT_EQ(dlinfo(image, RTLD_DI_LINKMAP, &map), 0);
  std::map<ElfW(Sxword), ElfW(Xword)> dynamic;
  for (const ElfW(Dyn)* d = map->l_ld; d->d_tag != DT_NULL; ++d) dynamic[d->d_tag] = d->d_un.d_val;
  const auto* const symbols = reinterpret_cast<const ElfW(Sym)*>(dynamic[DT_SYMTAB]);
  const auto* const names = reinterpret_cast<const char*>(dynamic[DT_STRTAB]);
  std::size_t changed = 0;
  for (const auto& [table, size] : {std::pair(DT_JMPREL, DT_PLTRELSZ), {DT_RELA, DT_RELASZ}}) {
    const auto* const first = reinterpret_cast<const ElfW(Rela)*>(dynamic[table]);
    for (const ElfW(Rela) & place : std::span(first, dynamic[size] / sizeof *first)) {
      const auto found = standIns.find(names + symbols[ELF64_R_SYM(place.r_info)].st_name);
      if (found == standIns.end()) continue;
      Write(map->l_addr + place.r_offset, found->second);
      ++changed;
    }
  }
  return changed;
}

}  // namespace

void FaultyAllocations::Watch(void* image) {
  static const std::size_t own = Redirect(dlopen(nullptr, RTLD_NOW), kFreeing);
  EXPECT_GT(own, 0U);
  EXPECT_GT(Redirect(image, kFreeing), 0U);
  EXPECT_EQ(Redirect(image, kAllocating), kAllocating.size()) << "each name has one place";
}

std::size_t FaultyAllocations::Live() { return Blocks().size(); }

}  // namespace quenlatrix::test
