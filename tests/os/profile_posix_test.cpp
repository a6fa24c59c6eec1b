// profile_posix_test.cpp - initialisation files on Linux: where they are looked for, and the reader by itself.

#include "os/code_page.h"
#include "os/profile.h"
#include "os/profile_text.h"

#include "support/environment.h"
#include "support/file_bytes.h"
#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

namespace {

using qxv::os::FindProfileValue;
using qxv::os::TextView;
using support::Text;

class ProfileFolder : public testing::Test {
 protected:
  ProfileFolder() {
    std::filesystem::create_directories(m_folder.Native() / "qxv");
    std::filesystem::create_directories(m_folder.Native() / ".config/qxv");
    std::ofstream(m_folder.Native() / "values.ini") << "[s]\nk=1\n";
    std::ofstream(m_folder.Native() / "qxv/values.ini") << "[s]\nk=2\n";
    std::ofstream(m_folder.Native() / ".config/qxv/values.ini") << "[s]\nk=3\n";
  }

  static std::int32_t Read(const QXChar* name) { return qxv::os::ReadProfileInteger(name, QXT("s"), QXT("k")); }

  support::TempFolder m_folder;
  std::string m_native = m_folder.Native().string();
};

TEST_F(ProfileFolder, ABareNameStandsInTheConfiguredFolder) {
  const support::ScopedVariable home("HOME", m_native);
  const support::ScopedVariable configuration("XDG_CONFIG_HOME", m_native);
  const support::ScopedVariable own("QXV_WINDIR", m_native);
  EXPECT_EQ(Read(QXT("values.ini")), 1);
  EXPECT_EQ(Read(QXT("VALUES.INI")), 1) << "in any case";
  EXPECT_EQ(Read(QXT("none.ini")), 0);
}

TEST_F(ProfileFolder, ElseInTheUsersConfiguration) {
  const support::ScopedVariable home("HOME", m_native);
  const support::ScopedVariable own("QXV_WINDIR", "");
  {
    const support::ScopedVariable configuration("XDG_CONFIG_HOME", m_native);
    EXPECT_EQ(Read(QXT("values.ini")), 2);
  }
  {
    const support::ScopedVariable relative("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(Read(QXT("values.ini")), 3);
  }
  const support::ScopedVariable none("XDG_CONFIG_HOME", "");
  EXPECT_EQ(Read(QXT("values.ini")), 3);
}

TEST_F(ProfileFolder, WithoutAnyFolderThereAreNoValues) {
  const support::ScopedVariable home("HOME", "");
  const support::ScopedVariable configuration("XDG_CONFIG_HOME", "");
  const support::ScopedVariable own("QXV_WINDIR", "");
  EXPECT_EQ(Read(QXT("values.ini")), 0);
}

TEST(ProfileFile, OfMoreThan64MebibytesHasNoValues) {
  const support::TempFolder folder;
  const Text name = folder.File(QXT("large.ini"));
  ASSERT_TRUE(support::WriteBytes(name, "[s]\nk=1\n"));
  std::filesystem::resize_file(support::NativePath(name), std::uintmax_t{64} << 20);
  EXPECT_EQ(qxv::os::ReadProfileInteger(name.c_str(), QXT("s"), QXT("k")), 1);
  std::filesystem::resize_file(support::NativePath(name), (std::uintmax_t{64} << 20) + 1);
  EXPECT_EQ(qxv::os::ReadProfileInteger(name.c_str(), QXT("s"), QXT("k")), 0);
}

TEST(ProfileText, AMissingKeyDiffersFromAnEmptyValue) {
  EXPECT_FALSE(FindProfileValue(QXT("[s]\nj=1"), QXT("s"), QXT("k")).has_value());
  EXPECT_EQ(FindProfileValue(QXT("[s]\nk="), QXT("s"), QXT("k")), TextView());
  EXPECT_EQ(FindProfileValue(QXT("[s]\nk"), QXT("s"), QXT("k")), TextView());
}

TEST(ProfileText, HalfAUnitAtTheEndIsOne) {
  EXPECT_EQ(qxv::os::DecodeProfile(support::BytesOf("\xFF\xFE"
                                                    "1")),
            QXT("1"));
  EXPECT_EQ(qxv::os::DecodeProfile(support::BytesOf("\xFE\xFF\x4E")), QXT("\u4E00"));
}

// An iconv that found none of its modules when it looked for them first knows no page of two bytes.
[[noreturn]] void ReadWithoutAnsiPage() {
  ::setenv("QXV_ACP", "936", 1 /*overwrite*/);
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 0;
  ::setrlimit(RLIMIT_NOFILE, &none);
  (void)qxv::os::CodePageExists(936);
  ::setrlimit(RLIMIT_NOFILE, &before);
  const bool exists = qxv::os::CodePageExists(936);
  const bool any = !qxv::os::DecodeProfile(support::BytesOf("[s]\nk=1")).empty();
  const bool marked = qxv::os::DecodeProfile(support::BytesOf("\xEF\xBB\xBFk=1")) == QXT("k=1");
  std::fprintf(stderr, "page %d, text %d, marked %d\n", exists, any, marked);
  std::exit(0);
}

TEST(ProfileWithoutAnsiPageDeathTest, HasNoValuesUnlessTheFileIsMarked) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // a fresh process: no page was used in it
  EXPECT_EXIT(ReadWithoutAnsiPage(), testing::ExitedWithCode(0), "page 0, text 0, marked 1");
}

// Texts in memory that ends where the text does.
TEST(ProfileText, NothingBehindTheTextIsRead) {
  const Text whole = QXT("[a]\n;\n[s] \n k = ' 0x1F ' \n");
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const std::unique_ptr<QXChar[]> exact(new QXChar[size]);
    std::copy_n(whole.data(), size, exact.get());
    const TextView text(exact.get(), size);
    const auto value = FindProfileValue(text, QXT("s"), QXT("k"));
    EXPECT_EQ(value.has_value(), size > whole.find('k')) << size;
    if (value) {
      (void)qxv::os::ProfileInteger(*value);
    }
  }
}

TEST(ProfileText, AnIntegerNeedsNothingBehindItsDigits) {
  for (const Text& number : {Text(QXT("")), Text(QXT("-")), Text(QXT("0")), Text(QXT("0x")), Text(QXT("-0b")), Text(QXT("12"))}) {
    const std::unique_ptr<QXChar[]> exact(new QXChar[number.size()]);
    std::copy_n(number.data(), number.size(), exact.get());
    EXPECT_EQ(qxv::os::ProfileInteger({exact.get(), number.size()}), number == QXT("12") ? 12 : 0);
  }
}

}  // namespace
