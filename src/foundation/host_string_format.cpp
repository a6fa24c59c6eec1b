// host_string_format.cpp - CString: formatted text and text of the ANSI code page.

#include "qxv/host.h"

#include "os/code_page.h"
#include "os/wide_format.h"

#include <string>

namespace os = qxv::os;

namespace {

// va_end when the function is left, by an exception too.
struct ListEnd {
  va_list& arguments;
  ~ListEnd() { va_end(arguments); }
};

}  // namespace

CString::CString(const char* text) {
  if (text != nullptr) {
    std::basic_string<QXChar> units;
    if (os::MultiByteToWide(os::kCodePageAnsi, text, units)) {
      Splice(0, 0, units.data(), units.size());
    }
  }
}

// Always a text of its own: the arguments may point into the one that changes.
CString CString::Formatted(const QXChar* format, va_list arguments) {
  CString text;
  const int length = os::FormatLength(format, arguments);
  if (length > 0) {
    QXChar* buffer = text.GetBufferSetLength(length);
    if (os::FormatText(buffer, static_cast<std::size_t>(length) + 1, format, arguments) != length) {
      text.Empty();
    }
  }
  return text;
}

void CString::FormatV(const QXChar* format, va_list arguments) { *this = Formatted(format, arguments); }

void CString::Format(const QXChar* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const ListEnd end{arguments};
  FormatV(format, arguments);
}

void CString::AppendFormatV(const QXChar* format, va_list arguments) { *this += Formatted(format, arguments); }

void CString::AppendFormat(const QXChar* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const ListEnd end{arguments};
  AppendFormatV(format, arguments);
}
