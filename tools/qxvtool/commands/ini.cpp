// ini.cpp - qxvtool ini: a value of an initialisation file.

#include "qxv/profile.h"

#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/text.h"

namespace {

using tool::Value;

struct Request {
  std::string file, section, key;
  bool isNumber = false;
  bool isSystem = false;
};

// A bare name means the system's own folder to the library, and the current one to people.
std::string NameFor(const Request& request) {
  const bool isBare = request.file.find_first_of("/\\:") == std::string::npos;
  return isBare && !request.isSystem ? "./" + request.file : request.file;
}

void Run(const Request& request, tool::Context& context) {
  const std::string file = NameFor(request);
  if (!request.isSystem && !tool::Exists(file)) {
    throw tool::Failure(request.file, "no such file");
  }
  const CQXString name = tool::Wide(file), section = tool::Wide(request.section), key = tool::Wide(request.key);
  CQXString text;
  if (QXVGetPrivateStringValue(name, section, key, text) == 0) {
    throw tool::Failure(request.file, "has no value for " + request.key + " in [" + request.section + ']');
  }
  Value value = text;
  if (request.isNumber) {
    int number = 0;
    QXVGetPrivateIntValue(name, section, key, number);
    value = number;
  }
  context.Answer(Value::Record{{"file", request.file}, {"section", request.section}, {"key", request.key}, {"value", value}},
                 value.Plain() + '\n');
}

}  // namespace

void tool::AddIni(CLI::App& app, Context& context) {
  CLI::App* ini = NewGroup(app, "ini", "Values of initialisation files: get");
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(*ini, "get", "A value; exit code 1 without one",
                                 "  qxvtool ini get settings.ini Window Title\n"
                                 "  qxvtool ini get settings.ini Window Width --int --json\n"
                                 "  qxvtool ini get app.ini Window Title --system       in the system's folder");
  command->add_option("FILE", request->file, "The file; a bare name is in the current folder")->required();
  command->add_option("SECTION", request->section, "The section, in any case")->required();
  command->add_option("KEY", request->key, "The key, in any case")->required();
  command->add_flag("--int", request->isNumber, "The number at the start of the value, 0 without one");
  command->add_flag("--system", request->isSystem, "A bare name is in the system's own folder");
  AddJson(command, context);
  OnCall(command, request, context, Run);
}
