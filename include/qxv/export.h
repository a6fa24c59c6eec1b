// export.h - the macros that put a name into the library's export table.
#pragma once

// QXV_BUILDING: set while the library itself is compiled. QXV_STATIC: set by programs that link the library's objects.
#if defined(_WIN32)
#if defined(QXV_BUILDING)
#define QXV_API __declspec(dllexport)
#elif defined(QXV_STATIC)
#define QXV_API
#else
#define QXV_API __declspec(dllimport)
#endif
#else
#define QXV_API __attribute__((visibility("default")))
#endif

// A template's instance that the library hands out. Where its declaration decides on visibility, every source must see it: one
// that made hidden copies would hide the common one. On Windows applications make their own copies.
#if defined(_WIN32)
#define QXV_API_INSTANCE(...) static_assert(true)
#define QXV_API_MAKE_INSTANCE(...) template class QXV_API __VA_ARGS__
#else
#define QXV_API_INSTANCE(...) extern template class QXV_API __VA_ARGS__
#define QXV_API_MAKE_INSTANCE(...) template class __VA_ARGS__
#endif
