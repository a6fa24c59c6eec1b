// c_stream_test.cpp - streams by name.

#include "os/c_stream.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace qxv::os;
using support::ReadBytes;
using support::TempFolder;
using support::Text;
using support::WriteBytes;

struct CloseStream {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

std::string ReadSome(std::FILE* stream, std::size_t count) {
  std::string text(count, '?');
  text.resize(std::fread(text.data(), 1, count, stream));
  return text;
}

TEST(CStream, EachModeDoesWhatTheStandardSays) {
  const struct {
    const char* mode;
    bool existing;
    ErrorCode error;
    const char* after;  // having written "xy" where that may be
  } rows[] = {
      {"rb", true, 0, "old."},    {"rb", false, 2, "<cannot be read>"},
      {"rb+", true, 0, "xyd."},   {"rb+", false, 2, "<cannot be read>"},
      {"wb", true, 0, "xy"},      {"wb", false, 0, "xy"},
      {"wb+", true, 0, "xy"},     {"w+b", false, 0, "xy"},
      {"ab", true, 0, "old.xy"},  {"ab", false, 0, "xy"},
      {"ab+", true, 0, "old.xy"}, {"a+b", false, 0, "xy"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.mode << " existing " << row.existing);
    const TempFolder folder;
    const Text name = folder.File(QXT("a.bin"));
    if (row.existing) {
      ASSERT_TRUE(WriteBytes(name, "old."));
    }
    ErrorCode error = 99;
    Stream stream(OpenStream(name.c_str(), row.mode, &error));
    EXPECT_EQ(error, row.error);
    ASSERT_EQ(stream != nullptr, row.error == 0);
    if (stream != nullptr) {
      EXPECT_EQ(std::fwrite("xy", 1, 2, stream.get()), row.mode == std::string("rb") ? 0u : 2u);
    }
    stream.reset();
    EXPECT_EQ(ReadBytes(name), row.after);
  }
}

TEST(CStream, AppendingReadsFromTheStartAndWritesAtTheEnd) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.txt"));
  ASSERT_TRUE(WriteBytes(name, "0123"));
  Stream stream(OpenStream(name.c_str(), "ab+"));
  ASSERT_NE(stream, nullptr);
  ASSERT_TRUE(SeekStream(stream.get(), 0, SeekOrigin::Begin));
  EXPECT_EQ(ReadSome(stream.get(), 2), "01");
  ASSERT_TRUE(SeekStream(stream.get(), 0, SeekOrigin::Begin));
  EXPECT_EQ(std::fputs("4", stream.get()) >= 0, true);
  stream.reset();
  EXPECT_EQ(ReadBytes(name), "01234");
}

TEST(CStream, LengthCountsWhatIsBufferedAndKeepsThePosition) {
  const TempFolder folder;
  Stream stream(OpenStream(folder.File(QXT("a.bin")).c_str(), "wb+"));
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(std::fwrite("0123456789", 1, 10, stream.get()), 10u);
  ASSERT_TRUE(SeekStream(stream.get(), 3, SeekOrigin::Begin));
  EXPECT_EQ(StreamLength(stream.get()), 10);
  EXPECT_EQ(TellStream(stream.get()), 3);
  EXPECT_EQ(ReadSome(stream.get(), 2), "34");
}

TEST(CStream, PositionsGoBeyond4GiB) {
  const TempFolder folder;
  Stream stream(OpenStream(folder.File(QXT("a.bin")).c_str(), "wb+"));
  ASSERT_NE(stream, nullptr);
  ASSERT_TRUE(SeekStream(stream.get(), 0x100000000, SeekOrigin::Begin));
  EXPECT_EQ(std::fwrite("x", 1, 1, stream.get()), 1u);
  EXPECT_EQ(TellStream(stream.get()), 0x100000001);
  EXPECT_EQ(StreamLength(stream.get()), 0x100000001);
}

TEST(CStreamMalformed, ModesNamesAndStreamsThatAreNone) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  for (const char* mode : {"", "r", "w", "rt", "b", "rb++", "rbN", "rw", "xb", "rbb", "r+"}) {
    ErrorCode error = 0;
    EXPECT_EQ(OpenStream(name.c_str(), mode, &error), nullptr) << mode;
    EXPECT_EQ(error, 87u) << mode;
  }
  ErrorCode error = 0;
  EXPECT_EQ(OpenStream(name.c_str(), nullptr, &error), nullptr);
  EXPECT_EQ(error, 87u);
  EXPECT_EQ(OpenStream(nullptr, "rb", &error), nullptr);
  EXPECT_EQ(error, 3u);
  EXPECT_EQ(OpenStream(QXT(""), "wb"), nullptr);
  EXPECT_EQ(OpenStream(Text(40000, QXT('a')).c_str(), "wb", &error), nullptr);
  EXPECT_EQ(error, 123u);
  EXPECT_EQ(OpenStream(folder.File(QXT("none\\a.txt")).c_str(), "wb", &error), nullptr);
  EXPECT_EQ(error, 3u);
  for (const char* mode : {"rb", "rb+", "wb", "ab+"}) {
    EXPECT_EQ(OpenStream(folder.Path().c_str(), mode, &error), nullptr) << "a folder, " << mode;
    EXPECT_EQ(error, 5u) << "a folder, " << mode;
  }
  EXPECT_FALSE(SeekStream(nullptr, 0, SeekOrigin::Begin));
  EXPECT_EQ(TellStream(nullptr), -1);
  EXPECT_EQ(StreamLength(nullptr), -1);
}

}  // namespace
