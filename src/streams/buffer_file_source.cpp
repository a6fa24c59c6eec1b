// buffer_file_source.cpp - one place for what the four kinds of files do differently.

#include "streams/buffer_file_source.h"

#include "os/c_stream.h"
#include "os/file.h"

#include <algorithm>
#include <cerrno>
#include <limits>

namespace qxv {
namespace {

// Calls of the host's file class, which reports errors by throwing; a class derived from it may throw anything.
template <class Call>
bool Quietly(Call call) noexcept {
  try {
    call();
    return true;
  } catch (CException* exception) {  // NOLINT(misc-throw-by-value-catch-by-reference): so the host framework throws
    exception->Delete();
  } catch (...) {  // NOLINT(bugprone-empty-catch): errors of the file are not reported
  }
  return false;
}

// Whether a signal ended the call, so that it is to be made again for the rest.
bool IsInterrupted(std::FILE* stream) noexcept {
  if (std::ferror(stream) == 0 || errno != EINTR) {
    return false;
  }
  std::clearerr(stream);
  return true;
}

std::size_t ReadStream(std::FILE* stream, unsigned char* bytes, std::size_t count) noexcept {
  std::size_t done = 0;
  do {
    errno = 0;
    done += std::fread(bytes + done, 1, count - done, stream);
  } while (done < count && IsInterrupted(stream));
  return done;
}

void WriteStream(std::FILE* stream, const unsigned char* bytes, std::size_t count) noexcept {
  std::size_t done = 0;
  do {
    errno = 0;
    done += std::fwrite(bytes + done, 1, count - done, stream);
  } while (done < count && IsInterrupted(stream));
}

bool HostFileIsUsable(const CFile& file) {
  CFileStatus status;
  return file.GetStatus(status) && (status.m_attribute & CFile::directory) == 0;
}

bool HandleIsUsable(HANDLE handle) noexcept {
  os::FileInformation information{};
  return handle != INVALID_HANDLE_VALUE && os::GetFileInformation(handle, information) == os::kErrorNone &&
         (information.attributes & os::kAttributeFolder) == 0;
}

// KEPT: a stream's length is a signed number of 32 bits, and a longer one has none.
//   Pinned by BufferFileKept.AStreamOf2GibibytesHasNoReadableBytes.
std::int64_t ShortStreamLength(std::FILE* stream) noexcept {
  if (!os::SeekStream(stream, 0, os::SeekOrigin::End)) {
    return -1;
  }
  const std::int64_t length = os::TellStream(stream);
  return length > std::numeric_limits<std::int32_t>::max() ? -1 : length;
}

}  // namespace

bool BufferFileSource::OpenNamed(const QXChar* name, bool forReading) noexcept {
  os::OpenOptions options;
  options.share = os::kShareRead;
  options.access = forReading ? os::FileAccess::Read : os::FileAccess::ReadWrite;
  options.disposition = forReading ? os::FileDisposition::OpenExisting : os::FileDisposition::CreateAlways;
  if (os::OpenFileNamed(name, options, m_handle) != os::kErrorNone) {
    return false;
  }
  m_kind = Kind::Named;
  return true;
}

bool BufferFileSource::IsUsable() const noexcept {
  switch (m_kind) {
    case Kind::HostFile: {
      bool isUsable = false;
      return m_file != nullptr && Quietly([&] { isUsable = HostFileIsUsable(*m_file); }) && isUsable;
    }
    case Kind::Handle:
      return HandleIsUsable(m_handle);
    case Kind::Stream:
      return m_stream != nullptr && !os::StreamIsFolder(m_stream);
    case Kind::Named:
      return true;
    case Kind::Closed:
      break;
  }
  return false;
}

bool BufferFileSource::GetLength(std::int64_t& length) const noexcept {
  switch (m_kind) {
    case Kind::HostFile: {
      constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
      return Quietly([&] { length = static_cast<std::int64_t>(std::min<std::uint64_t>(m_file->GetLength(), kMost)); });
    }
    case Kind::Stream:
      length = ShortStreamLength(m_stream);
      return true;
    default:
      return os::GetFileLength(m_handle, length) == os::kErrorNone;
  }
}

void BufferFileSource::MoveToStart() const noexcept {
  switch (m_kind) {
    case Kind::HostFile:
      (void)Quietly([&] { m_file->Seek(0, CFile::begin); });
      break;
    case Kind::Stream:
      (void)os::SeekStream(m_stream, 0, os::SeekOrigin::Begin);
      break;
    default:
      (void)os::SeekInFile(m_handle, 0, os::SeekOrigin::Begin);
      break;
  }
}

std::size_t BufferFileSource::Read(unsigned char* bytes, std::size_t count) const noexcept {
  std::size_t done = 0;
  switch (m_kind) {
    case Kind::HostFile:
      (void)Quietly([&] { done = m_file->Read(bytes, static_cast<unsigned int>(count)); });
      break;
    case Kind::Stream:
      done = ReadStream(m_stream, bytes, count);
      break;
    default:
      (void)os::ReadFromFile(m_handle, {bytes, count}, done);
      break;
  }
  return std::min(done, count);  // what a derived host file says is not trusted
}

void BufferFileSource::Write(const unsigned char* bytes, std::size_t count) const noexcept {
  std::size_t done = 0;
  switch (m_kind) {
    case Kind::HostFile:
      (void)Quietly([&] { m_file->Write(bytes, static_cast<unsigned int>(count)); });
      break;
    case Kind::Stream:
      WriteStream(m_stream, bytes, count);
      break;
    default:
      (void)os::WriteToFile(m_handle, {bytes, count}, done);
      break;
  }
}

void BufferFileSource::Close() noexcept {
  const BufferFileSource source = *this;
  *this = BufferFileSource{};
  switch (source.m_kind) {
    case Kind::HostFile:
      (void)Quietly([&] { source.m_file->Close(); });
      break;
    case Kind::Stream:
      (void)std::fclose(source.m_stream);
      break;
    case Kind::Handle:
    case Kind::Named:
      (void)os::CloseFile(source.m_handle);
      break;
    case Kind::Closed:
      break;
  }
}

}  // namespace qxv
