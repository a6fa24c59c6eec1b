// utf8.cpp - UTF-8 to UTF-16 and back, into buffers of the caller.

#include "os/utf8.h"

#include "os/counted_output.h"
#include "os/utf_step.h"

namespace qxv::os {

std::ptrdiff_t DecodeUtf8(const char* bytes, std::size_t count, QXChar* out, std::size_t capacity, bool* lost) noexcept {
  CountedOutput<QXChar> output(out, capacity);
  for (std::size_t at = 0; at < count;) {
    const UtfStep step = DecodeUtf8Step({bytes, count}, at, false /*takeSurrogates*/);
    at += step.length;
    *lost |= !step.valid;
    EncodeUtf16Step(step.value, [&output](QXChar unit) { output.Put(unit); });
  }
  return output.Result();
}

std::ptrdiff_t EncodeUtf8(const QXChar* text, std::size_t count, char* out, std::size_t capacity, bool* lost) noexcept {
  CountedOutput<char> output(out, capacity);
  for (std::size_t at = 0; at < count;) {
    const UtfStep step = DecodeUtf16Step({text, count}, at);
    at += step.length;
    *lost |= !step.valid;
    EncodeUtf8Step(step.valid ? step.value : kReplacementCharacter, [&output](char byte) { output.Put(byte); });
  }
  return output.Result();
}

}  // namespace qxv::os
