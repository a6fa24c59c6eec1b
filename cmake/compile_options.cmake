# Flags of every source of ours, gathered in the interface target qxv_options.
add_library(qxv_options INTERFACE)

if(MSVC)
  target_compile_options(qxv_options INTERFACE /W4 /utf-8 /Zc:__cplusplus /fp:precise)
else()
  target_compile_options(qxv_options INTERFACE -Wall -Wextra -Wshadow -Wconversion -fvisibility=hidden
    # Both systems and every SIMD path must round alike: no fused multiply-add that the source did not ask for.
    -ffp-contract=off -fno-math-errno)
  if(QXV_WARNINGS_ARE_ERRORS)
    target_compile_options(qxv_options INTERFACE -Werror)
  endif()
endif()

if(WIN32)
  target_compile_definitions(qxv_options INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0601)
  if(MINGW)
    # Aligned AVX moves on the 16-byte aligned Win64 stack would fault; the assembler writes unaligned ones.
    target_compile_options(qxv_options INTERFACE -Wa,-muse-unaligned-vector-move -Wa,-mbig-obj)
    # The C++ and thread runtimes go inside: nothing of mingw lies beside the DLL.
    target_link_options(qxv_options INTERFACE -static -Wl,--dynamicbase,--high-entropy-va,--nxcompat)
  endif()
else()
  # The C library's wide functions read 32-bit units; QXChar has 16.
  target_compile_options(qxv_options INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:SHELL:-include ${PROJECT_SOURCE_DIR}/src/os/posix_poison.h>)
  target_link_options(qxv_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
  if(NOT QXV_SANITIZE) # a sanitizer's run-time stands in the program only
    target_link_options(qxv_options INTERFACE -Wl,--no-undefined)
  endif()
endif()

if(QXV_SANITIZE)
  target_compile_options(qxv_options INTERFACE -fsanitize=${QXV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qxv_options INTERFACE -fsanitize=${QXV_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU) # instrumented, std::vector::insert looks to it like an overflow
    target_compile_options(qxv_options INTERFACE -Wno-stringop-overflow)
  endif()
endif()
