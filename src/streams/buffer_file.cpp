// buffer_file.cpp - CQXVBufferFileRW: its factory, opening, closing, seeking.

#include "qxv/buffer_file.h"

#include "streams/buffer_file_impl.h"

#include <new>

CQXVBufferFileRW::~CQXVBufferFileRW() = default;

CQXVBufferFileRW* QXV_ConstructBufferFileRW() { return new (std::nothrow) CQXVBufferFileRWImpl; }

using Impl = CQXVBufferFileRWImpl;
using qxv::BufferFileSource;

int Impl::Reset() {
  m_file.Forget();
  return 0;
}

int Impl::Open(const QXChar* pFileName, int bRead, unsigned int nBufferSize) {
  return m_file.OpenNamed(pFileName, bRead != 0, nBufferSize) ? 1 : 0;
}

int Impl::Open(std::FILE* pStream, int bRead, unsigned int nBufferSize) {
  return m_file.Adopt(BufferFileSource::OfStream(pStream), bRead != 0, nBufferSize) ? 1 : 0;
}

int Impl::Open(HANDLE hFile, int bRead, unsigned int nBufferSize) {
  return m_file.Adopt(BufferFileSource::OfHandle(hFile), bRead != 0, nBufferSize) ? 1 : 0;
}

int Impl::Open(CFile* pFile, int bRead, unsigned int nBufferSize) {
  return m_file.Adopt(BufferFileSource::OfHostFile(pFile), bRead != 0, nBufferSize) ? 1 : 0;
}

int Impl::Close() {
  m_file.Close();
  return 1;
}

int Impl::Seek(QXInt64 nOffset, unsigned int nOrigin) { return m_file.Seek(nOffset, nOrigin) ? 1 : 0; }
