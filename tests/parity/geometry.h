// geometry.h - what the families of plane and space have in common.
#pragma once

#include "parity/trial.h"

namespace parity {

/// Arithmetic and relations first, whose results are the same to the last bit; then angles, which take the C library's functions.
inline void RunGeometry(Trial& t, void (*arithmetic)(Trial&), void (*relations)(Trial&), void (*angles)(Trial&)) {
  for (int i = 0; i < 10000; ++i) {
    arithmetic(t);
    relations(t);
  }
  t.Take(Precision::TenDigits);
  for (int i = 0; i < 3000; ++i) {
    angles(t);
  }
}

}  // namespace parity
