// private_registry.h - a registry of the test's own, empty at first: HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER lead into it, so
// that tests run side by side and leave the machine's settings alone.
#pragma once

#include "qxv/types.h"
#include "support/temp_folder.h"

#include <filesystem>
#include <string>

namespace support {

/// On Windows the two roots of this process are redirected to keys that are deleted at the end; on Linux QXV_REGISTRY names a
/// store that does not exist yet, in a folder that does not exist yet.
class PrivateRegistry {
 public:
  PrivateRegistry();
  PrivateRegistry(const PrivateRegistry&) = delete;
  PrivateRegistry& operator=(const PrivateRegistry&) = delete;
  ~PrivateRegistry();

#if !defined(_WIN32)
  const std::filesystem::path& Store() const { return m_store; }

 private:
  TempFolder m_folder;
  std::filesystem::path m_store;
  std::string m_before;
#else
 private:
  Text m_place;  // below the real HKEY_CURRENT_USER
#endif
};

/// What stands behind a key's value, asked of the registry itself and not of the code under test: "REG_BINARY 02000000", or the
/// reason why there is nothing to tell. The type is its number when it is not one of the usual ones.
std::string StoredImage(HKEY root, const Text& subkey, const Text& name);

}  // namespace support
