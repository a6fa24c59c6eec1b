// arguments.h - the parser of the command line, and what all commands are made with. Nobody else takes CLI11.
#pragma once

#include "qxvtool/support/context.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace tool {

/// A command below another: its name, what it does, and examples for the end of its help, a line each.
inline CLI::App* NewCommand(CLI::App& above, const std::string& name, const std::string& purpose, const std::string& examples) {
  CLI::App* command = above.add_subcommand(name, purpose);
  command->footer("Examples:\n" + examples);
  return command;
}

/// A command that only gathers others.
inline CLI::App* NewGroup(CLI::App& above, const std::string& name, const std::string& purpose) {
  CLI::App* group = above.add_subcommand(name, purpose);
  group->require_subcommand(1);
  group->footer("qxvtool " + name + " COMMAND --help tells more of a command, with examples.");
  return group;
}

/// Lets the command answer programs.
inline void AddJson(CLI::App* command, Context& context) {
  command->add_flag("--json", context.json, "Answer as JSON, for programs");
}

/// Runs a command with what the command line asked of it.
template <class Request, class Run>
void OnCall(CLI::App* command, const std::shared_ptr<Request>& request, Context& context, Run run) {
  command->callback([request, &context, run] { run(*request, context); });
}

}  // namespace tool
