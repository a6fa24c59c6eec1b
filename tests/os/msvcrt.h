// msvcrt.h - the Microsoft run-time as judge, reached by name: what the compiler's headers declare may be mingw's own C99
// version.
#pragma once

#include "qxv/types.h"
#include "support/wine.h"

#include <gtest/gtest.h>

namespace msvcrt {

template <typename Function>
Function* Named(const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"msvcrt.dll"), name)));
}

}  // namespace msvcrt

// The recorded texts are Wine's; other versions of the run-time differ in corners (the names of infinities, for one).
#define QXV_NEEDS_WINE()                                                                                    \
  if (!support::IsWine()) {                                                                                 \
    GTEST_SKIP() << "compares with the run-time of Wine 8; the system's own differs in documented corners"; \
  }                                                                                                         \
  static_assert(true)
