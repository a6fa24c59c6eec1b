// profile.cpp - one value from an initialisation file.

#include "qxv/profile.h"

#include "os/profile.h"

#include <cstdint>

namespace {

constexpr std::size_t kValueRoom = 1024;  // with the terminator
constexpr std::int32_t kNoValue = static_cast<std::int32_t>(0xF3F2F1F0);

bool IsAnyEmpty(const CQXString& file, const CQXString& section, const CQXString& key) noexcept {
  return file.GetLength() == 0 || section.GetLength() == 0 || key.GetLength() == 0;
}

}  // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): the frozen interface takes its texts by value

int QXVGetPrivateStringValue(CQXString file, CQXString section, CQXString key, CQXString& value) {
  if (IsAnyEmpty(file, section, key)) {
    return 0;
  }
  QXChar buffer[kValueRoom] = {};
  if (qxv::os::ReadProfileText(file, section, key, buffer) == 0) {
    return 0;
  }
  value = buffer;
  return 1;
}

// KEPT: the value that means failure is not the one given for a missing key, so what is missing reads as 0 with success, and
//   a file that holds that value reads as failure. Applications go by the value. Pinned by
//   ProfileKept.AMissingKeyIsZeroAndSuccess and ProfileKept.TheMarkOfFailureInTheFileIsFailure.
int QXVGetPrivateIntValue(CQXString file, CQXString section, CQXString key, int& value) {
  if (IsAnyEmpty(file, section, key)) {
    return 0;
  }
  value = qxv::os::ReadProfileInteger(file, section, key);
  return value != kNoValue ? 1 : 0;
}

// NOLINTEND(performance-unnecessary-value-param)
