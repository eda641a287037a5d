#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

// A thread-specific key of the operating system, widened to 64 bits.
using OSTLSDATA = std::uint64_t;

// One thread-local slot: every thread sees a value of its own, null until it stores one. Unlike a
// thread_local object it runs nothing at a thread's end, so the library that owns it can unload.
//
// Threads: reading and storing from any thread; creating and deleting the key is for one thread,
// while no other uses the slot.
class TlsSlot {
 public:
  // Creates the key. When the system has none left, the slot is invalid.
  TlsSlot();

  // Deletes the key.
  ~TlsSlot();

  TlsSlot(const TlsSlot&) = delete;
  TlsSlot& operator=(const TlsSlot&) = delete;

  // Creates the key of a slot that has none; false, and an invalid slot, when that fails.
  bool InitTLSData();

  // Deletes the key; the slot is then invalid. Without effect on an invalid slot.
  void CleanUpTLSData();

  bool IsValidTLSData() const;

  // The calling thread's value; null when it stored none or the slot is invalid.
  void* GetTlsValue() const;

  // Stores the calling thread's value; false when the slot is invalid or the system has no memory.
  bool SetTlsValue(void* value);

 private:
  OSTLSDATA data;
};

// A TlsSlot that holds a T: what fits into a pointer and is copied byte by byte. A thread that
// stored nothing reads T's zero value. Threads: as for TlsSlot.
template <typename T>
class TlsValue : public TlsSlot {
  static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= sizeof(void*),
                "a slot holds what fits into a pointer");

 public:
  T Get() const {
    void* const stored = GetTlsValue();
    T value;
    std::memcpy(&value, &stored, sizeof value);
    return value;
  }

  // False when nothing could be stored.
  bool Set(T value) {
    void* stored = nullptr;
    std::memcpy(&stored, &value, sizeof value);
    return SetTlsValue(stored);
  }
};
