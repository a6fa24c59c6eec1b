// registry_win.cpp - the system's registry.

#include "os/registry.h"

#include "os/registry_name.h"
#include "os/win_api.h"

#include <cstring>
#include <limits>
#include <vector>

namespace qxv::os {
namespace {

ErrorCode CodeOf(LSTATUS status) noexcept { return static_cast<ErrorCode>(status); }

/// The caller's buffer as a call sees it. Of one byte it is a larger one here: Wine ends a text of one byte with a whole unit,
/// whatever room there is.
class Room {
 public:
  explicit Room(std::span<unsigned char> data) noexcept : m_data(data) {}

  unsigned char* Data() noexcept { return m_data.size() == 1 ? m_spare : m_data.data(); }
  DWORD Size() const noexcept {  // no value needs 4 GiB
    constexpr std::size_t kMost = std::numeric_limits<DWORD>::max();
    return static_cast<DWORD>(m_data.size() < kMost ? m_data.size() : kMost);
  }
  /// After a call that succeeded.
  void Deliver() noexcept {
    if (m_data.size() == 1) {
      m_data[0] = m_spare[0];
    }
  }

 private:
  std::span<unsigned char> m_data;
  unsigned char m_spare[2 * sizeof(QXChar)] = {};
};

bool IsText(std::uint32_t type) noexcept {
  return type == kRegistryText || type == kRegistryExpandText || type == kRegistryMultiText;
}

}  // namespace

ErrorCode OpenRegistryKey(HKEY parent, const QXChar* subkey, std::uint32_t access, HKEY& key) {
  if (const ErrorCode error = CheckSubkey(subkey); error != kErrorNone) {
    return error;
  }
  HKEY opened = nullptr;
  const LSTATUS status = ::RegOpenKeyExW(parent, subkey, 0 /*options*/, access, &opened);
  if (status == ERROR_SUCCESS) {
    key = opened;
  }
  return CodeOf(status);
}

ErrorCode CreateRegistryKey(HKEY parent, const QXChar* subkey, std::uint32_t access, HKEY& key, bool& created) {
  if (subkey == nullptr) {
    return kErrorBadKey;  // Wine would open the parent
  }
  if (const ErrorCode error = CheckSubkey(subkey); error != kErrorNone) {
    return error;
  }
  HKEY opened = nullptr;
  DWORD disposition = 0;
  const LSTATUS status = ::RegCreateKeyExW(parent, subkey, 0 /*reserved*/, nullptr /*class*/, REG_OPTION_NON_VOLATILE, access,
                                           nullptr /*security*/, &opened, &disposition);
  if (status == ERROR_SUCCESS) {
    key = opened;
    created = disposition == REG_CREATED_NEW_KEY && *subkey != 0;  // Wine calls the parent itself new
  }
  return CodeOf(status);
}

ErrorCode CloseRegistryKey(HKEY key) noexcept { return CodeOf(::RegCloseKey(key)); }

ErrorCode QueryRegistryValue(HKEY key, const QXChar* name, std::uint32_t& type, std::span<unsigned char> data,
                             std::uint32_t& size) {
  if (const ErrorCode error = CheckValueName(name); error != kErrorNone) {
    return error;
  }
  DWORD foundType = 0;
  Room room(data);
  DWORD foundSize = room.Size();
  const LSTATUS status = ::RegQueryValueExW(key, name, nullptr /*reserved*/, &foundType, room.Data(), &foundSize);
  if (status == ERROR_SUCCESS) {
    room.Deliver();
  }
  if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
    type = foundType;
    size = foundSize;
  }
  return CodeOf(status);
}

ErrorCode SetRegistryValue(HKEY key, const QXChar* name, std::uint32_t type, std::span<const unsigned char> data) {
  const ErrorCode error = CheckValueName(name);
  if (error != kErrorNone || data.size() > std::numeric_limits<DWORD>::max()) {
    return error != kErrorNone ? error : kErrorInvalidParameter;
  }
  const auto size = static_cast<DWORD>(data.size());
  if (!IsText(type)) {
    return CodeOf(::RegSetValueExW(key, name, 0 /*reserved*/, type, data.data(), size));
  }
  // The system looks behind a text and stores a terminator that happens to stand there: give it a copy with none.
  std::vector<unsigned char> copy(data.size() + sizeof(QXChar), 0xFF);
  if (!data.empty()) {
    std::memcpy(copy.data(), data.data(), data.size());
  }
  return CodeOf(::RegSetValueExW(key, name, 0 /*reserved*/, type, copy.data(), size));
}

ErrorCode DeleteRegistryValue(HKEY key, const QXChar* name) {
  const ErrorCode error = CheckValueName(name);
  return error != kErrorNone ? error : CodeOf(::RegDeleteValueW(key, name));
}

ErrorCode EnumRegistryValue(HKEY key, std::uint32_t index, std::span<QXChar> name, std::uint32_t& type,
                            std::span<unsigned char> data, std::uint32_t& size) {
  auto nameRoom = static_cast<DWORD>(name.size());
  DWORD foundType = 0;
  Room room(data);
  DWORD foundSize = room.Size();
  const LSTATUS status =
      ::RegEnumValueW(key, index, name.data(), &nameRoom, nullptr /*reserved*/, &foundType, room.Data(), &foundSize);
  if (status == ERROR_SUCCESS) {
    room.Deliver();
    type = foundType;
    size = foundSize;
  }
  return CodeOf(status);
}

ErrorCode EnumRegistryKey(HKEY key, std::uint32_t index, std::span<QXChar> name) {
  auto room = static_cast<DWORD>(name.size());
  return CodeOf(::RegEnumKeyExW(key, index, name.data(), &room, nullptr /*reserved*/, nullptr /*class*/, nullptr /*class room*/,
                                nullptr /*time*/));
}

}  // namespace qxv::os
