// registry_posix.cpp - keys of the registry store as handles with rights.
// A handle stands for a place in a store, looked up anew by every call; its number is never given out again.

#include "os/registry.h"

#include "os/fork.h"
#include "os/lock.h"
#include "os/registry_name.h"
#include "os/registry_store.h"

#include <algorithm>
#include <map>
#include <utility>

namespace qxv::os {
namespace {

struct OpenKey {
  std::string store;
  StoredKey key;
  std::uint32_t access = 0;

  bool May(std::uint32_t right) const noexcept { return (access & right) == right; }
};

// Rights that change something: set values, create keys and links, delete, change the owner.
constexpr std::uint32_t kWritingRights = kRegistryFullAccess & ~kRegistryRead;

// Guards the table, and the database library over a fork.
constinit RecursiveLock theLock;

struct HoldTheLock {
  HoldTheLock() noexcept { (void)HoldAcrossFork(theLock); }
};
const HoldTheLock holdTheLock;

// Never destroyed: keys may be closed by late destructors.
std::map<std::uintptr_t, OpenKey>& Keys() {
  static auto* keys = new std::map<std::uintptr_t, OpenKey>;
  return *keys;
}

HKEY AddKey(OpenKey&& opened) {
  constexpr std::uintptr_t kStep = 8;
  static std::uintptr_t last = 0;  // numbers of keys are no addresses: 12, 20, 28 ...
  const std::uintptr_t number = (last += kStep) + kStep / 2;
  Keys().emplace(number, std::move(opened));
  return reinterpret_cast<HKEY>(number);
}

bool IsRoot(HKEY key, unsigned& root) noexcept {
  const HKEY roots[] = {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS};
  const auto* found = std::find(std::begin(roots), std::end(roots), key);
  root = static_cast<unsigned>(found - std::begin(roots));
  return found != std::end(roots);
}

ErrorCode FindKey(HKEY key, OpenKey& found) {
  if (unsigned root = 0; IsRoot(key, root)) {
    found.key.root = root;
    found.access = kRegistryFullAccess;
    return FindRegistryStore(found.store);
  }
  const auto at = Keys().find(reinterpret_cast<std::uintptr_t>(key));
  if (at == Keys().end()) {
    return kErrorInvalidHandle;
  }
  found = at->second;
  return kErrorNone;
}

ErrorCode FindKeyWithRight(HKEY key, std::uint32_t right, OpenKey& found) {
  const ErrorCode error = FindKey(key, found);
  return error != kErrorNone || found.May(right) ? error : kErrorAccessDenied;
}

ErrorCode FindSubkey(HKEY parent, const QXChar* subkey, OpenKey& found) {
  ErrorCode error = CheckSubkey(subkey);
  if (error == kErrorNone) {
    error = FindKey(parent, found);
  }
  TextView left = subkey == nullptr ? TextView() : TextView(subkey);
  while (error == kErrorNone && !left.empty()) {
    const std::size_t end = std::min(left.find(QXT('\\')), left.size());
    if (end > 0) {
      found.key.names.emplace_back();
      error = MakeStoredName(left.substr(0, end), found.key.names.back());
    }
    left.remove_prefix(std::min(end + 1, left.size()));
  }
  return error;
}

// A value's key, which must have been opened with the right, and its name.
ErrorCode FindValue(HKEY key, const QXChar* name, std::uint32_t right, OpenKey& found, StoredName& stored) {
  ErrorCode error = CheckValueName(name);
  if (error == kErrorNone) {
    error = FindKeyWithRight(key, right, found);
  }
  return error != kErrorNone ? error : MakeStoredName(name == nullptr ? TextView() : TextView(name), stored);
}

ErrorCode GrantAccess(OpenKey& opened, std::uint32_t access, HKEY& key) {
  if ((access & kWritingRights) != 0) {
    if (const ErrorCode error = CheckStoreIsWritable(opened.store); error != kErrorNone) {
      return error;
    }
  }
  opened.access = access;
  key = AddKey(std::move(opened));
  return kErrorNone;
}

ErrorCode CopyName(const Text& name, std::span<QXChar> out) {
  if (name.size() >= out.size()) {
    return kErrorMoreData;
  }
  *std::copy(name.begin(), name.end(), out.begin()) = 0;
  return kErrorNone;
}

}  // namespace

ErrorCode OpenRegistryKey(HKEY parent, const QXChar* subkey, std::uint32_t access, HKEY& key) {
  const LockGuard guard(theLock);
  OpenKey opened;
  ErrorCode error = FindSubkey(parent, subkey, opened);
  if (error == kErrorNone) {
    error = LookUpKey(opened.store, opened.key);
  }
  return error != kErrorNone ? error : GrantAccess(opened, access, key);
}

ErrorCode CreateRegistryKey(HKEY parent, const QXChar* subkey, std::uint32_t access, HKEY& key, bool& created) {
  if (subkey == nullptr) {
    return kErrorBadKey;
  }
  const LockGuard guard(theLock);
  OpenKey opened;
  ErrorCode error = FindSubkey(parent, subkey, opened);
  if (error != kErrorNone) {
    return error;
  }
  bool isNew = false;
  error = LookUpKey(opened.store, opened.key);
  if (error == kErrorFileNotFound) {
    error = CreateStoredKey(opened.store, opened.key, isNew);
  }
  if (error == kErrorNone) {
    error = GrantAccess(opened, access, key);
  }
  if (error == kErrorNone) {
    created = isNew;
  }
  return error;
}

ErrorCode CloseRegistryKey(HKEY key) noexcept {
  if (unsigned root = 0; IsRoot(key, root)) {
    return kErrorNone;
  }
  const LockGuard guard(theLock);
  return Keys().erase(reinterpret_cast<std::uintptr_t>(key)) == 1 ? kErrorNone : kErrorInvalidHandle;
}

ErrorCode QueryRegistryValue(HKEY key, const QXChar* name, std::uint32_t& type, std::span<unsigned char> data,
                             std::uint32_t& size) {
  const LockGuard guard(theLock);
  OpenKey opened;
  StoredName stored;
  const ErrorCode error = FindValue(key, name, kRegistryQueryValues, opened, stored);
  return error != kErrorNone ? error : ReadStoredValue(opened.store, opened.key, stored, type, data, size);
}

ErrorCode SetRegistryValue(HKEY key, const QXChar* name, std::uint32_t type, std::span<const unsigned char> data) {
  const LockGuard guard(theLock);
  OpenKey opened;
  StoredName stored;
  const ErrorCode error = FindValue(key, name, kRegistrySetValues, opened, stored);
  return error != kErrorNone ? error : WriteStoredValue(opened.store, opened.key, stored, type, data);
}

ErrorCode DeleteRegistryValue(HKEY key, const QXChar* name) {
  const LockGuard guard(theLock);
  OpenKey opened;
  StoredName stored;
  const ErrorCode error = FindValue(key, name, kRegistrySetValues, opened, stored);
  return error != kErrorNone ? error : DeleteStoredValue(opened.store, opened.key, stored);
}

ErrorCode EnumRegistryValue(HKEY key, std::uint32_t index, std::span<QXChar> name, std::uint32_t& type,
                            std::span<unsigned char> data, std::uint32_t& size) {
  const LockGuard guard(theLock);
  OpenKey opened;
  ErrorCode error = FindKeyWithRight(key, kRegistryQueryValues, opened);
  Text found;
  if (error == kErrorNone) {
    error = ReadValueAt(opened.store, opened.key, index, found, type, data, size);
  }
  return error != kErrorNone ? error : CopyName(found, name);
}

ErrorCode EnumRegistryKey(HKEY key, std::uint32_t index, std::span<QXChar> name) {
  const LockGuard guard(theLock);
  OpenKey opened;
  ErrorCode error = FindKeyWithRight(key, kRegistryListKeys, opened);
  Text found;
  if (error == kErrorNone) {
    error = ReadSubkeyAt(opened.store, opened.key, index, found);
  }
  return error != kErrorNone ? error : CopyName(found, name);
}

}  // namespace qxv::os
