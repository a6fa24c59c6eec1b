// disk.cpp - the space on a drive, in bytes and as text, and what kind of drive it is.

#include "qxv/disk.h"

#include "os/disk.h"
#include "system/disk_size.h"

namespace {

constexpr std::int64_t kKilo = 1024;
constexpr std::int64_t kMega = kKilo * 1024;
constexpr std::int64_t kGiga = kMega * 1024;
constexpr std::int64_t kTera = kGiga * 1024;

qxv::os::DiskSpace SpaceOf(const QXChar* path) {
  qxv::os::DiskSpace space{};
  if (path != nullptr && *path != 0) {
    (void)qxv::os::GetDiskSpace(*path, space);  // zeros tell it
  }
  return space;
}

}  // namespace

namespace qxv {

// KEPT: a size that is exactly a unit still stands in the one below it, as 1024KB or 1024.0MB (old reports look so). Pinned by
//   DiskKept.AFullUnitStandsInTheUnitBelow.
CQXString DiskSizeText(std::int64_t bytes) {
  CQXString text;
  if (bytes <= kKilo) {
    text.Format(QXT("%d"), static_cast<int>(bytes));
  } else if (bytes <= kMega) {
    text.Format(QXT("%dKB"), static_cast<int>(bytes / kKilo));
  } else if (bytes <= kGiga) {
    text.Format(QXT("%5.1fMB"), static_cast<double>(bytes) / static_cast<double>(kMega));
  } else if (bytes <= kTera) {
    text.Format(QXT("%5.1fGB"), static_cast<double>(bytes) / static_cast<double>(kGiga));
  } else {
    text.Format(QXT("%5.1fTB"), static_cast<double>(bytes) / static_cast<double>(kTera));
  }
  return text;
}

}  // namespace qxv

QXInt64 QXVGetDiskTotalSpace(const QXChar* path) { return SpaceOf(path).total; }
QXInt64 QXVGetDiskFreeSpace(const QXChar* path) { return SpaceOf(path).free; }

CQXString QXVGetDiskTotalSpaceString(const QXChar* path) { return qxv::DiskSizeText(QXVGetDiskTotalSpace(path)); }
CQXString QXVGetDiskFreeSpaceString(const QXChar* path) { return qxv::DiskSizeText(QXVGetDiskFreeSpace(path)); }

unsigned int QXVGetDriveType(const QXChar* path) {
  if (path == nullptr || *path == 0) {
    return static_cast<unsigned>(qxv::os::DriveKind::Unknown);
  }
  return static_cast<unsigned>(qxv::os::GetDriveKind(*path));
}
