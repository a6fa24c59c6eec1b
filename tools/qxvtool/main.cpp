// main.cpp - qxvtool, the library at the command line: one command a family.
// Answers go to the standard output, all other words to the standard error. Exit codes: 0 all is well, 1 not found or different,
// 2 wrong use.

#include "qxv/version.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/console.h"
#include "qxvtool/support/failure.h"

#include <algorithm>
#include <new>
#include <sstream>

namespace {

constexpr const char* kFooter =
    "Try:\n"
    "  qxvtool image info photo.jpg\n"
    "  qxvtool md5 clip.mxf --resume clip\n"
    "  qxvtool wav plot voice.wav voice.bmp\n"
    "  qxvtool path C:\\clips\\a.mxf\n"
    "\n"
    "qxvtool COMMAND --help tells more of a command, with examples.\n"
    "Exit codes: 0 all is well, 1 not found or different, 2 wrong use.";

std::string VersionText() {
  return "qxvtool " + std::to_string(QXV_VERSION_MAJOR) + '.' + std::to_string(QXV_VERSION_MINOR) + '.' +
         std::to_string(QXV_VERSION_PATCH);
}

void AddCommands(CLI::App& app, tool::Context& context) {
  app.allow_windows_style_options(false);  // /x is a path on both systems
  app.require_subcommand(1);
  app.footer(kFooter);
  app.set_version_flag("--version", VersionText());
  app.add_flag_callback(
      "--debug", [] { tool::HoldBackDebugger(false); }, "Show what the library tells the debugger (Linux)");
  app.get_formatter()->column_width(28);
  tool::AddImage(app, context);
  tool::AddWav(app, context);
  tool::AddMd5(app, context);
  tool::AddCrc(app, context);
  tool::AddGuid(app, context);
  tool::AddXml(app, context);
  tool::AddDict(app, context);
  tool::AddPath(app, context);
  tool::AddNet(app, context);
  tool::AddReg(app, context);
  tool::AddIni(app, context);
  tool::AddDisk(app, context);
  tool::AddWho(app, context);
  tool::AddLog(app, context);
  tool::AddRound(app, context);
  tool::AddSpline(app, context);
  tool::AddGeometry(app, context);
}

// Positions have a name that says all: the parser's TEXT behind it is noise.
void NameArguments(CLI::App& app) {
  for (CLI::Option* option : app.get_options([](CLI::Option* each) { return each->get_positional(); })) {
    option->type_name("");
  }
  for (CLI::App* below : app.get_subcommands([](CLI::App*) { return true; })) {
    NameArguments(*below);
  }
}

// "qxvtool image convert", as far as the command line came.
std::string CommandName(const CLI::App& app) {
  const auto below = app.get_subcommands();
  return app.get_name() + (below.empty() ? "" : ' ' + CommandName(*below.front()));
}

int TellWrongUse(const CLI::App& app, const std::string& reason) {
  const std::string command = CommandName(app);
  tool::Write(tool::Stream::Error, command + ": " + reason + '\n' + command + " --help tells how it is used\n");
  return tool::kExitWrongUse;
}

}  // namespace

int tool::Main(const std::vector<std::string>& arguments) {
  HoldBackDebugger(true);
  Context context;
  CLI::App app("The library QXVCommonLibU at the command line: one command a family.", "qxvtool");
  AddCommands(app, context);
  NameArguments(app);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    const std::vector<std::string> rest = app.remaining(true);
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && !rest.empty()) {
      return TellWrongUse(app, rest.front() + " is no command");
    }
    if (error.get_exit_code() != 0) {
      return TellWrongUse(app, error.what());
    }
    std::ostringstream help;
    app.exit(error, help, help);
    Write(Stream::Out, help.str());
  } catch (const WrongUse& error) {
    return TellWrongUse(app, error.what());
  } catch (const Failure& error) {
    context.Complain(error);
  } catch (const std::bad_alloc&) {
    context.Complain(Failure("memory", "there is not enough for this"));
  }
  return context.exitCode;
}
