// disk.cpp - qxvtool disk: the drives, their kind and their room.

#include "qxv/disk.h"

#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

#include <array>

namespace {

using tool::Value;

struct Request {
  std::vector<std::string> paths;
};

constexpr unsigned int kNoSuchDrive = 1;

std::string KindName(unsigned int kind) {
  static constexpr std::array<const char*, 7> kNames = {"unknown", "none",      "removable", "fixed",
                                                        "network", "CD or DVD", "memory"};
  return kind < kNames.size() ? kNames.at(kind) : "unknown";
}

// A drive of a kind that the system does not name is there when it has room.
bool IsThere(const CQXString& path) {
  const unsigned int kind = QXVGetDriveType(path);
  return kind != kNoSuchDrive && (kind != 0 || QXVGetDiskTotalSpace(path) > 0);
}

// The letters that were asked for, or all that there are.
std::vector<std::string> Letters(const Request& request) {
  std::vector<std::string> letters = request.paths;
  for (char letter = 'A'; request.paths.empty() && letter <= 'Z'; ++letter) {
    const std::string drive = {letter, ':', '\\'};
    if (IsThere(tool::Wide(drive))) {
      letters.push_back(drive);
    }
  }
  return letters;
}

std::string UsedText(QXInt64 total, QXInt64 free) {
  return total == 0 ? "-" : std::to_string((total - free) * 100 / total) + " %";
}

void Run(const Request& request, tool::Context& context) {
  Value::List drives;
  std::vector<std::vector<std::string>> rows = {{"drive", "kind", "total", "free", "used"}};
  for (const std::string& path : Letters(request)) {
    const CQXString text = tool::Wide(path);
    if (!IsThere(text)) {
      context.Complain(tool::Failure(path, "no such drive; write it as C or C:\\"));
      continue;
    }
    const unsigned int kind = QXVGetDriveType(text);
    const QXInt64 total = QXVGetDiskTotalSpace(text), free = QXVGetDiskFreeSpace(text);
    drives.emplace_back(Value::Record{{"drive", path}, {"kind", KindName(kind)}, {"total_bytes", total}, {"free_bytes", free}});
    rows.push_back({path, KindName(kind), tool::Trimmed(tool::Narrow(QXVGetDiskTotalSpaceString(text))),
                    tool::Trimmed(tool::Narrow(QXVGetDiskFreeSpaceString(text))), UsedText(total, free)});
  }
  context.Answer(drives, drives.empty() ? "" : tool::Table(rows));
}

}  // namespace

void tool::AddDisk(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "disk", "Drives, their kind and their room",
                                 "  qxvtool disk\n"
                                 "  qxvtool disk C D:\\media --json");
  command->add_option("DRIVE", request->paths, "Drives, or paths on them; all drives without it");
  AddJson(command, context);
  OnCall(command, request, context, Run);
}
