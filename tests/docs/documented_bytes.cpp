// documented_bytes.cpp - reads the examples out of the Markdown pages.

#include "docs/documented_bytes.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <filesystem>
#include <fstream>

namespace docs_test {

namespace {

constexpr const char* kDigits = "0123456789ABCDEF";

bool IsDigit(const std::string& text, std::size_t at) {
  return at < text.size() && text[at] != '\0' && std::string(kDigits).find(text[at]) != std::string::npos;
}

// The bytes at the start of a line: pairs of digits, one blank between two of them.
std::string BytesOfLine(const std::string& line) {
  std::string bytes;
  for (std::size_t at = 4; IsDigit(line, at) && IsDigit(line, at + 1) && (at + 2 >= line.size() || line[at + 2] == ' ');
       at += 3) {
    bytes += static_cast<char>(std::stoi(line.substr(at, 2), nullptr, 16));
  }
  return bytes;
}

void ReadPage(const std::filesystem::path& page, std::map<std::string, std::string>& examples) {
  const std::string opening = "<!-- bytes: ";
  const std::string closing = " -->";
  std::ifstream file(page, std::ios::binary);
  std::string name;
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(opening, 0) == 0) {
      name = line.substr(opening.size(), line.find(closing) - opening.size());
      EXPECT_TRUE(examples.emplace(name, "").second) << name << " stands twice, again in " << page;
    } else if (!name.empty() && line.rfind("    ", 0) == 0) {
      examples[name] += BytesOfLine(line);
    } else if (!line.empty()) {
      name.clear();
    }
  }
}

}  // namespace

std::map<std::string, std::string> AllDocumentedBytes() {
  std::map<std::string, std::string> examples;
  for (const auto& entry : std::filesystem::directory_iterator(QXV_DOCS)) {
    if (entry.path().extension() == ".md") {
      ReadPage(entry.path(), examples);
    }
  }
  return examples;
}

std::string Documented(const std::string& name) {
  const auto examples = AllDocumentedBytes();
  const auto found = examples.find(name);
  return found == examples.end() ? "<no such example>" : Hex(found->second);
}

std::string Hex(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    text += kDigits[static_cast<unsigned char>(byte) >> 4];
    text += kDigits[static_cast<unsigned char>(byte) & 15];
    text += ' ';
  }
  return text;
}

}  // namespace docs_test
