# libtiff.sh - the TIFF library, static, for FreeImage: of the codecs that need other libraries, zlib and JPEG.
linuxPackage=libtiff-dev

Build() {
  ConfigureWithCmake -DBUILD_SHARED_LIBS=OFF -Dzlib=ON -Djpeg=ON -Dold-jpeg=OFF -Djpeg12=OFF -Dpixarlog=OFF \
    -Dlibdeflate=OFF -Djbig=OFF -Dlerc=OFF -Dlzma=OFF -Dwebp=OFF -Dzstd=OFF \
    -Dcxx=OFF -Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF -Dtiff-docs=OFF
  cmake --build . --target tiff
  install -D -m 644 -t "$stage/lib" libtiff/libtiff.a
  install -D -m 644 -t "$stage/include" libtiff/tiffconf.h "$source"/libtiff/{tiff,tiffio,tiffvers}.h
}
