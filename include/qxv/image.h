// image.h - still and animated pictures from files of many types and back, in the pixel layout and size that the caller wants.
//
// The extension of a name alone decides the type, in either case: tga, bmp, tif, gif, pcx, yuv, jpg and png; jpeg and tiff are no
// types of ours. docs/formats.md has the files of the types that are read and written here; tif, png and the reading of gif are
// left to FreeImage, which sees only files that hold one of these three.
//
// A buffer of pixels holds its rows from top to bottom, each of width x bytes a pixel and then the padding, which is written as
// zeros. What is handed out was allocated with new unsigned char[] and is the caller's from then on: give it back with delete[].
//
// Every member gives 0 or one of the QXV_IMAGE_STATUS codes. Lack of memory throws std::bad_alloc, and so does, before anything
// changes, a buffer of more than 2^31 - 1 bytes or of negative sides. One object is used by one thread at a time; objects share
// nothing.
#pragma once

#include "qxv/export.h"
#include "qxv/module.h"
#include "qxv/string.h"
#include "qxv/types.h"

// Pixel layouts: the bytes of a pixel in memory. 32, 64 and 128 have a size of 4 bytes and no meaning here.
inline constexpr unsigned int QXV_LAYOUT_BGRA = 1;          ///< 4 bytes: blue, green, red, alpha
inline constexpr unsigned int QXV_LAYOUT_BGR = 4;           ///< 3 bytes
inline constexpr unsigned int QXV_LAYOUT_YUV = 8;           ///< 3 bytes: Y, U, V
inline constexpr unsigned int QXV_LAYOUT_VUY = 0x02000000;  ///< 3 bytes: V, U, Y
inline constexpr unsigned int QXV_LAYOUT_RGB = 0x40000000;  ///< 3 bytes

// Image types, as QXVImageInfo::nType tells them.
inline constexpr int QXV_IMAGE_TYPE_OTHER = 0;
inline constexpr int QXV_IMAGE_TYPE_TGA = 1;
inline constexpr int QXV_IMAGE_TYPE_BMP = 2;
inline constexpr int QXV_IMAGE_TYPE_TIF = 3;
inline constexpr int QXV_IMAGE_TYPE_GIF = 4;
inline constexpr int QXV_IMAGE_TYPE_PCX = 5;
inline constexpr int QXV_IMAGE_TYPE_YUV = 6;
inline constexpr int QXV_IMAGE_TYPE_JPG = 7;
inline constexpr int QXV_IMAGE_TYPE_PNG = 8;

// Status codes.
inline constexpr int QXV_IMAGE_STATUS_OK = 0;
/// No such frame, several frames for a type that has one, sides that cannot be, a null pointer for something else than pixels.
inline constexpr int QXV_IMAGE_STATUS_BAD_ARGUMENT = static_cast<int>(0x89601A11);
inline constexpr int QXV_IMAGE_STATUS_NULL_PIXELS = static_cast<int>(0x89601B11);
inline constexpr int QXV_IMAGE_STATUS_NOT_FOUND = static_cast<int>(0x89601A12);      ///< SetFile: not to be opened for reading
inline constexpr int QXV_IMAGE_STATUS_UNSUPPORTED = static_cast<int>(0x89601A13);    ///< no such type for this operation
inline constexpr int QXV_IMAGE_STATUS_CANNOT_CREATE = static_cast<int>(0x89601A14);  ///< the file to be written
inline constexpr int QXV_IMAGE_STATUS_CANNOT_READ = static_cast<int>(0x89601A15);    ///< gone, or its length changes meanwhile
inline constexpr int QXV_IMAGE_STATUS_BAD_DATA = static_cast<int>(0x89601A16);       ///< damaged, or without pixels to convert
inline constexpr int QXV_IMAGE_STATUS_NO_PIXEL_SIZE = static_cast<int>(0x89601A17);  ///< a layout that is not known here
/// FreeImage or the JPEG codec library refused.
inline constexpr int QXV_IMAGE_STATUS_FOREIGN = -1;

/// What a file holds, or shall hold.
struct QXVImageInfo {
  int nType;                  ///< QXV_IMAGE_TYPE_...; a writer goes by the extension instead
  int nFrames;                ///< 1, but for GIF
  unsigned int nPixelLayout;  ///< of the file's own pixels
  int nWidth;                 ///< pixels
  int nHeight;                ///< pixels
  int nPadding;               ///< bytes behind each row of a frame; 0 when a file is read
  int nFrameTime;             ///< milliseconds that the first frame of a GIF is shown, 0 without; for other types left as it was
};

/// The shape of a buffer of pixels.
struct QXVPixelLayout {
  unsigned int nPixelLayout;  ///< QXV_LAYOUT_...
  int nWidth;                 ///< pixels
  int nHeight;                ///< pixels
  int nPadding;               ///< bytes behind each row
};

/// Reads the frames of one file after another. A GIF stays open from the first question about it to Close or the next SetFile;
/// other files are open only during a call.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): an interface holds nothing that a copy could share
class QXV_API CQXVImageReader : public CQXVObject {
 public:
  /// Closes.
  ~CQXVImageReader() override;

  /// Closes, and takes the file's name. QXV_IMAGE_STATUS_NOT_FOUND when it cannot be opened now; the name before then stays.
  virtual int SetFile(const CQXString& strFile) = 0;

  /// Closes a GIF that is open; the name stays. Always 0.
  virtual int Close() = 0;

  /// What the file holds. A type that is not known gives QXV_IMAGE_STATUS_UNSUPPORTED and nType 0; after any other failure the
  /// record is as it was.
  virtual int GetImageInfoEx(QXVImageInfo* pInfo) = 0;

  /// The same without the last field, which stays as it was. After a failure the six fields are 0.
  virtual int GetImageInfo(QXVImageInfo* pInfo) = 0;

  /// A frame in the file's own layout and size, without padding.
  /// @param nFrame  0 for all types but GIF
  /// @param ppData  receives the buffer, only with 0; null for a bitmap or PCX file of a kind whose header alone is understood
  virtual int ReadRawFrame(int nFrame, void** ppData) = 0;

  /// The shape that ReadFrame gives; nothing, 0 x 0, before the first call. Always 0 but for a null pointer.
  virtual int SetOutputLayout(const QXVPixelLayout* pLayout) = 0;

  /// A frame in the layout and size of SetOutputLayout, resampled where the sizes differ. QXV_IMAGE_STATUS_BAD_DATA when there
  /// are no pixels to make it of. A layout without a meaning here gives alpha, red, green, blue.
  /// @param nFrame  0 for all types but GIF
  /// @param ppData  receives the buffer, only with 0: (width x 4 + padding) x height bytes in every layout. Rows lie at width x
  ///                bytes a pixel + padding; what then is left at the end is zeros.
  virtual int ReadFrame(unsigned int nFrame, unsigned char** ppData) = 0;
};

/// Collects the frames of a file and writes it when the last of them has come.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): an interface holds nothing that a copy could share
class QXV_API CQXVImageWriter : public CQXVObject {
 public:
  /// Closes.
  ~CQXVImageWriter() override;

  /// Closes, and takes the name and the shape of the frames: all fields of the record but nType and nFrameTime. No file is made
  /// yet. QXV_IMAGE_STATUS_BAD_ARGUMENT for fewer than 1 frame, and for several in a name that does not end in .gif: then nothing
  /// changes.
  virtual int Create(const CQXString& strFile, const QXVImageInfo* pInfo) = 0;

  /// Forgets all frames: until the next Create there are none to be written. Always 0.
  virtual int Close() = 0;

  /// The shape of what WriteFrame is given. Always 0 but for a null pointer.
  virtual int SetInputLayout(const QXVPixelLayout* pLayout) = 0;

  /// Converts a frame to the shape of Create, resampled where the sizes differ, and keeps it. Frames may come in any order and
  /// again. The call with which every frame has come, and each one after it, writes the file and gives what came of that:
  /// QXV_IMAGE_STATUS_UNSUPPORTED for a type that is not written (PNG and unknown ones). For TIF nothing is written and 0 given.
  /// QXV_IMAGE_STATUS_NO_PIXEL_SIZE for a layout, on either side, that is not known here; nothing is kept then.
  /// @param pData  the shape of SetInputLayout; its sides must be at least 1, its padding not negative
  virtual int WriteFrame(int nFrame, const unsigned char* pData) = 0;

  /// Keeps a frame that already has the shape of Create, as WriteFrame does. The file takes the bytes as its type's own layout
  /// (TGA BGRA, BMP, GIF and JPG BGR, PCX RGB, YUV YUV) without padding, whatever layout and padding Create was told.
  virtual int WriteRawFrame(int nFrame, const unsigned char* pData) = 0;
};

/// A new object without a file; null when there is no memory. Give it back with delete.
QXV_API CQXVImageReader* QXVCOMMONLIB_GetImageReader();
QXV_API CQXVImageWriter* QXVCOMMONLIB_GetImageWriter();
