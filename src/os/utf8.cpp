// utf8.cpp - UTF-8 to UTF-16 and back.

#include "os/utf8.h"

#include "os/counted_output.h"

namespace qxv::os {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct Sequence {
  char32_t character = kReplacement;
  std::size_t length = 1;
  bool valid = false;
};

/// The sequence at the start, or the longest part of a broken one. The second byte's range excludes overlong forms, surrogates
/// and what lies above U+10FFFF.
Sequence ReadSequence(const unsigned char* at, std::size_t left) noexcept {
  Sequence result;
  const unsigned lead = at[0];
  if (lead < 0x80) {
    return {lead, 1, true};
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return result;
  }
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t character = lead & (0x7Fu >> length);
  for (; result.length < length; ++result.length) {
    if (result.length >= left) {
      return result;
    }
    const unsigned byte = at[result.length];
    if (byte < (result.length == 1 ? lowest : 0x80u) || byte > (result.length == 1 ? highest : 0xBFu)) {
      return result;
    }
    character = character << 6 | (byte & 0x3F);
  }
  result.character = character;
  result.valid = true;
  return result;
}

}  // namespace

std::ptrdiff_t DecodeUtf8(const char* bytes, std::size_t count, QXChar* out, std::size_t capacity, bool* lost) noexcept {
  const auto* at = reinterpret_cast<const unsigned char*>(bytes);
  const unsigned char* const end = at + count;
  CountedOutput<QXChar> output(out, capacity);
  while (at != end) {
    const Sequence sequence = ReadSequence(at, static_cast<std::size_t>(end - at));
    at += sequence.length;
    *lost |= !sequence.valid;
    if (sequence.character < 0x10000) {
      output.Put(static_cast<QXChar>(sequence.character));
    } else {
      output.Put(static_cast<QXChar>(0xD7C0 + (sequence.character >> 10)));
      output.Put(static_cast<QXChar>(0xDC00 + (sequence.character & 0x3FF)));
    }
  }
  return output.Result();
}

std::ptrdiff_t EncodeUtf8(const QXChar* text, std::size_t count, char* out, std::size_t capacity, bool* lost) noexcept {
  CountedOutput<char> output(out, capacity);
  const auto tail = [&output](char32_t character, int shift) {
    output.Put(static_cast<char>(0x80 | (character >> shift & 0x3F)));
  };
  for (std::size_t i = 0; i < count; ++i) {
    char32_t character = text[i];
    if ((character & 0xF800) == 0xD800) {
      const bool paired = character < 0xDC00 && i + 1 < count && (text[i + 1] & 0xFC00) == 0xDC00;
      if (paired) {
        character = 0x10000 + ((character & 0x3FF) << 10) + (text[++i] & 0x3FFu);
      } else {
        character = kReplacement;
        *lost = true;
      }
    }
    if (character < 0x80) {
      output.Put(static_cast<char>(character));
    } else if (character < 0x800) {
      output.Put(static_cast<char>(0xC0 | character >> 6));
      tail(character, 0);
    } else if (character < 0x10000) {
      output.Put(static_cast<char>(0xE0 | character >> 12));
      tail(character, 6);
      tail(character, 0);
    } else {
      output.Put(static_cast<char>(0xF0 | character >> 18));
      tail(character, 12);
      tail(character, 6);
      tail(character, 0);
    }
  }
  return output.Result();
}

}  // namespace qxv::os
