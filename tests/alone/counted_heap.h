#pragma once

// Counts what the whole program takes from the heap. For one source of a program, and not for the thread
// sanitizer, which has operators of its own.

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace quillon::test {

inline std::atomic<size_t> allocated = 0;  // bytes

inline void* counted(size_t size) {
  allocated += size;
  if (void* const memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}

}  // namespace quillon::test

// Not inlined: a compiler that sees malloc behind new takes free behind delete for a mistake.
[[gnu::noinline]] void* operator new(size_t size) {
  return quillon::test::counted(size);
}
[[gnu::noinline]] void* operator new[](size_t size) {
  return quillon::test::counted(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, size_t) noexcept {
  std::free(memory);
}
