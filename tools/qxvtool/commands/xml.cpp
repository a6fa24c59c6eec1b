// xml.cpp - qxvtool xml: the tree that the library makes of a document.

#include "qxv/xml.h"

#include "qxv/interop.h"
#include "qxvtool/commands/commands.h"
#include "qxvtool/support/console.h"
#include "qxvtool/support/failure.h"
#include "qxvtool/support/files.h"
#include "qxvtool/support/text.h"

#include <algorithm>
#include <utility>

namespace {

using tool::Value;

struct ShowRequest {
  std::string file;
  bool isText = false;
};

struct CheckRequest {
  std::vector<std::string> files;
};

constexpr int kMostLevels = 500;  // for a person; programs of ours answer in records of that depth, too

bool ReadTree(const CQXString& text, CQXVXmlNode& root) {
  return QXVXMLString2Struct(text, root) == 0 && root.m_strName.GetLength() > 0;
}

// Throws what a person can do about a document of which the library makes no tree.
void LoadTree(const std::string& path, CQXVXmlNode& root) {
  const CQXString text = tool::DecodeText(tool::ReadFile(path), path);
  if (ReadTree(text, root)) {
    return;
  }
  CQXVXmlNode again;
  if (ReadTree(CQXString(QXT("<?xml version=\"1.0\"?>")) + text, again)) {
    throw tool::Failure(path, "has no declaration; put <?xml version=\"1.0\"?> in front");
  }
  throw tool::Failure(path, "is no document of a declaration and a root element, with nothing else beside the two");
}

struct Count {
  long long elements = 0;
  long long attributes = 0;
  long long levels = 0;
};

Count CountOf(const CQXVXmlNode& root) {
  Count count;
  std::vector<std::pair<const CQXVXmlNode*, long long>> open = {{&root, 1}};
  while (!open.empty()) {
    const auto [node, level] = open.back();
    open.pop_back();
    ++count.elements;
    count.attributes += node->m_arrAtt.GetSize();
    count.levels = std::max(count.levels, level);
    for (const CQXVXmlNode* child : node->m_arrNode) {
      open.emplace_back(child, level + 1);
    }
  }
  return count;
}

Value TreeOf(const CQXVXmlNode& node) {
  Value::Record attributes;
  for (const CQXVXmlAtt* attribute : node.m_arrAtt) {
    attributes.push_back({tool::Narrow(attribute->m_strName), attribute->m_strValue});
  }
  Value::List children;
  for (const CQXVXmlNode* child : node.m_arrNode) {
    children.push_back(TreeOf(*child));
  }
  return Value::Record{{"name", node.m_strName}, {"attributes", std::move(attributes)}, {"children", std::move(children)}};
}

std::string OutlineOf(const CQXVXmlNode& node, std::size_t level) {
  std::string out = std::string(2 * level, ' ') + tool::Narrow(node.m_strName);
  for (const CQXVXmlAtt* attribute : node.m_arrAtt) {
    out += "  " + tool::Narrow(attribute->m_strName) + '=' + Value(attribute->m_strValue).Json();
  }
  out += '\n';
  for (const CQXVXmlNode* child : node.m_arrNode) {
    out += OutlineOf(*child, level + 1);
  }
  return out;
}

void RunShow(const ShowRequest& request, tool::Context& context) {
  CQXVXmlNode root;
  LoadTree(request.file, root);
  if (request.isText) {
    CQXString text;
    QXVXMLStruct2String(root, text);
    tool::Write(tool::Stream::Out, tool::Narrow(text));
    return;
  }
  if (CountOf(root).levels > kMostLevels) {
    throw tool::Failure(request.file, "has more than " + std::to_string(kMostLevels) + " levels; --text shows it all the same");
  }
  context.Answer(context.json ? TreeOf(root) : Value(), OutlineOf(root, 0));
}

Value::Record Check(const std::string& path) {
  CQXVXmlNode root;
  LoadTree(path, root);
  const Count count = CountOf(root);
  return {{"root", root.m_strName}, {"elements", count.elements}, {"attributes", count.attributes}, {"levels", count.levels}};
}

void RunCheck(const CheckRequest& request, tool::Context& context) {
  const auto text = [](const std::string& path, const Value::Record& record) {
    return path + ": good, " + record[1].value.Plain() + " element(s) and " + record[2].value.Plain() + " attribute(s) on " +
           record[3].value.Plain() + " level(s) below " + record[0].value.Plain() + '\n';
  };
  context.AnswerEach("file", request.files, Check, text);
}

void AddShow(CLI::App& xml, tool::Context& context) {
  const auto request = std::make_shared<ShowRequest>();
  CLI::App* command = tool::NewCommand(xml, "show", "The tree of a document",
                                       "  qxvtool xml show project.xml              an element a line\n"
                                       "  qxvtool xml show project.xml --text       as the library writes it\n"
                                       "  qxvtool xml show project.xml --json");
  command->add_option("FILE", request->file, "A document in UTF-8 or UTF-16")->required();
  command->add_flag("--text", request->isText, "As the library writes XML: a tag a line");
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunShow);
}

void AddCheck(CLI::App& xml, tool::Context& context) {
  const auto request = std::make_shared<CheckRequest>();
  CLI::App* command = tool::NewCommand(xml, "check", "Whether the library reads a document; exit code 1 when not",
                                       "  qxvtool xml check *.xml\n"
                                       "  qxvtool xml check project.xml --json");
  command->add_option("FILE", request->files, "Documents in UTF-8 or UTF-16")->required();
  tool::AddJson(command, context);
  tool::OnCall(command, request, context, RunCheck);
}

}  // namespace

void tool::AddXml(CLI::App& app, Context& context) {
  CLI::App* xml = NewGroup(app, "xml", "Documents as trees: show, check");
  AddShow(*xml, context);
  AddCheck(*xml, context);
}
