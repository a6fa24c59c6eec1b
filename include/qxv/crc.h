// crc.h - the 32-bit cyclic redundancy check of a byte range.
#pragma once

#include "qxv/export.h"

/// CRC-32/MPEG-2 of the bytes from pBegin up to, not including, pEnd: polynomial 0x04C11DB7, preset 0xFFFFFFFF, the most
/// significant bit of each byte first, nothing reflected, no final exclusive or. "123456789" gives 0x0376E6E7.
/// @return 0xFFFFFFFF for an empty or reversed range and for a null pointer; nothing is read then.
///   The byte count is a signed 32-bit number: a range of 2 GiB up to 4 GiB counts as reversed, and of a longer one only the
///   low 32 bits of its length count.
/// Any thread may call it at any time.
QXV_API unsigned int QXVCalculateCRC(const unsigned char* pBegin, const unsigned char* pEnd);
