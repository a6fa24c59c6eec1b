// xml_text_write.cpp - QXVXMLStruct2String: a tree as text, one tag a line.
//
// Each name and value has a buffer of its own, so a tree of some megabytes of text is scattered over ten times as much memory,
// and waiting for it would take most of the time. Tags therefore go through a queue: a walk over the nodes runs some tags ahead
// of the writer, and what a tag needs is fetched in stages, each when the stage before has arrived: the node and its two arrays,
// the attributes, the texts.

#include "qxv/xml.h"

#include "foundation/text_access.h"
#include "os/cpu.h"
#include "os/intrinsics.h"
#include "text/xml_escape.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace {

// All fetching is inlined by force: a compiler may leave out calls of a function that has no result and changes nothing.
QXV_ALWAYS_INLINE void Fetch(const void* place) noexcept { _mm_prefetch(static_cast<const char*>(place), _MM_HINT_T0); }

// Text in pieces of fixed size, so that what is written stays where it is until the whole length is known.
class Pieces {
 public:
  /// Room for at least kRoom units behind at, which is where writing has come to; at itself while there is enough.
  static constexpr std::size_t kRoom = 2 * qxv::kXmlEscapeRoom;

  QXV_ALWAYS_INLINE QXChar* Room(QXChar* at) { return static_cast<std::size_t>(m_end - at) < kRoom ? Add(at) : at; }

  void AppendTo(QXChar* at, CQXString& text) {
    Close(at);
    std::size_t length = 0;
    for (const Piece& piece : m_pieces) {
      length += piece.length;
    }
    QXChar* out = qxv::TextAccess::Grow(text, length);
    for (const Piece& piece : m_pieces) {
      std::memcpy(out, piece.units.get(), piece.length * sizeof(QXChar));
      out += piece.length;
    }
  }

  QXChar* Add(QXChar* at) {
    Close(at);
    m_pieces.push_back({std::make_unique_for_overwrite<QXChar[]>(kPiece), 0});
    QXChar* units = m_pieces.back().units.get();
    m_end = units + kPiece;
    return units;
  }

 private:
  static constexpr std::size_t kPiece = 32768;

  struct Piece {
    std::unique_ptr<QXChar[]> units;
    std::size_t length = 0;
  };

  void Close(const QXChar* at) noexcept {
    if (!m_pieces.empty()) {
      m_pieces.back().length = static_cast<std::size_t>(at - m_pieces.back().units.get());
    }
  }

  std::vector<Piece> m_pieces;
  QXChar* m_end = nullptr;
};

// KEPT: line ends, tabs, control characters and lone surrogates stay as they are. A parser turns the first into blanks and
//   refuses the others, but texts written so are compared byte by byte. Pinned by
//   XmlTextKept.TheWriterLeavesControlCharactersAndLoneSurrogates.
QXV_ALWAYS_INLINE QXChar* Escape(const CQXString& string, QXChar* at, Pieces& out) {
  const QXChar* text = qxv::TextAccess::Buffer(string);
  if (text == nullptr) {
    return at;
  }
  at = qxv::EscapeBlock(text, at);
  while (*text != 0) {
    at = qxv::EscapeBlock(text, out.Room(at));
  }
  return at;
}

template <std::size_t Size>
QXV_ALWAYS_INLINE QXChar* Put(const QXChar (&literal)[Size], QXChar* at) noexcept {
  std::memcpy(at, literal, (Size - 1) * sizeof(QXChar));
  return at + Size - 1;
}

struct Tag {
  const CQXVXmlNode* node = nullptr;  // null behind the last one
  bool closing = false;
};

// The tags of a tree in the order of the text.
class Walk {
 public:
  explicit Walk(const CQXVXmlNode& root) : m_root(&root) {}

  Tag Next() {
    if (m_root != nullptr) {
      return Open(std::exchange(m_root, nullptr));
    }
    while (!m_open.empty()) {
      Level& level = m_open.back();
      if (level.next == level.end) {
        const Tag closing{level.node, true};
        m_open.pop_back();
        return closing;
      }
      const CQXVXmlNode* child = *level.next;
      ++level.next;
      if (child != nullptr) {
        FetchSiblings(level);
        return Open(child);
      }
    }
    return {};
  }

 private:
  using Children = const CQXVXmlNode* const*;
  struct Level {
    const CQXVXmlNode* node;
    Children next;
    Children end;
  };

  QXV_ALWAYS_INLINE Tag Open(const CQXVXmlNode* node) {
    const Children children = node->m_arrNode.GetData();
    Fetch(node->m_arrAtt.GetData());
    m_open.push_back({node, children, children + node->m_arrNode.GetSize()});
    return {node, false};
  }

  // The next siblings come soon: the nodes of some, the arrays of the nearer, the children of the nearest.
  QXV_ALWAYS_INLINE static void FetchSiblings(const Level& level) noexcept {
    const std::ptrdiff_t left = level.end - level.next;
    Fetch(level.next + 12);
    if (left > 4) {
      FetchNode(level.next[4]);
    }
    if (left > 2 && level.next[2] != nullptr) {
      const CQXVXmlNode& node = *level.next[2];
      Fetch(node.m_arrAtt.GetData());
      Fetch(node.m_arrNode.GetData());
    }
    if (left > 0 && level.next[0] != nullptr) {
      const CQXVXmlNode& node = *level.next[0];
      for (QXInt64 i = 0; i < std::min<QXInt64>(node.m_arrNode.GetSize(), 4); ++i) {
        FetchNode(node.m_arrNode.GetData()[i]);
      }
    }
  }

  QXV_ALWAYS_INLINE static void FetchNode(const CQXVXmlNode* node) noexcept {
    Fetch(node);
    Fetch(reinterpret_cast<const char*>(node) + 64);
  }

  const CQXVXmlNode* m_root;
  std::vector<Level> m_open;
};

constexpr QXInt64 kFetched = 16;  // attributes of a node that are fetched ahead

// The first so many characters of a text, which may stand in two lines.
QXV_ALWAYS_INLINE void FetchText(const CQXString& text, std::size_t characters) noexcept {
  Fetch(qxv::TextAccess::Buffer(text));
  Fetch(qxv::TextAccess::Buffer(text) + characters - 1);
}

QXV_ALWAYS_INLINE void FetchAttributes(const Tag& tag) noexcept {
  if (tag.node == nullptr || tag.closing) {
    return;
  }
  FetchText(tag.node->m_strName, 16);
  const CQXVXmlAtt* const* attributes = tag.node->m_arrAtt.GetData();
  for (QXInt64 i = 0; i < std::min(tag.node->m_arrAtt.GetSize(), kFetched); ++i) {
    Fetch(attributes[i]);
  }
}

QXV_ALWAYS_INLINE void FetchTexts(const CQXVXmlAtt* attribute) noexcept {
  if (attribute != nullptr) {
    FetchText(attribute->m_strName, 16);
    FetchText(attribute->m_strValue, 32);
  }
}

QXV_ALWAYS_INLINE void FetchTexts(const Tag& tag) noexcept {
  if (tag.node == nullptr || tag.closing) {
    return;
  }
  const CQXVXmlAtt* const* attributes = tag.node->m_arrAtt.GetData();
  for (QXInt64 i = 0; i < std::min(tag.node->m_arrAtt.GetSize(), kFetched); ++i) {
    FetchTexts(attributes[i]);
  }
}

QXV_ALWAYS_INLINE QXChar* WriteTag(const Tag& tag, QXChar* at, Pieces& out) {
  at = out.Room(at);
  at = tag.closing ? Put(QXT("</"), at) : Put(QXT("<"), at);
  at = Escape(tag.node->m_strName, at, out);
  const QXInt64 count = tag.closing ? 0 : tag.node->m_arrAtt.GetSize();
  for (QXInt64 i = 0; i < count; ++i) {
    if (const CQXVXmlAtt* attribute = tag.node->m_arrAtt.GetData()[i]; attribute != nullptr) {
      at = Put(QXT(" "), out.Room(at));
      at = Escape(attribute->m_strName, at, out);
      at = Put(QXT("=\""), out.Room(at));
      at = Escape(attribute->m_strValue, at, out);
      at = Put(QXT("\""), out.Room(at));
    }
  }
  return Put(QXT(">\r\n"), out.Room(at));
}

// Tags between the walk and each stage.
constexpr std::size_t kToAttributes = 3;
constexpr std::size_t kToTexts = 6;
constexpr std::size_t kToWriter = 10;
constexpr std::size_t kQueue = 16;
static_assert(kToWriter < kQueue);

}  // namespace

int QXVXMLStruct2String(const CQXVXmlNode& root, CQXString& text) {
  Pieces out;
  QXChar* at = out.Add(nullptr);
  Walk walk(root);
  Tag queue[kQueue];
  for (std::size_t turn = 0;; ++turn) {
    queue[turn % kQueue] = walk.Next();
    FetchAttributes(queue[(turn - kToAttributes) % kQueue]);
    FetchTexts(queue[(turn - kToTexts) % kQueue]);
    if (turn >= kToWriter) {
      const Tag& tag = queue[(turn - kToWriter) % kQueue];
      if (tag.node == nullptr) {
        break;
      }
      at = WriteTag(tag, at, out);
    }
  }
  out.AppendTo(at, text);
  return 0;
}
