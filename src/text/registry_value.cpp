// registry_value.cpp - values by their bytes.

#include "text/registry_value.h"

namespace qxv {
namespace {

// Numbers and units lie in memory as they are stored, little-endian.
os::ErrorCode StoreImage(HKEY key, const QXChar* name, std::uint32_t type, const void* image, std::size_t size) {
  return os::SetRegistryValue(key, name, type, {static_cast<const unsigned char*>(image), size});
}

}  // namespace

os::ErrorCode QueryValue(HKEY key, const QXChar* name, RegistryValue& value) {
  return os::QueryRegistryValue(key, name, value.type, {} /*no data*/, value.size);
}

os::ErrorCode ReadValue(HKEY key, const QXChar* name, RegistryValue& value) {
  value.units = std::make_unique<QXChar[]>(value.size / sizeof(QXChar) + 1);
  auto* bytes = reinterpret_cast<unsigned char*>(value.units.get());
  return os::QueryRegistryValue(key, name, value.type, {bytes, value.size}, value.size);
}

os::ErrorCode StoreText(HKEY key, const QXChar* name, const QXChar* text, int length) {
  return StoreImage(key, name, os::kRegistryText, text, static_cast<std::size_t>(length) * sizeof(QXChar));
}

os::ErrorCode StoreNumber(HKEY key, const QXChar* name, std::uint32_t number) {
  return StoreImage(key, name, os::kRegistryNumber, &number, sizeof number);
}

}  // namespace qxv
