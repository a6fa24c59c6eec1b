# libpng.sh - the PNG library, static, for FreeImage.
linuxPackage=libpng-dev

Build() {
  ConfigureWithCmake -DPNG_SHARED=OFF -DPNG_STATIC=ON -DPNG_EXECUTABLES=OFF -DPNG_TESTS=OFF
  cmake --build . --target png_static
  install -D -m 644 -t "$stage/lib" libpng16.a
  install -D -m 644 -t "$stage/include" pnglibconf.h "$source"/{png,pngconf}.h
}
