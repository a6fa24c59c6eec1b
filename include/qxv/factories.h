// factories.h - the functions that give factory objects back. Each factory stands in the header of its interface.
#pragma once

#include "qxv/export.h"
#include "qxv/module.h"

/// Destroys an object through its virtual destructor and frees it; a null pointer is ignored. The four names are one routine: any
/// of them takes an object of any factory.
QXV_API void QXV_DeleteBufferFileRW(CQXVObject* pObject);
QXV_API void QXV_DeleteMD5(CQXVObject* pObject);
QXV_API void QXV_DeleteTxtRW(CQXVObject* pObject);
QXV_API void QXV_DeleteUnicodeAnsiFile(CQXVObject* pObject);
