// md5_context_test.cpp - the object: one digest after another, saved and taken up again.

#include "digest/md5_context.h"
#include "digest/md5_context_fixture.h"

#include "support/guard_new.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

namespace {

using namespace digest_test;

class Md5Context : public Md5ContextBase {};
class Md5ContextKept : public Md5ContextBase {};

TEST_F(Md5Context, ANewObjectDigestsWithoutBeingInitialised) {
  const Context context = MakeContext();
  EXPECT_TRUE(m_sink.texts.empty()) << "and says nothing";
  EXPECT_EQ(context->SaveContext(5), 1);
  EXPECT_EQ(context->GetContextValue(), 0u);
  Feed(context, "abc");
  EXPECT_EQ(DigestOf(context), "900150983cd24fb0d6963f7d28e17f72");
}

TEST_F(Md5Context, AnObjectIsDestroyedAsItWasMade) {
  const std::size_t live = support::LiveArrays();
  { const Context context = MakeContext(); }
  EXPECT_EQ(support::LiveArrays(), live);
}

TEST_F(Md5Context, FinalBeginsTheNextDigest) {
  const Context context = MakeContext();
  context->Initialize(0, QXT(""), QXT(""));
  for (int round = 0; round < 3; ++round) {
    Feed(context, Counting(0, 50));
    Feed(context, Counting(50, 100));
    EXPECT_EQ(DigestOf(context), kDigestOf100) << round;
    EXPECT_EQ(DigestOf(context), kDigestOf0) << round;
  }
}

TEST_F(Md5Context, FinalGivesTheBytesOfTheText) {
  const Context context = MakeContext();
  Feed(context, "abc");
  unsigned char digest[17];
  digest[16] = 0xEE;
  context->Final(digest);
  const unsigned char expected[17] = {0x90, 0x01, 0x50, 0x98, 0x3C, 0xD2, 0x4F, 0xB0, 0xD6,
                                      0x96, 0x3F, 0x7D, 0x28, 0xE1, 0x7F, 0x72, 0xEE};
  EXPECT_EQ(std::memcmp(digest, expected, sizeof digest), 0);
}

TEST_F(Md5Context, NullPointersAreNoInputAndNoOutput) {
  const Context context = MakeContext();
  context->Update(nullptr, 5);
  context->Update(nullptr, 0);
  EXPECT_EQ(DigestOf(context), kDigestOf0);
  Feed(context, "abc");
  context->Final(nullptr);
  EXPECT_EQ(DigestOf(context), kDigestOf0);
}

TEST_F(Md5Context, WithoutSupportNothingIsSavedAndSavingSucceeds) {
  const Context context = MakeContext();
  context->Initialize(0, m_folder.Path().c_str(), QXT("take"));
  ASSERT_EQ(m_sink.texts.size(), 1u);
  EXPECT_EQ(m_sink.texts[0], QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Will not support interruption.\n"));
  Feed(context, Counting(0, 100));
  EXPECT_EQ(context->SaveContext(100), 1);
  EXPECT_FALSE(support::Exists(m_file));
  EXPECT_EQ(DigestOf(context), kDigestOf100);
}

TEST_F(Md5Context, AnEmptyIdOrFolderTurnsSupportOff) {
  const struct {
    Text folder, id, said;
  } rows[] = {
      {m_folder.Path(), QXT(""), m_folder.Path() + QXT(") or id(")},
      {QXT(""), QXT("take"), QXT(") or id(take")},
      {QXT(""), QXT(""), QXT(") or id(")},
  };
  for (const auto& row : rows) {
    m_sink.texts.clear();
    const Context context = MakeContext();
    context->Initialize(1, row.folder.c_str(), row.id.c_str());
    ASSERT_EQ(m_sink.texts.size(), 2u);
    EXPECT_EQ(m_sink.texts[0], QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Require interruption support, but path(") + row.said +
                                   QXT(") is invalide!\n"));
    EXPECT_EQ(m_sink.texts[1], QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Will not support interruption.\n"));
    Feed(context, Counting(0, 100));
    EXPECT_EQ(context->SaveContext(100), 1);
    EXPECT_EQ(DigestOf(context), kDigestOf100);
  }
  EXPECT_TRUE(std::filesystem::is_empty(m_folder.Native()));
}

TEST_F(Md5Context, ASavedDigestIsTakenUpByALaterObject) {
  {
    const Context context = Begin();
    ASSERT_EQ(m_sink.texts.size(), 1u);
    EXPECT_EQ(m_sink.texts[0], QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Will support interruption.\n"));
    EXPECT_EQ(context->GetContextValue(), 0u);
    Feed(context, Counting(0, 100));
    EXPECT_EQ(context->SaveContext(100), 1);
    EXPECT_EQ(context->GetContextValue(), 0u) << "what was saved, not what was taken up";
  }
  EXPECT_TRUE(support::Exists(m_file)) << "the destructor leaves it";
  const Context context = Begin();
  EXPECT_EQ(context->GetContextValue(), 100u);
  Feed(context, Counting(100, 200));
  EXPECT_EQ(DigestOf(context), kDigestOf200);
  EXPECT_FALSE(support::Exists(m_file));
  EXPECT_EQ(context->GetContextValue(), 100u) << "as the last file said";
  EXPECT_EQ(m_sink.texts.size(), 2u) << "nothing went wrong";
}

TEST_F(Md5Context, EachSaveReplacesTheOneBefore) {
  for (int cut = 0; cut <= 200; ++cut) {
    {
      const Context context = Begin();
      for (int i = 0; i < cut; ++i) {
        Feed(context, Counting(i, i + 1));
        ASSERT_EQ(context->SaveContext(static_cast<QXUInt64>(i) + 1), 1);
      }
      ASSERT_EQ(context->SaveContext(static_cast<QXUInt64>(cut)), 1);
      Feed(context, "lost");
    }
    ASSERT_EQ(support::ReadBytes(m_file).size(), 96u);
    const Context context = Begin();
    ASSERT_EQ(context->GetContextValue(), static_cast<QXUInt64>(cut));
    Feed(context, Counting(cut, 200));
    ASSERT_EQ(DigestOf(context), kDigestOf200) << cut;
  }
}

TEST_F(Md5Context, AFolderIsCreatedWithAllThatIsMissing) {
  const Text folder = m_folder.File(QXT("a\\b\\c"));
  const Context context = MakeContext();
  context->Initialize(7, folder.c_str(), QXT("take"));
  EXPECT_TRUE(std::filesystem::is_directory(m_folder.Native() / "a" / "b" / "c"));
  EXPECT_EQ(context->SaveContext(0), 1);
  EXPECT_TRUE(support::Exists(folder + QXT("\\take.MD5frag")));
}

TEST_F(Md5Context, AFolderThatCannotBeCreatedTurnsSupportOff) {
  ASSERT_TRUE(support::WriteBytes(m_folder.File(QXT("file")), "x"));
  const struct {
    Text folder;
    const QXChar* returned;
  } rows[] = {
      {m_folder.File(QXT("file\\")), QXT("183")},     // a file of that name
      {m_folder.File(QXT("file\\sub\\")), QXT("3")},  // a file on the way
      {QXT("no such folder\\sub\\"), QXT("161")},     // not a full path
  };
  for (const auto& row : rows) {
    m_sink.texts.clear();
    const Context context = MakeContext();
    context->Initialize(1, row.folder.c_str(), QXT("take"));
    ASSERT_EQ(m_sink.texts.size(), 2u) << support::Printable(row.folder);
    EXPECT_EQ(m_sink.texts[0], QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Create folder(") + row.folder +
                                   QXT(") to store context file failed(Returned: ") + row.returned + QXT(")!\n"));
    EXPECT_EQ(m_sink.texts[1], QXT("\n(CQXVMD5CtxImpl::CQXVMD5CtxImpl)Will not support interruption.\n"));
    Feed(context, Counting(0, 100));
    EXPECT_EQ(context->SaveContext(100), 1);
    EXPECT_EQ(DigestOf(context), kDigestOf100);
  }
}

TEST_F(Md5Context, InitialisingAgainGivesUpTheFirstDigestButNotItsFile) {
  const Context context = Begin(QXT("first"));
  Feed(context, Counting(0, 100));
  ASSERT_EQ(context->SaveContext(100), 1);
  context->Initialize(1, m_folder.Path().c_str(), QXT("take"));
  EXPECT_EQ(context->GetContextValue(), 0u);
  Feed(context, Counting(0, 37));
  ASSERT_EQ(context->SaveContext(37), 1);
  context->Initialize(1, m_folder.Path().c_str(), QXT("first"));
  EXPECT_EQ(context->GetContextValue(), 100u) << "its own handle does not stand in the way";
  Feed(context, Counting(100, 200));
  EXPECT_EQ(DigestOf(context), kDigestOf200);
  context->Initialize(0, QXT(""), QXT(""));
  EXPECT_EQ(context->GetContextValue(), 0u);
  EXPECT_EQ(DigestOf(context), kDigestOf0);
  EXPECT_TRUE(support::Exists(m_file));
}

TEST_F(Md5Context, AFinishedObjectSavesTheNextDigestUnderTheSameName) {
  const Context context = Begin();
  Feed(context, Counting(0, 37));
  ASSERT_EQ(context->SaveContext(37), 1);
  EXPECT_EQ(DigestOf(context), kDigestOf37);
  EXPECT_FALSE(support::Exists(m_file));
  Feed(context, Counting(0, 100));
  ASSERT_EQ(context->SaveContext(100), 1);
  EXPECT_TRUE(support::Exists(m_file));
  EXPECT_EQ(DigestOf(context), kDigestOf100);
  EXPECT_FALSE(support::Exists(m_file));
}

TEST_F(Md5Context, TwoObjectsDoNotShareOneFile) {
  const Context first = Begin();
  Feed(first, Counting(0, 100));
  ASSERT_EQ(first->SaveContext(100), 1);
  m_sink.texts.clear();
  {
    const Context second = Begin();
    EXPECT_EQ(second->GetContextValue(), 0u) << "it is being written";
    Feed(second, Counting(0, 37));
    EXPECT_EQ(second->SaveContext(37), 0);
    EXPECT_EQ(DigestOf(second), kDigestOf37) << "which stops nobody";
  }
  ASSERT_EQ(m_sink.texts.size(), 3u);
  EXPECT_EQ(m_sink.texts[1],
            QXT("\n(CQXVMD5CtxImpl::DealContext)Load: Open context file(") + m_file + QXT(") failed(Error code: 32)!\n"));
  EXPECT_EQ(m_sink.texts[2],
            QXT("\n(CQXVMD5CtxImpl::DealContext)Store: Open context file(") + m_file + QXT(") failed(Error code: 32)!\n"));
  EXPECT_EQ(first->SaveContext(100), 1);
  EXPECT_EQ(DigestOf(first), kDigestOf100);
}

TEST_F(Md5ContextKept, AnIdMayNameAnotherFolder) {
  const Text folder = m_folder.File(QXT("sub"));
  const Context context = MakeContext();
  context->Initialize(1, folder.c_str(), QXT("..\\take"));
  EXPECT_EQ(context->SaveContext(1), 1);
  EXPECT_TRUE(support::Exists(m_file));
  EXPECT_EQ(DigestOf(context), kDigestOf0);
  EXPECT_FALSE(support::Exists(m_file));
}

TEST_F(Md5Context, LongAndStrangeNamesAreTakenWhole) {
  const Text id = support::Repeat(QXT('i'), 3000) + QXT("%s%d%n\u4E2D");
  const Context context = Begin(id);
  m_sink.texts.clear();
  EXPECT_EQ(context->SaveContext(1), 0) << "no file has such a long name";
  ASSERT_EQ(m_sink.texts.size(), 1u);
  const Text told =
      QXT("\n(CQXVMD5CtxImpl::DealContext)Store: Open context file(") + m_folder.Path() + id + QXT(".MD5frag) failed(");
  EXPECT_EQ(m_sink.texts[0].substr(0, told.size()), told);
  EXPECT_EQ(DigestOf(context), kDigestOf0);
}

TEST_F(Md5Context, WithoutMemoryTheObjectStaysUsable) {
  const Text folder = m_folder.Path();
  bool refused = true;
  for (std::size_t index = 0; refused; ++index) {
    const Context context = Begin();
    Feed(context, "abc");
    bool failed = false;
    const CQXString folderText(folder.c_str());
    const CQXString id(QXT("other"));
    {
      const support::FailAllocation refuse(index);
      try {
        context->Initialize(1, folderText, id);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      refused = refuse.Refused();
    }
    if (failed) {  // perhaps while the arguments were copied
      context->Initialize(1, folderText, id);
    }
    Feed(context, Counting(0, 100));
    EXPECT_EQ(context->SaveContext(100), 1) << index;
    EXPECT_EQ(DigestOf(context), kDigestOf100) << index;
  }
}

TEST_F(Md5Context, AFactoryWithoutMemoryGivesNull) {
  for (std::size_t index = 0; index < 4; ++index) {
    const std::size_t live = support::LiveArrays();
    {
      const support::FailAllocation refuse(index);
      const Context context = MakeContext();
      EXPECT_EQ(context == nullptr, refuse.Refused()) << index;
    }
    EXPECT_EQ(support::LiveArrays(), live) << index;
  }
}

}  // namespace
