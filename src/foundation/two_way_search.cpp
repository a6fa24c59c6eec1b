// two_way_search.cpp - Crochemore and Perrin, "Two-way string-matching" (Journal of the ACM 38, 1991).
//
// The needle is cut at a critical place: right of it units are compared forwards, then left of it backwards. A mismatch on the
// right moves the needle by as many units as were compared, one on the left by the needle's period. For a periodic needle the
// prefix that is known to match after such a move is not compared again.

#include "foundation/two_way_search.h"

#include <algorithm>

namespace qxv {
namespace {

struct Suffix {
  std::size_t start;
  std::size_t period;
};

// The greatest suffix in the order of units, or in the opposite order, and its period.
Suffix GreatestSuffix(const QXChar* needle, std::size_t length, bool oppositeOrder) {
  std::size_t start = 0, rival = 1, offset = 0, period = 1;
  while (rival + offset < length) {
    const QXChar a = needle[start + offset];
    const QXChar b = needle[rival + offset];
    if (a == b) {
      ++offset;
      if (offset == period) {
        rival += period;
        offset = 0;
      }
    } else if ((b < a) != oppositeOrder) {  // the rival is smaller: the suffix goes on, with a longer period
      rival += offset + 1;
      offset = 0;
      period = rival - start;
    } else {
      start = rival;
      ++rival;
      offset = 0;
      period = 1;
    }
  }
  return {start, period};
}

}  // namespace

const QXChar* TwoWayFind(const QXChar* text, std::size_t length, const QXChar* needle, std::size_t needleLength) noexcept {
  if (needleLength > length) {
    return nullptr;
  }
  const Suffix up = GreatestSuffix(needle, needleLength, false);
  const Suffix down = GreatestSuffix(needle, needleLength, true);
  const Suffix cut = up.start > down.start ? up : down;
  const bool periodic = std::equal(needle, needle + cut.start, needle + cut.period);
  const std::size_t move = periodic ? cut.period : std::max(cut.start, needleLength - cut.start) + 1;
  std::size_t known = 0;  // units of the needle's start that are known to match here
  for (std::size_t at = 0; at <= length - needleLength;) {
    const QXChar* here = text + at;
    std::size_t i = std::max(cut.start, known);
    while (i < needleLength && needle[i] == here[i]) {
      ++i;
    }
    if (i < needleLength) {
      at += i - cut.start + 1;
      known = 0;
      continue;
    }
    i = cut.start;
    while (i > known && needle[i - 1] == here[i - 1]) {
      --i;
    }
    if (i <= known) {
      return here;
    }
    at += move;
    known = periodic ? needleLength - move : 0;
  }
  return nullptr;
}

}  // namespace qxv
