// registry_store.h - the file that stands for the registry on Linux: keys and values in an SQLite database (docs/porting.md).
//
// Each function opens the file, does its work in one transaction and closes it: nothing is kept between two calls, so several
// processes may use one store, a fork carries nothing over, and a process that is killed leaves the last complete state.
// A store that does not exist, or has no byte yet, is one that holds only the roots. Results are 0 or a Windows error number:
// 5 where the system does not allow it, 32 when others keep it busy for ten seconds, 112 for a full disk, 1015 for a file that is
// damaged or not such a store, which is never written to. Lack of memory throws std::bad_alloc. One thread at a time.
#pragma once

#include "os/error.h"
#include "os/utf.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qxv::os {

/// A name as the store keeps it: as it was given, and with its case folded for comparing. 87 when it cannot be kept.
struct StoredName {
  std::string given;
  std::string folded;
};
[[nodiscard]] ErrorCode MakeStoredName(TextView name, StoredName& stored);

/// A key by its place in the store.
struct StoredKey {
  unsigned root = 0;  // 0 HKEY_CLASSES_ROOT, 1 HKEY_CURRENT_USER, 2 HKEY_LOCAL_MACHINE, 3 HKEY_USERS
  std::vector<StoredName> names;
};

/// QXV_REGISTRY, else qxv/registry.sqlite below XDG_DATA_HOME or ~/.local/share. 161 for a QXV_REGISTRY that is not absolute, 3
/// for a user without a home.
[[nodiscard]] ErrorCode FindRegistryStore(std::string& store);

/// Whether there is such a file, and its bytes; 5 for something that is no file.
[[nodiscard]] ErrorCode LookAtStore(const std::string& store, bool& exists, std::uint64_t& size);

/// The store's folder with all that is missing above it, for nobody else: settings are private.
[[nodiscard]] ErrorCode MakeStoreFolder(const std::string& store);

/// 5 unless this process may write to the store; a missing one may be written.
[[nodiscard]] ErrorCode CheckStoreIsWritable(const std::string& store);

/// 0 when the key exists, else 2.
[[nodiscard]] ErrorCode LookUpKey(const std::string& store, const StoredKey& key);

/// Creates what is missing of the key, and of the store with its folder.
[[nodiscard]] ErrorCode CreateStoredKey(const std::string& store, const StoredKey& key, bool& created);

// 1018 from all of these when the key does not exist. Data and sizes as in registry.h.

[[nodiscard]] ErrorCode ReadStoredValue(const std::string& store, const StoredKey& key, const StoredName& name,
                                        std::uint32_t& type, std::span<unsigned char> data, std::uint32_t& size);
[[nodiscard]] ErrorCode WriteStoredValue(const std::string& store, const StoredKey& key, const StoredName& name,
                                         std::uint32_t type, std::span<const unsigned char> data);
[[nodiscard]] ErrorCode DeleteStoredValue(const std::string& store, const StoredKey& key, const StoredName& name);

/// Values in the order of their creation.
[[nodiscard]] ErrorCode ReadValueAt(const std::string& store, const StoredKey& key, std::uint32_t index, Text& name,
                                    std::uint32_t& type, std::span<unsigned char> data, std::uint32_t& size);

/// Subkeys in the order of their folded names.
[[nodiscard]] ErrorCode ReadSubkeyAt(const std::string& store, const StoredKey& key, std::uint32_t index, Text& name);

}  // namespace qxv::os
