// export.h - the one macro that puts a name into the library's export table.
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
