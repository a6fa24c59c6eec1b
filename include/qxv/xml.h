// xml.h - a document as a tree of elements and attributes, and its conversion from and to XML text.
//
// The tree knows names, attributes and child elements in document order: no text, no comments, no namespaces. A node owns what
// its two arrays point to; every entry is made by new and freed through its virtual destructor. Null entries are allowed and
// skipped. One object must not stand twice in a tree, nor a node below itself. Depth has no limit: copying, freeing and writing
// need no stack that grows with it. Allocation failure throws std::bad_alloc. One tree is used by one thread at a time.
#pragma once

#include "qxv/array.h"
#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// One attribute.
class QXV_API CQXVXmlAtt {
 public:
  CQXVXmlAtt();
  CQXVXmlAtt(const CQXString& name, const CQXString& value);
  CQXVXmlAtt(const CQXVXmlAtt& other);
  void operator=(const CQXVXmlAtt& other);
  virtual ~CQXVXmlAtt();

  CQXString m_strName;   ///< unescaped
  CQXString m_strValue;  ///< unescaped
};

/// One element.
class QXV_API CQXVXmlNode {
 public:
  CQXVXmlNode();
  CQXVXmlNode(const CQXString& name);  // NOLINT(google-explicit-constructor): callers pass names

  /// Copies are deep. Either side of an assignment may stand inside the other's tree: the copy is taken first, what the target
  /// held is freed last. A derived class's object is copied as a plain node or attribute. A failed allocation leaves the target
  /// as it was or with some null entries behind its own.
  CQXVXmlNode(const CQXVXmlNode& other);
  void operator=(const CQXVXmlNode& other);

  /// Frees attributes and children in index order; a child is destroyed when its own children already are.
  virtual ~CQXVXmlNode();

  CQXString m_strName;                             ///< unescaped
  CQXArray<CQXVXmlAtt*, CQXVXmlAtt*> m_arrAtt;     ///< owned, in document order
  CQXArray<CQXVXmlNode*, CQXVXmlNode*> m_arrNode;  ///< owned, in document order
};

/// Reads a document by the system's parser: the DOM object of MSXML on Windows, libxml2 on Linux (docs/xml.md).
///
/// The document must have exactly two top-level nodes, normally the declaration and the root element; the second one becomes the
/// tree. Declaration, DOCTYPE, comments, processing instructions and the root count, white space between them does not. With any
/// other number, and for a text that is no XML, the result is 0 and the tree is empty. The target's attributes and children are
/// freed in every case; its name stays unless there is a tree.
///
/// Only elements and attributes below the root are supported. Anything else becomes a node without attributes: `#text` (unless
/// it is all white space), `#cdata-section`, `#comment`, the target of a processing instruction, the name of an entity.
/// No file and no address is opened for a document.
///
/// @param text may stand inside the target's tree
/// @return 0, or the negative HRESULT of what failed: 0x80004005 for more than 10,000 levels, 0x8007000E when the parser has no
///   memory, that of COM otherwise. What was converted before a failure stays in the target. Without memory for the parser's copy
///   of the text, or for the tree, std::bad_alloc is thrown and the target is empty.
QXV_API int QXVXMLString2Struct(const CQXString& text, CQXVXmlNode& root);

/// Appends the tree as text: one line for each opening and each closing tag, ended by carriage return and line feed, without
/// indentation, empty-element form and declaration. In names and values & < > ' " become &amp; &lt; &gt; &apos; &quot;. Put a
/// declaration in front to read the text again.
/// @param text may stand inside the tree; goes on behind its length word
/// @return always 0
QXV_API int QXVXMLStruct2String(const CQXVXmlNode& root, CQXString& text);
