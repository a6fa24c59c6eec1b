// progress.h - one line at the terminal that says how far a long reading has come, and when it will end.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace tool {

class Progress {
 public:
  /// @param total  bytes in all
  /// @param done   bytes that an earlier run has done; they do not count for the rate
  Progress(std::string name, std::uint64_t total, std::uint64_t done);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  /// Takes the line away.
  ~Progress();

  /// Draws the line anew, at most ten times a second, and only at a terminal.
  void Show(std::uint64_t done);

 private:
  using Clock = std::chrono::steady_clock;

  std::string m_name;
  std::uint64_t m_total;
  std::uint64_t m_before;
  bool m_isShown;
  Clock::time_point m_start;
  Clock::time_point m_drawn;
  std::size_t m_columns = 0;  // of the line that stands there
};

/// The line itself: name, bar, share, rate and remaining time in so many columns.
std::string ProgressLine(const std::string& name, double share, double bytesPerSecond, double secondsLeft, std::size_t columns);

}  // namespace tool
