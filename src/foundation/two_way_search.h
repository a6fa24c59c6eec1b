// two_way_search.h - search whose time is linear for every text and needle, in constant space.
#pragma once

#include "qxv/types.h"

#include <cstddef>

namespace qxv {

/// The first place in length units of text where needleLength (at least 1) units equal needle; null when there is none.
[[nodiscard]] const QXChar* TwoWayFind(const QXChar* text, std::size_t length, const QXChar* needle,
                                       std::size_t needleLength) noexcept;

}  // namespace qxv
