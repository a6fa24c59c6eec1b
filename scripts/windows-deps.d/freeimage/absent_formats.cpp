// absent_formats.cpp - FreeImage's formats are numbered by the order in which its plugins are announced, so the ones that were left
// out keep their places: a name, and neither reading nor writing.

#include "FreeImage.h"
#include "Utilities.h"

#define QXV_ABSENT_FORMAT(format)                                                  \
  static const char* DLL_CALLCONV NameOf##format() { return #format; }             \
  void DLL_CALLCONV Init##format(Plugin* plugin, int) { plugin->format_proc = NameOf##format; }

QXV_ABSENT_FORMAT(BMP)
QXV_ABSENT_FORMAT(CUT)
QXV_ABSENT_FORMAT(DDS)
QXV_ABSENT_FORMAT(EXR)
QXV_ABSENT_FORMAT(G3)
QXV_ABSENT_FORMAT(HDR)
QXV_ABSENT_FORMAT(ICO)
QXV_ABSENT_FORMAT(IFF)
QXV_ABSENT_FORMAT(J2K)
QXV_ABSENT_FORMAT(JNG)
QXV_ABSENT_FORMAT(JP2)
QXV_ABSENT_FORMAT(JPEG)
QXV_ABSENT_FORMAT(JXR)
QXV_ABSENT_FORMAT(KOALA)
QXV_ABSENT_FORMAT(MNG)
QXV_ABSENT_FORMAT(PCD)
QXV_ABSENT_FORMAT(PCX)
QXV_ABSENT_FORMAT(PFM)
QXV_ABSENT_FORMAT(PICT)
QXV_ABSENT_FORMAT(PNM)
QXV_ABSENT_FORMAT(PSD)
QXV_ABSENT_FORMAT(RAS)
QXV_ABSENT_FORMAT(RAW)
QXV_ABSENT_FORMAT(SGI)
QXV_ABSENT_FORMAT(TARGA)
QXV_ABSENT_FORMAT(WBMP)
QXV_ABSENT_FORMAT(WEBP)
QXV_ABSENT_FORMAT(XBM)
QXV_ABSENT_FORMAT(XPM)
