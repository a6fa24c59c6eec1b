// trace.h - levelled lines for whoever debugs the program. docs/log.md shows a line and the settings file.
#pragma once

#include "qxv/export.h"
#include "qxv/string.h"
#include "qxv/types.h"

/// A source of trace lines: call it like a function, trace(3, QXT("%d frames"), n).
///
/// Tracers may be called from any thread at once; each line is handed over whole. A line for which there is no memory is lost,
/// nothing is reported or thrown by a call.
class QXV_API CQXVTraceInner {
 public:
  /// Both stand in every line; a null name is an empty one.
  CQXVTraceInner(const QXChar* name, int number);
  CQXVTraceInner(const CQXVTraceInner& other);
  CQXVTraceInner& operator=(const CQXVTraceInner& other);
  ~CQXVTraceInner();

  /// Emits one line if level is not below the threshold, which the first call of the process reads from the settings file. The
  /// format is that of CQXString::Format; null is an empty one. A message is cut at 2047 characters.
  void operator()(int level, const QXChar* format, ...) const noexcept;

  /// The threshold. What is set before the first call of the process is replaced by it. Reading and setting it while other
  /// threads call is for the application to order.
  static int m_nLevel;

 private:
  CQXString m_name;
  int m_number;
};
