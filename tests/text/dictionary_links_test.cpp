// dictionary_links_test.cpp - folders with links, without rights, of great depth. Linux only: there they can be made.

#include "support/limited_user.h"
#include "text/dictionary_fixture.h"
#include "text/dictionary_folder.h"

#include <cstdlib>

namespace {

using support::kFailed;
using support::Text;

class DictionaryLinks : public support::DictionaryTest {
 protected:
  std::size_t Found() { return qxv::FindDictionaryFiles(m_folder.Path()).size(); }
};

TEST_F(DictionaryLinks, LoopsAreEnteredOnce) {
  Write(QXT("a\\x.ini"), "[a]=b\n");
  Write(QXT("b\\y.ini"), "[b]=c\n");
  for (const char* name : {"a/up1", "a/up2", "b/up1", "b/up2"}) {
    std::filesystem::create_directory_symlink("..", m_folder.Native() / name);
  }
  std::filesystem::create_directory_symlink("../b", m_folder.Native() / "a" / "other");
  std::filesystem::create_directory_symlink(".", m_folder.Native() / "self");
  EXPECT_EQ(Found(), 2u);
  EXPECT_EQ(Load(), 0);
}

TEST_F(DictionaryLinks, ALinkToAFileIsAFile) {
  Write(QXT("a.txt"), "[a]=b\n");
  std::filesystem::create_symlink("a.txt", m_folder.Native() / "b.ini");
  std::filesystem::create_symlink("nowhere", m_folder.Native() / "c.ini");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("a")), QXT("b"));
}

TEST_F(DictionaryLinks, FoldersBelow128LevelsAreLeftOut) {
  std::filesystem::path folder = m_folder.Native();
  for (int level = 1; level <= 130; ++level) {
    ASSERT_TRUE(support::WriteBytes(QXT("Z:") + (folder / "x.ini").u16string(), "[a]=b\n"));
    folder /= "d";
    std::filesystem::create_directory(folder);
  }
  EXPECT_EQ(Found(), 128u);
}

TEST_F(DictionaryLinks, WhatMayNotBeReadIsLeftOut) {
  Write(QXT("closed\\a.ini"), "[a]=1\n");
  Write(QXT("b.ini"), "[b]=2\n");
  Write(QXT("c.ini"), "[c]=3\n");
  std::filesystem::permissions(m_folder.Native() / "closed", std::filesystem::perms::none);
  std::filesystem::permissions(m_folder.Native() / "b.ini", std::filesystem::perms::none);
  {
    const support::LimitedUser limited;
    ASSERT_EQ(Load(), 0);
    EXPECT_EQ(Translated(QXT("a")), QXT("a"));
    EXPECT_EQ(Translated(QXT("b")), QXT("b"));
    EXPECT_EQ(Translated(QXT("c")), QXT("3"));
  }
  std::filesystem::permissions(m_folder.Native() / "closed", std::filesystem::perms::owner_all);
}

TEST_F(DictionaryLinks, APipeIsLeftOut) {
  ASSERT_EQ(std::system(("mkfifo '" + (m_folder.Native() / "a.ini").string() + "'").c_str()), 0);
  Write(QXT("b.ini"), "[b]=2\n");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(Translated(QXT("b")), QXT("2"));
}

}  // namespace
