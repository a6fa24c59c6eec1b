// net.cpp - qxvtool net: paths as other computers write them, and the table behind the conversion.

#include "qxv/net_path.h"

#include "qxv/conversion.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/text.h"

namespace {

using tool::Value;
using Texts = CQXArray<CQXString, CQXString&>;

struct DumpRequest {};

struct ConvertRequest {
  std::vector<std::string> paths;
};

Texts Split(const QXChar* separator, const CQXString& text) {
  Texts parts;
  QXVStrtoStrArr(separator, text, parts);
  return parts;
}

void RunDump(const DumpRequest& /*request*/, tool::Context& context) {
  CQXString dump;
  QXVDumpNetPathTable(dump);
  Texts lines = Split(QXT("\n"), dump);
  Value::List mappings;
  std::vector<std::vector<std::string>> rows = {{"network", "address", "local"}};
  for (QXInt64 i = 0; i + 1 < lines.GetSize(); ++i) {  // behind the last line feed stands nothing
    Texts parts = Split(QXT("\t"), lines[i]);
    mappings.emplace_back(Value::Record{{"network", parts[0]}, {"address", parts[1]}, {"local", parts[2]}});
    rows.push_back({Value(parts[0]).Plain(), Value(parts[1]).Plain(), Value(parts[2]).Plain()});
  }
  context.Answer(mappings, mappings.empty() ? "no shares, no connected drives and no special drives\n" : tool::Table(rows));
}

std::string ConvertedLine(const std::string& /*path*/, const Value::Record& record) {
  return record.front().value.Plain() + '\n';
}

void RunToLocal(const ConvertRequest& request, tool::Context& context) {
  const auto answer = [](const std::string& path) -> Value::Record {
    CQXString local;
    QXVUNC2Local(local, tool::Wide(path));
    if (QXVIsUNCPath(local) != 0) {
      throw tool::Failure(path, "no share or drive of this computer leads there (qxvtool net dump shows them)");
    }
    return {{"local", local}};
  };
  context.AnswerEach("path", request.paths, answer, ConvertedLine);
}

void RunToUnc(const ConvertRequest& request, tool::Context& context) {
  const auto answer = [](const std::string& path) -> Value::Record {
    CQXString network;
    QXVLocal2UNC(network, tool::Wide(path));
    return {{"network", network}};
  };
  context.AnswerEach("path", request.paths, answer, ConvertedLine);
}

}  // namespace

void tool::AddNet(CLI::App& app, Context& context) {
  CLI::App* net = NewGroup(app, "net", "Network paths: dump, to-local, to-unc");

  const auto dump = std::make_shared<DumpRequest>();
  CLI::App* command = NewCommand(*net, "dump", "The shares and drives that paths are converted by",
                                 "  qxvtool net dump\n"
                                 "  qxvtool net dump --json");
  AddJson(command, context);
  OnCall(command, dump, context, RunDump);

  const auto toLocal = std::make_shared<ConvertRequest>();
  command = NewCommand(*net, "to-local", "Network paths as this computer writes them; exit code 1 without a way there",
                       "  qxvtool net to-local \\\\server\\media\\a.mxf\n"
                       "  qxvtool net to-local \\\\10.1.2.3\\media\\a.mxf --json");
  command->add_option("PATH", toLocal->paths, "Network paths")->required();
  AddJson(command, context);
  OnCall(command, toLocal, context, RunToLocal);

  const auto toUnc = std::make_shared<ConvertRequest>();
  command = NewCommand(
      *net, "to-unc", "Local paths as other computers write them",
      "  qxvtool net to-unc D:\\media\\a.mxf        \\\\this-computer\\share\\a.mxf, or Local\\D:\\media\\a.mxf without a share");
  command->add_option("PATH", toUnc->paths, "Local paths")->required();
  AddJson(command, context);
  OnCall(command, toUnc, context, RunToUnc);
}
