// host_string_case.h - case of the Latin-1 letters: A-Z, and 0xC0-0xDE without 0xD7 beside 0xE0-0xFE without 0xF7.
#pragma once

#include "qxv/types.h"

namespace qxv {

constexpr QXChar LowerLatin1(QXChar unit) noexcept {
  const bool upper = (unit >= 'A' && unit <= 'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
  return upper ? static_cast<QXChar>(unit + 0x20) : unit;
}

constexpr QXChar UpperLatin1(QXChar unit) noexcept {
  const bool lower = (unit >= 'a' && unit <= 'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7);
  return lower ? static_cast<QXChar>(unit - 0x20) : unit;
}

}  // namespace qxv
