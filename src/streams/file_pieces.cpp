// file_pieces.cpp - files read and written front to back in large pieces.

#include "streams/file_pieces.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace qxv {
namespace {

constexpr std::size_t kCacheLine = 64;
constexpr std::size_t kFirstPiece = 4096;  // a header; whoever wants no more should not wait for more

}  // namespace

os::ErrorCode FileReader::Open(const QXChar* name) {
  os::OpenOptions options;
  options.share = os::kShareRead | os::kShareWrite;
  std::int64_t length = 0;
  os::ErrorCode error = m_file.Open(name, options);
  if (error == os::kErrorNone) {
    error = os::GetFileLength(m_file.Handle(), length);
  }
  if (error != os::kErrorNone) {
    return error;
  }
  m_piece.reset(new unsigned char[2 * kCacheLine + 2 * kFilePiece]);  // what is left of a piece, and the next one
  m_line = 2 * kCacheLine - reinterpret_cast<std::uintptr_t>(m_piece.get()) % kCacheLine;
  ForgetPiece();
  m_length = static_cast<std::uint64_t>(length);
  return os::kErrorNone;
}

void FileReader::GoTo(std::uint64_t position) noexcept {
  const std::uint64_t start = m_position - (m_at - m_begin);
  if (position >= start && position - start <= m_end - m_begin) {
    m_at = m_begin + static_cast<std::size_t>(position - start);
    m_position = position;
    return;
  }
  ForgetPiece();
  m_position = position;
  const bool moved =
      os::SeekInFile(m_file.Handle(), static_cast<std::int64_t>(position), os::SeekOrigin::Begin) == os::kErrorNone;
  if (!moved) {
    m_length = 0;  // nothing is left, wherever we stand
  }
}

std::span<const unsigned char> FileReader::Peek(std::size_t least) noexcept {
  if (m_end - m_at >= least || Left() == m_end - m_at) {
    return AtHand();
  }
  const bool first = m_position == 0 && m_end == m_begin;
  // What is left ends before a line of the cache, so that the system copies to one: to an odd place some processors copy at a
  // quarter of the speed. Pieces have one size, so that they begin where pages of the file do.
  const std::size_t rest = m_end - m_at;
  m_begin = m_line - rest % kCacheLine;
  std::memmove(m_piece.get() + m_begin, m_piece.get() + m_at, rest);
  m_at = m_begin;
  m_end = m_begin + rest;
  const std::size_t wanted = first ? std::max(kFirstPiece, least) : kFilePiece;
  std::size_t done = 0;
  (void)os::ReadFromFile(m_file.Handle(), {m_piece.get() + m_end, wanted}, done);
  m_end += done;
  return AtHand();
}

void FileReader::Skip(std::size_t count) noexcept {
  m_at += count;
  m_position += count;
}

std::span<const unsigned char> FileReader::Take(std::size_t count) noexcept {
  const auto shown = Peek(count);
  const auto taken = shown.first(std::min(count, shown.size()));
  Skip(taken.size());
  return taken;
}

bool FileReader::Read(std::span<unsigned char> bytes) noexcept {
  while (!bytes.empty()) {
    std::size_t done = 0;
    if (m_at == m_end && bytes.size() >= kFilePiece && Left() > 0) {  // past our memory
      ForgetPiece();
      (void)os::ReadFromFile(m_file.Handle(), bytes, done);
      m_position += done;
    } else {
      const auto shown = Peek(1);
      done = std::min(shown.size(), bytes.size());
      std::memcpy(bytes.data(), shown.data(), done);
      Skip(done);
    }
    if (done == 0) {
      return false;
    }
    bytes = bytes.subspan(done);
  }
  return true;
}

bool FileReader::HasGrown() noexcept {
  ForgetPiece();
  m_position = m_length;
  unsigned char byte = 0;
  std::size_t done = 0;
  const auto end = static_cast<std::int64_t>(m_length);
  return os::SeekInFile(m_file.Handle(), end, os::SeekOrigin::Begin) == os::kErrorNone &&
         os::ReadFromFile(m_file.Handle(), {&byte, 1}, done) == os::kErrorNone && done == 1;
}

os::ErrorCode FileWriter::Open(const QXChar* name) {
  m_piece.reset(new unsigned char[kFilePiece]);  // before a file is emptied
  os::OpenOptions options;
  options.access = os::FileAccess::Write;
  options.disposition = os::FileDisposition::CreateAlways;
  options.share = os::kShareRead | os::kShareWrite;
  return m_file.Open(name, options);
}

void FileWriter::Write(std::span<const unsigned char> bytes) noexcept {
  if (bytes.size() >= kFilePiece) {
    Flush();
    WriteOut(bytes);
    return;
  }
  while (!bytes.empty()) {
    const auto room = Room(1);
    const std::size_t count = std::min(room.size(), bytes.size());
    std::memcpy(room.data(), bytes.data(), count);
    Commit(count);
    bytes = bytes.subspan(count);
  }
}

void FileWriter::Zeros(std::size_t count) noexcept {
  while (count > 0) {
    const auto room = Room(1);
    const std::size_t part = std::min(room.size(), count);
    std::memset(room.data(), 0, part);
    Commit(part);
    count -= part;
  }
}

std::span<unsigned char> FileWriter::Room(std::size_t least) noexcept {
  if (kFilePiece - m_end < least) {
    Flush();
  }
  return {m_piece.get() + m_end, kFilePiece - m_end};
}

void FileWriter::Flush() noexcept { WriteOut({m_piece.get(), std::exchange(m_end, 0)}); }

// KEPT: errors of writing are not reported, so a file on a full disk ends early and counts as written.
//   Pinned by FileWriterKept.AFullDiskIsNotReported.
void FileWriter::WriteOut(std::span<const unsigned char> bytes) noexcept {
  std::size_t done = 0;
  m_failed = m_failed || (!bytes.empty() && os::WriteToFile(m_file.Handle(), bytes, done) != os::kErrorNone);
}

}  // namespace qxv
