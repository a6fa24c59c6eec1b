// md5_kill_test.cpp - a long digest whose process is killed 200 times at random moments, and started again each time.

#include "digest/md5_context_fixture.h"

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <thread>

namespace {

using namespace digest_test;

constexpr int kKills = 200;
constexpr std::size_t kSize = std::size_t{1} << 20;
constexpr const char* kExpected = "8f82ce4cfc5debdf2cec8e770944240d";  // by Python's hashlib

std::string Input() {
  std::string bytes(kSize, '\0');
  for (std::size_t i = 0; i < kSize; ++i) {
    bytes[i] = static_cast<char>(static_cast<std::uint32_t>(i) * 2654435761u >> 13);
  }
  return bytes;
}

Text TextOf(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

// The child's part: goes on where the context file says, saves after each piece, leaves the digest in a file. What it took up is
// the name of another file.
void DigestInPieces(const std::string& folder) {
  const std::string input = Input();
  const Context context = MakeContext();
  context->Initialize(1, TextOf(folder).c_str(), QXT("killed"));
  std::size_t at = static_cast<std::size_t>(context->GetContextValue());
  ASSERT_LE(at, kSize);
  ASSERT_TRUE(support::WriteBytes(TextOf(folder + "begun-at"), std::to_string(at)));
  std::mt19937 random(static_cast<unsigned>(at));
  while (at < kSize) {
    const std::size_t piece = std::min<std::size_t>(random() % 700, kSize - at);
    Feed(context, std::string_view(input).substr(at, piece));
    at += piece;
    ASSERT_EQ(context->SaveContext(at), 1);
  }
  ASSERT_TRUE(support::WriteBytes(TextOf(folder + "digest"), DigestOf(context)));
}

struct Tally {
  int kills = 0;
  int resumed = 0;   // lives that began in the middle
  int finished = 0;  // digests that came to their end
};

class Killer {
 public:
  explicit Killer(const support::TempFolder& folder) : m_folder(folder) {}

  // One life of the child, ended by force after so many microseconds of work unless it finishes before; without them it finishes.
  void LetLive(std::optional<int> microseconds) {
    std::filesystem::remove(m_folder.Native() / "begun-at");
    const Text path = m_folder.Path();
    support::ChildProcess child(support::Printable(path));
    const auto started = std::chrono::steady_clock::now();
    while (!support::Exists(m_folder.File(QXT("begun-at")))) {
      ASSERT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(60)) << "the child does not start";
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds.value_or(0)));
    const int code = microseconds ? child.Kill() : child.Wait();
    ASSERT_TRUE(code == 0 || code == support::ChildProcess::kKilled) << code;
    const std::string begun = support::ReadBytes(m_folder.File(QXT("begun-at")));
    tally.resumed += !begun.empty() && begun != "0" ? 1 : 0;
    if (code == support::ChildProcess::kKilled) {
      ++tally.kills;
      return;
    }
    ASSERT_EQ(support::ReadBytes(m_folder.File(QXT("digest"))), kExpected) << "after " << tally.kills << " kills";
    ASSERT_FALSE(support::Exists(m_folder.File(QXT("killed.MD5frag"))));
    std::filesystem::remove(m_folder.Native() / "digest");
    ++tally.finished;
  }

  Tally tally;

 private:
  const support::TempFolder& m_folder;
};

TEST(Md5Kill, AProcessKilledAtRandomMomentsEndsWithTheUninterruptedDigest) {
  if (const char* folder = support::ChildArgument()) {
    DigestInPieces(folder);
    return;
  }
  const support::TempFolder folder;
  Killer killer(folder);
  std::mt19937 random(std::random_device{}());
  for (int lives = 0; killer.tally.kills < kKills; ++lives) {
    ASSERT_LT(lives, 20 * kKills) << "only " << killer.tally.kills << " of them could be killed";
    ASSERT_NO_FATAL_FAILURE(killer.LetLive(static_cast<int>(random() % 8000)));
  }
  ASSERT_NO_FATAL_FAILURE(killer.LetLive({}));
  EXPECT_GE(killer.tally.finished, 1);
  std::printf("%d kills, %d lives taken up in the middle, %d digests finished\n", killer.tally.kills, killer.tally.resumed,
              killer.tally.finished);
  EXPECT_GE(killer.tally.resumed, kKills / 10) << "else nothing was shown";
}

}  // namespace
