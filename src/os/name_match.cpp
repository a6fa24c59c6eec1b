// name_match.cpp - case folding and wildcards of file names.

#include "os/name_match.h"

#include <cstdint>
#include <vector>

namespace qxv::os {
namespace {

// The pattern's pieces. A plain "*" and "?" know nothing of dots; the other three are how Windows keeps the patterns of old:
// the star before a dot stops at the last dot, "?" and the dot before a wildcard also match nothing at the end of a name.
enum class Piece { Unit, Star, StarBeforeDot, AnyOrNone, DotOrEnd };

struct PatternUnit {
  Piece piece;
  QXChar unit;
};

std::vector<PatternUnit> Compile(TextView pattern) {
  std::vector<PatternUnit> units;
  units.reserve(pattern.size());
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const QXChar unit = pattern[i];
    const QXChar next = i + 1 < pattern.size() ? pattern[i + 1] : QXChar(0);
    if (unit == QXT('*')) {
      units.push_back({next == QXT('.') ? Piece::StarBeforeDot : Piece::Star, unit});
    } else if (unit == QXT('?')) {
      units.push_back({Piece::AnyOrNone, unit});
    } else if (unit == QXT('.') && (next == QXT('*') || next == QXT('?') || next == 0)) {
      units.push_back({Piece::DotOrEnd, unit});
    } else {
      units.push_back({Piece::Unit, FoldCase(unit)});
    }
  }
  return units;
}

/// Marks state i and every state that it reaches without a character. atEnd: no character of the name is left; atDot: a dot is
/// next.
void Reach(const std::vector<PatternUnit>& pattern, std::vector<char>& states, std::size_t i, bool atEnd, bool atDot) {
  for (;; ++i) {
    states[i] = 1;
    if (i == pattern.size()) {
      return;
    }
    const Piece piece = pattern[i].piece;
    const bool passes = piece == Piece::Star || piece == Piece::StarBeforeDot ||
                        (piece == Piece::AnyOrNone && (atEnd || atDot)) || (piece == Piece::DotOrEnd && atEnd);
    if (!passes) {
      return;
    }
  }
}

}  // namespace

QXChar FoldCase(QXChar unit) noexcept {
  const auto u = static_cast<std::uint16_t>(unit);
  const auto plus = [u](int distance) { return static_cast<QXChar>(u + distance); };
  if (u < 0x80) {
    return u >= 'A' && u <= 'Z' ? plus(32) : unit;
  }
  if (u < 0x100) {
    return u >= 0xC0 && u <= 0xDE && u != 0xD7 ? plus(32) : unit;
  }
  if (u < 0x180) {  // pairs, in two runs with the odd number as the capital; U+0130, U+0131, U+0138, U+0149, U+017F have no pair
    const bool oddCapital = (u >= 0x139 && u <= 0x148) || (u >= 0x179 && u <= 0x17E);
    if (u == 0x178) {
      return static_cast<QXChar>(0xFF);
    }
    if (u == 0x130 || u == 0x138 || u == 0x149 || u == 0x17F) {
      return unit;
    }
    return (u % 2 == 1) == oddCapital ? plus(1) : unit;
  }
  if (u >= 0x391 && u <= 0x3A9) {
    return u != 0x3A2 ? plus(32) : unit;
  }
  if (u >= 0x400 && u <= 0x42F) {
    return plus(u < 0x410 ? 80 : 32);
  }
  return unit;
}

bool EqualsIgnoringCase(TextView a, TextView b) noexcept {
  if (a.size() != b.size()) {
    return false;
  }
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (FoldCase(a[i]) != FoldCase(b[i])) {
      return false;
    }
  }
  return true;
}

bool HasWildcard(TextView name) noexcept {
  return name.find(QXT('*')) != TextView::npos || name.find(QXT('?')) != TextView::npos;
}

bool MatchesPattern(TextView name, TextView pattern) {
  if (pattern == QXT("*") || pattern == QXT("*.*")) {
    return true;
  }
  // All states at once, one step a character: the cost is name times pattern whatever the pattern.
  const std::vector<PatternUnit> units = Compile(pattern);
  const std::size_t lastDot = name.rfind(QXT('.'));
  std::vector<char> now(units.size() + 1), next(units.size() + 1);
  Reach(units, now, 0, name.empty(), !name.empty() && name[0] == QXT('.'));
  for (std::size_t at = 0; at < name.size(); ++at) {
    const QXChar unit = FoldCase(name[at]);
    const bool endNext = at + 1 == name.size();
    const bool dotNext = !endNext && name[at + 1] == QXT('.');
    next.assign(next.size(), 0);
    for (std::size_t i = 0; i < units.size(); ++i) {
      if (!now[i]) {
        continue;
      }
      switch (units[i].piece) {
        case Piece::Star:
          Reach(units, next, i, endNext, dotNext);
          break;
        case Piece::StarBeforeDot:
          if (at != lastDot) {
            Reach(units, next, i, endNext, dotNext);
          }
          break;
        case Piece::AnyOrNone:
          if (unit != QXT('.')) {
            Reach(units, next, i + 1, endNext, dotNext);
          }
          break;
        case Piece::DotOrEnd:
          if (unit == QXT('.')) {
            Reach(units, next, i + 1, endNext, dotNext);
          }
          break;
        case Piece::Unit:
          if (unit == units[i].unit) {
            Reach(units, next, i + 1, endNext, dotNext);
          }
          break;
      }
    }
    now.swap(next);
  }
  return now[units.size()] != 0;
}

}  // namespace qxv::os
