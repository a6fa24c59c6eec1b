// samba_test.cpp - configurations and user shares as texts and as files. Linux only.

#include "os/samba.h"

#include "support/temp_folder.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

namespace {

using namespace qxv::os;

// "name=folder" of each share.
std::vector<std::string> Shares(const SambaServer& server) {
  std::vector<std::string> lines;
  for (const SambaShare& share : server.shares) {
    lines.push_back(share.name + '=' + share.folder);
  }
  return lines;
}

using Lines = std::vector<std::string>;

Lines SharesOf(const std::string& configuration) { return Shares(ParseSambaConfiguration(configuration).server); }

TEST(Samba, AShareIsASectionWithAFolder) {
  EXPECT_EQ(SharesOf("[media]\npath = /srv/media\n[Clips 2]\npath=/srv/clips"),
            (Lines{"media=/srv/media", "Clips 2=/srv/clips"}));
}

TEST(Samba, AnEmptyConfigurationHasDefaults) {
  const SambaConfiguration configuration = ParseSambaConfiguration("");
  EXPECT_EQ(configuration.server.workgroup, "WORKGROUP");
  EXPECT_EQ(configuration.userShares, "/var/lib/samba/usershares");
  EXPECT_FALSE(configuration.hasUserShares);
  EXPECT_TRUE(configuration.server.shares.empty());
}

TEST(Samba, GlobalParametersAreRead) {
  const SambaConfiguration configuration =
      ParseSambaConfiguration("[Global]\n workgroup = STUDIO\n usershare path = /x/y\n usershare max shares = 100\n");
  EXPECT_EQ(configuration.server.workgroup, "STUDIO");
  EXPECT_EQ(configuration.userShares, "/x/y");
  EXPECT_TRUE(configuration.hasUserShares);
  EXPECT_FALSE(ParseSambaConfiguration("usershare max shares = 0").hasUserShares);
  EXPECT_FALSE(ParseSambaConfiguration("usershare max shares = many").hasUserShares);
  EXPECT_TRUE(ParseSambaConfiguration("usershare max shares = 99999999999999999999999").hasUserShares);
}

TEST(Samba, NamesAreReadInAnyCaseAndWithBlanksInThem) {
  EXPECT_EQ(SharesOf("[media]\r\n\t P A T h\t=\t/srv/media \r\n"), (Lines{"media=/srv/media"}));
  EXPECT_EQ(SharesOf("[ media ]\nDirectory = \"/srv/my media\"\n"), (Lines{"media=/srv/my media"}));
}

TEST(Samba, CommentsAndStrangeLinesAreLeftOut) {
  EXPECT_EQ(SharesOf("# a\n; b\n[media\n]\n=\npath\n[media]\n# path = /a\n;path = /b\npath = /srv ; no comment\n= x\n[x"),
            (Lines{"media=/srv ; no comment"}));
}

TEST(Samba, ABackslashAtTheEndContinuesTheLine) {
  EXPECT_EQ(SharesOf("[media]\npath = \\\n  /srv/media\n"), (Lines{"media=/srv/media"}));
  EXPECT_EQ(SharesOf("[media]\n# comment \\\npath = /srv/media\n"), (Lines{"media=/srv/media"}));
  EXPECT_EQ(SharesOf("[media]\npath = /srv/media\\"), (Lines{"media=/srv/media\\"}));
}

TEST(Samba, APartOfASectionThatComesLaterBelongsToIt) {
  EXPECT_EQ(SharesOf("[media]\npath=/a\n[clips]\npath=/b\n[MEDIA]\npath=/c\n"), (Lines{"media=/c", "clips=/b"}));
}

TEST(Samba, WhatOthersDoNotSeeIsLeftOut) {
  for (const char* section : {"[homes]\npath=/a", "[PRINTERS]\npath=/a", "[print$]\npath=/a", "[a]\npath=/a\nbrowseable=no",
                              "[a]\npath=/a\nbrowsable = False", "[a]\npath=/a\navailable=0", "[a]\npath=/a\nprintable=yes",
                              "[a]\npath=/a\nprint ok = true", "[a]\n", "[a]\npath=a/b", "[a]\npath=/home/%U", "[a\\b]\npath=/a",
                              "[a/b]\npath=/a", "[global]\npath=/a", "path=/a"}) {
    EXPECT_EQ(SharesOf(section), Lines()) << section;
  }
  EXPECT_EQ(SharesOf("[a]\npath=/a\nbrowseable=yes\navailable=on\nprintable=no"), (Lines{"a=/a"}));
}

TEST(Samba, GlobalDefaultsHoldForTheSectionsBehindThem) {
  EXPECT_EQ(SharesOf("[global]\nbrowseable=no\n[a]\npath=/a\n[b]\npath=/b\nbrowseable=yes\n"), (Lines{"b=/b"}));
}

TEST(Samba, IncludedFilesStandInTheirPlace) {
  const ReadIncluded read = [](const std::string& path) {
    return path == "/etc/samba/more.conf" ? std::string("path=/more\n[last]\npath=/last\n") : std::string();
  };
  EXPECT_EQ(Shares(ParseSambaConfiguration("[a]\ninclude = /etc/samba/more.conf\n[b]\npath=/b\n", read).server),
            (Lines{"a=/more", "last=/last", "b=/b"}));
  EXPECT_EQ(SharesOf("[a]\npath=/a\ninclude=/etc/samba/more.conf\n"), (Lines{"a=/a"})) << "without a reader";
}

TEST(Samba, AFileThatIncludesItselfEnds) {
  int reads = 0;
  const ReadIncluded read = [&](const std::string&) {
    ++reads;
    return std::string("include=/self\ninclude=/self\n");
  };
  (void)ParseSambaConfiguration("include=/self\n[a]\npath=/a\n", read);
  EXPECT_EQ(reads, 64);
}

TEST(Samba, EveryPrefixOfAConfigurationIsRead) {
  const std::string whole =
      "[global]\nworkgroup = STUDIO\nusershare max shares = 5\n[media]\n path = \"/srv/media\" \\\n\n#x\n[b]\npath=/b";
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    char* const bytes = new char[length + 1];  // ends at a guarded page but for the one byte that keeps it from being empty
    std::copy_n(whole.data(), length, bytes + 1);
    const SambaConfiguration configuration = ParseSambaConfiguration(std::string_view(bytes + 1, length));
    EXPECT_LE(configuration.server.shares.size(), 2u);
    delete[] bytes;
  }
  EXPECT_EQ(SharesOf(whole), (Lines{"media=/srv/media", "b=/b"}));
}

TEST(Samba, AUserShareIsAFile) {
  const auto share = ParseUserShare("#VERSION 2\npath=/home/ann/clips\ncomment=a=b\nsharename=My Clips\n", "my clips");
  ASSERT_TRUE(share.has_value());
  EXPECT_EQ(share->name, "My Clips");
  EXPECT_EQ(share->folder, "/home/ann/clips");
  EXPECT_EQ(ParseUserShare("path=/a", "old")->name, "old");
  EXPECT_FALSE(ParseUserShare("", "x").has_value());
  EXPECT_FALSE(ParseUserShare("path=relative\n", "x").has_value());
  EXPECT_FALSE(ParseUserShare("path=/a\nsharename=\n", "x").has_value());
  EXPECT_FALSE(ParseUserShare("path=/a\nsharename=a\\b\n", "x").has_value());
}

class SambaFiles : public testing::Test {
 protected:
  std::string Native(const char* name) const { return (folder.Native() / name).string(); }
  void Write(const char* name, const std::string& bytes) const {
    ASSERT_TRUE(support::WriteBytes(folder.File(support::Text(name, name + std::string(name).size())), bytes));
  }
  support::TempFolder folder;
};

TEST_F(SambaFiles, AServerIsItsConfigurationAndItsUserSharesByName) {
  std::filesystem::create_directory(Native("user"));
  std::filesystem::create_directory(Native("user/folder"));
  Write("more.conf", "[c]\npath=/c\n");
  Write("smb.conf", "[global]\nusershare max shares=1\nusershare path=" + Native("user") +
                        "\n[a]\npath=/a\ninclude=" + Native("more.conf") + "\n");
  Write("user\\z", "path=/z\n");
  Write("user\\b", "path=/b\nsharename=B\n");
  Write("user\\broken", "pa");
  ASSERT_EQ(::mkfifo(Native("user/fifo").c_str(), 0600), 0);
  const auto server = ReadSambaServer(Native("smb.conf"));
  ASSERT_TRUE(server.has_value());
  EXPECT_EQ(Shares(*server), (Lines{"a=/a", "c=/c", "B=/b", "z=/z"}));
}

TEST_F(SambaFiles, UserSharesThatAreNotAllowedAreNotRead) {
  std::filesystem::create_directory(Native("user"));
  Write("smb.conf", "[global]\nusershare path=" + Native("user") + "\n");
  Write("user\\b", "path=/b\n");
  EXPECT_EQ(Shares(*ReadSambaServer(Native("smb.conf"))), Lines());
}

TEST_F(SambaFiles, WithoutAConfigurationThereIsNoServer) {
  EXPECT_FALSE(ReadSambaServer(Native("smb.conf")).has_value());
  EXPECT_FALSE(ReadSambaServer(folder.Native().string()).has_value()) << "a folder";
  Write("large.conf", std::string((1 << 20) + 1, '#'));
  EXPECT_FALSE(ReadSambaServer(Native("large.conf")).has_value());
}

}  // namespace
