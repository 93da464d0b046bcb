#pragma once

// Lets the allocations of a program fail in turn: those of operator new, and those of malloc and realloc,
// which the linker sends here (--wrap, of free too). For one source of a program that has one thread; see
// counted_heap.h.

#include "tests/alone/counted_heap.h"

#include <gtest/gtest.h>
#include <string>

#include <quillon/sections/error.h>
#include <quillon/xml/attributes.h>

namespace quillon::test {

inline size_t until_failure = 0;    // allocations up to and with the one that fails; 0 for none
inline bool memory_is_out = false;  // all after it fail too
inline size_t failures = 0;         // allocations that were refused
inline size_t live_blocks = 0;

// Whether the operation whose outcome is checked said that it failed.
inline bool has_failed = false;

inline bool is_refused() {
  if (until_failure == 0) return false;
  if (until_failure > 1) {
    --until_failure;
    return false;
  }
  if (!memory_is_out) until_failure = 0;
  ++failures;
  return true;
}

}  // namespace quillon::test

extern "C" {

void* __real_malloc(size_t size);
void* __real_realloc(void* memory, size_t size);
void __real_free(void* memory);
void* __wrap_malloc(size_t size);
void* __wrap_realloc(void* memory, size_t size);
void __wrap_free(void* memory);

void* __wrap_malloc(size_t size) {
  if (quillon::test::is_refused()) return nullptr;
  void* const out = __real_malloc(size);
  if (out) ++quillon::test::live_blocks;
  return out;
}

void* __wrap_realloc(void* memory, size_t size) {
  if (quillon::test::is_refused()) return nullptr;
  if (!memory) ++quillon::test::live_blocks;
  return __real_realloc(memory, size);
}

void __wrap_free(void* memory) {
  if (memory) --quillon::test::live_blocks;
  __real_free(memory);
}

}  // extern "C"

namespace quillon::test {

// What an operation says when it runs out of memory; "" if it says nothing.
template <class Operation>
std::string said_by(Operation operation) {
  try {
    operation();
  } catch (const std::bad_alloc&) {
    return "no memory";
  } catch (const _com_error& failure) {
    return failure.Error() == E_OUTOFMEMORY ? "no memory" : "another COM failure";
  } catch (const error& failure) {
    return std::string("error: ") + failure.what();
  }
  return "";
}

// Calls `operation` on what `make` gives, anew each time, with the first, second, ... allocation failing
// until none fails, and `check` on the same each time. Gives the number of failures. What is out of memory
// has some again at the next allocation, unless it `stays_out`.
template <class Make, class Operation, class Check>
size_t fail_each(Make make, Operation operation, Check check, bool stays_out = false) {
  {
    // What is made once and stays is made here.
    auto subject = make();
    operation(subject);
    has_failed = false;
    failures = 0;
    check(subject);
  }
  for (size_t n = 1;; ++n) {
    const size_t before = live_blocks;
    bool fell = false;
    {
      auto subject = make();
      failures = 0;
      memory_is_out = stays_out;
      until_failure = n;
      const std::string said = said_by([&] {
        struct Disarmed {
          ~Disarmed() { until_failure = 0; }
        } const disarmed;
        operation(subject);
      });
      fell = failures > 0;
      // What says nothing has to be right all the same, as if nothing had failed.
      has_failed = !said.empty();
      EXPECT_EQ(said, has_failed ? "no memory" : "") << "allocation " << n;
      EXPECT_TRUE(fell || !has_failed);
      check(subject);
    }
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << "at the failure of allocation " << n;
      return n;
    }
    EXPECT_EQ(live_blocks, before) << "after the failure of allocation " << n;
    if (!fell) return n - 1;
  }
}

}  // namespace quillon::test
