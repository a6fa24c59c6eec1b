// dictionary_fixture.h - a folder of dictionary files; nothing is loaded before and behind each test.
#pragma once

#include "qxv/dictionary.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace support {

constexpr int kFailed = -1990190480;  // 0x89601A70

class DictionaryTest : public testing::Test {
 protected:
  DictionaryTest() { QXVReleaseDictionarys(); }
  ~DictionaryTest() override { QXVReleaseDictionarys(); }

  /// Creates the folders in front of the name, too.
  void Write(const Text& name, const std::string& bytes) {
    const Text path = m_folder.File(name);
    std::filesystem::create_directories(NativePath(path).parent_path());
    ASSERT_TRUE(WriteBytes(path, bytes));
  }

  int Load() { return QXVLoadDictionarys(m_folder.Path().c_str()); }

  static Text Translated(const QXChar* text, unsigned mainId = 0) { return TextOf(QXVTranslate(text, mainId)); }

  static std::vector<Text> Missing() {
    CQXArray<CQXString, CQXString&> texts;
    (void)QXVGetMissingTexts(texts);
    std::vector<Text> missing;
    for (QXInt64 i = 0; i < texts.GetSize(); ++i) {
      missing.push_back(TextOf(texts[i]));
    }
    return missing;
  }

  TempFolder m_folder;
};

}  // namespace support
