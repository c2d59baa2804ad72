# Kinds of picture files. Those over third-party libraries are built where these are at hand: not for Windows.
set(codecs Bmp.cpp BmpRuns.cpp)
if(WIN32)
  list(APPEND codecs OwnCodecs.cpp)
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(PICTURES REQUIRED IMPORTED_TARGET libjpeg libpng libtiff-4 libwebp libwebpdemux libgif)
  target_link_libraries(imagxpr5 PRIVATE PkgConfig::PICTURES)
  list(APPEND codecs
    Gif.cpp
    Jpeg.cpp
    LibraryCodecs.cpp
    Orientation.cpp
    Png.cpp
    Samples.cpp
    Tiff.cpp
    TiffFile.cpp
    WebP.cpp)
endif()
list(TRANSFORM codecs PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
target_sources(imagxpr5 PRIVATE ${codecs})
