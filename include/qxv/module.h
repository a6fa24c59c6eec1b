// module.h - what the module shares with the applications that load it: the base of all factory objects and the lock class.
#pragma once

#include "qxv/export.h"

/// Base of every interface that a factory hands out. Its first virtual slot is the destructor.
///
/// Copying an interface reference copies nothing: construction from another one only establishes the type, and assignment leaves
/// both objects as they are. The objects are meant to be held by pointer.
class QXV_API CQXVObject {
 public:
  virtual ~CQXVObject();

 protected:
  CQXVObject() noexcept;
  // KEPT: copies of a reference share no state. Pinned by FactoriesKept.AssigningThroughTheInterfaceCopiesNothing.
  CQXVObject(const CQXVObject& other) noexcept;
  CQXVObject& operator=(const CQXVObject& other) noexcept;
};

/// A lock that the thread which holds it may take again. It guards nothing before its constructor and after its destructor.
class QXV_API CMyCritialSection {
 public:
  CMyCritialSection();
  CMyCritialSection(const CMyCritialSection&) = delete;
  CMyCritialSection& operator=(const CMyCritialSection&) = delete;
  ~CMyCritialSection();

  /// Waits until no other thread holds the lock, then takes it.
  void Lock() noexcept;

  /// Gives the lock back once; as many calls as there were to Lock free it.
  void Unlock() noexcept;

 private:
  void* m_pLock;
};
