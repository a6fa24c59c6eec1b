// types.h - characters, integers and the system's records, the same bytes on both systems.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#if defined(QXV_HOST_MFC)
#include <afxwin.h>  // the framework insists on including <windows.h> itself
#else
#include <windows.h>
#endif

#include <mmreg.h>

/// One UTF-16 code unit. Every text of the interface is a sequence of these, ended by a zero unit.
using QXChar = wchar_t;
using QXInt64 = __int64;
using QXUInt64 = unsigned __int64;
#define QXV_TEXT_LITERAL(text) L##text

#else

/// One UTF-16 code unit. Every text of the interface is a sequence of these, ended by a zero unit.
using QXChar = char16_t;
using QXInt64 = long long;
using QXUInt64 = unsigned long long;
#define QXV_TEXT_LITERAL(text) u##text

// The Windows records that the interface names, byte for byte as on 64-bit Windows.

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using HRESULT = std::int32_t;

/// An opened file. Opaque: made, used and closed through the library only.
using HANDLE = void*;
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)))

struct HKEY__ {
  int unused;
};
/// A key of the registry store; the four roots are constants.
using HKEY = HKEY__*;
#define HKEY_CLASSES_ROOT (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(0x80000000))))
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(0x80000001))))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(0x80000002))))
#define HKEY_USERS (reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(0x80000003))))

/// 100-nanosecond intervals since 1601-01-01 UTC, in two 32-bit halves.
struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

/// A calendar date and time. Month 1 to 12, day of week 0 (Sunday) to 6.
struct SYSTEMTIME {
  WORD wYear;
  WORD wMonth;
  WORD wDayOfWeek;
  WORD wDay;
  WORD wHour;
  WORD wMinute;
  WORD wSecond;
  WORD wMilliseconds;
};

struct POINT {
  std::int32_t x;
  std::int32_t y;
};

struct RECT {
  std::int32_t left;
  std::int32_t top;
  std::int32_t right;
  std::int32_t bottom;
};

struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
};

#pragma pack(push, 1)
/// Format of a sound: 18 bytes, packed.
struct tWAVEFORMATEX {
  WORD wFormatTag;
  WORD nChannels;
  DWORD nSamplesPerSec;
  DWORD nAvgBytesPerSec;
  WORD nBlockAlign;
  WORD wBitsPerSample;
  WORD cbSize;
};
#pragma pack(pop)
using WAVEFORMATEX = tWAVEFORMATEX;

#endif

/// A text literal of QXChar: QXT("text").
#define QXT(text) QXV_TEXT_LITERAL(text)
