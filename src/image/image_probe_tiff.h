// image_probe_tiff.h - the directory of a TIFF file (TIFF 6.0), checked as a whole.
#pragma once

#include "image/image_probe.h"

namespace qxv {

/// True for a first directory of which all of this holds: it stands inside the file, its tags ascend; what it points to stands
/// inside the file; IsDecodableSize; bits a sample all equal, of 1, 2, 4, 8, 16 or 32, and 8 or 16 where there are several
/// samples; samples are at most 4: the colour channels of the photometric interpretation, then extra samples, declared or not;
/// where samples of 8 bits are not told in number, there is room in the directory to tell it; a palette has 3 x 2^bits entries;
/// there are as many strips or tiles as the size asks for; the compression is one that both systems decode: none, CCITT, LZW,
/// JPEG, Deflate, PackBits.
/// @param patch  receives a directory of the same place with nothing in it but what decoding needs: no descriptions, profiles and
///               private data, no directories behind or below it
[[nodiscard]] bool MayDecodeTiff(ByteSource& source, BytePatch& patch);

}  // namespace qxv
