// md5_context_posix_test.cpp - context files without room or rights, and a file that stays although the digest has ended.

#include "digest/md5_context_fixture.h"
#include "support/full_disk.h"
#include "support/limited_user.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace digest_test;
namespace fs = std::filesystem;

class Md5ContextPlace : public Md5ContextBase {
 protected:
  bool WasTold(const Text& start) const { return !m_sink.texts.empty() && m_sink.texts.back().starts_with(start); }
};

TEST_F(Md5ContextPlace, ARecordThatFindsNoRoomIsAFailureAndTheDigestGoesOn) {
  const Context context = Begin();
  Feed(context, Counting(0, 37));
  for (const unsigned room : {0u, 1u, 50u, 95u}) {
    const support::FileSizeLimit limit(room);
    EXPECT_EQ(context->SaveContext(37), 0) << room;
    EXPECT_TRUE(
        WasTold(QXT("\n(CQXVMD5CtxImpl::DealContext)Store: Write context file(") + m_file + QXT(") failed(Error code: ")));
  }
  EXPECT_EQ(context->SaveContext(37), 1) << "there is room again";
  EXPECT_EQ(support::ReadBytes(m_file).size(), 96u);
  {
    const support::FileSizeLimit limit(0);
    EXPECT_EQ(context->SaveContext(38), 0);
  }
  Feed(context, Counting(37, 100));
  EXPECT_EQ(DigestOf(context), kDigestOf100);
  EXPECT_FALSE(support::Exists(m_file));
}

TEST_F(Md5ContextPlace, AFullDiskIsError112) {
  const support::SmallDisk disk(m_folder.Native(), 64);
  if (!disk.Mounted()) {
    GTEST_SKIP() << "this user may not mount a disk";
  }
  ASSERT_TRUE(support::WriteBytes(m_folder.File(QXT("filling")), ""));
  const Context context = Begin();
  (void)support::WriteBytes(m_folder.File(QXT("filling")), std::string(1 << 20, 'x'));
  EXPECT_EQ(context->SaveContext(1), 0);
  EXPECT_EQ(m_sink.texts.back(),
            QXT("\n(CQXVMD5CtxImpl::DealContext)Store: Write context file(") + m_file + QXT(") failed(Error code: 112)!\n"));
  fs::remove(m_folder.Native() / "filling");
  EXPECT_EQ(context->SaveContext(1), 1);
}

TEST_F(Md5ContextPlace, AFolderThatMayNotBeWrittenIsError5) {
  fs::permissions(m_folder.Native(),
                  fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read | fs::perms::others_exec);
  {
    const support::LimitedUser limited;
    const Context context = Begin();
    Feed(context, Counting(0, 100));
    EXPECT_EQ(context->SaveContext(100), 0);
    EXPECT_EQ(m_sink.texts.back(),
              QXT("\n(CQXVMD5CtxImpl::DealContext)Store: Open context file(") + m_file + QXT(") failed(Error code: 5)!\n"));
    EXPECT_EQ(DigestOf(context), kDigestOf100);
  }
  fs::permissions(m_folder.Native(), fs::perms::owner_all);
}

// Its state must not begin the next digest.
TEST_F(Md5ContextPlace, AFileThatCannotBeDeletedDoesNotBeginTheNextDigest) {
  {
    const Context context = Begin();
    Feed(context, Counting(0, 37));
    ASSERT_EQ(context->SaveContext(37), 1);
  }
  const Context context = Begin();
  ASSERT_EQ(context->GetContextValue(), 37u);
  fs::permissions(m_folder.Native() / "take.MD5frag", fs::perms::owner_read);  // which nobody may write is not removed
  Feed(context, Counting(37, 100));
  EXPECT_EQ(DigestOf(context), kDigestOf100);
  EXPECT_TRUE(support::Exists(m_file));
  Feed(context, Counting(0, 200));
  EXPECT_EQ(DigestOf(context), kDigestOf200);
}

}  // namespace
