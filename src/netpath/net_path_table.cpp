// net_path_table.cpp - the sources of the table: published shares, connected drives, special drives.

#include "netpath/host_text.h"
#include "netpath/net_path_exchange.h"
#include "os/registry.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace qxv {
namespace {

using os::Text;
using os::TextView;

constexpr std::size_t kDriveRootLength = 3;  // X:\ .
constexpr std::size_t kSpecialNameRoom = 260;
constexpr const QXChar* kSpecialDrives = QXT("SOFTWARE\\Quelta\\QXSpecialDrivers");
constexpr TextView kPathSetting = QXT("Path=");

// The folder among a share's settings; empty when they name none.
Text FolderOfShare(Text settings) {
  std::replace(settings.begin(), settings.end(), QXT('\0'), QXT(';'));
  const std::size_t at = settings.find(kPathSetting);
  if (at == Text::npos) {
    return {};
  }
  Text folder = settings.substr(at + kPathSetting.size());
  folder.resize(std::min(folder.find(QXT(';')), folder.size()));
  // KEPT: the root of a drive keeps its backslash, and then only the root itself lies in it (a path below has no second
  //   backslash). Pinned by NetPathTableKept.AShareOfADriveRootMatchesTheRootOnly.
  if (folder.size() > kDriveRootLength && folder.back() == QXT('\\')) {
    folder.pop_back();
  }
  return folder;
}

// The root X:\ of a drive that is named X, X: or X:\ ; empty for other names.
Text DriveRootOf(Text name) {
  if (name.size() == 1) {
    name += QXT(":\\");
  } else if (name.size() == 2 && name[1] == QXT(':')) {
    name += QXT('\\');
  }
  return name.size() == kDriveRootLength && name[1] == QXT(':') ? UpperCase(name) : Text();
}

bool IsSwitchedOn(HKEY key, const QXChar* name) {
  std::uint32_t number = 0;
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  unsigned char bytes[sizeof number] = {};
  if (os::QueryRegistryValue(key, name, type, bytes, size) != os::kErrorNone || size != sizeof bytes) {
    return false;
  }
  std::memcpy(&number, bytes, sizeof number);
  return type == os::kRegistryNumber && number != 0;
}

}  // namespace

void CQXNetPathExchange::Build() {
  if (initialised != 0) {
    return;
  }
  items.RemoveAll();
  specialDrives.RemoveAll();
  AddPublishedShares();
  AddConnectedDrives();
  AddSpecialDrives();
  initialised = 1;
}

void CQXNetPathExchange::AddItem(const QXChar* namePath, const QXChar* addressPath, const QXChar* localPath) {
  SNetPathItem item;
  item.NamePath = namePath;
  item.IPPath = addressPath;
  item.LocalPath = localPath;
  items.Add(item);
}

void CQXNetPathExchange::AddPublishedShares() {
  std::vector<os::PublishedShare> shares;
  if (!os::Network().PublishedShares(QXT("\\\\") + ReadComputerName(), shares)) {
    return;
  }
  for (const os::PublishedShare& share : shares) {
    if (const Text folder = FolderOfShare(share.settings); !folder.empty()) {
      AddItem(share.remoteName.c_str(), nullptr, folder.c_str());
    }
  }
}

void CQXNetPathExchange::AddConnectedDrives() {
  for (const os::ConnectedDrive& connected : os::Network().ConnectedDrives()) {
    const QXChar drive[] = {connected.letter, QXT(':'), 0};
    if (IsDottedAddress(HostOf(connected.remoteName))) {
      AddItem(nullptr, connected.remoteName.c_str(), drive);
    } else {
      AddItem(connected.remoteName.c_str(), nullptr, drive);
    }
  }
}

void CQXNetPathExchange::AddSpecialDrives() {
  os::RegistryKey key;
  if (key.Open(HKEY_LOCAL_MACHINE, kSpecialDrives, os::kRegistryRead) != os::kErrorNone) {
    return;
  }
  QXChar name[kSpecialNameRoom] = {};
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  for (std::uint32_t index = 0; os::EnumRegistryValue(key.Key(), index, name, type, {}, size) == os::kErrorNone; ++index) {
    if (type != os::kRegistryNumber || !IsSwitchedOn(key.Key(), name)) {
      continue;
    }
    if (const Text root = DriveRootOf(name); !root.empty()) {
      CQXString drive(root.c_str());
      specialDrives.Add(drive);
    }
  }
}

}  // namespace qxv
