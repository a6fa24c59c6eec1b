// intrinsics.h - the processor's vector instructions as functions; every kernel source takes them from here.
#pragma once

// GCC 12 takes the "undefined" operand of its own AVX-512 headers for an uninitialised variable.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include <immintrin.h>

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
