// dictionary_load_test.cpp - which files of a folder are loaded, in which order, and in which encoding.

#include "support/child_process.h"
#include "support/utf16_bytes.h"
#include "text/dictionary_fixture.h"
#include "text/dictionary_folder.h"
#include "text/dictionary_set.h"

#include <cstdint>
#include <memory>

namespace {

using support::kFailed;
using support::Text;

class DictionaryLoad : public support::DictionaryTest {
 protected:
  /// The names that a folder gives, without the folder.
  std::vector<Text> Found() {
    std::vector<Text> names;
    for (const Text& name : qxv::FindDictionaryFiles(m_folder.Path())) {
      EXPECT_EQ(name.substr(0, m_folder.Path().size()), m_folder.Path());
      names.push_back(name.substr(m_folder.Path().size()));
    }
    return names;
  }
};

TEST_F(DictionaryLoad, AFolderNameEndsWithASeparator) {
  Write(QXT("a.ini"), "[a]=b\n");
  const Text folder = m_folder.Path().substr(0, m_folder.Path().size() - 1);
  EXPECT_EQ(QXVLoadDictionarys(folder.c_str()), kFailed);
  EXPECT_EQ(QXVLoadDictionarys((folder + QXT("\\")).c_str()), 0);
  EXPECT_EQ(QXVLoadDictionarys((folder + QXT("/")).c_str()), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("b"));
  EXPECT_EQ(QXVLoadDictionarys((folder + QXT("\\a.ini")).c_str()), kFailed);
}

TEST_F(DictionaryLoad, AFolderNameOfLessThanThreeCharactersFails) {
  for (const QXChar* name : {QXT("\\"), QXT("/"), QXT(".\\"), QXT("C:"), QXT("a")}) {
    EXPECT_EQ(QXVLoadDictionarys(name), kFailed) << support::Printable(name);
  }
}

TEST_F(DictionaryLoad, AFolderWithoutDictionariesFails) {
  EXPECT_EQ(Load(), kFailed) << "nothing at all";
  Write(QXT("a.txt"), "[a]=b\n");
  Write(QXT("ini"), "[a]=b\n");
  Write(QXT("a.ini.bak"), "[a]=b\n");
  Write(QXT("sub\\a.in"), "[a]=b\n");
  std::filesystem::create_directories(support::NativePath(m_folder.File(QXT("folder.ini"))));
  EXPECT_EQ(Load(), kFailed);
  EXPECT_EQ(QXVLoadDictionarys(m_folder.File(QXT("none\\")).c_str()), kFailed);
  EXPECT_EQ(QXVLoadDictionarys(m_folder.File(QXT("a.txt\\")).c_str()), kFailed);
}

TEST_F(DictionaryLoad, FilesAreFoundInAllSubfoldersInTheOrderOfNames) {
  for (const QXChar* name :
       {QXT("z.ini"), QXT("a.ini"), QXT("B\\deep\\er\\x.ini"), QXT("B\\b.ini"), QXT("C.ini"), QXT("B\\z.ini"),
        QXT("empty\\x.txt"), QXT("d.ini\\in.ini"), QXT("a.b.ini"), QXT(".ini"), QXT("m.INI")}) {
    Write(name, "[a]=b\n");
  }
  EXPECT_EQ(Found(), (std::vector<Text>{QXT(".ini"), QXT("a.b.ini"), QXT("a.ini"), QXT("B\\b.ini"), QXT("B\\deep\\er\\x.ini"),
                                        QXT("B\\z.ini"), QXT("C.ini"), QXT("d.ini\\in.ini"), QXT("z.ini")}));
}

TEST_F(DictionaryLoad, TheSetKnowsItsFolderFilesAndNumbers) {
  Write(QXT("a.ini"), "[a]=1\n[b]=2\n[a]=3\n");
  Write(QXT("sub\\b.ini"), "[DICTIONARY_MAINID]=9\n");
  CQXVDictionaryRoot root;
  ASSERT_EQ(root.Load(m_folder.Path().c_str()), 0u);
  EXPECT_EQ(support::TextOf(root.Folder()), m_folder.Path());
  ASSERT_EQ(root.Dictionaries().size(), 2u);
  EXPECT_EQ(support::TextOf(root.Dictionaries()[0]->Path()), m_folder.File(QXT("a.ini")));
  EXPECT_EQ(root.Dictionaries()[0]->MainId(), 0u);
  EXPECT_EQ(root.Dictionaries()[0]->Count(), 2u);
  EXPECT_EQ(support::TextOf(root.Dictionaries()[1]->Path()), m_folder.File(QXT("sub\\b.ini")));
  EXPECT_EQ(root.Dictionaries()[1]->MainId(), 9u);
  EXPECT_EQ(root.Dictionaries()[1]->Count(), 0u);
}

TEST_F(DictionaryLoad, AFileIsNamedByEightCharactersWithTheExtensionInAnyCase) {
  Write(QXT("a.INI"), "[a]=b\n");
  Write(QXT("a.txt"), "[a]=b\n");
  const qxv::TextHash hash;
  CQXVDictionary capitals;
  EXPECT_EQ(capitals.Load(m_folder.File(QXT("a.INI")), 1252, hash), 0u);
  EXPECT_EQ(capitals.Find(QXT("a"), hash.Of(QXT("a"))), QXT("b"));
  for (const Text& name : {m_folder.File(QXT("a.txt")), m_folder.File(QXT("none.ini")), Text(QXT("C:\\.ini")), Text(QXT(".ini")),
                           Text(QXT("ini")), Text()}) {
    CQXVDictionary dictionary;
    EXPECT_EQ(dictionary.Load(name, 1252, hash), 0x89601A70u) << support::Printable(name);
  }
}

TEST_F(DictionaryLoad, TheMarkChoosesTheEncoding) {
  using namespace std::string_literals;
  const std::string files[] = {
      "\xFF\xFE" + support::Utf16Le(QXT("[\u4E2D]=\u56FD \U0001F3B5\r\n")),
      "\xFE\xFF\0[\x4E\x2D\0]\0=\x56\xFD\0 \xD8\x3C\xDF\xB5"s,
      "\xEF\xBB\xBF[\xE4\xB8\xAD]=\xE5\x9B\xBD \xF0\x9F\x8E\xB5\n",
  };
  for (const std::string& bytes : files) {
    Write(QXT("04_01\\a.ini"), bytes);
    ASSERT_EQ(QXVLoadDictionarys(m_folder.File(QXT("04_01\\")).c_str()), 0);
    EXPECT_EQ(Translated(QXT("\u4E2D")), QXT("\u56FD \U0001F3B5"));
  }
}

TEST_F(DictionaryLoad, WithoutAMarkTheFoldersNameChoosesTheCodePage) {
  const std::string simplified = "[a]=\xD6\xD0\xB9\xFA\n";   // 936
  const std::string traditional = "[a]=\xA4\xA4\xB0\xEA\n";  // 950
  const struct {
    Text folder;
    std::string bytes;
    Text value;
  } rows[] = {
      {QXT("04_02\\"), simplified, QXT("\u4E2D\u56FD")},  {QXT("04_02/"), simplified, QXT("\u4E2D\u56FD")},
      {QXT("x04_02\\"), simplified, QXT("\u4E2D\u56FD")}, {QXT("04_01\\"), traditional, QXT("\u4E2D\u570B")},
      {QXT("04_02x\\"), "[a]=\xE9\n", QXT("\u00E9")},     {QXT("04_02\\\\"), "[a]=\xE9\n", QXT("\u00E9")},
      {QXT("04_03\\"), "[a]=\xE9\n", QXT("\u00E9")},      {QXT("04_02\\sub\\"), "[a]=\xE9\n", QXT("\u00E9")},
  };
  for (const auto& row : rows) {
    Write(row.folder + QXT("a.ini"), row.bytes);
    ASSERT_EQ(QXVLoadDictionarys(m_folder.File(row.folder).c_str()), 0) << support::Printable(row.folder);
    EXPECT_EQ(Translated(QXT("a")), row.value) << support::Printable(row.folder);
  }
}

TEST_F(DictionaryLoad, AFileThatCannotBeReadIsLeftOut) {
  Write(QXT("a.ini"), "[a]=1\n");
  Write(QXT("b.ini"), "[b]=2\n");
  std::filesystem::resize_file(support::NativePath(m_folder.File(QXT("a.ini"))), (std::uintmax_t{256} << 20) + 1);
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("a")) << "more than 256 MiB";
  EXPECT_EQ(Translated(QXT("b")), QXT("2"));
  std::filesystem::remove(support::NativePath(m_folder.File(QXT("b.ini"))));
  EXPECT_EQ(Load(), 0) << "found is enough, whether it is read or not";
}

TEST_F(DictionaryLoad, EmptyAndForeignFilesAreDictionariesWithoutEntries) {
  Write(QXT("a.ini"), "");
  Write(QXT("b.ini"), "\xFF\xFE");
  Write(QXT("c.ini"), std::string("\x7F\x45LF\0\0\0\x01\xFF\xFE\n\r", 12));
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("a"));
}

TEST_F(DictionaryLoad, EveryPrefixOfAFileIsLoaded) {
  const std::string whole = "\xFF\xFE" + support::Utf16Le(QXT("[A]=x\r\n[DICTIONARY_MAINID]=7\r\n[B]= y"));
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    Write(QXT("a.ini"), whole.substr(0, size));
    ASSERT_EQ(Load(), 0) << size;
    const Text b = Translated(QXT("B"));
    EXPECT_EQ(b, size == whole.size() ? QXT("y") : b) << size;
  }
  EXPECT_EQ(Translated(QXT("A"), 7), QXT("x"));
}

TEST_F(DictionaryLoad, AnEmptyNameMeansTheFolderBesideTheProgram) {
  if (support::ChildArgument() != nullptr) {
    ASSERT_EQ(QXVLoadDictionarys(QXT("")), 0);
    EXPECT_EQ(Translated(QXT("a")), QXT("\u4E2D\u56FD")) << "code page 936, by the folder's name";
    return;
  }
  Write(QXT("Sys\\Dictionary\\04_02\\a.ini"), "[a]=\xD6\xD0\xB9\xFA\n");
  std::filesystem::create_directory(m_folder.Native() / "Bin");
  support::LinkProgram(m_folder.Native() / "Bin" / "host.exe");
  support::ChildProcess child("load", m_folder.Native() / "Bin" / "host.exe");
  EXPECT_EQ(child.Wait(), 0);
}

}  // namespace
