/* free_image_peer.c - FreeImage alone: a page of a file as 32-bit pixels (blue, green, red, alpha), rows top-down.
 *   free_image_peer FILE PAGE OUT     prints "width height"; page 0 for files of one picture
 */
#include <FreeImage.h>

#include <stdio.h>
#include <stdlib.h>

static FIBITMAP* Load(const char* name, int page) {
  const FREE_IMAGE_FORMAT format = FreeImage_GetFileType(name, 0);
  FIMULTIBITMAP* pages;
  FIBITMAP* locked;
  FIBITMAP* copy;
  if (format != FIF_GIF) {
    return FreeImage_Load(format, name, 0);
  }
  pages = FreeImage_OpenMultiBitmap(format, name, FALSE, TRUE, FALSE, 0);
  locked = FreeImage_LockPage(pages, page);
  copy = FreeImage_Clone(locked);
  FreeImage_UnlockPage(pages, locked, FALSE);
  FreeImage_CloseMultiBitmap(pages, 0);
  return copy;
}

int main(int argc, char** argv) {
  FIBITMAP* loaded;
  FIBITMAP* pixels;
  FILE* out;
  unsigned y;
  if (argc != 4) {
    return 2;
  }
  loaded = Load(argv[1], atoi(argv[2]));
  pixels = loaded == NULL ? NULL : FreeImage_ConvertTo32Bits(loaded);
  out = pixels == NULL ? NULL : fopen(argv[3], "wb");
  if (out == NULL) {
    return 1;
  }
  printf("%u %u\n", FreeImage_GetWidth(pixels), FreeImage_GetHeight(pixels));
  for (y = FreeImage_GetHeight(pixels); y-- > 0;) {
    fwrite(FreeImage_GetScanLine(pixels, (int)y), 4, FreeImage_GetWidth(pixels), out);
  }
  fclose(out);
  FreeImage_Unload(pixels);
  FreeImage_Unload(loaded);
  return 0;
}
