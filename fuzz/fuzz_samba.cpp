// fuzz_samba.cpp - Samba configurations, user shares, tables of mounts and login records of any bytes.
// What must hold: reading ends, and every share has a name and an absolute folder.

#include "os/logon_records.h"
#include "os/mount_table.h"
#include "os/samba.h"

#include "fuzz/fuzz_input.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using fuzz::Require;

void CheckShare(const qxv::os::SambaShare& share) {
  Require(share.folder.starts_with('/') && share.folder.find('%') == std::string::npos);
  Require(share.name.find('\\') == std::string::npos && !share.name.ends_with('$'));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  int reads = 0;
  const qxv::os::ReadIncluded read = [&](const std::string& path) {
    ++reads;
    return path.size() % 2 == 0 ? bytes : std::string("[included]\npath=/x\n");
  };
  for (const qxv::os::SambaShare& share : qxv::os::ParseSambaConfiguration(bytes, read).server.shares) {
    CheckShare(share);
  }
  Require(reads <= 64);
  if (const auto share = qxv::os::ParseUserShare(bytes, "name")) {
    CheckShare(*share);
  }
  const auto mounts = qxv::os::ParseMounts(bytes);
  Require(mounts.size() <= size);
  const qxv::os::Text name = qxv::os::NetworkNameOfFolder("/mnt/share/a", mounts);
  Require(name.empty() || name.starts_with(u"\\\\"));
  Require(qxv::os::LoggedOnNames(bytes).size() <= size);
  return 0;
}
