// object.cpp - CQXVObject: construction establishes the type, copying copies nothing.

#include "qxv/module.h"

CQXVObject::CQXVObject() noexcept = default;
CQXVObject::CQXVObject(const CQXVObject&) noexcept {}
CQXVObject& CQXVObject::operator=(const CQXVObject&) noexcept { return *this; }
CQXVObject::~CQXVObject() = default;
