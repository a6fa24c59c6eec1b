// guid.cpp - qxvtool guid: new identifiers.

#include "qxv/guid.h"

#include "qxvtool/commands/commands.h"

#include <map>

namespace {

using tool::Value;

const std::map<std::string, EQXV_CREATEGUIDMETHOD> kMethods = {{"system", EQXV_GUID_SYSTEM},
                                                               {"random", EQXV_GUID_RANDOM},
                                                               {"milliseconds", EQXV_GUID_MILLISECONDS},
                                                               {"seconds", EQXV_GUID_SECONDS},
                                                               {"counter", EQXV_GUID_COUNTER}};

struct Request {
  int count = 1;
  std::string method = "counter";
};

void Run(const Request& request, tool::Context& context) {
  Value::List list;
  std::string lines;
  for (int i = 0; i < request.count; ++i) {
    list.emplace_back(QXVCoCreateGuidString2(kMethods.at(request.method)));
    lines += list.back().Plain() + '\n';
  }
  context.Answer(list, lines);
}

}  // namespace

void tool::AddGuid(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "guid", "New 16-byte identifiers",
                                 "  qxvtool guid\n"
                                 "  qxvtool guid --count 5 --method system\n"
                                 "  qxvtool guid --count 100 --json");
  command->add_option("--count", request->count, "How many, 1 to 1000000")->check(CLI::Range(1, 1000000))->capture_default_str();
  command->add_option("--method", request->method, "system, random, milliseconds, seconds or counter")
      ->check(CLI::IsMember(kMethods))
      ->capture_default_str();
  AddJson(command, context);
  OnCall(command, request, context, Run);
}
