// lines_bench.cpp - lines of text files: finding their ends beside ICU's u_memchr, counting them beside only reading the file,
// and reading ANSI lines beside std::getline. Lines of 20 to 100 characters, ended by CR LF.

#include "bench/support/ratio.h"
#include "qxv/factories.h"
#include "qxv/text_file.h"
#include "qxv/unicode_ansi_file.h"
#include "streams/line_scan.h"
#include "support/temp_folder.h"

#include <unicode/ustring.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>

namespace {

using qxv::os::CpuTier;

constexpr std::size_t kMiB = std::size_t{1} << 20;
constexpr std::size_t kPiece = 128 * 1024;

struct Release {
  void operator()(CQXVObject* object) const { QXV_DeleteTxtRW(object); }
};

// A text, in memory and in a file.
struct Lines {
  support::TempFolder folder;
  support::Text text;  // of UTF-16 files
  std::string bytes;   // of ANSI files
  support::Text name = folder.File(QXT("lines.txt"));
  std::string native = support::NativePath(name).string();
  std::unique_ptr<CQXVtxtRW, Release> file{QXV_ConstructTxtRW()};
};

std::shared_ptr<Lines> MakeLines(bool unicode, std::size_t size) {
  auto lines = std::make_shared<Lines>();
  std::mt19937 random(1);
  std::string bytes;
  const std::size_t characters = unicode ? size / 2 : size;
  while (bytes.size() < characters) {
    bytes.append(20 + random() % 81, static_cast<char>('a' + random() % 26)).append("\r\n");
  }
  if (unicode) {
    lines->text.assign(bytes.begin(), bytes.end());
    bytes = "\xFF\xFE" + std::string(reinterpret_cast<const char*>(lines->text.data()), lines->text.size() * 2);
  }
  if (!support::WriteBytes(lines->name, bytes)) {
    std::abort();
  }
  return lines;
}

// Every line's end in a text in memory.
bench::Job SplitJob(CpuTier tier) {
  auto lines = MakeLines(true, 64 * kMiB);
  const auto ours = [lines] {
    const QXChar* at = lines->text.data();
    const QXChar* const end = at + lines->text.size();
    std::size_t sum = 0;
    while (at < end) {
      const std::size_t length = qxv::FindUnit(at, static_cast<std::size_t>(end - at), 13, 0);
      sum += length;
      at += length + 2;
    }
    benchmark::DoNotOptimize(sum);
  };
  const auto icu = [lines] {
    const QXChar* at = lines->text.data();
    const QXChar* const end = at + lines->text.size();
    std::size_t sum = 0;
    while (at < end) {
      const QXChar* found = ::u_memchr(at, 13, static_cast<std::int32_t>(end - at));
      found = found == nullptr ? end : found;
      sum += static_cast<std::size_t>(found - at);
      at = found + 2;
    }
    benchmark::DoNotOptimize(sum);
  };
  return {"lines/utf16 split", "64 MiB", ours, {{"ICU u_memchr", icu, tier == CpuTier::Baseline ? 0 : 1.7}}, tier};
}

bench::Job SplitAnsiJob(CpuTier tier) {
  auto lines = MakeLines(false, 32 * kMiB);
  const auto bytes = std::make_shared<const std::string>(support::ReadBytes(lines->name));
  const auto ours = [bytes] {
    const auto* at = reinterpret_cast<const unsigned char*>(bytes->data());
    const unsigned char* const end = at + bytes->size();
    std::string line;
    std::size_t sum = 0;
    while (at < end) {
      const std::size_t length = qxv::FindByte(at, static_cast<std::size_t>(end - at), 13, 0);
      line.assign(reinterpret_cast<const char*>(at), length);
      sum += line.size();
      at += length + 2;
    }
    benchmark::DoNotOptimize(sum);
  };
  const auto getline = [bytes] {
    std::istringstream stream(*bytes);
    std::string line;
    std::size_t sum = 0;
    while (std::getline(stream, line)) {
      sum += line.size();
    }
    benchmark::DoNotOptimize(sum);
  };
  return {"lines/ansi split", "32 MiB", ours, {{"std::getline", getline, tier == CpuTier::Baseline ? 0 : 1.5}}, tier};
}

void ReadAll(const Lines& lines) {
  CQXString line;
  (void)lines.file->Open(lines.name.c_str());
  int count = 0;
  for (int units = 1; units != 0;) {
    units = lines.file->ReadLine(line);
    count += units;
  }
  benchmark::DoNotOptimize(count);
  lines.file->Close();
}

// Every line of a file as a text object.
bench::Job ReadUnicodeJob() {
  auto lines = MakeLines(true, 64 * kMiB);
  const auto ours = [lines] { ReadAll(*lines); };
  const auto icu = [lines] {  // pieces of the same size, a std::u16string a line
    std::FILE* file = std::fopen(lines->native.c_str(), "rb");
    std::u16string piece(kPiece / 2, u' '), line, kept;
    std::size_t sum = 0;
    (void)std::fread(piece.data(), 2, 1, file);
    while (const std::size_t units = std::fread(piece.data(), 2, piece.size(), file)) {
      const char16_t* at = piece.data();
      const char16_t* const end = at + units;
      while (at < end) {
        const char16_t* found = ::u_memchr(at, 13, static_cast<std::int32_t>(end - at));
        if (found == nullptr) {
          kept.append(at, end);
          break;
        }
        line.assign(kept).append(at, found);
        kept.clear();
        sum += line.size();
        at = found + 2;
      }
    }
    benchmark::DoNotOptimize(sum);
    (void)std::fclose(file);
  };
  return {"lines/utf16 read", "64 MiB", ours, {{"fread, u_memchr, u16string", icu, 1.0}}};
}

bench::Job ReadAnsiJob() {
  auto lines = MakeLines(false, 32 * kMiB);
  const auto ours = [lines] { ReadAll(*lines); };
  const auto getline = [lines] {
    std::ifstream file(lines->native, std::ios::binary);
    std::string line;
    std::size_t sum = 0;
    while (std::getline(file, line)) {
      sum += line.size();
    }
    benchmark::DoNotOptimize(sum);
  };
  // Ours also makes UTF-16 of each line.
  return {"lines/ansi read", "32 MiB", ours, {{"std::getline", getline, 1.5}}};
}

bench::Job CountJob(bool unicode) {
  auto lines = MakeLines(unicode, 64 * kMiB);
  const auto ours = [lines] {
    (void)lines->file->Open(lines->name.c_str());
    benchmark::DoNotOptimize(lines->file->GetLineCount());
    lines->file->Close();
  };
  const auto read = [lines] {
    std::FILE* file = std::fopen(lines->native.c_str(), "rb");
    (void)std::setvbuf(file, nullptr, _IONBF, 0);
    const std::unique_ptr<char[]> piece(new char[kPiece]);
    std::size_t sum = 0;
    while (const std::size_t bytes = std::fread(piece.get(), 1, kPiece, file)) {
      benchmark::DoNotOptimize(piece.get());
      sum += bytes;
    }
    benchmark::DoNotOptimize(sum);
    (void)std::fclose(file);
  };
  return {unicode ? "lines/utf16 file count" : "lines/ansi file count", "64 MiB", ours, {{"only reading the file", read}}};
}

// In memory, beside what only reads all of it: the search for a byte that is not there.
bench::Job CountInMemoryJob(CpuTier tier) {
  auto lines = MakeLines(true, 64 * kMiB);
  const auto ours = [lines] {
    qxv::LineEndCounter counter;
    counter.Add(lines->text.data(), lines->text.size());
    benchmark::DoNotOptimize(counter.Count());
  };
  const auto read = [lines] { benchmark::DoNotOptimize(std::memchr(lines->text.data(), '!', lines->text.size() * 2)); };
  return {"lines/utf16 count", "64 MiB", ours, {{"memchr for a missing byte", read, tier == CpuTier::Baseline ? 0 : 0.95}}, tier};
}

// The other class: from opening to the last line.
bench::Job UnicodeAnsiJob(bool unicode) {
  auto lines = MakeLines(unicode, 32 * kMiB);
  const auto file = std::shared_ptr<CQXVUnicodeAnsiFile>(QXV_ConstructUnicodeAnsiFile(), Release());
  const auto ours = [lines, file] {
    CQXString line;
    (void)file->Open(lines->name.c_str(), EQXV_ENCODING_UNICODE, EQXV_TEXTFILE_READ | EQXV_TEXTFILE_ADOPT);
    while (file->ReadLine(line) == 1) {
      benchmark::DoNotOptimize(static_cast<const QXChar*>(line));
    }
    file->Close();
  };
  const auto getline = [lines] {
    std::ifstream stream(lines->native, std::ios::binary);
    std::string line;
    while (std::getline(stream, line)) {
      benchmark::DoNotOptimize(line.data());
    }
  };
  const char* name = unicode ? "unicode-ansi/utf16 read" : "unicode-ansi/ansi read";
  return {name, "32 MiB", ours, {{"std::getline", getline}}};
}

bench::Job WriteJob() {
  auto lines = std::make_shared<Lines>();
  const support::Text text(60, QXT('x'));
  const auto ours = [lines, text] {
    (void)lines->file->Open(lines->name.c_str());
    lines->file->Clear();
    for (int i = 0; i < 100'000; ++i) {
      (void)lines->file->WriteLine(text.c_str());
    }
    lines->file->Close();
  };
  const auto flushed = [lines] {
    std::FILE* file = std::fopen(lines->native.c_str(), "wb");
    const std::string line = std::string(60, 'x') + "\r\n";
    for (int i = 0; i < 100'000; ++i) {
      (void)std::fwrite(line.data(), 1, line.size(), file);
      (void)std::fflush(file);
    }
    (void)std::fclose(file);
  };
  return {"lines/ansi write", "100 k lines", ours, {{"fwrite, fflush", flushed}}};
}

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs;
  for (const auto tier : {CpuTier::Baseline, CpuTier::Avx2, CpuTier::Avx512}) {
    jobs.push_back(SplitJob(tier));
    jobs.push_back(SplitAnsiJob(tier));
    jobs.push_back(CountInMemoryJob(tier));
  }
  for (const bool unicode : {false, true}) {
    jobs.push_back(unicode ? ReadUnicodeJob() : ReadAnsiJob());
    jobs.push_back(CountJob(unicode));
    jobs.push_back(UnicodeAnsiJob(unicode));
  }
  jobs.push_back(WriteJob());
  return jobs;
});

}  // namespace
