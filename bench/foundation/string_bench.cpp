// string_bench.cpp - CQXString beside std::u16string and ICU: length, search, append, copy.

#include "bench/support/ratio.h"
#include "qxv/string.h"

#include <unicode/unistr.h>

#include <memory>
#include <string>

namespace {

using Text = std::basic_string<QXChar>;

const QXChar kWord[] = QXT("caption ");

Text Words(std::size_t units) {
  Text text;
  while (text.size() < units) {
    text += kWord;
  }
  text.resize(units);
  return text;
}

// A text grown word by word from nothing.
bench::Job AppendJob(const char* size, int words) {
  bench::Job job{"string/append",
                 size,
                 [words] {
                   CQXString text;
                   for (int i = 0; i < words; ++i) {
                     text += kWord;
                   }
                   benchmark::DoNotOptimize(static_cast<const QXChar*>(text));
                 },
                 {}};
  job.peers.push_back({"u16string", [words] {
                         Text text;
                         for (int i = 0; i < words; ++i) {
                           text += kWord;
                         }
                         benchmark::DoNotOptimize(text.data());
                       }});
  job.peers.push_back({"ICU UnicodeString", [words] {
                         icu::UnicodeString text;
                         for (int i = 0; i < words; ++i) {
                           text.append(kWord, 0, -1);
                         }
                         benchmark::DoNotOptimize(text.getBuffer());
                       }});
  return job;
}

bench::Job LengthJob() {
  const auto ours = std::make_shared<CQXString>(Words(10000).c_str());
  const auto theirs = std::make_shared<Text>(Words(10000));
  bench::Job job{"string/length", "10,000", [ours] { benchmark::DoNotOptimize(ours->GetLength()); }, {}};
  job.peers.push_back(
      {"u16string traits", [theirs] { benchmark::DoNotOptimize(std::char_traits<QXChar>::length(theirs->c_str())); }, 12});
  return job;
}

bench::Job FindJob() {
  const auto ours = std::make_shared<CQXString>(Words(1 << 20).c_str());
  const auto theirs = std::make_shared<Text>(Words(1 << 20));
  bench::Job job{"string/find", "7 in 2 MiB", [ours] { benchmark::DoNotOptimize(ours->Find(QXT("capture"))); }, {}};
  job.peers.push_back({"u16string::find", [theirs] { benchmark::DoNotOptimize(theirs->find(QXT("capture"))); }, 2});
  return job;
}

bench::Job CopyJob(const char* size, std::size_t units) {
  const auto ours = std::make_shared<CQXString>(Words(units).c_str());
  const auto theirs = std::make_shared<Text>(Words(units));
  bench::Job job{"string/copy",
                 size,
                 [ours] {
                   const CQXString copy(*ours);
                   benchmark::DoNotOptimize(static_cast<const QXChar*>(copy));
                 },
                 {}};
  job.peers.push_back({"u16string", [theirs] {
                         const Text copy(*theirs);
                         benchmark::DoNotOptimize(copy.data());
                       }});
  return job;
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{
      AppendJob("1,000 words", 1000), AppendJob("100,000 words", 100000), LengthJob(), FindJob(), CopyJob("100", 100),
      CopyJob("10,000", 10000)};
});

}  // namespace
