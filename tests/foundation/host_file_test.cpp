// host_file_test.cpp - CFile, CFileStatus and CTime.

#include "host_test.h"
#include "os/file.h"
#include "os/file_system.h"
#include "support/temp_folder.h"

#include <climits>
#include <cstring>
#include <memory>
#include <string>

static_assert(CFile::modeRead == 0 && CFile::modeWrite == 1 && CFile::modeReadWrite == 2);
static_assert(CFile::shareCompat == 0 && CFile::shareExclusive == 0x10 && CFile::shareDenyWrite == 0x20);
static_assert(CFile::shareDenyRead == 0x30 && CFile::shareDenyNone == 0x40 && CFile::modeNoInherit == 0x80);
static_assert(CFile::modeCreate == 0x1000 && CFile::modeNoTruncate == 0x2000 && CFile::typeText == 0x4000);
static_assert(CFile::typeBinary == 0x8000 && CFile::directory == 0x10);
static_assert(CFile::begin == 0 && CFile::current == 1 && CFile::end == 2);

namespace {

using host_test::Throws;
using support::ReadBytes;
using support::TempFolder;
using support::Text;
using support::TextOf;
using support::WriteBytes;

constexpr std::int64_t kYear2020 = 1577836800;
constexpr std::int64_t kYear2100 = 4102444800;

// The cause of the CFileException* that the action throws; -1 when it throws none.
template <class Action>
int CauseOf(Action action) {
  try {
    action();
  } catch (CFileException* e) {
    const int cause = e->m_cause;
    e->Delete();
    return cause;
  }
  return -1;
}

std::string ReadUpTo(CFile& file, unsigned int count) {
  std::string bytes(count, '?');
  bytes.resize(file.Read(bytes.data(), count));
  return bytes;
}

TEST(HostFile, WritesAndReadsBack) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  CFile file;
  ASSERT_TRUE(file.Open(name.c_str(), CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary));
  EXPECT_NE(file.m_hFile, INVALID_HANDLE_VALUE);
  file.Write("0123456789", 10);
  EXPECT_EQ(file.GetPosition(), 10u);
  EXPECT_EQ(file.GetLength(), 10u);
  EXPECT_EQ(file.Seek(3, CFile::begin), 3u);
  EXPECT_EQ(ReadUpTo(file, 4), "3456");
  EXPECT_EQ(ReadUpTo(file, 100), "789");
  EXPECT_EQ(ReadUpTo(file, 100), "");
  file.Flush();
  file.Close();
  EXPECT_EQ(file.m_hFile, INVALID_HANDLE_VALUE);
  file.Close();
  EXPECT_EQ(ReadBytes(name), "0123456789");
}

TEST(HostFile, EachModeFindsOrMakesTheFile) {
  const struct {
    unsigned int flags;
    bool existsBefore;
    bool opens;
    const char* bytesAfter;
  } rows[] = {
      {CFile::modeRead, true, true, "old"},
      {CFile::modeRead, false, false, "<cannot be read>"},
      {CFile::modeWrite, true, true, "old"},
      {CFile::modeReadWrite, false, false, "<cannot be read>"},
      {CFile::modeCreate | CFile::modeWrite, true, true, ""},
      {CFile::modeCreate | CFile::modeWrite, false, true, ""},
      {CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite, true, true, "old"},
      {CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite, false, true, ""},
      {CFile::modeNoTruncate | CFile::modeWrite, false, false, "<cannot be read>"},
      {3, true, false, "old"},
      {CFile::modeRead | 0x50, true, false, "old"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "flags " << row.flags << " exists " << row.existsBefore);
    const TempFolder folder;
    const Text name = folder.File(QXT("a.bin"));
    if (row.existsBefore) {
      ASSERT_TRUE(WriteBytes(name, "old"));
    }
    CFile file;
    EXPECT_EQ(file.Open(name.c_str(), row.flags), row.opens ? 1 : 0);
    EXPECT_EQ(file.m_hFile != INVALID_HANDLE_VALUE, row.opens);
    file.Abort();
    EXPECT_EQ(ReadBytes(name), row.bytesAfter);
  }
}

TEST(HostFile, FailedOpenTellsWhy) {
  const TempFolder folder;
  ASSERT_TRUE(WriteBytes(folder.File(QXT("a.bin")), "x"));
  const struct {
    Text name;
    std::int32_t osError;
    int cause;
  } rows[] = {{folder.File(QXT("missing.bin")), 2, 2},
              {folder.File(QXT("missing\\a.bin")), 3, 3},
              {folder.Path().substr(0, folder.Path().size() - 1), 5, 5},
              {QXT(""), 3, 3}};
  for (const auto& row : rows) {
    CFile file;
    CFileException error;
    EXPECT_EQ(file.Open(row.name.c_str(), CFile::modeRead, &error), 0);
    EXPECT_EQ(error.m_lOsError, row.osError) << testing::PrintToString(row.name);
    EXPECT_EQ(error.m_cause, row.cause);
    EXPECT_EQ(error.m_strFileName, row.name.c_str());
    EXPECT_EQ(CauseOf([&] { CFile thrown(row.name.c_str(), CFile::modeRead); }), row.cause);
  }
  CFile file;
  EXPECT_EQ(file.Open(nullptr, CFile::modeRead), 0);
}

TEST(HostFile, ShareModesHold) {
  const struct {
    unsigned int first, second;
    bool opens;
  } rows[] = {
      {CFile::modeRead | CFile::shareDenyNone, CFile::modeRead | CFile::shareDenyNone, true},
      {CFile::modeRead | CFile::shareDenyNone, CFile::modeWrite | CFile::shareDenyNone, true},
      {CFile::modeRead | CFile::shareDenyWrite, CFile::modeRead | CFile::shareDenyNone, true},
      {CFile::modeRead | CFile::shareDenyWrite, CFile::modeWrite | CFile::shareDenyNone, false},
      {CFile::modeWrite | CFile::shareDenyRead, CFile::modeRead | CFile::shareDenyNone, false},
      {CFile::modeWrite | CFile::shareDenyRead, CFile::modeWrite | CFile::shareDenyNone, true},
      {CFile::modeRead | CFile::shareExclusive, CFile::modeRead | CFile::shareDenyNone, false},
      {CFile::modeRead | CFile::shareCompat, CFile::modeRead | CFile::shareDenyNone, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.first << ", " << row.second);
    const TempFolder folder;
    const Text name = folder.File(QXT("a.bin"));
    ASSERT_TRUE(WriteBytes(name, "x"));
    CFile first(name.c_str(), row.first);
    CFile second;
    CFileException error;
    EXPECT_EQ(second.Open(name.c_str(), row.second, &error), row.opens ? 1 : 0);
    EXPECT_EQ(error.m_cause, row.opens ? CFileException::none : CFileException::sharingViolation);
    first.Close();
    EXPECT_EQ(second.Open(name.c_str(), row.second), 1);
  }
}

TEST(HostFile, SeeksFromThreePlaces) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "0123456789"));
  CFile file(name.c_str(), CFile::modeReadWrite);
  EXPECT_EQ(file.Seek(4, CFile::begin), 4u);
  EXPECT_EQ(file.Seek(-2, CFile::current), 2u);
  EXPECT_EQ(file.Seek(-1, CFile::end), 9u);
  EXPECT_EQ(ReadUpTo(file, 9), "9");
  EXPECT_EQ(file.SeekToEnd(), 10u);
  EXPECT_EQ(CauseOf([&] { file.Seek(-11, CFile::end); }), CFileException::badSeek);
  EXPECT_EQ(CauseOf([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
  EXPECT_EQ(file.GetPosition(), 10u);
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { file.Seek(0, 3); }));
  file.SeekToBegin();
  EXPECT_EQ(file.GetPosition(), 0u);
  EXPECT_EQ(file.Seek(0x100000000, CFile::begin), 0x100000000u);  // behind the end, beyond 32 bits
  EXPECT_EQ(ReadUpTo(file, 5), "");
  EXPECT_EQ(file.GetLength(), 10u);
}

TEST(HostFile, LengthCutsAndExtends) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "0123456789"));
  CFile file(name.c_str(), CFile::modeReadWrite);
  file.SetLength(4);
  EXPECT_EQ(file.GetPosition(), 4u);
  EXPECT_EQ(file.GetLength(), 4u);
  file.SetLength(6);
  EXPECT_EQ(CauseOf([&] { file.SetLength(0x8000000000000000); }), CFileException::badSeek);
  file.Close();
  EXPECT_EQ(ReadBytes(name), std::string("0123\0\0", 6));
}

TEST(HostFile, NeedsAnOpenFile) {
  CFile file;
  char byte = 0;
  EXPECT_EQ(CauseOf([&] { file.Read(&byte, 1); }), CFileException::invalidFile);
  EXPECT_EQ(CauseOf([&] { file.Write(&byte, 1); }), CFileException::invalidFile);
  EXPECT_EQ(CauseOf([&] { file.Seek(0, CFile::begin); }), CFileException::invalidFile);
  EXPECT_EQ(CauseOf([&] { (void)file.GetLength(); }), CFileException::invalidFile);
  EXPECT_EQ(CauseOf([&] { (void)file.GetPosition(); }), CFileException::invalidFile);
  EXPECT_EQ(CauseOf([&] { file.SetLength(1); }), CFileException::invalidFile);
  EXPECT_EQ(CauseOf([&] { (void)file.Duplicate(); }), CFileException::invalidFile);
  CFileStatus status;
  EXPECT_EQ(file.GetStatus(status), 0);
  EXPECT_EQ(file.GetFilePath(), QXT(""));
  EXPECT_EQ(file.GetFileName(), QXT(""));
  file.Close();
  file.Abort();
}

TEST(HostFile, RefusesTheWrongDirection) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "abc"));
  char byte = 0;
  CFile reader(name.c_str(), CFile::modeRead | CFile::shareDenyNone);
  EXPECT_EQ(CauseOf([&] { reader.Write("x", 1); }), CFileException::accessDenied);
  CFile writer(name.c_str(), CFile::modeWrite | CFile::shareDenyNone);
  EXPECT_EQ(CauseOf([&] { writer.Read(&byte, 1); }), CFileException::accessDenied);
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { reader.Read(nullptr, 1); }));
  EXPECT_TRUE(Throws<CInvalidArgException>([&] { writer.Write(nullptr, 1); }));
  EXPECT_EQ(reader.Read(nullptr, 0), 0u);
  writer.Write(nullptr, 0);
  EXPECT_EQ(ReadBytes(name), "abc");
}

TEST(HostFile, TellsPathAndName) {
  const TempFolder folder;
  const Text name = folder.File(QXT("\x00E4 b.bin"));
  ASSERT_TRUE(WriteBytes(name, "abc"));
  CFile file((folder.Path() + QXT(".\\x\\..\\\x00E4 b.bin")).c_str(), CFile::modeRead);
  EXPECT_EQ(TextOf(file.GetFilePath()), name);
  EXPECT_EQ(TextOf(file.GetFileName()), QXT("\x00E4 b.bin"));
  file.SetFilePath(QXT("Q:other.txt"));
  EXPECT_EQ(file.GetFileName(), QXT("other.txt"));
  file.Close();
  EXPECT_EQ(file.GetFilePath(), QXT(""));
}

TEST(HostFile, RelativeNameIsToldInFull) {
  const TempFolder folder;
  ASSERT_TRUE(WriteBytes(folder.File(QXT("a.bin")), "abc"));
  ASSERT_EQ(qxv::os::SetCurrentFolder(folder.Path().c_str()), 0u);
  CFile file(QXT("a.bin"), CFile::modeRead);
  EXPECT_EQ(TextOf(file.GetFilePath()), folder.File(QXT("a.bin")));
  CFileStatus status;
  EXPECT_EQ(CFile::GetStatus(QXT("a.bin"), status), 1);
  EXPECT_EQ(TextOf(status.m_szFullName), folder.File(QXT("a.bin")));
  const Text folderName = folder.Path().substr(folder.Path().find_last_of(QXT('\\'), folder.Path().size() - 2) + 1);
  const Text roundabout = QXT("..\\") + folderName + QXT(".\\a.bin");
  EXPECT_EQ(CFile::GetStatus(roundabout.c_str(), status), 1);
  EXPECT_EQ(TextOf(status.m_szFullName), folder.File(QXT("a.bin")));
  file.Close();
  ASSERT_EQ(qxv::os::SetCurrentFolder(QXT("Z:\\")), 0u);  // else the folder cannot go
}

TEST(HostFile, StatusOfAnOpenFile) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "0123456789"));
  CFile file(name.c_str(), CFile::modeRead);
  CFileStatus status;
  ASSERT_EQ(file.GetStatus(status), 1);
  EXPECT_EQ(status.m_size, 10u);
  EXPECT_EQ(status.m_attribute & CFile::directory, 0u);
  EXPECT_EQ(status.m_attribute & 0x80, 0u);
  EXPECT_GT(status.m_mtime.GetTime(), kYear2020);
  EXPECT_LT(status.m_mtime.GetTime(), kYear2100);
  EXPECT_EQ(TextOf(status.m_szFullName), name);
}

TEST(HostFile, StatusByName) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "0123456789"));
  CFile user(name.c_str(), CFile::modeReadWrite | CFile::shareExclusive);
  CFileStatus status;
  ASSERT_EQ(CFile::GetStatus(name.c_str(), status), 1) << "also while somebody uses it";
  EXPECT_EQ(status.m_size, 10u);
  EXPECT_EQ(status.m_attribute & CFile::directory, 0u);
  EXPECT_EQ(TextOf(status.m_szFullName), name);
  const Text folderName = folder.Path().substr(0, folder.Path().size() - 1);
  ASSERT_EQ(CFile::GetStatus(folderName.c_str(), status), 1);
  EXPECT_EQ(status.m_attribute & CFile::directory, 0x10u);
  EXPECT_EQ(status.m_size, 0u);
  EXPECT_EQ(TextOf(status.m_szFullName), folderName);
  ASSERT_EQ(CFile::GetStatus(QXT("Z:\\"), status), 1) << "the root of a drive";
  EXPECT_EQ(status.m_attribute & CFile::directory, 0x10u);

  CFileStatus untouched;
  untouched.m_size = 77;
  EXPECT_EQ(CFile::GetStatus(folder.File(QXT("missing")).c_str(), untouched), 0);
  EXPECT_EQ(CFile::GetStatus(folder.File(QXT("*.bin")).c_str(), untouched), 0);
  EXPECT_EQ(CFile::GetStatus(QXT(""), untouched), 0);
  EXPECT_EQ(CFile::GetStatus(nullptr, untouched), 0);
  EXPECT_EQ(untouched.m_size, 77u);
}

TEST(HostFile, StatusTellsTimesToTheSecond) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "x"));
  // 2001-09-09 01:46:40.9 UTC
  const std::uint64_t ticks = 116444736000000000u + 10000000009000000u;
  const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  ASSERT_EQ(qxv::os::SetFileTimes(name.c_str(), {time, time, time}), 0u);
  CFileStatus status;
  ASSERT_EQ(CFile::GetStatus(name.c_str(), status), 1);
  EXPECT_EQ(status.m_mtime.GetTime(), 1000000000);
  EXPECT_EQ(status.m_atime.GetTime(), 1000000000);
}

TEST(HostFile, StatusTellsReadOnly) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "x"));
  ASSERT_EQ(qxv::os::SetReadOnly(name.c_str(), true), 0u);
  CFileStatus status;
  ASSERT_EQ(CFile::GetStatus(name.c_str(), status), 1);
  EXPECT_EQ(status.m_attribute & CFile::readOnly, 1u);
  ASSERT_EQ(qxv::os::SetReadOnly(name.c_str(), false), 0u);
  ASSERT_EQ(CFile::GetStatus(name.c_str(), status), 1);
  EXPECT_EQ(status.m_attribute & CFile::readOnly, 0u);
}

TEST(HostFile, OpeningAgainClosesTheFirst) {
  const TempFolder folder;
  const Text first = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(first, "x"));
  CFile file(first.c_str(), CFile::modeRead | CFile::shareExclusive);
  EXPECT_EQ(file.Open(folder.File(QXT("missing")).c_str(), CFile::modeRead), 0);
  EXPECT_EQ(file.m_hFile, INVALID_HANDLE_VALUE);
  EXPECT_EQ(file.GetFilePath(), QXT(""));
  CFile other;
  EXPECT_EQ(other.Open(first.c_str(), CFile::modeRead | CFile::shareExclusive), 1);
}

TEST(HostFile, DestructorCloses) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  {
    const std::unique_ptr<CFile> file(new CFile(name.c_str(), CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive));
    file->Write("abc", 3);
  }
  CFile again;
  EXPECT_EQ(again.Open(name.c_str(), CFile::modeRead | CFile::shareExclusive), 1);
}

TEST(HostFile, AdoptsAHandle) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "0123456789"));
  HANDLE handle = INVALID_HANDLE_VALUE;
  ASSERT_EQ(qxv::os::OpenFileNamed(name.c_str(), {}, handle), 0u);
  {
    CFile file(handle);
    EXPECT_EQ(ReadUpTo(file, 3), "012");
    EXPECT_EQ(file.GetFilePath(), QXT(""));
    CFileStatus status;
    EXPECT_EQ(file.GetStatus(status), 1);
    EXPECT_EQ(status.m_size, 10u);
  }
  EXPECT_EQ(qxv::os::CloseFile(handle), 6u);
}

TEST(HostFile, DuplicateSharesThePosition) {
  const TempFolder folder;
  const Text name = folder.File(QXT("a.bin"));
  ASSERT_TRUE(WriteBytes(name, "0123456789"));
  CFile file(name.c_str(), CFile::modeRead);
  const std::unique_ptr<CFile> copy(file.Duplicate());
  EXPECT_EQ(ReadUpTo(file, 3), "012");
  EXPECT_EQ(ReadUpTo(*copy, 3), "345");
  EXPECT_EQ(TextOf(copy->GetFilePath()), name);
  file.Close();
  EXPECT_EQ(ReadUpTo(*copy, 3), "678");
}

TEST(HostFile, RemovesAndRenames) {
  const TempFolder folder;
  const Text first = folder.File(QXT("a.bin"));
  const Text second = folder.File(QXT("b.bin"));
  ASSERT_TRUE(WriteBytes(first, "abc"));
  CFile::Rename(first.c_str(), second.c_str());
  EXPECT_FALSE(support::Exists(first));
  EXPECT_EQ(ReadBytes(second), "abc");
  EXPECT_EQ(CauseOf([&] { CFile::Rename(first.c_str(), second.c_str()); }), CFileException::fileNotFound);
  ASSERT_TRUE(WriteBytes(first, "new"));
  EXPECT_EQ(CauseOf([&] { CFile::Rename(first.c_str(), second.c_str()); }), CFileException::accessDenied);  // no overwriting
  CFile::Remove(second.c_str());
  EXPECT_FALSE(support::Exists(second));
  EXPECT_EQ(CauseOf([&] { CFile::Remove(second.c_str()); }), CFileException::fileNotFound);
  EXPECT_EQ(CauseOf([&] { CFile::Remove(nullptr); }), CFileException::badPath);
}

TEST(HostFile, LongPathIsCutInTheStatus) {
  const TempFolder folder;
  const Text name = folder.File(support::Repeat(QXT('n'), 250));
  ASSERT_GT(name.size(), 259u);
  ASSERT_LT(folder.Path().size(), 250u);
  CFile file;
  if (!file.Open(name.c_str(), CFile::modeCreate | CFile::modeWrite)) {
    GTEST_SKIP() << "this system opens no name of " << name.size() << " units";
  }
  CFileStatus status;
  ASSERT_EQ(file.GetStatus(status), 1);
  EXPECT_EQ(TextOf(status.m_szFullName), name.substr(0, 259));
  EXPECT_EQ(TextOf(file.GetFilePath()), name);
}

TEST(HostTime, ComparesSeconds) {
  EXPECT_EQ(CTime().GetTime(), 0);
  const CTime one(1);
  const CTime two(2);
  EXPECT_TRUE(one < two && two > one && one <= one && two >= one && one != two && one == CTime(1));
  EXPECT_FALSE(two < one || one > two || two <= one || one >= two || one == two || one != CTime(1));
}

}  // namespace
