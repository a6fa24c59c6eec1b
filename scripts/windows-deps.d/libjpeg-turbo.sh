# libjpeg-turbo.sh - the JPEG library, static, with its SIMD code (nasm) and without assertions.
linuxPackage=libjpeg62-turbo-dev

Build() {
  ConfigureWithCmake -DENABLE_SHARED=OFF -DENABLE_STATIC=ON -DWITH_TURBOJPEG=OFF -DREQUIRE_SIMD=ON
  cmake --build . --target jpeg-static
  install -D -m 644 -t "$stage/lib" libjpeg.a
  install -D -m 644 -t "$stage/include" jconfig.h "$source"/{jpeglib,jmorecfg,jerror}.h
}
