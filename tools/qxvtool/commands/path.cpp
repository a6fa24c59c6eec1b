// path.cpp - qxvtool path: what the library tells of a name, by its text and by what is there.

#include "qxv/path.h"

#include "qxv/net_path.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/text.h"

namespace {

using tool::Value;

struct Request {
  std::vector<std::string> paths;
  bool mustExist = false;
};

Value::Record Describe(const std::string& path) {
  CQXString name = tool::Wide(path);
  return {{"drive_and_folder", QXVParsePath(name)},
          {"name", QXVParseMainFileName(name)},
          {"extension", QXVParseExtFileName(name)},
          {"short_name", QXVParseShortFileName(name)},
          {"up_to_separator", QXVGetFilePath(name)},
          {"behind_separator", QXVGetFileName(name)},
          {"behind_last_point", QXVGetFileType(name)},
          {"as_folder", QXVNormalizeFilePath(name)},
          {"form_of_file", QXVIsNormalizedFile(name) != 0},
          {"form_of_folder", QXVIsNormalizedPath(name) != 0},
          {"is_network_path", QXVIsUNCPath(name) != 0},
          {"exists", tool::Exists(path)},
          {"is_folder", tool::IsFolder(path)},
          {"bytes", QXVXHFileSize(name)}};
}

void Run(const Request& request, tool::Context& context) {
  const auto answer = [&request](const std::string& path) {
    if (request.mustExist && !tool::Exists(path)) {
      throw tool::Failure(path, "no such file or folder");
    }
    return Describe(path);
  };
  const auto text = [](const std::string& path, const Value::Record& record) { return path + '\n' + tool::Lines(record, "  "); };
  context.AnswerEach("path", request.paths, answer, text);
}

}  // namespace

void tool::AddPath(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "path", "The parts of a path, and what stands there",
                                 "  qxvtool path C:\\clips\\take.1\\a.mxf\n"
                                 "  qxvtool path README.md --must-exist       exit code 1 when it is not there\n"
                                 "  qxvtool path \\\\server\\media\\a.mxf --json");
  command->add_option("PATH", request->paths, "Names of files or folders, there or not")->required();
  command->add_flag("--must-exist", request->mustExist, "A name without a file or folder is an error");
  AddJson(command, context);
  OnCall(command, request, context, Run);
}
