// registry_functions.cpp - one value of one key at a time.

#include "os/registry.h"
#include "qxv/registry.h"
#include "text/registry_value.h"

#include <cstring>

namespace {

using qxv::RegistryValue;
namespace os = qxv::os;

CQXString WithoutBlanks(const CQXString& text) {
  const QXChar* first = text;
  int length = text.GetLength();
  for (; length > 0 && *first == QXT(' '); --length) {
    ++first;
  }
  while (length > 0 && first[length - 1] == QXT(' ')) {
    --length;
  }
  return CQXString(first, length);
}

/// Reads a value that exists, else stores the default.
/// @param read  takes a key, true when it gave the value
/// @param store takes a key and stores the caller's value
template <class Reader, class Writer>
int ReadOrStore(HKEY root, const CQXString& subkey, const CQXString& name, Reader read, Writer store) {
  if (root == nullptr) {
    return 0;
  }
  const CQXString place = WithoutBlanks(subkey);
  if (place.GetLength() == 0) {
    return read(root) ? 1 : 0;
  }
  os::RegistryKey key;
  bool created = false;
  if (key.Create(root, place, os::kRegistryFullAccess, created) != os::kErrorNone) {
    return 0;
  }
  RegistryValue value;
  if (created || qxv::QueryValue(key.Key(), name, value) == os::kErrorFileNotFound) {
    return store(key.Key()) == os::kErrorNone ? 1 : 0;
  }
  return read(key.Key()) ? 1 : 0;
}

template <class Writer>
int Store(HKEY root, const CQXString& subkey, Writer store) {
  os::RegistryKey key;
  bool created = false;
  if (key.Create(root, WithoutBlanks(subkey), os::kRegistryFullAccess, created) != os::kErrorNone) {
    return 0;
  }
  // KEPT: whether the value was stored is not told, only whether the key closed. Pinned by
  //   RegistryFunctionsKept.ASetterTellsWhetherTheKeyClosedNotWhetherItStored.
  (void)store(key.Key());
  return key.Close() == os::kErrorNone ? 1 : 0;
}

}  // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): applications are built with texts by value

int QXVGetRegIntValue(HKEY root, CQXString subkey, CQXString name, int& value) {
  const auto read = [&](HKEY key) {
    // KEPT: the type is not looked at, so a text reads as the number that its first bytes are. Pinned by
    //   RegistryFunctionsKept.ATextReadsAsTheNumberThatItsBytesAre.
    unsigned char image[sizeof value] = {};
    std::uint32_t type = 0;
    std::uint32_t size = 0;
    if (os::QueryRegistryValue(key, name, type, image, size) != os::kErrorNone) {
      return false;
    }
    std::memcpy(&value, image, sizeof value);
    return true;
  };
  return ReadOrStore(root, subkey, name, read,
                     [&](HKEY key) { return qxv::StoreNumber(key, name, static_cast<std::uint32_t>(value)); });
}

int QXVSetRegIntValue(HKEY root, CQXString subkey, CQXString name, int value) {
  return Store(root, subkey, [&](HKEY key) { return qxv::StoreNumber(key, name, static_cast<std::uint32_t>(value)); });
}

int QXVGetRegStringValue(HKEY root, CQXString subkey, CQXString name, CQXString& value) {
  const auto read = [&](HKEY key) {
    RegistryValue found;
    if (qxv::QueryValue(key, name, found) != os::kErrorNone || qxv::ReadValue(key, name, found) != os::kErrorNone) {
      return false;
    }
    value = found.EndText();
    return true;
  };
  return ReadOrStore(root, subkey, name, read, [&](HKEY key) { return qxv::StoreText(key, name, value, value.GetLength()); });
}

int QXVSetRegStringValue(HKEY root, CQXString subkey, CQXString name, CQXString value) {
  return Store(root, subkey, [&](HKEY key) { return qxv::StoreText(key, name, value, value.GetLength()); });
}

// NOLINTEND(performance-unnecessary-value-param)
