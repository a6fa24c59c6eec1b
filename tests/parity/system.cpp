// system.cpp - what is the machine's, the user's or the moment's own: called, and compared as far as a promise goes for both
// systems.

#include "parity/trial.h"

#include "qxv/disk.h"
#include "qxv/factories.h"
#include "qxv/guid.h"
#include "qxv/identity.h"
#include "qxv/log.h"
#include "qxv/module.h"
#include "qxv/trace.h"

#include <cstring>

namespace parity {

namespace {

// A reference to an interface copies nothing of the object.
struct Probe : CQXVObject {
  Probe() = default;
  Probe(const Probe& other) : CQXVObject(other) {}
  Probe& operator=(const Probe& other) {
    CQXVObject::operator=(other);
    return *this;
  }
  int mark = 0;
};

void Identifiers(Trial& t) {
  t.Next();
  const auto method = static_cast<EQXV_CREATEGUIDMETHOD>(t.Below(5));
  const QX_GUID a = QXVCoCreateGuid2(method);
  const QX_GUID b = QXVCoCreateGuid2(method);
  t << (std::memcmp(&a, &b, sizeof a) == 0) << QXVCoCreateGuidString2(method).GetLength();
}

void Disks(Trial& t) {
  t.Next();
  const QXInt64 total = QXVGetDiskTotalSpace(t.Folder().c_str());
  t << (total > 0) << (QXVGetDiskFreeSpace(t.Folder().c_str()) <= total);
  t << (QXVGetDiskTotalSpaceString(t.Folder().c_str()).GetLength() > 0)
    << (QXVGetDiskFreeSpaceString(t.Folder().c_str()).GetLength() > 0) << (QXVGetDriveType(t.Folder().c_str()) != 1);
}

void Identity(Trial& t) {
  t.Next();
  CQXString a;
  CQXString b;
  (void)QXVGetThisPrimaryLangID();
  (void)QXVGetThisSubLangID();
  (void)QXVGetUserIsHaveRight_ADMINISTRATOR();
  (void)QXVGetLogInDoMain(a, b);
  (void)QXVGetNetProviderName(a);
  (void)QXVGetServerLocateDoMain(a, b);
  t << (QXVGetLogInUserName().GetLength() > 0);
  QXVGetLogInComputer(a);
  t << (a.GetLength() > 0) << QXVGetIPAddr(QXT("localhost"), a) << a;
}

void Diagnostics(Trial& t) {
  t.Next();
  QXVLogSetPath(t.Folder().c_str());
  QXVLogSetMainName(QXT("parity"));
  QXVLogSetWriteLevel(5);
  QXVWriteLog(QXT("written"), 5);
  QXVWriteLog(QXT("left out"), 4);
  const CQXVTraceInner trace(QXT("parity"), 3);
  CQXVTraceInner copy(trace);
  copy = trace;
  copy(0, QXT("%d"), 1);
  CQXVTraceInner::m_nLevel = 7;
  t << CQXVTraceInner::m_nLevel;
}

}  // namespace

void RunSystem(Trial& t) {
  for (int i = 0; i < 100; ++i) {
    Identifiers(t);
  }
  Disks(t);
  Identity(t);
  Diagnostics(t);
  CMyCritialSection lock;
  lock.Lock();
  lock.Lock();
  lock.Unlock();
  lock.Unlock();
  Probe first;
  first.mark = 1;
  Probe second(first);
  second = first;
  t << first.mark << second.mark;
}

}  // namespace parity
