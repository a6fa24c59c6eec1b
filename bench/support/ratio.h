// ratio.h - one job of ours beside its peers: only the ratio of times taken in one process run counts, clocks drift between runs.
// A source registers its jobs by a static bench::Register; the program's main is in ratio.cpp.
#pragma once

#include "os/cpu.h"

#include <benchmark/benchmark.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bench {

/// What one turn does. Results go into benchmark::DoNotOptimize.
using Turn = std::function<void()>;

struct Peer {
  std::string name;
  Turn run;
  double must = 0;  ///< least ratio peer time / our time that we ask for; 0 asks for nothing
};

enum class Clock {
  Processor,  ///< time of this thread, for work in memory: other programs disturb it less
  Wall,       ///< for jobs that wait for a file or a device
};

struct Job {
  std::string name;  ///< "family/operation", chosen by on the command line
  std::string size;
  Turn ours;
  std::vector<Peer> peers;
  std::optional<qxv::os::CpuTier> tier{};  ///< our turn runs in this tier; a job of a tier that the machine lacks is left out
  Clock clock = Clock::Processor;
};

/// A function that makes the jobs of one source, called after main began; buffers are best filled by the first turn that needs
/// them, so that listing and choosing stay quick.
using MakeJobs = std::function<std::vector<Job>()>;

/// static const bench::Register kRegistered([] { return std::vector<bench::Job>{...}; });
class Register {
 public:
  explicit Register(MakeJobs make);
};

}  // namespace bench
