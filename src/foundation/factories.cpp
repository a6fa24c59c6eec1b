// factories.cpp - the one release routine under its four names.

#include "qxv/factories.h"

namespace {

void Release(CQXVObject* object) { delete object; }

}  // namespace

// KEPT: the four names are interchangeable. Applications release through whichever is at hand.
//   Pinned by FactoriesKept.AnyReleaseNameTakesAnyObject.
void QXV_DeleteBufferFileRW(CQXVObject* pObject) { Release(pObject); }
void QXV_DeleteMD5(CQXVObject* pObject) { Release(pObject); }
void QXV_DeleteTxtRW(CQXVObject* pObject) { Release(pObject); }
void QXV_DeleteUnicodeAnsiFile(CQXVObject* pObject) { Release(pObject); }
