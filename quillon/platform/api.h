#pragma once

// What every public header begins with, by itself or through another.

#if __cplusplus < 202002L
#error quillon needs C++20: compile with -std=c++20 or newer
#endif

// QUILLON_API marks what an application may link; everything else stays hidden in the shared library, and so
// does what QUILLON_LOCAL takes out of it: the private parts of such a class, where they are defined.
#if defined(_WIN32)
#if defined(QUILLON_STATIC)
#define QUILLON_API
#elif defined(QUILLON_BUILDING)
#define QUILLON_API __declspec(dllexport)
#else
#define QUILLON_API __declspec(dllimport)
#endif
#else
#define QUILLON_API __attribute__((visibility("default")))
#endif

#if defined(_WIN32)
#define QUILLON_LOCAL
#else
#define QUILLON_LOCAL __attribute__((visibility("hidden")))
#endif
