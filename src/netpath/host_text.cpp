// host_text.cpp - the parts of a network path, and how texts are matched.

#include "netpath/host_text.h"

#include "foundation/host_string_case.h"

#include <algorithm>

namespace qxv {
namespace {

using os::Text;
using os::TextView;

constexpr std::size_t kShortestAddress = 7;  // 1.2.3.4
constexpr int kMostInAComponent = 255;
constexpr int kSeparators = 3;
constexpr std::size_t kHostAt = 2;  // behind the two backslashes
constexpr TextView kLocalPrefix = QXT("LOCAL\\");

constexpr bool IsDigit(QXChar unit) { return unit >= QXT('0') && unit <= QXT('9'); }
constexpr bool IsBlank(QXChar unit) { return unit == QXT(' ') || unit == QXT('\t'); }

}  // namespace

bool EqualsFolded(TextView a, TextView b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](QXChar x, QXChar y) { return LowerLatin1(x) == LowerLatin1(y); });
}

Text LowerCase(TextView text) {
  Text lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), LowerLatin1);
  return lower;
}

Text UpperCase(TextView text) {
  Text upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), UpperLatin1);
  return upper;
}

bool IsNetworkForm(TextView path) noexcept {
  // KEPT: two backslashes count wherever they stand, so a local path such as D:\a\\b is taken for a network path and comes back
  //   unchanged (callers tell the forms apart by this alone). Pinned by NetPathTextKept.TwoBackslashesAnywhereMakeANetworkPath.
  return path.find(QXT("\\\\")) != TextView::npos || EqualsFolded(path.substr(0, kLocalPrefix.size()), kLocalPrefix);
}

bool IsDottedAddress(TextView host) noexcept {
  if (host.size() < kShortestAddress || !IsDigit(host.back())) {
    return false;
  }
  // KEPT: components are tested by value only, so leading zeros and empty components pass (lenient on purpose). Pinned by
  //   NetPathTextKept.LeadingZerosAndEmptyComponentsPass.
  int separators = 0;
  int value = 0;
  int weight = 1;  // of the next digit to the left
  for (std::size_t i = host.size(); i-- > 0;) {
    if (IsDigit(host[i])) {
      value = std::min(value + (host[i] - QXT('0')) * weight, kMostInAComponent + 1);
      weight = std::min(weight * 10, 1000);
    } else if (host[i] == QXT('.') && value <= kMostInAComponent) {
      ++separators;
      value = 0;
      weight = 1;
    } else {
      return false;
    }
  }
  return value <= kMostInAComponent && separators == kSeparators;
}

bool IsLoopbackAddress(TextView host) noexcept {
  if (!IsDottedAddress(host)) {
    return false;
  }
  TextView first = host.substr(0, host.find(QXT('.')));
  first.remove_prefix(std::min(first.find_first_not_of(QXT('0')), first.size()));
  return first == QXT("127");
}

TextView HostOf(TextView path) noexcept {
  const TextView rest = path.substr(std::min(kHostAt, path.size()));
  return rest.substr(0, rest.find(QXT('\\')));
}

TextView BehindHost(TextView path) noexcept { return path.substr(std::min(kHostAt, path.size()) + HostOf(path).size()); }

bool MatchPrefix(TextView path, TextView field, TextView& rest) noexcept {
  if (field.empty() || path.size() < field.size() || !EqualsFolded(path.substr(0, field.size()), field)) {
    return false;
  }
  const TextView behind = path.substr(field.size());
  if (!behind.empty() && behind.front() != QXT('\\')) {
    return false;  // \\srv\share2 does not lie in \\srv\share
  }
  rest = behind;
  return true;
}

TextView WithoutBlanks(TextView text) noexcept {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace qxv
