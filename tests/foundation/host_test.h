// host_test.h - what the tests of the host classes share.
#pragma once

#include "qxv/host.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <ostream>

/// For GoogleTest's messages.
inline void PrintTo(const CString& text, std::ostream* out) {
  *out << testing::PrintToString(support::Text(text.GetString(), static_cast<std::size_t>(text.GetLength())));
}

namespace host_test {

/// Whether the action throws a pointer to this class; the exception is released.
template <class EXCEPTION, class Action>
bool Throws(Action action) {
  try {
    action();
  } catch (CException* e) {
    const bool expected = dynamic_cast<EXCEPTION*>(e) != nullptr;
    e->Delete();
    return expected;
  }
  return false;
}

/// All units of the text, zeros inside too.
inline support::Text Units(const CString& text) { return {text.GetString(), static_cast<std::size_t>(text.GetLength())}; }

}  // namespace host_test
