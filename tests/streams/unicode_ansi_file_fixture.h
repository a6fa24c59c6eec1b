// unicode_ansi_file_fixture.h - an object of CQXVUnicodeAnsiFile and a file for it; encodings and flags as numbers.
#pragma once

#include "qxv/factories.h"
#include "qxv/unicode_ansi_file.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace support {

inline constexpr int kUnicode = 0;
inline constexpr int kAnsi = 1;
inline constexpr unsigned kRead = 1;
inline constexpr unsigned kWrite = 2;
inline constexpr unsigned kAdopt = 16;
inline constexpr unsigned kTruncate = 32;

class UnicodeAnsiFileBase : public testing::Test {
 protected:
  UnicodeAnsiFileBase() : m_file(QXV_ConstructUnicodeAnsiFile()) {}
  ~UnicodeAnsiFileBase() override { QXV_DeleteUnicodeAnsiFile(m_file); }

  unsigned OpenWith(const std::string& bytes, int encoding, unsigned flags) {
    EXPECT_TRUE(WriteBytes(m_name, bytes));
    return m_file->Open(m_name.c_str(), encoding, flags);
  }

  // The lines up to the end, each in brackets.
  std::string ReadAll() {
    std::string all;
    CQXString line;
    for (int i = 0; m_file->ReadLine(line) == 1; ++i) {
      if (i == 100) {
        return "endless";
      }
      all += "[" + Printable(TextOf(line)) + "]";
    }
    return all;
  }

  TempFolder m_folder;
  Text m_name = m_folder.File(QXT("lines.txt"));
  CQXVUnicodeAnsiFile* m_file;
};
}  // namespace support
