// audio.h - PCM samples and WAV files. Samples are 32-bit floats, full scale 1.0, unless they are called bytes.
//
// Widths are bytes a sample of one channel, nBlockAlign / nChannels in integers: 1 unsigned with 128 as zero, 2 and 3 signed
// little-endian, 4 a 32-bit float; wFormatTag and wBitsPerSample are never looked at. Slots of any other width stay as they are.
// Every function returns 0, or -1 for what it refuses: null pointers, no channels, and what is named beside it; counts below 1
// are no error and do nothing. Nothing is kept between calls; every function may be called from any thread.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

// PCM.

/// Silence: 0x80 for 8 bits, zero bytes for any other width.
/// @param nBitsPerSample  each sample takes a whole eighth of it in bytes
/// @param nSamples        single samples, frames times channels
QXV_API int QXVFillSilence(int nBitsPerSample, unsigned char* pBuffer, int nSamples);

/// One channel of interleaved bytes. A channel that is not among nChannels is refused, and one whose place is not to be had: the
/// first sample stands at nBlockAlign * nChannel / nChannels, a product of 32 bits, which wraps from 46341 channels on.
/// @param nBlockAlign  bytes of a frame of all channels
/// @param pDst         nFrames samples
QXV_API int QXVSplitPCM(int nChannels, int nBlockAlign, int nChannel, const unsigned char* pSrc, float* pDst, int nFrames);

/// All channels. The bytes are read as nChannels * nFrames samples without a gap, also where nBlockAlign leaves a rest.
/// @param ppDst  nChannels places for nFrames samples each
QXV_API int QXVSplitPCM(int nChannels, int nBlockAlign, const unsigned char* pSrc, float* const* ppDst, int nFrames);

/// One channel at another rate, by straight lines between samples; behind the last one stands 0. Each call begins anew.
/// @param pDst       room for nSrcCount * nDstRate / nSrcRate samples, nSrcCount for equal rates
/// @param nDstCount  receives the number of samples: the product wraps at 32 bits, so that long blocks (above 2^31 / nDstRate)
///                   come out short; below 0 for an nSrcCount below 0, which writes none; 0 where nSrcRate is 0, which is refused
QXV_API int QXVReSample(const float* pSrc, int nSrcRate, int nSrcCount, float* pDst, int nDstRate, int& nDstCount);

/// Brings samples into the range that a WAV file of so many bits holds, for whoever wants clipping in place of wrapping: -1 to
/// 1 - 2^(1 - bits) for 16 and 24 bits, -1 to 1 for 32. NaN and samples of other widths stay.
QXV_API int QXVClampSamples(float* pSamples, int nSamples, int nBitsPerSample);

// WAV files (RIFF/WAVE). Chunks are skipped by their exact size, so a file with a chunk of odd size before its samples is
// misread. A file that cannot be read up to its samples, or whose format has no channels or no block alignment, gives -1.

/// The format and the number of frames. Recognises chunks loosely, by part of their names: it may report other numbers for a file
/// made to mislead than the readers find.
QXV_API int QXVGetWavAtt(const CQXString& strFile, tWAVEFORMATEX& wfx, int& nFrames);

/// All samples of all channels, interleaved. The file decides how many are written: use QXVReadWavBounded for files of unknown
/// origin, since a file may hold more than QXVGetWavAtt has reported of it. What was read before a failure stays.
QXV_API int QXVReadWav(const CQXString& strFile, float* pDst, int& nFrames);

/// nFrames frames from nStartFrame on; what follows the samples in the file may be read as samples.
/// @param pDst  room for nFrames frames of as many channels as the file has
QXV_API int QXVReadWav(const CQXString& strFile, float* pDst, int nStartFrame, int nFrames);

/// All samples, or -1 with nothing written for a file of more frames than there is room for, and for a file in which QXVGetWavAtt
/// finds another number of channels than its samples have.
/// @param pDst  room for nCapacityFrames frames of the channels that QXVGetWavAtt reports
QXV_API int QXVReadWavBounded(const CQXString& strFile, float* pDst, int nCapacityFrames, int& nFrames);

/// A new file of a 44-byte header and the samples, cut towards zero without clamping: 1.0 at 16 bits becomes -32768. 8 bits are
/// written as trunc(x * 256 - 128), which is not what reading them undoes. Errors after the file has been created go unnoticed.
/// @param wfx  written as it is; nBlockAlign / nChannels bytes are written a sample
QXV_API int QXVWriteWav(const CQXString& strFile, tWAVEFORMATEX wfx, const float* pSrc, int nFrames);
