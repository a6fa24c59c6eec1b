// who.cpp - qxvtool who: the user, the computer and what the network knows of them.

#include "qxv/identity.h"

#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

#include <optional>

namespace {

using tool::Value;

struct Request {
  std::optional<std::string> host;
};

Value::Record AddressOf(const std::string& host) {
  CQXString address;
  if (QXVGetIPAddr(tool::Wide(host), address) == 0 || address.GetLength() == 0) {
    throw tool::Failure(host, "no such host, or none with an IPv4 address");
  }
  return {{"host", host}, {"address", address}};
}

Value::Record Everything() {
  CQXString domain, computer, provider, address;
  const bool isInDomain = QXVGetLogInDoMain(domain, computer) != 0;
  (void)QXVGetNetProviderName(provider);
  (void)QXVGetIPAddr(QXT(""), address);
  return {{"user", QXVGetLogInUserName()},
          {"administrator", QXVGetUserIsHaveRight_ADMINISTRATOR() != 0},
          {"computer", computer},
          {"address", address},
          {"domain", domain},
          {"logged_on_to_domain", isInDomain},
          {"network_provider", provider},
          {"primary_language", QXVGetThisPrimaryLangID()},
          {"sublanguage", QXVGetThisSubLangID()}};
}

void Run(const Request& request, tool::Context& context) {
  context.Answer(request.host ? AddressOf(*request.host) : Everything());
}

}  // namespace

void tool::AddWho(CLI::App& app, Context& context) {
  const auto request = std::make_shared<Request>();
  CLI::App* command = NewCommand(app, "who", "The user, the computer and its network",
                                 "  qxvtool who\n"
                                 "  qxvtool who --json\n"
                                 "  qxvtool who --host fileserver       its address; exit code 1 without one");
  command->add_option("--host", request->host, "The address of this computer of the network, nothing else");
  AddJson(command, context);
  OnCall(command, request, context, Run);
}
