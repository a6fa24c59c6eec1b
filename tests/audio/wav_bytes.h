// wav_bytes.h - WAV files put together byte by byte.
#pragma once

#include "qxv/string.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace wav {

inline std::string U16(unsigned value) { return {static_cast<char>(value), static_cast<char>(value >> 8)}; }
inline std::string U32(std::uint32_t value) { return U16(value & 0xFFFF) + U16(value >> 16); }

inline std::string Chunk(const std::string& id, const std::string& body) {
  return id + U32(static_cast<std::uint32_t>(body.size())) + body;
}

// Tag 1, channels, rate 48000, bytes a second, block alignment, bits.
inline std::string Format(unsigned channels, unsigned align, unsigned bits) {
  return U16(1) + U16(channels) + U32(48000) + U32(48000 * align) + U16(align) + U16(bits);
}

inline std::string Riff(const std::string& chunks) {
  return "RIFF" + U32(static_cast<std::uint32_t>(4 + chunks.size())) + "WAVE" + chunks;
}

struct WavFile {
  explicit WavFile(const std::string& bytes) { EXPECT_TRUE(support::WriteBytes(name, bytes)); }
  CQXString Name() const { return name.c_str(); }
  support::TempFolder folder;
  support::Text name = folder.File(QXT("a.wav"));
};

inline const std::string kTwoFrames("\x00\x40\x00\xC0\x00\x20\xFF\x7F", 8);  // stereo, 16 bits: 0.5 -0.5 0.25 0.99997
inline const std::vector<float> kTwoFramesAsFloats{0.5f, -0.5f, 0.25f, 32767 * 0x1p-15f};

}  // namespace wav
