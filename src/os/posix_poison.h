// posix_poison.h - included before every source of the Linux build: any use of a wide function of the C library is an error.
// They read 32-bit units where QXChar has 16. The standard headers that mention them come first.
#pragma once

#include <stdlib.h>
#include <wchar.h>
#include <wctype.h>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <string>

#pragma GCC poison wcslen wcsnlen wcscpy wcsncpy wcscat wcsncat wcscmp wcsncmp wcscasecmp wcsncasecmp wcscoll wcsxfrm
#pragma GCC poison wcschr wcsrchr wcsstr wcsspn wcscspn wcspbrk wcstok wcsdup
#pragma GCC poison wcstod wcstof wcstold wcstol wcstoll wcstoul wcstoull
#pragma GCC poison swprintf vswprintf wprintf fwprintf vfwprintf vwprintf swscanf vswscanf wscanf fwscanf
#pragma GCC poison mbstowcs wcstombs mbsrtowcs wcsrtombs mbrtowc wcrtomb mbtowc wctomb wcsftime
#pragma GCC poison towlower towupper iswalpha iswdigit iswspace fgetws fputws fgetwc fputwc
