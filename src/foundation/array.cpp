// array.cpp - the array of strings that crosses the interface, made once for all.

#include "qxv/array.h"

template class QXV_API CQXArray<CQXString, CQXString&>;
