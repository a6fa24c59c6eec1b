// md5.h - MD5 (RFC 1321) of data that comes piece by piece, with a state that outlives the process, and of texts.
//
// MD5 tells files apart that nobody forged. It is no protection against somebody who wants two of them to look alike, and the
// text digests are made without salt: equal passwords have equal digests.
#pragma once

#include "qxv/export.h"
#include "qxv/module.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// The digest of what Update is given, from Initialize to Final.
///
/// With interruption support, SaveContext writes the state of the digest into the file `<folder>\<id>.MD5frag` (docs/md5.md), and
/// an Initialize with the same folder and id goes on from there, in another process or on another system just as well. Of several
/// objects with one folder and id, one at a time holds the file. Trouble with the file never stops the digest; it is told to the
/// debugger's output.
///
/// A new object is one that was initialised without interruption support. One object is used by one thread at a time.
class QXV_API CQXVMD5Ctx : public CQXVObject {
 public:
  /// Closes the context file, which stays for a later object.
  ~CQXVMD5Ctx() override;

  /// Begins a digest, or takes up the saved one when interruption support is asked for and the context file can be read. What the
  /// object did before is given up; its context file stays. Interruption support is off for this object when folder or id is
  /// empty, and when the folder does not exist and cannot be created with all that is missing above it.
  /// @param id  goes into the file's name as it stands, separators and .. included: whoever passes it on from others checks it
  virtual void Initialize(int interruption, CQXString folder, CQXString id) = 0;

  /// Adds length bytes of input. Nothing for a null pointer.
  virtual void Update(const unsigned char* data, unsigned int length) = 0;

  /// Ends the digest, deletes the context file and begins the next digest, with interruption support as before.
  /// @param digest  receives 16 bytes; null for nobody who wants them
  virtual void Final(unsigned char digest[16]) = 0;

  /// Final, as 32 lower-case hexadecimal digits.
  virtual CQXString GetFinalString() = 0;

  /// Saves the digest of all input so far, and the value: how far the caller has come, for example. The file is open from the
  /// first save to Final, and others may read it.
  /// @return 1, also without interruption support; 0 when the file could not be written
  virtual int SaveContext(QXUInt64 value) = 0;

  /// The value that stood in the context file taken up by Initialize, also after Final; 0 when there was none.
  virtual QXUInt64 GetContextValue() = 0;
};

/// A digest without interruption support; null when there is no memory. Give it back with QXV_DeleteMD5.
QXV_API CQXVMD5Ctx* QXV_ConstructMD5();

/// The digest of a text in the system's ANSI code page, as 32 lower-case hexadecimal digits. A character that the page lacks
/// counts as "?". Null is empty. A text of more than 255 characters gives an empty text.
QXV_API CQXString QXV_MD5_GetUpdateFinalValue(const QXChar* text);

/// 1 when the text's digest is the given one, in upper or lower case, else 0.
/// A text of more than 255 characters matches an empty or null digest, and nothing else: never store an empty one.
QXV_API int QXV_MD5_IsPasswordOK(const QXChar* text, const QXChar* digest);
