// format_examples_test.cpp - the bytes shown for blocks, files, log, dictionary, registry, digest and sound.

#include "docs/documented_bytes.h"

#include "os/clock.h"
#include "qxv/audio.h"
#include "qxv/buffer_file.h"
#include "qxv/dictionary.h"
#include "qxv/factories.h"
#include "qxv/log.h"
#include "qxv/md5.h"
#include "qxv/registry.h"
#include "qxv/stream_buffer.h"
#include "qxv/text_file.h"
#include "qxv/unicode_ansi_file.h"
#include "support/fake_clock.h"
#include "support/private_registry.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using docs_test::AllDocumentedBytes;
using docs_test::Documented;
using docs_test::Hex;
using support::ReadBytes;
using support::TempFolder;
using support::TextOf;

struct Release {
  void operator()(CQXVObject* object) const { QXV_DeleteBufferFileRW(object); }
};
template <class Interface>
using Owned = std::unique_ptr<Interface, Release>;

TEST(FormatExamples, EveryExampleOfThePagesIsCompared) {
  std::vector<std::string> names;
  for (const auto& [name, bytes] : AllDocumentedBytes()) {
    EXPECT_FALSE(bytes.empty()) << name;
    names.push_back(name);
  }
  const std::vector<std::string> compared = {
      "bmp",      "buffer-file",        "dictionary",     "gif-frame",    "jpg-beginning",   "log", "md5-context", "pcx-pixels",
      "pcx-runs", "registry-rectangle", "registry-texts", "stream-block", "text-file-utf16", "tga", "wav",         "yuv"};
  EXPECT_EQ(names, compared);
}

TEST(FormatExamples, StreamBlock) {
  CQXVStreamBufIn in;
  in << short{-2} << 1.0 << CQXString(QXT("AB"));
  const unsigned char bytes[] = {7, 8};
  in.in(bytes, 2);
  int size = 0;
  const unsigned char* block = in.GetBuffer(size);
  EXPECT_EQ(Hex(std::string(block, block + size)), Documented("stream-block"));
}

TEST(FormatExamples, BufferFile) {
  const TempFolder folder;
  CQXArray<int, int&> numbers;
  int one = 1;
  int minusOne = -1;
  numbers.Add(one);
  numbers.Add(minusOne);
  CQXArray<CQXString, CQXString&> texts;
  CQXString first(QXT("A"));
  CQXString second(QXT("BC"));
  texts.Add(first);
  texts.Add(second);
  {
    const Owned<CQXVBufferFileRW> file(QXV_ConstructBufferFileRW());
    file->Reset();
    ASSERT_EQ(file->Open(folder.File(QXT("values")).c_str(), 0, 1024), 1);
    file->Write(short{-2});
    file->Write(CQXString(QXT("AB")));
    file->Write(numbers);
    file->Write(texts);
  }
  EXPECT_EQ(Hex(ReadBytes(folder.File(QXT("values")))), Documented("buffer-file"));
}

TEST(FormatExamples, TextFile) {
  const TempFolder folder;
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("a.txt")), "\xFF\xFE"));
  {
    const Owned<CQXVtxtRW> file(QXV_ConstructTxtRW());
    ASSERT_EQ(file->Open(folder.File(QXT("a.txt")).c_str()), 0);
    file->WriteLine(QXT("A"));
  }
  EXPECT_EQ(Hex(ReadBytes(folder.File(QXT("a.txt")))), Documented("text-file-utf16"));
}

TEST(FormatExamples, UnicodeAnsiFile) {
  const TempFolder folder;
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("a.txt")), "\xFF\xFE"));
  {
    const Owned<CQXVUnicodeAnsiFile> file(QXV_ConstructUnicodeAnsiFile());
    file->Reset();
    ASSERT_EQ(file->Open(folder.File(QXT("a.txt")).c_str(), EQXV_ENCODING_UNICODE, EQXV_TEXTFILE_WRITE), 0u);
    file->WriteLine(QXT("A"));
  }
  EXPECT_EQ(Hex(ReadBytes(folder.File(QXT("a.txt")))), Documented("text-file-utf16"));
}

TEST(FormatExamples, Log) {
  const TempFolder folder;
  support::FakeClock clock;
  clock.local = SYSTEMTIME{2009, 5, 5 /*Friday*/, 1, 18, 5, 7, 45};
  const qxv::os::ScopedClock scope(clock);
  QXVLogSetPath(folder.Path().c_str());
  QXVLogSetMainName(QXT("docs"));
  QXVWriteLog(QXT("a"), 100);
  EXPECT_EQ(Hex(ReadBytes(folder.File(QXT("docs_20090501.txt")))), Documented("log"));
}

TEST(FormatExamples, Dictionary) {  // the one format that is read only
  const TempFolder folder;
  const std::string bytes = AllDocumentedBytes()["dictionary"];
  EXPECT_EQ(bytes, "\xEF\xBB\xBF[Open]=Ouvrir\r\n");
  ASSERT_TRUE(support::WriteBytes(folder.File(QXT("a.ini")), bytes));
  ASSERT_EQ(QXVLoadDictionarys(folder.Path().c_str()), 0);
  EXPECT_EQ(TextOf(QXVTranslate(QXT("Open"), 0)), QXT("Ouvrir"));
  QXVReleaseDictionarys();
}

// As the registry itself tells it: "REG_BINARY 0300..."
std::string Binary(const std::string& name) {
  std::string digits = Documented(name);
  digits.erase(std::remove(digits.begin(), digits.end(), ' '), digits.end());
  return "REG_BINARY " + digits;
}

TEST(FormatExamples, RegistryRecords) {
  const support::PrivateRegistry registry;
  CQXVRegister key;
  ASSERT_EQ(key.Create(HKEY_LOCAL_MACHINE, QXT("Software\\Test")), 0);
  CStringArray texts;
  texts.Add(QXT("AB"));
  texts.Add(QXT(""));
  texts.Add(QXT("\u4E2D"));
  ASSERT_EQ(key.Write(QXT("texts"), texts), 0);
  ASSERT_EQ(key.Write(QXT("rectangle"), CRect(1, -2, 3, 4)), 0);
  const support::Text subkey = QXT("Software\\Test");
  EXPECT_EQ(support::StoredImage(HKEY_LOCAL_MACHINE, subkey, QXT("texts")), Binary("registry-texts"));
  EXPECT_EQ(support::StoredImage(HKEY_LOCAL_MACHINE, subkey, QXT("rectangle")), Binary("registry-rectangle"));
}

TEST(FormatExamples, Md5Context) {
  const TempFolder folder;
  const Owned<CQXVMD5Ctx> digest(QXV_ConstructMD5());
  digest->Initialize(1, folder.Path().c_str(), QXT("docs"));
  for (unsigned char byte = 0; byte <= 0x24; ++byte) {
    digest->Update(&byte, 1);
  }
  ASSERT_EQ(digest->SaveContext(37), 1);
  EXPECT_EQ(Hex(ReadBytes(folder.File(QXT("docs.MD5frag")))), Documented("md5-context"));
}

TEST(FormatExamples, Wav) {
  const TempFolder folder;
  const float samples[] = {0.5F, -1.0F};
  const tWAVEFORMATEX format{1, 1, 48000, 96000, 2, 16, 0};
  ASSERT_EQ(QXVWriteWav(folder.File(QXT("a.wav")).c_str(), format, samples, 2), 0);
  EXPECT_EQ(Hex(ReadBytes(folder.File(QXT("a.wav")))), Documented("wav"));
}

}  // namespace
