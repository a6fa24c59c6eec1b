// progress.cpp - the line of a long reading.
// "clip.mxf  ███████▌░░░░░░░  48 %   212.5 MiB/s   0:12 left": the bar takes what the others leave.

#include "qxvtool/support/progress.h"

#include "qxvtool/support/console.h"
#include "qxvtool/support/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

namespace tool {

namespace {

std::string TimeText(double seconds) {
  if (!(seconds < 360000)) {  // a hundred hours, or not a number
    return "--:--";
  }
  const auto whole = static_cast<int>(std::ceil(seconds));
  std::array<char, 32> text{};
  if (whole >= 3600) {
    (void)std::snprintf(text.data(), text.size(), "%d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
  } else {
    (void)std::snprintf(text.data(), text.size(), "%d:%02d", whole / 60, whole % 60);
  }
  return text.data();
}

// Eighths of a column, so that the bar moves in a terminal of few columns, too.
std::string Bar(double share, std::size_t columns) {
  static constexpr std::array<const char*, 8> kPart = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
  const auto eighths = static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * static_cast<double>(columns * 8));
  std::string bar;
  for (std::size_t i = 0; i < eighths / 8; ++i) {
    bar += "█";
  }
  bar += kPart.at(eighths % 8);
  for (std::size_t i = (eighths + 7) / 8; i < columns; ++i) {
    bar += "░";
  }
  return bar;
}

}  // namespace

std::string ProgressLine(const std::string& name, double share, double bytesPerSecond, double secondsLeft, std::size_t columns) {
  std::array<char, 16> percent{};
  (void)std::snprintf(percent.data(), percent.size(), "%3.0f %%", std::floor(share * 100));
  const std::string right = "  " + std::string(percent.data()) + PadLeft(SizeText(bytesPerSecond) + "/s", 14) +
                            PadLeft(TimeText(secondsLeft) + " left", 13);
  const std::string left = Shorten(name, std::max<std::size_t>(columns / 4, 12)) + "  ";
  const std::size_t taken = ColumnsOf(left) + ColumnsOf(right);
  return left + (columns > taken ? Bar(share, std::min<std::size_t>(columns - taken, 60)) : "") + right;
}

Progress::Progress(std::string name, std::uint64_t total, std::uint64_t done)
    : m_name(std::move(name)), m_total(total), m_before(done), m_isShown(IsTerminal(Stream::Error)), m_start(Clock::now()) {}

Progress::~Progress() {
  if (m_columns > 0) {
    Write(Stream::Error, '\r' + std::string(m_columns, ' ') + '\r');
  }
}

void Progress::Show(std::uint64_t done) {
  const auto now = Clock::now();
  const bool isNew = m_columns == 0 || now - m_drawn >= std::chrono::milliseconds(100);
  if (!m_isShown || !isNew || now - m_start < std::chrono::milliseconds(200)) {
    return;  // what is over at once needs no line
  }
  m_drawn = now;
  const double seconds = std::chrono::duration<double>(now - m_start).count();
  const double rate = static_cast<double>(done - m_before) / seconds;
  const double share = m_total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(m_total);
  const double left = static_cast<double>(m_total - std::min(m_total, done)) / rate;
  // Room for the ^C that terminals write behind it: a new line could not be taken away.
  std::string line = ProgressLine(m_name, share, rate, left, static_cast<std::size_t>(std::max(TerminalColumns() - 4, 20)));
  const std::size_t columns = ColumnsOf(line);
  Write(Stream::Error, '\r' + line + std::string(m_columns > columns ? m_columns - columns : 0, ' '));
  m_columns = columns;
}

}  // namespace tool
