// buffer_file_impl.h - CQXVBufferFileRWImpl, what the factory of buffer_file.h makes.
#pragma once

#include "streams/buffer_file_block.h"

#include "qxv/buffer_file.h"

#include <cstdint>

namespace qxv {

inline constexpr std::uint32_t kCountBytes = 4;        // before texts and arrays
inline constexpr std::uint32_t kTextElementBytes = 8;  // what an array of texts counts for each of them

}  // namespace qxv

class CQXVBufferFileRWImpl final : public CQXVBufferFileRW {
 public:
  CQXVBufferFileRWImpl() noexcept = default;  // closed: an object that is released without Reset has nothing to free
  ~CQXVBufferFileRWImpl() override = default;

  int Reset() override;
  int Open(const QXChar* pFileName, int bRead, unsigned int nBufferSize) override;
  int Open(std::FILE* pStream, int bRead, unsigned int nBufferSize) override;
  int Open(HANDLE hFile, int bRead, unsigned int nBufferSize) override;
  int Open(CFile* pFile, int bRead, unsigned int nBufferSize) override;
  int Close() override;
  int Seek(QXInt64 nOffset, unsigned int nOrigin) override;

  unsigned int Read(CArray<SYSTEMTIME>& values) override;
  unsigned int Read(SYSTEMTIME& value) override;
  unsigned int Read(CQXArray<CQXString, CQXString&>& values) override;
  unsigned int Read(CQXArray<CRect, CRect&>& values) override;
  unsigned int Read(CQXArray<FILETIME, FILETIME&>& values) override;
  unsigned int Read(CQXArray<CPoint, CPoint&>& values) override;
  unsigned int Read(CQXArray<GUID, GUID&>& values) override;
  unsigned int Read(CQXArray<QXChar, QXChar&>& values) override;
  unsigned int Read(CQXArray<double, double&>& values) override;
  unsigned int Read(CQXArray<float, float&>& values) override;
  unsigned int Read(CQXArray<QXInt64, QXInt64&>& values) override;
  unsigned int Read(CQXArray<QXUInt64, QXUInt64&>& values) override;
  unsigned int Read(CQXArray<int, int&>& values) override;
  unsigned int Read(CQXArray<unsigned int, unsigned int&>& values) override;
  unsigned int Read(CQXArray<short, short&>& values) override;
  unsigned int Read(CQXArray<unsigned short, unsigned short&>& values) override;
  unsigned int Read(CQXArray<char, char&>& values) override;
  unsigned int Read(CQXArray<unsigned char, unsigned char&>& values) override;
  unsigned int Read(unsigned char* pData, unsigned int nCount) override;
  unsigned int Read(CQXString& value) override;
  unsigned int Read(CRect& value) override;
  unsigned int Read(FILETIME& value) override;
  unsigned int Read(CPoint& value) override;
  unsigned int Read(GUID& value) override;
  unsigned int Read(QXChar& value) override;
  unsigned int Read(double& value) override;
  unsigned int Read(float& value) override;
  unsigned int Read(QXInt64& value) override;
  unsigned int Read(QXUInt64& value) override;
  unsigned int Read(long& value) override;
  unsigned int Read(unsigned long& value) override;
  unsigned int Read(int& value) override;
  unsigned int Read(unsigned int& value) override;
  unsigned int Read(short& value) override;
  unsigned int Read(unsigned short& value) override;
  unsigned int Read(char& value) override;
  unsigned int Read(unsigned char& value) override;

  unsigned int Write(const CArray<SYSTEMTIME>& values) override;
  unsigned int Write(const SYSTEMTIME& value) override;
  unsigned int Write(const CQXArray<CQXString, CQXString&>& values) override;
  unsigned int Write(const CQXArray<CRect, CRect&>& values) override;
  unsigned int Write(const CQXArray<FILETIME, FILETIME&>& values) override;
  unsigned int Write(const CQXArray<CPoint, CPoint&>& values) override;
  unsigned int Write(const CQXArray<GUID, GUID&>& values) override;
  unsigned int Write(const CQXArray<QXChar, QXChar&>& values) override;
  unsigned int Write(const CQXArray<double, double&>& values) override;
  unsigned int Write(const CQXArray<float, float&>& values) override;
  unsigned int Write(const CQXArray<QXInt64, QXInt64&>& values) override;
  unsigned int Write(const CQXArray<QXUInt64, QXUInt64&>& values) override;
  unsigned int Write(const CQXArray<int, int&>& values) override;
  unsigned int Write(const CQXArray<unsigned int, unsigned int&>& values) override;
  unsigned int Write(const CQXArray<short, short&>& values) override;
  unsigned int Write(const CQXArray<unsigned short, unsigned short&>& values) override;
  unsigned int Write(const CQXArray<char, char&>& values) override;
  unsigned int Write(const CQXArray<unsigned char, unsigned char&>& values) override;
  unsigned int Write(const unsigned char* pData, unsigned int nCount) override;
  unsigned int Write(const CQXString& value) override;
  unsigned int Write(const CRect& value) override;
  unsigned int Write(const FILETIME& value) override;
  unsigned int Write(const CPoint& value) override;
  unsigned int Write(const GUID& value) override;
  unsigned int Write(const QXChar& value) override;
  unsigned int Write(const double& value) override;
  unsigned int Write(const float& value) override;
  unsigned int Write(const QXInt64& value) override;
  unsigned int Write(const QXUInt64& value) override;
  unsigned int Write(const long& value) override;
  unsigned int Write(const unsigned long& value) override;
  unsigned int Write(const int& value) override;
  unsigned int Write(const unsigned int& value) override;
  unsigned int Write(const short& value) override;
  unsigned int Write(const unsigned short& value) override;
  unsigned int Write(const char& value) override;
  unsigned int Write(const unsigned char& value) override;

 private:
  qxv::BufferFileBlock m_file;
};
