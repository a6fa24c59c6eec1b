// registry_store_file.cpp - where the registry's store lies, and what the system says about that file.

#include "os/registry_store.h"

#include "os/name_match.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace qxv::os {
namespace {

const char* Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// The home that the system knows the user by; empty without one.
std::string HomeOfUser() {
  std::vector<char> texts(16384);
  passwd user{};
  passwd* found = nullptr;
  const bool known = ::getpwuid_r(::geteuid(), &user, texts.data(), texts.size(), &found) == 0 && found != nullptr;
  return known && user.pw_dir != nullptr ? user.pw_dir : "";
}

}  // namespace

ErrorCode MakeStoredName(TextView name, StoredName& stored) {
  Text folded(name);
  for (QXChar& unit : folded) {
    unit = FoldCase(unit);
  }
  return FileNameToUtf8(name, stored.given) && FileNameToUtf8(folded, stored.folded) ? kErrorNone : kErrorInvalidParameter;
}

ErrorCode FindRegistryStore(std::string& store) {
  store = Variable("QXV_REGISTRY");
  if (!store.empty()) {
    return store.front() == '/' ? kErrorNone : kErrorBadPathName;
  }
  store = Variable("XDG_DATA_HOME");
  if (store.empty() || store.front() != '/') {
    store = Variable("HOME");
    if (store.empty()) {
      store = HomeOfUser();
    }
    if (store.empty() || store.front() != '/') {
      return kErrorPathNotFound;
    }
    store += "/.local/share";
  }
  store += "/qxv/registry.sqlite";
  return kErrorNone;
}

ErrorCode LookAtStore(const std::string& store, bool& exists, std::uint64_t& size) {
  struct stat status {};
  exists = ::stat(store.c_str(), &status) == 0;
  if (exists) {
    size = static_cast<std::uint64_t>(status.st_size);
    return S_ISREG(status.st_mode) ? kErrorNone : kErrorAccessDenied;
  }
  return errno == ENOENT || errno == ENOTDIR ? kErrorNone : LastError();
}

ErrorCode MakeStoreFolder(const std::string& store) {
  for (std::size_t slash = store.find('/', 1); slash != std::string::npos; slash = store.find('/', slash + 1)) {
    if (::mkdir(store.substr(0, slash).c_str(), 0700) != 0 && errno != EEXIST) {
      return LastError();
    }
  }
  return kErrorNone;
}

ErrorCode CheckStoreIsWritable(const std::string& store) {
  bool exists = false;
  std::uint64_t size = 0;
  const ErrorCode error = LookAtStore(store, exists, size);
  if (error != kErrorNone || !exists) {
    return error;
  }
  const std::string folder = store.substr(0, store.rfind('/') + 1);  // where the journal will stand
  const bool may = ::eaccess(store.c_str(), W_OK) == 0 && ::eaccess(folder.c_str(), W_OK | X_OK) == 0;
  return may ? kErrorNone : kErrorAccessDenied;
}

}  // namespace qxv::os
