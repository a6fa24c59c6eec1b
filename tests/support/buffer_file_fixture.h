// buffer_file_fixture.h - buffered files in a folder of their own, opened in each of the four ways.
#pragma once

#include "qxv/buffer_file.h"
#include "qxv/host.h"
#include "qxv/interop.h"

#include "os/c_stream.h"
#include "os/file.h"
#include "support/temp_folder.h"

#include <memory>
#include <string>

namespace streams_test {

template <class T>
using Array = CQXArray<T, T&>;

using BufferFile = qxv::Owned<CQXVBufferFileRW>;

/// From the factory, reset.
inline BufferFile NewBufferFile() {
  BufferFile file(QXV_ConstructBufferFileRW());
  (void)file->Reset();
  return file;
}

enum class OpenedBy { Name, Handle, Stream, HostFile };
inline constexpr OpenedBy kAllWays[] = {OpenedBy::Name, OpenedBy::Handle, OpenedBy::Stream, OpenedBy::HostFile};

/// A buffered file together with the host file that it may stand on.
struct OpenedFile {
  std::unique_ptr<CFile> hostFile;
  BufferFile file = NewBufferFile();
  int opened = 0;

  CQXVBufferFileRW* operator->() const { return file.get(); }
};

/// Opens as an application would; what is adopted is opened here first, and closed here when it is refused. opened is 0 when
/// either step failed.
inline OpenedFile OpenFile(OpenedBy way, const support::Text& name, bool forReading, unsigned int size) {
  OpenedFile opened;
  switch (way) {
    case OpenedBy::Name:
      opened.opened = opened->Open(name.c_str(), forReading, size);
      break;
    case OpenedBy::Handle: {
      qxv::os::File handle;
      qxv::os::OpenOptions options;
      options.share = qxv::os::kShareRead | qxv::os::kShareWrite;
      options.access = forReading ? qxv::os::FileAccess::Read : qxv::os::FileAccess::ReadWrite;
      options.disposition = forReading ? qxv::os::FileDisposition::OpenExisting : qxv::os::FileDisposition::CreateAlways;
      if (handle.Open(name.c_str(), options) == qxv::os::kErrorNone) {
        opened.opened = opened->Open(handle.Handle(), forReading, size);
      }
      if (opened.opened != 0) {
        (void)handle.Release();
      }
      break;
    }
    case OpenedBy::Stream: {
      std::FILE* stream = qxv::os::OpenStream(name.c_str(), forReading ? "rb" : "wb");
      opened.opened = opened->Open(stream, forReading, size);
      if (opened.opened == 0 && stream != nullptr) {
        std::fclose(stream);
      }
      break;
    }
    case OpenedBy::HostFile:
      opened.hostFile = std::make_unique<CFile>();
      if (opened.hostFile->Open(name.c_str(), forReading ? CFile::modeRead | CFile::shareDenyNone
                                                         : CFile::modeCreate | CFile::modeReadWrite | CFile::shareDenyNone)) {
        opened.opened = opened->Open(opened.hostFile.get(), forReading, size);
      }
      break;
  }
  return opened;
}

inline OpenedFile OpenReader(const support::Text& name, unsigned int size = 1024, OpenedBy way = OpenedBy::Name) {
  return OpenFile(way, name, true, size);
}

inline OpenedFile OpenWriter(const support::Text& name, unsigned int size = 1024, OpenedBy way = OpenedBy::Name) {
  return OpenFile(way, name, false, size);
}

}  // namespace streams_test
