# Libraries of others, as imported targets. Linux takes Debian's packages (scripts/setup), Windows what scripts/windows-deps built.

# qxv_find(JPEG [arguments of find_package]): a missing library ends the configuration and names the script that brings it.
macro(qxv_find package)
  find_package(${package} QUIET ${ARGN})
  if(NOT ${package}_FOUND)
    if(CMAKE_CROSSCOMPILING)
      message(FATAL_ERROR "${package} for Windows was not found: run scripts/windows-deps, which builds it")
    else()
      message(FATAL_ERROR "${package} was not found: run scripts/setup, which installs it")
    endif()
  endif()
endmacro()

qxv_find(JPEG) # JPEG::JPEG
if(NOT WIN32)
  qxv_find(LibXml2) # LibXml2::LibXml2, the parser of documents
  qxv_find(SQLite3) # SQLite::SQLite3, the registry's store
endif()
if(QXV_WITH_FREEIMAGE)
  qxv_find(FreeImage) # FreeImage::FreeImage
  if(WIN32)
    file(COPY ${FreeImage_DLL} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}) # where the programs find it
  else()
    qxv_find(TIFF) # TIFF::TIFF, for the handlers of messages that FreeImage leaves as they are
  endif()
endif()
if(QXV_BUILD_TOOLS)
  # CLI11::CLI11, headers alone. Debian has one copy for every system, among the headers of its own: the Windows build must see no
  # others of that folder, so it gets a folder that holds the link to these alone.
  find_path(CLI11_INCLUDE_DIR CLI/CLI.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
  if(NOT CLI11_INCLUDE_DIR)
    message(FATAL_ERROR "CLI11 was not found: run scripts/setup, which installs it")
  endif()
  set(cli11_alone ${CMAKE_BINARY_DIR}/third_party/cli11)
  file(MAKE_DIRECTORY ${cli11_alone})
  file(CREATE_LINK ${CLI11_INCLUDE_DIR}/CLI ${cli11_alone}/CLI COPY_ON_ERROR SYMBOLIC)
  add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
  target_include_directories(CLI11::CLI11 SYSTEM INTERFACE ${cli11_alone})
endif()
