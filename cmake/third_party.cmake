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
