// registry.h - typed values in the registry. On Linux they stand in a store of ours (docs/porting.md).
#pragma once

#include "qxv/array.h"
#include "qxv/export.h"
#include "qxv/host.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// One open key below HKEY_LOCAL_MACHINE, and typed values in it. docs/registry.md shows the records that lists, points and
/// rectangles are stored as.
///
/// Every member gives 0 or one of these (as an int):
///   0x89601A40  no key is open; Create and Open: the previous key could not be closed; Close: it could not be closed
///   0x89601A41  Create failed
///   0x89601A42  DeleteValue failed
///   0x89601A43  the value could not be queried (or does not exist)
///   0x89601A44  the value has another registry type, or too little data
///   0x89601A45  Open failed
///   0x89601A46  a write failed
///   0x89601A47  the record of a point or rectangle has another number of elements
///   -1          a record has a negative count
/// What is read into stays as it was unless 0 is given. A null or empty name is the key's unnamed value. Lack of memory throws
/// std::bad_alloc. One object is used by one thread at a time.
class QXV_API CQXVRegister {
 public:
  CQXVRegister() noexcept;
  /// Copies nothing: the new object has no key open.
  CQXVRegister(const CQXVRegister& other) noexcept;
  /// Copies nothing: each object keeps its own key.
  CQXVRegister& operator=(const CQXVRegister& other) noexcept;
  /// Closes the key.
  virtual ~CQXVRegister();

  /// Closes the key that is open, then opens the subkey below HKEY_LOCAL_MACHINE with full access, created if it does not exist.
  /// @param root   not looked at
  /// @param subkey components separated by backslashes
  int Create(HKEY root, const QXChar* subkey);

  /// The same for a key that exists.
  int Open(HKEY root, const QXChar* subkey);

  /// 0 too when no key is open. The key stays open when closing fails.
  int Close();

  int DeleteValue(const QXChar* name);

  /// A 32-bit number.
  int Read(const QXChar* name, int& value);
  int Read(const QXChar* name, unsigned int& value);
  /// A text up to its first zero, whether or not it was stored with one.
  int Read(const QXChar* name, CQXString& value);
  int Read(const QXChar* name, CString& value);
  /// Records. A count of 0 empties the list; bytes behind the last element are not looked at.
  int Read(const QXChar* name, CQXArray<CQXString, CQXString&>& value);
  int Read(const QXChar* name, CStringArray& value);
  int Read(const QXChar* name, CStringList& value);
  int Read(const QXChar* name, CDWordArray& value);
  int Read(const QXChar* name, CWordArray& value);
  int Read(const QXChar* name, CByteArray& value);
  int Read(const QXChar* name, CPoint& value);
  int Read(const QXChar* name, CRect& value);

  int Write(const QXChar* name, int value);
  int Write(const QXChar* name, unsigned int value);
  /// The characters alone: no terminator is stored.
  int Write(const QXChar* name, const CQXString& value);
  int Write(const QXChar* name, const CString& value);
  /// Texts in a record end at their first zero. More than 2^31 - 1 elements, or 4 GiB, cannot be written.
  int Write(const QXChar* name, const CQXArray<CQXString, CQXString&>& value);
  int Write(const QXChar* name, const CStringArray& value);
  int Write(const QXChar* name, const CStringList& value);
  int Write(const QXChar* name, const CDWordArray& value);
  int Write(const QXChar* name, const CWordArray& value);
  int Write(const QXChar* name, const CByteArray& value);
  int Write(const QXChar* name, const CPoint& value);
  int Write(const QXChar* name, const CRect& value);

 private:
  HKEY m_hKey;  // null: none is open
};

// One value of one key. Blanks at both ends of the subkey do not count; the key is created if it does not exist.

/// Reads a number. If there is no such value, value is stored as the default and stays as it is; below an empty subkey, which
/// is the root itself, nothing is stored. The type is not looked at: the first four bytes count, missing ones are 0.
/// @return 1; 0 for a null root, a value of more than four bytes, and whatever the system refuses: value is then as it was
QXV_API int QXVGetRegIntValue(HKEY root, CQXString subkey, CQXString name, int& value);

/// Stores a number.
/// @return 1 when the key was opened and closed. Whether the value was stored is not told.
QXV_API int QXVSetRegIntValue(HKEY root, CQXString subkey, CQXString name, int value);

/// Reads a text up to its first zero, by the same rules. The type is not looked at.
QXV_API int QXVGetRegStringValue(HKEY root, CQXString subkey, CQXString name, CQXString& value);

/// Stores the characters, without a terminator.
QXV_API int QXVSetRegStringValue(HKEY root, CQXString subkey, CQXString name, CQXString value);
