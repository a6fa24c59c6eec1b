// profile_win.cpp - initialisation files through the system's service.

#include "os/profile.h"

#include "os/profile_name.h"
#include "os/win_api.h"

namespace qxv::os {

std::size_t ReadProfileText(const QXChar* file, const QXChar* section, const QXChar* key, std::span<QXChar> out) {
  out[0] = 0;
  if (IsImpossibleProfileName(file)) {
    return 0;
  }
  return ::GetPrivateProfileStringW(section, key, L"" /*default*/, out.data(), static_cast<DWORD>(out.size()), file);
}

std::int32_t ReadProfileInteger(const QXChar* file, const QXChar* section, const QXChar* key) {
  return IsImpossibleProfileName(file) ? 0
                                       : static_cast<std::int32_t>(::GetPrivateProfileIntW(section, key, 0 /*default*/, file));
}

}  // namespace qxv::os
