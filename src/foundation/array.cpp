// array.cpp - the array of strings that crosses the interface, made once for all.

#include "qxv/array.h"

QXV_API_MAKE_INSTANCE(CQXArray<CQXString, CQXString&>);
