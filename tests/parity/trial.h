// trial.h - one family's run: draws arguments, the same on every system, and takes results into a digest.
#pragma once

#include "qxv/host.h"
#include "qxv/string.h"
#include "qxv/types.h"

#include <cstdint>
#include <string>
#include <type_traits>

namespace parity {

using Text = std::basic_string<QXChar>;

/// What a system's C library adds to a result that it rounds in its own way.
enum class Precision { Exact, TenDigits };

class Trial {
 public:
  /// @param folder  an empty folder of this run, in drive form with a backslash at its end
  Trial(std::uint64_t seed, Text folder) : m_state(seed), m_folder(std::move(folder)) {}

  // Drawing (splitmix64; nothing of the C++ library's, whose distributions differ). Arguments of one call are evaluated in an
  // order that differs between the systems: draw at most one of them there, or in braces, which go from left to right.

  /// Begins the next set of arguments.
  void Next() { ++m_sets; }
  std::uint64_t Bits() {
    std::uint64_t z = m_state += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
  }
  /// 0 to count - 1.
  int Below(int count) { return static_cast<int>(Bits() % static_cast<unsigned>(count)); }
  /// least to most, both included.
  int Between(int least, int most) { return least + Below(most - least + 1); }
  /// Small ones, any, and the ends of the range.
  int Whole();
  QXInt64 Long();
  /// Quarters below 1000, so that points meet and lines are parallel.
  double Coarse() { return Between(-4000, 4000) / 4.0; }
  /// Every magnitude, and the special values.
  double Double();
  float Float() { return static_cast<float>(Double()); }
  /// Up to longest characters without a zero, letters for the most part.
  Text Word(int longest);
  std::string Bytes(int longest);

  // Digest (FNV-1a, 64 bits).

  template <class T, std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>, int> = 0>
  Trial& operator<<(T value) {
    return Number(static_cast<std::uint64_t>(static_cast<std::int64_t>(value)));
  }
  Trial& operator<<(double value);
  Trial& operator<<(float value) { return *this << static_cast<double>(value); }
  Trial& operator<<(const QXChar* text);
  Trial& operator<<(const CQXString& text) { return *this << static_cast<const QXChar*>(text); }
  Trial& operator<<(const CString& text) { return *this << text.GetString(); }
  Trial& operator<<(const std::string& bytes) { return Raw(bytes.data(), bytes.size()); }
  /// A count, then the bytes.
  Trial& Raw(const void* bytes, std::size_t count);
  /// How doubles are taken from here on.
  void Take(Precision precision) { m_precision = precision; }

  Text File(const QXChar* name) const { return m_folder + name; }
  const Text& Folder() const { return m_folder; }
  std::uint64_t Digest() const { return m_digest; }
  int Sets() const { return m_sets; }

 private:
  Trial& Number(std::uint64_t value);
  void Byte(unsigned char value) { m_digest = (m_digest ^ value) * 0x100000001B3; }

  std::uint64_t m_state;
  std::uint64_t m_digest = 0xCBF29CE484222325;
  Text m_folder;
  Precision m_precision = Precision::Exact;
  int m_sets = 0;
};

// The families, each in a source of its name.
void RunAudio(Trial& t);
void RunConversion(Trial& t);
void RunDigests(Trial& t);
void RunFiles(Trial& t);
void RunHostFile(Trial& t);
void RunHostText(Trial& t);
void RunHostValues(Trial& t);
void RunImage(Trial& t);
void RunPath(Trial& t);
void RunPlane(Trial& t);
void RunRounding(Trial& t);
void RunSettings(Trial& t);
void RunSpace(Trial& t);
void RunSpline(Trial& t);
void RunStreams(Trial& t);
void RunSystem(Trial& t);
void RunText(Trial& t);
void RunXml(Trial& t);

}  // namespace parity
