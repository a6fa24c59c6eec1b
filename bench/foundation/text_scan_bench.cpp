// text_scan_bench.cpp - length of and search in UTF-16 texts beside the standard library, the C library and ICU.

#include "bench/support/ratio.h"
#include "foundation/text_scan.h"

#include <unicode/ustring.h>

#include <cstring>
#include <random>
#include <string_view>

namespace {

using qxv::os::CpuTier;
using Text = std::basic_string<QXChar>;

// Words of 1 to 10 letters, the frequent ones frequent, until there are `units` units.
Text Prose(std::size_t units) {
  constexpr char kLetters[] =
      "eeeeeeeeeeeetttttttttaaaaaaaaooooooooiiiiiiinnnnnnnssssssrrrrrrhhhhhhllllddddccccuuummmffppggwwyybbvk";
  std::mt19937 random(3);
  Text text;
  while (text.size() < units) {
    for (auto letters = 1 + random() % 10; letters != 0; --letters) {
      text.push_back(static_cast<QXChar>(kLetters[random() % (sizeof kLetters - 1)]));
    }
    text.push_back(' ');
  }
  text.resize(units);
  return text;
}

bench::Job LengthJob(CpuTier tier, const char* size, std::size_t units, double mustStd) {
  static const Text longest = Prose(10'000);
  const QXChar* text = longest.c_str() + (longest.size() - units);
  bench::Job job{"text/length", size, [text] { benchmark::DoNotOptimize(qxv::ScanLength(text)); }, {}, tier};
  job.peers.push_back(
      {"char_traits<char16_t>", [text] { benchmark::DoNotOptimize(std::char_traits<char16_t>::length(text)); }, mustStd});
  job.peers.push_back({"ICU u_strlen", [text] { benchmark::DoNotOptimize(::u_strlen(text)); }});
  return job;
}

bench::Job FindJob(CpuTier tier, const char* size, const Text& needle, double mustMemmem) {
  static const Text prose = Prose(1 << 20);  // 2 MiB
  if (prose.find(needle) != Text::npos) {
    std::abort();  // the whole text must be searched
  }
  const std::size_t bytes = prose.size() * sizeof(QXChar);
  const auto ours = [needle] {
    benchmark::DoNotOptimize(qxv::ScanFind(prose.data(), prose.size(), needle.data(), needle.size()));
  };
  bench::Job job{"text/find", size, ours, {}, tier};
  job.peers.push_back({"memmem",
                       [needle, bytes] {
                         benchmark::DoNotOptimize(::memmem(prose.data(), bytes, needle.data(), needle.size() * sizeof(QXChar)));
                       },
                       mustMemmem});
  job.peers.push_back({"u16string::find", [needle] { benchmark::DoNotOptimize(prose.find(needle)); }});
  job.peers.push_back({"ICU u_strFindFirst", [needle] {
                         benchmark::DoNotOptimize(::u_strFindFirst(prose.data(), static_cast<std::int32_t>(prose.size()),
                                                                   needle.data(), static_cast<std::int32_t>(needle.size())));
                       }});
  return job;
}

const bench::Register kRegistered([] {
  std::vector<bench::Job> jobs;
  for (const CpuTier tier : {CpuTier::Baseline, CpuTier::Avx2, CpuTier::Avx512}) {
    jobs.push_back(LengthJob(tier, "8", 8, 0));
    jobs.push_back(LengthJob(tier, "100", 100, 0));
    jobs.push_back(LengthJob(tier, "10,000", 10'000, 12));
    jobs.push_back(FindJob(tier, "4 in 2 MiB", QXT("q on"), 2));
    jobs.push_back(FindJob(tier, "12 in 2 MiB", QXT("searched-for"), 2));
    jobs.push_back(FindJob(tier, "60 in 2 MiB", QXT("the sentence that this text of two mebibytes does not hold: "), 2));
  }
  return jobs;
});

}  // namespace
