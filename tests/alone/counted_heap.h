#pragma once

// Counts what the whole program takes from the heap. For one source of a program, and not for the thread
// sanitizer, which has operators of its own.

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace quillon::test {

inline std::atomic<size_t> allocated = 0;    // bytes, in all
inline std::atomic<size_t> allocations = 0;  // how many
inline std::atomic<size_t> live = 0;         // bytes that are not released
inline std::atomic<size_t> peak = 0;         // the most that `live` has been

// In front of each block is its size.
constexpr size_t kHead = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

inline void* counted(size_t size) {
  allocated += size;
  ++allocations;
  auto* const block = static_cast<unsigned char*>(std::malloc(kHead + size));
  if (!block) throw std::bad_alloc();
  *reinterpret_cast<size_t*>(block) = size;
  const size_t now = live += size;
  if (now > peak) peak = now;
  return block + kHead;
}

inline void released(void* memory) {
  if (!memory) return;
  unsigned char* const block = static_cast<unsigned char*>(memory) - kHead;
  live -= *reinterpret_cast<size_t*>(block);
  std::free(block);
}

}  // namespace quillon::test

// Not inlined: a compiler that sees malloc inside new takes free inside delete for a mistake.
[[gnu::noinline]] void* operator new(size_t size) {
  return quillon::test::counted(size);
}
[[gnu::noinline]] void* operator new[](size_t size) {
  return quillon::test::counted(size);
}
// That of temporary buffers; a sanitizer's own would not count.
[[gnu::noinline]] void* operator new(size_t size, const std::nothrow_t&) noexcept {
  try {
    return quillon::test::counted(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
[[gnu::noinline]] void operator delete(void* memory, const std::nothrow_t&) noexcept {
  quillon::test::released(memory);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  quillon::test::released(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
  quillon::test::released(memory);
}
[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept {
  quillon::test::released(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, size_t) noexcept {
  quillon::test::released(memory);
}
