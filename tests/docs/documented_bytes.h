// documented_bytes.h - the bytes that the pages in docs/ show. An example is a block of lines indented by four blanks, below a
// line
//   <!-- bytes: name -->
// Each of its lines begins with bytes as two hexadecimal digits; what stands behind two blanks is a remark.
#pragma once

#include <map>
#include <string>

namespace docs_test {

/// Name -> bytes, of all examples on all pages. A name that stands twice fails the test.
std::map<std::string, std::string> AllDocumentedBytes();

/// The bytes of one example, as hexadecimal text; "<no such example>".
std::string Documented(const std::string& name);

/// "4D 5A " for MZ.
std::string Hex(const std::string& bytes);

}  // namespace docs_test
