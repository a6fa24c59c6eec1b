// host.h - the host framework's classes that the interface names: text, date, collections, point, rectangle, file.
// With QXV_HOST_MFC they are the framework's own. Without it they are stand-ins of ours with the framework's names and meaning,
// on both systems, so that every overload exists and runs; a program never holds both.
#pragma once

#if defined(QXV_HOST_MFC)

#include <afx.h>

#include <afxcoll.h>
#include <afxtempl.h>
#include <afxwin.h>

#include <ATLComTime.h>

#else

#include "qxv/detail/host_array.h"
#include "qxv/detail/host_date.h"
#include "qxv/detail/host_exception.h"
#include "qxv/detail/host_file.h"
#include "qxv/detail/host_geometry.h"
#include "qxv/detail/host_list.h"
#include "qxv/detail/host_string.h"

#endif
