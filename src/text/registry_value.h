// registry_value.h - a value's bytes and text, for the class and the free functions.
#pragma once

#include "os/error.h"
#include "os/registry.h"
#include "qxv/types.h"

#include <cstdint>
#include <memory>
#include <span>

namespace qxv {

/// A value as it was found.
struct RegistryValue {
  std::uint32_t type = os::kRegistryNone;
  std::uint32_t size = 0;
  /// size bytes, with room for one unit behind the whole ones. Null until the bytes are read.
  std::unique_ptr<QXChar[]> units;

  std::span<const unsigned char> Bytes() const noexcept { return {reinterpret_cast<const unsigned char*>(units.get()), size}; }
  /// The bytes as a text, ended here: few values are stored with a terminator. Half a unit at the end goes.
  const QXChar* EndText() noexcept {
    units[size / sizeof(QXChar)] = 0;
    return units.get();
  }
};

/// Asks for type and size.
[[nodiscard]] os::ErrorCode QueryValue(HKEY key, const QXChar* name, RegistryValue& value);

/// Reads as many bytes as QueryValue told, or fewer when the value has shrunk; 234 when it has grown. The type is asked for anew.
[[nodiscard]] os::ErrorCode ReadValue(HKEY key, const QXChar* name, RegistryValue& value);

/// Stores characters, without a terminator.
[[nodiscard]] os::ErrorCode StoreText(HKEY key, const QXChar* name, const QXChar* text, int length);

[[nodiscard]] os::ErrorCode StoreNumber(HKEY key, const QXChar* name, std::uint32_t number);

}  // namespace qxv
