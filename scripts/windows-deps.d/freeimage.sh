# freeimage.sh - FreeImage.dll with its import library and header: reading of GIF, PNG and TIFF, everything else of it left out.
linuxPackage=libfreeimage-dev

Build() {
  # The library opens every *.fip beside the program as a plugin when it is loaded; ours does not.
  sed -i 's/FreeImage_Initialise(FALSE)/FreeImage_Initialise(TRUE)/' "$source/Source/FreeImage/FreeImage.cpp"
  local freeimage=$source
  local source=$root/scripts/windows-deps.d/freeimage
  ConfigureWithCmake -DFREEIMAGE_SOURCE="$freeimage/Source" -DZLIB_LIBRARY=/usr/x86_64-w64-mingw32/lib/libz.a
  cmake --build .
  install -D -m 755 -t "$stage/bin" FreeImage.dll
  install -D -m 644 -t "$stage/lib" libFreeImage.dll.a
  install -D -m 644 -t "$stage/include" "$freeimage/Source/FreeImage.h"
}
