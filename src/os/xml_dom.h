// xml_dom.h - documents read by the system's parser: MSXML's DOM object on Windows, libxml2 elsewhere.
#pragma once

#include "os/utf.h"
#include "qxv/types.h"

#include <cstddef>

namespace qxv::os {

/// What is told of a document: a node, its attributes, its children, its end. Texts hold no zero and end with the call.
class XmlSink {
 public:
  virtual void Open(TextView name) = 0;
  virtual void Attribute(TextView name, TextView value) = 0;
  virtual void Close() = 0;

 protected:
  ~XmlSink() = default;
};

/// Levels of elements that a document may have. The system's own parser goes down one stack frame a level.
inline constexpr std::size_t kXmlMaxDepth = 10000;

/// What a document's entities may expand to: so many units, and so many times its text.
inline constexpr std::size_t kXmlMaxExpansion = 10u << 20;
inline constexpr std::size_t kXmlMaxExpansionFactor = 100;

/// What a text can be refused for before a parser sees it.
enum class XmlText { Fit, Blank, TooDeep, TooLarge };

/// Blank: white space stands before the declaration, which parsers judge differently. TooLarge:
/// its entities would expand too far. A malformed text may pass as Fit.
[[nodiscard]] XmlText CheckXmlText(TextView text);

/// Tells the sink the second of the document's top-level nodes when there are exactly two; otherwise, and when the text is
/// malformed, tells nothing. No file and no address is opened; entities may expand to 10 MiB and to 100 times the text, or the
/// document counts as malformed.
/// @return 0; 0x80004005 for too many levels; 0x8007000E when the parser itself has no memory; on Windows any negative HRESULT of
///   COM. A failure may come after some nodes were told. Without memory for the parser's copy of the text std::bad_alloc is
///   thrown; what the sink throws passes through.
[[nodiscard]] HRESULT ReadXml(TextView text, XmlSink& sink);

}  // namespace qxv::os
