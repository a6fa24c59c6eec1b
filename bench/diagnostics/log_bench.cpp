// log_bench.cpp - one log line beside the bare steps that it takes: open, look whether the file is empty, append, close.

#include "bench/support/ratio.h"
#include "qxv/log.h"
#include "support/bare_append.h"
#include "support/temp_folder.h"
#include "support/text.h"
#include "support/utf16_bytes.h"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace {

constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20;

// Both sides append to files of the same age and folder; they begin anew before they grow large.
struct Files {
  support::TempFolder folder;
  std::string bare = (folder.Native() / "bare.txt").string();
  std::string stream = (folder.Native() / "stream.txt").string();

  void KeepSmall() {
    for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
      if (entry.file_size() > kLargestFile) {
        std::filesystem::remove(entry);
      }
    }
  }
};

bench::Job LogJob(const char* size, std::size_t characters) {
  const auto files = std::make_shared<Files>();
  const support::Text message(characters, QXT('m'));
  const std::string block = support::Utf16Le(QXT("[2009.05.01 18:05:07.045]") + message + QXT("\r\n"));
  constexpr int kLinesATurn = 100;
  const auto ours = [files, message, isPlaced = false]() mutable {
    files->KeepSmall();
    if (!isPlaced) {
      QXVLogSetPath(files->folder.Path().c_str());
      isPlaced = true;
    }
    for (int i = 0; i < kLinesATurn; ++i) {
      QXVWriteLog(message.c_str(), 100);
    }
  };
  const auto turn = [files, block](bool seek) {
    files->KeepSmall();
    for (int i = 0; i < kLinesATurn; ++i) {
      benchmark::DoNotOptimize(support::BareAppend(files->bare.c_str(), block, seek));
    }
  };
  const auto stream = [files, block] {
    files->KeepSmall();
    for (int i = 0; i < kLinesATurn; ++i) {
      std::FILE* file = std::fopen(files->stream.c_str(), "ab");
      benchmark::DoNotOptimize(std::fwrite(block.data(), 1, block.size(), file));
      std::fclose(file);
    }
  };
  bench::Job job{"log line", size, ours, {}, std::nullopt, bench::Clock::Wall};
  job.peers.push_back({"open, seek, write, close", [turn] { turn(true); }});
  job.peers.push_back({"open, write, close", [turn] { turn(false); }, 1 / 1.1});
  job.peers.push_back({"fopen, fwrite, fclose", stream});
  return job;
}

const bench::Register kRegistered([] {
  return std::vector<bench::Job>{LogJob("40 characters", 40), LogJob("2000 characters", 2000)};
});

}  // namespace
