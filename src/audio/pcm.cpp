// pcm.cpp - silence, channels out of interleaved bytes, and clamping.

#include "audio/sample_format.h"
#include "foundation/numeric.h"
#include "qxv/audio.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t kBlock = 2048;  // samples between bytes and channels: they stay in the first cache

// Every stride-th sample of a width known to the compiler.
template <int kWidth>
void SplitOne(const unsigned char* source, std::size_t stride, float* samples, std::size_t frames) noexcept {
  for (std::size_t i = 0; i < frames; ++i) {
    if constexpr (kWidth == 4) {
      std::memcpy(samples + i, source + i * stride, sizeof(float));
    } else {
      samples[i] = qxv::SampleFromBytes(kWidth, source + i * stride);
    }
  }
}

void Deinterleave(const float* block, std::size_t channels, std::size_t frames, float* const* targets, std::size_t at) noexcept {
  for (std::size_t channel = 0; channel < channels; ++channel) {
    float* const target = targets[channel] + at;
    for (std::size_t i = 0; i < frames; ++i) {
      std::memcpy(target + i, block + i * channels + channel, sizeof(float));
    }
  }
}

}  // namespace

int QXVFillSilence(int nBitsPerSample, unsigned char* pBuffer, int nSamples) {
  if (nSamples < 1) {
    return 0;
  }
  if (pBuffer == nullptr || nBitsPerSample < 0) {
    return -1;
  }
  const std::size_t bytes = static_cast<std::size_t>(nBitsPerSample / 8) * static_cast<std::size_t>(nSamples);
  std::memset(pBuffer, nBitsPerSample == 8 ? 0x80 : 0, bytes);
  return 0;
}

int QXVSplitPCM(int nChannels, int nBlockAlign, int nChannel, const unsigned char* pSrc, float* pDst, int nFrames) {
  if (nChannels < 1 || nChannel < 0 || nChannel >= nChannels || pSrc == nullptr || pDst == nullptr) {
    return -1;
  }
  const int width = nBlockAlign / nChannels;
  if (nFrames < 1 || !qxv::IsSampleWidth(width)) {
    return 0;
  }
  const auto stride = static_cast<std::size_t>(nBlockAlign), frames = static_cast<std::size_t>(nFrames);
  // KEPT: the product wraps at 32 bits. Pinned by SplitPcmKept.TheFirstSamplesPlaceWraps.
  const int first = qxv::WrapMultiply(nBlockAlign, nChannel) / nChannels;
  if (first < 0) {
    return -1;
  }
  const auto offset = static_cast<std::size_t>(first);
  switch (width) {
    case 1:
      SplitOne<1>(pSrc + offset, stride, pDst, frames);
      break;
    case 2:
      SplitOne<2>(pSrc + offset, stride, pDst, frames);
      break;
    case 3:
      SplitOne<3>(pSrc + offset, stride, pDst, frames);
      break;
    default:
      SplitOne<4>(pSrc + offset, stride, pDst, frames);
  }
  return 0;
}

int QXVSplitPCM(int nChannels, int nBlockAlign, const unsigned char* pSrc, float* const* ppDst, int nFrames) {
  if (nChannels < 1 || pSrc == nullptr || ppDst == nullptr) {
    return -1;
  }
  const int width = nBlockAlign / nChannels;
  if (nFrames < 1 || !qxv::IsSampleWidth(width)) {
    return 0;
  }
  const auto channels = static_cast<std::size_t>(nChannels), frames = static_cast<std::size_t>(nFrames);
  const std::size_t frameBytes = channels * static_cast<std::size_t>(width);
  if (channels == 2 && width == 2) {
    qxv::SplitPairs16(pSrc, ppDst[0], ppDst[1], frames);
    return 0;
  }
  if (channels > kBlock) {
    for (std::size_t k = 0; k < channels * frames; ++k) {
      qxv::SamplesFromBytes(width, pSrc + k * static_cast<std::size_t>(width), ppDst[k % channels] + k / channels, 1);
    }
    return 0;
  }
  float block[kBlock];
  for (std::size_t at = 0; at < frames;) {
    const std::size_t count = std::min(frames - at, kBlock / channels);
    qxv::SamplesFromBytes(width, pSrc + at * frameBytes, block, count * channels);
    Deinterleave(block, channels, count, ppDst, at);
    at += count;
  }
  return 0;
}

int QXVClampSamples(float* pSamples, int nSamples, int nBitsPerSample) {
  if (nSamples < 1 || (nBitsPerSample != 16 && nBitsPerSample != 24 && nBitsPerSample != 32)) {
    return 0;
  }
  if (pSamples == nullptr) {
    return -1;
  }
  const float highest = nBitsPerSample == 32 ? 1.0f : 1.0f - std::ldexp(1.0f, 1 - nBitsPerSample);
  for (int i = 0; i < nSamples; ++i) {
    const float sample = pSamples[i];
    if (sample > highest || sample < -1.0f) {
      pSamples[i] = sample < 0 ? -1.0f : highest;
    }
  }
  return 0;
}
