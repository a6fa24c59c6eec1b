// md5_context_file_test.cpp - the bytes of the context file: the same on both systems, and whatever else may stand in it.

#include "digest/md5_context_fixture.h"
#include "digest/md5_reference.h"

#include "os/file_system.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

namespace {

using namespace digest_test;

class Md5ContextFile : public Md5ContextBase {};
class Md5ContextFileMalformed : public Md5ContextBase {};

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (const int value : values) {
    bytes += static_cast<char>(value);
  }
  return bytes;
}

// After the bytes 0 to 36; the state is still the first one. By a program of another language.
const std::string& FileOf37() {
  static const std::string file = Bytes({0x28, 0x01, 0, 0}) +                               // 0: bit count, low half: 296
                                  Bytes({0, 0, 0, 0}) +                                     // 4: high half
                                  Bytes({0x01, 0x23, 0x45, 0x67}) +                         // 8: A
                                  Bytes({0x89, 0xAB, 0xCD, 0xEF}) +                         // 12: B
                                  Bytes({0xFE, 0xDC, 0xBA, 0x98}) +                         // 16: C
                                  Bytes({0x76, 0x54, 0x32, 0x10}) +                         // 20: D
                                  Counting(0, 37) + std::string(27, '\0') +                 // 24: input block
                                  Bytes({0xEF, 0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0x01});  // 88: caller's value
  return file;
}

// After the bytes 0 to 99: one block is done, 36 bytes wait.
std::string FileOf100(char filling) {
  return Bytes({0x20, 0x03, 0, 0, 0, 0, 0, 0}) +                    // 0: 800 bits
         Bytes({0xCA, 0xD9, 0x44, 0x91, 0xC9, 0xE4, 0x01, 0xD9}) +  // 8: A, B
         Bytes({0x38, 0x5B, 0xFC, 0x72, 0x1E, 0xF5, 0x5F, 0x62}) +  // 16: C, D
         Counting(64, 100) + std::string(28, filling) +             // 24: input block
         Bytes({100, 0, 0, 0, 0, 0, 0, 0});                         // 88: caller's value
}

TEST_F(Md5ContextFile, HoldsCountStateBlockAndValueLittleEndian) {
  const Context context = Begin();
  Feed(context, Counting(0, 37));
  ASSERT_EQ(context->SaveContext(0x0123456789ABCDEF), 1);
  EXPECT_EQ(support::ReadBytes(m_file), FileOf37());
  Feed(context, Counting(37, 100));
  ASSERT_EQ(context->SaveContext(100), 1);
  const std::string file = support::ReadBytes(m_file);
  EXPECT_EQ(file.size(), 96u);
  EXPECT_EQ(file.substr(0, 24 + 36), FileOf100('\0').substr(0, 24 + 36));
  EXPECT_EQ(file.substr(88), FileOf100('\0').substr(88));
}

TEST_F(Md5ContextFile, BytesThatAreNotValidYetAreNothingThatStoodInMemory) {
  const Context context = Begin();
  ASSERT_EQ(context->SaveContext(0), 1);
  EXPECT_EQ(support::ReadBytes(m_file).substr(24, 64), std::string(64, '\0'));
}

TEST_F(Md5ContextFile, OneSavedOnAnotherSystemIsTakenUp) {
  ASSERT_TRUE(support::WriteBytes(m_file, FileOf37()));
  {
    const Context context = Begin();
    EXPECT_EQ(context->GetContextValue(), 0x0123456789ABCDEFu);
    Feed(context, Counting(37, 200));
    EXPECT_EQ(DigestOf(context), kDigestOf200);
  }
  for (const char filling : {'\0', '\xEE'}) {
    ASSERT_TRUE(support::WriteBytes(m_file, FileOf100(filling)));
    const Context context = Begin();
    EXPECT_EQ(context->GetContextValue(), 100u);
    EXPECT_EQ(DigestOf(context), kDigestOf100);
  }
}

TEST_F(Md5ContextFile, IsHiddenWhereTheSystemHidesFiles) {
  const Context context = Begin();
  ASSERT_EQ(context->SaveContext(0), 1);
  std::uint32_t attributes = 0;
  ASSERT_EQ(qxv::os::GetPathAttributes(m_file.c_str(), attributes), 0u);
  constexpr bool kWindows =
      std::filesystem::path::preferred_separator == '\\';  // on Linux a leading dot hides, the name is fixed
  EXPECT_EQ((attributes & qxv::os::kAttributeHidden) != 0, kWindows);
}

TEST_F(Md5ContextFile, OthersMayReadItBetweenSaves) {
  const Context context = Begin();
  for (int i = 1; i <= 3; ++i) {
    ASSERT_EQ(context->SaveContext(static_cast<QXUInt64>(i)), 1);
    EXPECT_EQ(support::ReadBytes(m_file).substr(88), Bytes({i, 0, 0, 0, 0, 0, 0, 0}));
  }
}

TEST_F(Md5ContextFile, ALongerOneIsReplacedByTheNextSave) {
  ASSERT_TRUE(support::WriteBytes(m_file, FileOf37() + std::string(500, 'x')));
  const Context context = Begin();
  EXPECT_EQ(context->GetContextValue(), 0x0123456789ABCDEFu) << "what follows the record is not looked at";
  ASSERT_EQ(context->SaveContext(0x0123456789ABCDEF), 1);
  EXPECT_EQ(support::ReadBytes(m_file), FileOf37());
}

TEST_F(Md5ContextFileMalformed, AShortOneIsNotTakenUp) {
  const std::string valid = FileOf37();
  for (std::size_t size = 0; size < valid.size(); ++size) {
    ASSERT_TRUE(support::WriteBytes(m_file, valid.substr(0, size)));
    m_sink.texts.clear();
    const Context context = Begin();
    ASSERT_EQ(m_sink.texts.size(), 2u) << size;
    EXPECT_EQ(m_sink.texts[1],
              QXT("\n(CQXVMD5CtxImpl::DealContext)Load: Read context file(") + m_file + QXT(") failed(Error code: 0)!\n"));
    EXPECT_EQ(context->GetContextValue(), 0u);
    Feed(context, Counting(0, 100));
    ASSERT_EQ(context->SaveContext(100), 1) << size;
    EXPECT_EQ(support::ReadBytes(m_file).size(), 96u);
    EXPECT_EQ(DigestOf(context), kDigestOf100) << size;
    EXPECT_FALSE(support::Exists(m_file));
  }
}

TEST_F(Md5ContextFileMalformed, AFolderOfThatNameIsNoContext) {
  ASSERT_EQ(qxv::os::CreateFolder(m_file.c_str()), 0u);
  const Context context = Begin();
  ASSERT_EQ(m_sink.texts.size(), 2u);
  EXPECT_EQ(m_sink.texts[1],
            QXT("\n(CQXVMD5CtxImpl::DealContext)Load: Open context file(") + m_file + QXT(") failed(Error code: 5)!\n"));
  Feed(context, Counting(0, 100));
  EXPECT_EQ(context->SaveContext(100), 0);
  EXPECT_EQ(DigestOf(context), kDigestOf100);
}

// Any bytes are a state to go on from: the digest is the reference's from that state, and nothing outside the block is touched.
TEST_F(Md5ContextFileMalformed, AnyBytesAreAState) {
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    std::string file(96 + random() % 105, '\0');
    for (char& byte : file) {
      byte = static_cast<char>(random());
    }
    ASSERT_TRUE(support::WriteBytes(m_file, file));
    const auto word = [&](std::size_t at) {
      std::uint32_t value = 0;
      for (std::size_t k = 0; k < 4; ++k) {
        value |= std::uint32_t{static_cast<unsigned char>(file[at + k])} << (8 * k);
      }
      return value;
    };
    const std::uint64_t bits = std::uint64_t{word(4)} << 32 | word(0);
    const std::string input = Counting(0, static_cast<int>(random() % 256));
    const std::string waiting = file.substr(24, bits / 8 % 64);
    const Context context = Begin();
    EXPECT_EQ(context->GetContextValue(), std::uint64_t{word(92)} << 32 | word(88));
    Feed(context, input);
    ASSERT_EQ(DigestOf(context),
              FinishReference({word(8), word(12), word(16), word(20)}, waiting + input, bits + input.size() * 8))
        << round;
  }
}

}  // namespace
