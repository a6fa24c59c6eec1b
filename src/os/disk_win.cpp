// disk_win.cpp - drives as the system has them.

#include "os/disk.h"

#include "os/win_api.h"

#include <algorithm>
#include <cstdint>

namespace qxv::os {
namespace {

struct Root {
  explicit Root(QXChar letter) : name{letter, L':', L'\\', 0} {}
  wchar_t name[4];
};

/// A drive without a disk in it is an answer, not a question to the user.
class QuietErrors {
 public:
  QuietErrors() noexcept { (void)::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &m_before); }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() { (void)::SetThreadErrorMode(m_before, nullptr); }

 private:
  DWORD m_before = 0;
};

std::int64_t Signed(ULONGLONG bytes) { return static_cast<std::int64_t>(std::min<ULONGLONG>(bytes, INT64_MAX)); }

}  // namespace

ErrorCode GetDiskSpace(QXChar letter, DiskSpace& space) noexcept {
  space = {};
  const QuietErrors quiet;
  ULARGE_INTEGER total;
  ULARGE_INTEGER free;
  if (!::GetDiskFreeSpaceExW(Root(letter).name, nullptr /*available to the user*/, &total, &free)) {
    return LastError();
  }
  space = {Signed(total.QuadPart), Signed(free.QuadPart)};
  return kErrorNone;
}

DriveKind GetDriveKind(QXChar letter) noexcept { return static_cast<DriveKind>(::GetDriveTypeW(Root(letter).name)); }

}  // namespace qxv::os
