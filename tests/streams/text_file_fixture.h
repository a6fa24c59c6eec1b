// text_file_fixture.h - an object of CQXVtxtRW and a file for it.
#pragma once

#include "qxv/factories.h"
#include "qxv/text_file.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace support {

class TextFileBase : public testing::Test {
 protected:
  TextFileBase() : m_file(QXV_ConstructTxtRW()) {}
  ~TextFileBase() override { QXV_DeleteTxtRW(m_file); }

  int OpenWith(const std::string& bytes) {
    EXPECT_TRUE(WriteBytes(m_name, bytes));
    return m_file->Open(m_name.c_str());
  }

  // "text" and the result, so that one look shows both.
  std::string Read() {
    CQXString line(QXT("old"));
    const int count = m_file->ReadLine(line);
    return Printable(TextOf(line)) + "/" + std::to_string(count);
  }

  TempFolder m_folder;
  Text m_name = m_folder.File(QXT("lines.txt"));
  CQXVtxtRW* m_file;
};
}  // namespace support
