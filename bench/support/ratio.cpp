// ratio.cpp - runs the registered jobs: five rounds in which ours and each peer take turns, the median of each, the ratio.
// Google Benchmark finds the number of iterations and takes the time.

#include "bench/support/ratio.h"

#include "os/intrinsics.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

namespace bench {
namespace {

constexpr int kRounds = 5;
constexpr int kAttempts = 4;         // the first included
constexpr double kSpreadLimit = 5;   // per cent, (largest - smallest) / median
constexpr double kRoundTime = 0.03;  // seconds a contestant and round, at least

struct Options {
  std::vector<std::string> filters;  // a job runs whose "name size tier" contains all of them
  bool list = false;
  bool header = true;
  bool strict = false;
};

std::vector<MakeJobs>& Families() {
  static std::vector<MakeJobs> families;
  return families;
}

class Times : public benchmark::BenchmarkReporter {
 public:
  explicit Times(Clock clock) : m_clock(clock) {}
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      iterations = run.iterations;
      const double seconds = m_clock == Clock::Wall ? run.real_accumulated_time : run.cpu_accumulated_time;
      nanoseconds = seconds * 1e9 / static_cast<double>(run.iterations);
    }
  }
  benchmark::IterationCount iterations = 0;
  double nanoseconds = 0;

 private:
  Clock m_clock;
};

struct Contestant {
  Turn run;
  benchmark::IterationCount iterations = 0;
  std::vector<double> rounds;

  double Median() const { return rounds[rounds.size() / 2]; }
  double Spread() const { return 100 * (rounds.back() - rounds.front()) / Median(); }
};

// Some peers return with the upper halves of the vector registers in use; the next SSE code would run at a quarter of its speed.
QXV_TARGET_AVX2 void ClearUpperHalves() { _mm256_zeroupper(); }

void RunRound(Contestant& contestant, Clock clock) {
  benchmark::ClearRegisteredBenchmarks();
  auto* registered = benchmark::RegisterBenchmark("turn", [&contestant](benchmark::State& state) {
    for ([[maybe_unused]] auto turn : state) {
      contestant.run();
      benchmark::ClobberMemory();
    }
  });
  if (clock == Clock::Wall) {
    registered->UseRealTime();
  }
  if (contestant.iterations != 0) {
    registered->Iterations(contestant.iterations);
  } else {
    registered->MinTime(kRoundTime);
  }
  if (qxv::os::DetectCpuTier() >= qxv::os::CpuTier::Avx2) {
    ClearUpperHalves();
  }
  Times times(clock);
  benchmark::RunSpecifiedBenchmarks(&times, "turn");
  if (contestant.iterations == 0) {  // the warming-up round
    contestant.iterations = times.iterations;
  } else {
    contestant.rounds.push_back(times.nanoseconds);
  }
}

std::vector<Contestant> Compete(const Job& job) {
  std::vector<Contestant> contestants{{job.ours, 0, {}}};
  for (const Peer& peer : job.peers) {
    contestants.push_back({peer.run, 0, {}});
  }
  for (int round = 0; round <= kRounds; ++round) {
    for (Contestant& contestant : contestants) {
      RunRound(contestant, job.clock);
    }
  }
  for (Contestant& contestant : contestants) {
    std::sort(contestant.rounds.begin(), contestant.rounds.end());
  }
  return contestants;
}

double WorstSpread(const std::vector<Contestant>& contestants) {
  double worst = 0;
  for (const Contestant& contestant : contestants) {
    worst = std::max(worst, contestant.Spread());
  }
  return worst;
}

std::string TimeText(double nanoseconds) {
  char text[32];
  if (nanoseconds < 1e4) {
    std::snprintf(text, sizeof text, "%.1f ns", nanoseconds);
  } else if (nanoseconds < 1e7) {
    std::snprintf(text, sizeof text, "%.1f us", nanoseconds / 1e3);
  } else {
    std::snprintf(text, sizeof text, "%.2f ms", nanoseconds / 1e6);
  }
  return text;
}

const char* TierOf(const Job& job) { return job.tier ? qxv::os::CpuTierName(*job.tier) : "-"; }

void PrintHeader() {
  std::printf("%-18s | %-12s | %-7s | %-10s | %-24s | %-10s | %-7s | %-8s | %s\n", "job", "size", "tier", "ours", "peer name",
              "peer", "ratio", "must", "spread");
}

// Returns whether each ratio that is asked for was reached.
bool RunJob(const Job& job) {
  if (job.tier && *job.tier > qxv::os::DetectCpuTier()) {
    std::printf("%-18s | %-12s | %-7s | left out: this machine has no %s\n", job.name.c_str(), job.size.c_str(), TierOf(job),
                TierOf(job));
    return true;
  }
  qxv::os::ForceCpuTier(job.tier.value_or(qxv::os::DetectCpuTier()));
  std::vector<Contestant> best = Compete(job);
  for (int attempt = 1; attempt < kAttempts && WorstSpread(best) > kSpreadLimit; ++attempt) {
    std::vector<Contestant> again = Compete(job);
    if (WorstSpread(again) < WorstSpread(best)) {
      best = std::move(again);
    }
  }
  bool reached = true;
  const double ours = best[0].Median();
  for (std::size_t i = 0; i < job.peers.size(); ++i) {
    const Peer& peer = job.peers[i];
    const double ratio = best[i + 1].Median() / ours;
    char must[32] = "";
    if (peer.must > 0) {
      std::snprintf(must, sizeof must, ">= %.2f%s", peer.must, ratio >= peer.must ? "" : " MISSED");
      reached = reached && ratio >= peer.must;
    }
    const double spread = std::max(best[0].Spread(), best[i + 1].Spread());
    std::printf("%-18s | %-12s | %-7s | %10s | %-24s | %10s | %6.2fx | %-8s | %.1f %%%s\n", job.name.c_str(), job.size.c_str(),
                TierOf(job), TimeText(ours).c_str(), peer.name.c_str(), TimeText(best[i + 1].Median()).c_str(), ratio, must,
                spread, spread > kSpreadLimit ? " unsteady" : "");
  }
  std::fflush(stdout);
  return reached;
}

bool Chosen(const Job& job, const Options& options) {
  const std::string label = job.name + " " + job.size + " " + TierOf(job);
  return std::all_of(options.filters.begin(), options.filters.end(),
                     [&label](const std::string& filter) { return label.find(filter) != std::string::npos; });
}

int Main(const Options& options) {
  bool reached = true;
  if (options.header && !options.list) {
    PrintHeader();
  }
  for (const MakeJobs& make : Families()) {
    for (const Job& job : make()) {
      if (!Chosen(job, options)) {
        continue;
      }
      if (options.list) {
        std::printf("%s | %s | %s\n", job.name.c_str(), job.size.c_str(), TierOf(job));
      } else {
        reached = RunJob(job) && reached;
      }
    }
  }
  return options.strict && !reached ? 1 : 0;
}

}  // namespace

Register::Register(MakeJobs make) { Families().push_back(std::move(make)); }

}  // namespace bench

int main(int argc, char** argv) {
  bench::Options options;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--list") == 0) {
      options.list = true;
    } else if (std::strcmp(argv[i], "--no-header") == 0) {
      options.header = false;
    } else if (std::strcmp(argv[i], "--strict") == 0) {
      options.strict = true;
    } else if (argv[i][0] == '-') {
      std::fprintf(stderr,
                   "usage: %s [--list] [--no-header] [--strict] [word ...]\n"
                   "Runs the jobs whose name, size and tier contain each word, all without one.\n"
                   "--list names them only, --strict ends with status 1 when a ratio is missed.\n",
                   argv[0]);
      return 2;
    } else {
      options.filters.emplace_back(argv[i]);
    }
  }
  return bench::Main(options);
}
