// c_runtime.h - the wide-character services of the C run-time, for QXChar, alike on both systems.
#pragma once

#include "qxv/types.h"

namespace qxv::os {

/// Units before the first zero; 0 for a null pointer.
std::size_t TextLength(const QXChar* text) noexcept;

/// The same, looking at no more than limit units.
std::size_t TextLength(const QXChar* text, std::size_t limit) noexcept;

}  // namespace qxv::os
