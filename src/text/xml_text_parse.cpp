// xml_text_parse.cpp - QXVXMLString2Struct: the tree built from what the system's parser tells.

#include "qxv/xml.h"

#include "foundation/text_access.h"
#include "os/xml_dom.h"
#include "text/xml_tree.h"

#include <memory>
#include <utility>
#include <vector>

namespace {

using qxv::os::TextView;

// Children wait in one vector until their parent closes; each list is then made once, in its size.
class TreeBuilder final : public qxv::os::XmlSink {
 public:
  void Open(TextView name) override {
    TakeAttributes();
    auto node = std::make_unique<CQXVXmlNode>();
    qxv::AssignText(node->m_strName, name);
    m_open.push_back({std::move(node), m_closed.size()});
  }

  void Attribute(TextView name, TextView value) override {
    m_attributes.push_back(std::make_unique<CQXVXmlAtt>());
    qxv::AssignText(m_attributes.back()->m_strName, name);
    qxv::AssignText(m_attributes.back()->m_strValue, value);
  }

  void Close() override {
    TakeAttributes();
    OpenNode& last = m_open.back();
    qxv::MoveIntoArray(m_closed, last.firstChild, last.node->m_arrNode);
    m_closed.push_back(std::move(last.node));
    m_open.pop_back();
  }

  /// The tree that was told; after a failure what the top node had got by then, without the child that was still open. Null when
  /// nothing was told.
  std::unique_ptr<CQXVXmlNode> Finish() {
    if (m_open.size() > 1) {
      m_attributes.clear();
      m_closed.resize(m_open[1].firstChild);
      m_open.resize(1);
    }
    if (!m_open.empty()) {
      Close();
    }
    return m_closed.empty() ? nullptr : std::move(m_closed.front());
  }

 private:
  struct OpenNode {
    std::unique_ptr<CQXVXmlNode> node;
    std::size_t firstChild = 0;  // in m_closed
  };

  void TakeAttributes() {
    if (!m_open.empty()) {
      qxv::MoveIntoArray(m_attributes, 0, m_open.back().node->m_arrAtt);
    }
  }

  std::vector<OpenNode> m_open;
  std::vector<std::unique_ptr<CQXVXmlNode>> m_closed;
  std::vector<std::unique_ptr<CQXVXmlAtt>> m_attributes;  // of the node opened last
};

template <class T>
void MoveArray(CQXArray<T*, T*>& from, CQXArray<T*, T*>& to) {
  to.SetGrowBy(qxv::GrownBlock(from.GetSize()));
  to.SetSize(from.GetSize());
  to.SetGrowBy(0);
  for (QXInt64 i = 0; i < from.GetSize(); ++i) {
    to.GetData()[i] = std::exchange(from.GetData()[i], nullptr);
  }
}

void Clear(CQXVXmlNode& root) noexcept {
  qxv::DeleteAttributes(root);
  root.m_arrAtt.RemoveAll();
  qxv::DeleteChildren(root);
}

}  // namespace

int QXVXMLString2Struct(const CQXString& text, CQXVXmlNode& root) {
  try {
    // The target is cleared behind the parser: the text may stand in it.
    TreeBuilder builder;
    const HRESULT result = qxv::os::ReadXml(TextView(text, static_cast<std::size_t>(text.GetLength())), builder);
    const std::unique_ptr<CQXVXmlNode> tree = builder.Finish();
    Clear(root);
    if (tree != nullptr) {
      root.m_strName = tree->m_strName;
      MoveArray(tree->m_arrAtt, root.m_arrAtt);
      MoveArray(tree->m_arrNode, root.m_arrNode);
    }
    return result;
  } catch (...) {  // memory ended: the target is empty all the same
    Clear(root);
    throw;
  }
}
