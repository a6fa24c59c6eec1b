// registry.h - keys and values below the registry's roots. On Linux they stand in a store of ours (docs/porting.md).
//
// Every function gives 0 or a Windows error number (os/error.h): 2 for a key or value that does not exist, 5 for what the access
// asked for at opening does not allow or the store refuses, 6 for a handle that is not open, 87 for a name that no key or value
// can have (registry_name.h), 234 for a buffer too small, 259 behind the last item, 1018 for a key deleted meanwhile, 1015 for a
// store that is damaged. On failure the outputs stay as they were unless said otherwise.
// Names are compared ignoring case. Any thread may call. Lack of memory throws std::bad_alloc.
#pragma once

#include "os/error.h"
#include "qxv/types.h"

#include <cstdint>
#include <span>
#include <utility>

namespace qxv::os {

/// Types of a value, as Windows numbers them. Any other number may be stored and comes back.
inline constexpr std::uint32_t kRegistryNone = 0;
inline constexpr std::uint32_t kRegistryText = 1;        // REG_SZ: units, the terminator only if it was stored
inline constexpr std::uint32_t kRegistryExpandText = 2;  // REG_EXPAND_SZ
inline constexpr std::uint32_t kRegistryBinary = 3;
inline constexpr std::uint32_t kRegistryNumber = 4;     // REG_DWORD: 4 bytes, little-endian
inline constexpr std::uint32_t kRegistryMultiText = 7;  // REG_MULTI_SZ: texts with a zero unit each, then one more
inline constexpr std::uint32_t kRegistryNumber64 = 11;  // REG_QWORD

/// What a key is opened for; the sum of these.
inline constexpr std::uint32_t kRegistryQueryValues = 0x1;
inline constexpr std::uint32_t kRegistrySetValues = 0x2;
inline constexpr std::uint32_t kRegistryListKeys = 0x8;
inline constexpr std::uint32_t kRegistryRead = 0x20019;        // query values, list keys
inline constexpr std::uint32_t kRegistryFullAccess = 0xF003F;  // 5 where the store may not be written

/// Opens a key below an open one or a root (HKEY_LOCAL_MACHINE, ...). A null or empty subkey opens the parent itself. Components
/// are separated by backslashes; 161 for one in front.
[[nodiscard]] ErrorCode OpenRegistryKey(HKEY parent, const QXChar* subkey, std::uint32_t access, HKEY& key);

/// Opens a key, or creates it with all that is missing above it. 1010 for a null subkey; an empty one opens the parent itself.
/// @param created whether the key did not exist before
[[nodiscard]] ErrorCode CreateRegistryKey(HKEY parent, const QXChar* subkey, std::uint32_t access, HKEY& key, bool& created);

/// Closes. A root is never closed, and gives 0.
ErrorCode CloseRegistryKey(HKEY key) noexcept;

/// Reads a value; a null or empty name is the key's unnamed one.
/// @param type of the value; given also beside 234
/// @param data receives the bytes; a span without address asks for type and size only. Its content beside 234 is undefined;
///             behind the bytes of a text a zero unit may be written when there is room
/// @param size the bytes of the value; with 234 the bytes that it needs
[[nodiscard]] ErrorCode QueryRegistryValue(HKEY key, const QXChar* name, std::uint32_t& type, std::span<unsigned char> data,
                                           std::uint32_t& size);

/// Creates or replaces a value, which is stored with exactly these bytes: no terminator is added to a text.
[[nodiscard]] ErrorCode SetRegistryValue(HKEY key, const QXChar* name, std::uint32_t type, std::span<const unsigned char> data);

[[nodiscard]] ErrorCode DeleteRegistryValue(HKEY key, const QXChar* name);

/// The value at an index from 0 on, 259 behind the last one. The order is the system's; it holds while nothing changes.
/// Beside 234 the outputs are undefined.
/// @param name receives the name and its terminator; 234 when it has no room
/// @param data as QueryRegistryValue; size and type too
[[nodiscard]] ErrorCode EnumRegistryValue(HKEY key, std::uint32_t index, std::span<QXChar> name, std::uint32_t& type,
                                          std::span<unsigned char> data, std::uint32_t& size);

/// The name of the subkey at an index from 0 on, with its terminator; 259 behind the last one, 234 when the span has no room.
[[nodiscard]] ErrorCode EnumRegistryKey(HKEY key, std::uint32_t index, std::span<QXChar> name);

/// Owns an open key.
class RegistryKey {
 public:
  RegistryKey() noexcept = default;
  explicit RegistryKey(HKEY adopted) noexcept : m_key(adopted) {}
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;
  RegistryKey(RegistryKey&& other) noexcept : m_key(other.Release()) {}
  RegistryKey& operator=(RegistryKey&& other) noexcept {
    if (this != &other) {
      (void)Close();
      m_key = other.Release();
    }
    return *this;
  }
  ~RegistryKey() { (void)Close(); }

  /// Closes what was open, then opens.
  [[nodiscard]] ErrorCode Open(HKEY parent, const QXChar* subkey, std::uint32_t access) {
    (void)Close();
    return OpenRegistryKey(parent, subkey, access, m_key);
  }

  [[nodiscard]] ErrorCode Create(HKEY parent, const QXChar* subkey, std::uint32_t access, bool& created) {
    (void)Close();
    return CreateRegistryKey(parent, subkey, access, m_key, created);
  }

  /// 0 too when nothing is open.
  ErrorCode Close() noexcept { return IsOpen() ? CloseRegistryKey(Release()) : kErrorNone; }

  bool IsOpen() const noexcept { return m_key != nullptr; }
  HKEY Key() const noexcept { return m_key; }

  /// Gives the key away without closing it.
  HKEY Release() noexcept { return std::exchange(m_key, nullptr); }

 private:
  HKEY m_key = nullptr;
};

}  // namespace qxv::os
