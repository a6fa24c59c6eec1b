// dict.cpp - qxvtool dict: dictionary folders loaded, asked and looked through for mistakes.

#include "qxv/dictionary.h"

#include "qxv/interop.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/dictionary_files.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/text.h"

#include <algorithm>

namespace {

using tool::Value;

struct FolderRequest {
  std::string folder;
};

struct TextsRequest {
  std::string folder;
  std::vector<std::string> texts;
  std::string list;
  unsigned int mainId = 0;
};

// The library wants a separator at the end, and at least seven characters to see 04_02 in a name.
std::string FolderName(const std::string& folder) {
  const std::string name = tool::AsFolder(folder);
  const bool isRelative = name.find_first_of("/\\") != 0 && name.find(':') == std::string::npos;
  return isRelative && name.size() < 7 ? "./" + name : name;
}

void Load(const std::string& folder) {
  if (QXVLoadDictionarys(tool::Wide(FolderName(folder))) != 0) {
    throw tool::Failure(folder, tool::IsFolder(folder) ? "no file with the extension ini is there" : "no such folder");
  }
}

void RunLoad(const FolderRequest& request, tool::Context& context) {
  Load(request.folder);
  Value::List files;
  std::vector<std::vector<std::string>> rows = {{"file", "encoding", "main id", "entries"}};
  for (const tool::DictionaryFile& file : tool::ReadDictionaryFiles(FolderName(request.folder))) {
    files.emplace_back(Value::Record{
        {"file", file.path}, {"encoding", file.encoding}, {"main_id", file.mainId}, {"entries", file.entries.size()}});
    rows.push_back({file.path, file.encoding, file.mainId.empty() ? "0" : file.mainId, std::to_string(file.entries.size())});
  }
  context.Answer(files, tool::Table(rows));
}

void RunLookup(const TextsRequest& request, tool::Context& context) {
  Load(request.folder);
  const CQXString nothing = QXT("\xFFFF");  // no text has this
  const auto answer = [&](const std::string& text) -> Value::Record {
    const CQXString translation = QXVTranslate(tool::Wide(text), nothing, request.mainId);
    if (translation == nothing) {
      throw tool::Failure(text,
                          "has no translation" +
                              (request.mainId == 0 ? std::string() : " under the identifier " + std::to_string(request.mainId)));
    }
    return {{"translation", translation}};
  };
  const auto line = [](const std::string& /*text*/, const Value::Record& record) { return record.front().value.Plain() + '\n'; };
  context.AnswerEach("text", request.texts, answer, line);
}

std::vector<std::string> TextsOf(const TextsRequest& request) {
  std::vector<std::string> texts = request.texts;
  if (request.list.empty()) {
    return texts;
  }
  const std::string all = tool::Narrow(tool::DecodeText(tool::ReadFile(request.list), request.list));
  for (std::size_t start = 0; start < all.size();) {
    const std::size_t end = std::min(all.find_first_of("\r\n", start), all.size());
    if (end > start) {
      texts.push_back(all.substr(start, end - start));
    }
    start = end + 1;
  }
  return texts;
}

void RunMissing(const TextsRequest& request, tool::Context& context) {
  if (request.texts.empty() && request.list.empty()) {
    throw tool::WrongUse("give texts, or a file of them with --list");
  }
  Load(request.folder);
  for (const std::string& text : TextsOf(request)) {
    (void)QXVTranslate(tool::Wide(text), CQXString(), request.mainId);
  }
  CQXArray<CQXString, CQXString&> missing;
  (void)QXVGetMissingTexts(missing);
  Value::List list;
  std::string lines;
  for (const CQXString& text : missing) {
    list.emplace_back(text);
    lines += tool::Narrow(text) + '\n';
  }
  context.Answer(list, lines);
  context.exitCode = list.empty() ? 0 : tool::kExitNotFound;
}

void RunLint(const FolderRequest& request, tool::Context& context) {
  const std::vector<tool::DictionaryFile> files = tool::ReadDictionaryFiles(FolderName(request.folder));
  Value::List list;
  std::string lines;
  for (const tool::DictionaryFile& file : files) {
    for (const tool::DictionaryFinding& finding : file.findings) {
      list.emplace_back(Value::Record{{"file", file.path}, {"line", finding.line}, {"finding", finding.text}});
      lines += file.path + (finding.line > 0 ? ':' + std::to_string(finding.line) : "") + ": " + finding.text + '\n';
    }
  }
  context.Answer(list, lines.empty() ? std::to_string(files.size()) + " file(s), nothing found\n" : lines);
  context.exitCode = list.empty() ? 0 : tool::kExitNotFound;
}

void AddFolder(CLI::App* command, std::string& folder) {
  command->add_option("FOLDER", folder, "The folder; all files with the extension ini in it and below count")->required();
}

void AddLoad(CLI::App& dict, tool::Context& context) {
  const auto request = std::make_shared<FolderRequest>();
  CLI::App* command = tool::NewCommand(dict, "load", "The dictionaries of a folder; exit code 1 without any",
                                       "  qxvtool dict load Dictionary/04_02\n"
                                       "  qxvtool dict load Dictionary/04_02 --json");
  AddFolder(command, request->folder);
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunLoad);
}

void AddLookup(CLI::App& dict, tool::Context& context) {
  const auto request = std::make_shared<TextsRequest>();
  CLI::App* command = tool::NewCommand(dict, "lookup", "The translations of texts; exit code 1 when one is missing",
                                       "  qxvtool dict lookup Dictionary/04_02 Open Save\n"
                                       "  qxvtool dict lookup Dictionary/04_02 Open --id 7 --json");
  AddFolder(command, request->folder);
  command->add_option("TEXT", request->texts, "The texts, letter for letter")->required();
  command->add_option("--id", request->mainId, "Ask the first dictionary with this main identifier only");
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunLookup);
}

void AddMissing(CLI::App& dict, tool::Context& context) {
  const auto request = std::make_shared<TextsRequest>();
  CLI::App* command = tool::NewCommand(dict, "missing", "Which of many texts have no translation; exit code 1 when there are any",
                                       "  qxvtool dict missing Dictionary/04_02 Open Save Close\n"
                                       "  qxvtool dict missing Dictionary/04_02 --list texts.txt");
  AddFolder(command, request->folder);
  command->add_option("TEXT", request->texts, "The texts, letter for letter");
  command->add_option("--list", request->list, "A file of texts, one a line, in UTF-8 or UTF-16")->type_name("FILE");
  command->add_option("--id", request->mainId, "Ask the first dictionary with this main identifier only");
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunMissing);
}

void AddLint(CLI::App& dict, tool::Context& context) {
  const auto request = std::make_shared<FolderRequest>();
  CLI::App* command =
      tool::NewCommand(dict, "lint", "What in the files is taken otherwise than it looks; exit code 1 for any finding",
                       "  qxvtool dict lint Dictionary/04_02\n"
                       "  qxvtool dict lint Dictionary/04_02 --json");
  AddFolder(command, request->folder);
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunLint);
}

}  // namespace

void tool::AddDict(CLI::App& app, Context& context) {
  CLI::App* dict = NewGroup(app, "dict", "Dictionaries: load, lookup, missing, lint");
  AddLoad(*dict, context);
  AddLookup(*dict, context);
  AddMissing(*dict, context);
  AddLint(*dict, context);
}
