// version.h - the library's version; the build takes it from here.
#pragma once

#define QXV_VERSION_MAJOR 0
#define QXV_VERSION_MINOR 1
#define QXV_VERSION_PATCH 0
