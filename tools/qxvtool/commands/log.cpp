// log.cpp - qxvtool log: lines of the daily log, written and read.

#include "qxv/log.h"

#include "qxv/interop.h"
#include "qxv/text_file.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/text.h"

#include <array>
#include <ctime>
#include <deque>

namespace {

using tool::Value;

// Which log: the folder and the main name of its files.
struct Place {
  std::string folder = ".";
  std::string name = "qxvtool";
};

struct WriteRequest {
  Place place;
  std::string message;
  int level = 100;
  int threshold = 100;
};

struct TailRequest {
  Place place;
  std::string date;
  int lines = 10;
};

std::string Today() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 16> text{};
  (void)std::strftime(text.data(), text.size(), "%Y%m%d", std::localtime(&now));
  return text.data();
}

std::string FileOf(const Place& place, const std::string& date) {
  return tool::AsFolder(place.folder) + place.name + '_' + date + ".txt";
}

std::uint64_t SizeOf(const std::string& path) { return tool::Exists(path) ? tool::InputFile(path).Size() : 0; }

// The log tells nobody whether a line was written, so the file is looked at before and after.
void RunWrite(const WriteRequest& request, tool::Context& context) {
  if (request.level < request.threshold) {
    throw tool::Failure("level " + std::to_string(request.level),
                        "lies below the write level " + std::to_string(request.threshold) + ", so nothing is written");
  }
  const std::string date = Today(), path = FileOf(request.place, date);
  const std::uint64_t before = SizeOf(path);
  QXVLogSetPath(tool::Wide(tool::AsFolder(request.place.folder)));
  QXVLogSetMainName(tool::Wide(request.place.name));
  QXVLogSetWriteLevel(request.threshold);
  QXVWriteLog(tool::Wide(request.message), request.level);
  if (Today() == date && SizeOf(path) <= before) {
    throw tool::Failure(path, "the line could not be written; is there such a folder, and may you write there?");
  }
  context.Answer(Value::Record{{"file", path}}, path + '\n');
}

void RunTail(const TailRequest& request, tool::Context& context) {
  const std::string path = FileOf(request.place, request.date.empty() ? Today() : request.date);
  if (!tool::Exists(path)) {
    throw tool::Failure(path, "no such file: nothing was logged on that day");
  }
  const qxv::Owned<CQXVtxtRW> file(QXV_ConstructTxtRW());
  if (file->Open(tool::Wide(path)) != 0) {
    throw tool::Failure(path, "cannot be opened");
  }
  std::deque<Value> last;
  CQXString line;
  for (int left = file->GetLineCount(); left > 0; --left) {
    const bool isEmpty = file->ReadLine(line) == 0;
    if (isEmpty && left == 1) {
      break;  // what follows the last line's end
    }
    last.emplace_back(isEmpty ? CQXString() : line);
    if (last.size() > static_cast<std::size_t>(request.lines)) {
      last.pop_front();
    }
  }
  std::string text;
  for (const Value& each : last) {
    const std::string* plain = each.AsText();
    text += *plain + '\n';
  }
  context.Answer(Value::Record{{"file", path}, {"lines", Value::List(last.begin(), last.end())}}, text);
}

void AddPlace(CLI::App* command, Place& place) {
  command->add_option("--folder", place.folder, "The folder of the log")->capture_default_str();
  command->add_option("--name", place.name, "The main name: its files are NAME_20090501.txt")->capture_default_str();
}

void AddWrite(CLI::App& log, tool::Context& context) {
  const auto request = std::make_shared<WriteRequest>();
  CLI::App* command = tool::NewCommand(log, "write", "Adds a line to the log of today",
                                       "  qxvtool log write \"copied 12 clips\"\n"
                                       "  qxvtool log write done --folder logs --name ingest\n"
                                       "  qxvtool log write detail --level 20 --threshold 10");
  command->add_option("MESSAGE", request->message, "The line")->required();
  command->add_option("--level", request->level, "Of this line")->capture_default_str();
  command->add_option("--threshold", request->threshold, "Lines of lower levels are not written")->capture_default_str();
  AddPlace(command, request->place);
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunWrite);
}

void AddTail(CLI::App& log, tool::Context& context) {
  const auto request = std::make_shared<TailRequest>();
  CLI::App* command = tool::NewCommand(log, "tail", "The last lines of a day's log; exit code 1 without a log",
                                       "  qxvtool log tail\n"
                                       "  qxvtool log tail --folder logs --name ingest --date 20090501 --lines 50");
  command->add_option("--lines", request->lines, "How many, 1 to 1000000")->check(CLI::Range(1, 1000000))->capture_default_str();
  command->add_option("--date", request->date, "The day, as 20090501; today without it");
  AddPlace(command, request->place);
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunTail);
}

}  // namespace

void tool::AddLog(CLI::App& app, Context& context) {
  CLI::App* log = NewGroup(app, "log", "The daily log: write, tail");
  AddWrite(*log, context);
  AddTail(*log, context);
}
