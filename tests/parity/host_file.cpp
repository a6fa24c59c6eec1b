// host_file.cpp - the stand-in of the host framework's file class, and its exceptions.

#include "parity/trial.h"

#include <memory>

namespace parity {

namespace {

// Runs the action; what it throws goes into the digest.
template <class Action>
void Try(Trial& t, Action action) {
  try {
    action();
  } catch (CFileException* error) {  // NOLINT(misc-throw-by-value-catch-by-reference): the framework throws pointers
    t << error->m_cause << error->m_lOsError;
    QXChar text[80];
    t << error->GetErrorMessage(text, 80) << text;
    error->Delete();
  } catch (CException* error) {  // NOLINT(misc-throw-by-value-catch-by-reference)
    QXChar text[80];
    t << error->GetErrorMessage(text, 80) << text;
    error->Delete();
  }
}

void Operations(Trial& t, const Text& name) {
  t.Next();
  const std::string bytes = t.Bytes(60);
  CFile file;
  CFileException why;
  t << file.Open(name.c_str(), CFile::modeCreate | CFile::modeReadWrite | CFile::shareDenyNone, &why);
  file.Write(bytes.data(), static_cast<unsigned>(bytes.size()));
  t << file.GetPosition() << file.GetLength();
  Try(t, [&] { t << file.Seek(t.Between(-10, 70), static_cast<unsigned>(t.Below(3))); });
  char room[80];
  const unsigned count = file.Read(room, static_cast<unsigned>(t.Below(80)));
  t.Raw(room, count);
  file.SeekToBegin();
  file.SetLength(static_cast<QXUInt64>(t.Below(100)));
  t << file.SeekToEnd();
  file.Flush();
  const std::unique_ptr<CFile> twin(file.Duplicate());
  t << twin->GetPosition() << file.GetFileName();
  CFileStatus status;
  t << file.GetStatus(status) << status.m_size;
  file.Close();
  twin->Abort();
  t << CFile::GetStatus(name.c_str(), status) << status.m_size;
}

void Failures(Trial& t) {
  t.Next();
  Try(t, [&] { CFile::Remove(t.File(QXT("missing")).c_str()); });
  Try(t, [&] { CFile::Rename(t.File(QXT("missing")).c_str(), t.File(QXT("other")).c_str()); });
  Try(t, [&] { CFile(t.File(QXT("none\\missing")).c_str(), CFile::modeRead); });
  Try(t, [&] { AfxThrowFileException(t.Between(0, 14), t.Between(-1, 200), QXT("name")); });
  Try(t, [&] { CFileException::ThrowOsError(t.Between(0, 200)); });
  Try(t, [] { AfxThrowInvalidArgException(); });
  t << CFileException::OsErrorToException(t.Between(0, 300));
}

}  // namespace

void RunHostFile(Trial& t) {
  const Text name = t.File(QXT("host"));
  for (int i = 0; i < 300; ++i) {
    Operations(t, name);
    Failures(t);
  }
  const Text renamed = t.File(QXT("renamed"));
  CFile::Rename(name.c_str(), renamed.c_str());
  CFile named(renamed.c_str(), CFile::modeRead);
  CFile adopted(named.m_hFile);
  adopted.m_hFile = INVALID_HANDLE_VALUE;  // it has one owner
  named.SetFilePath(QXT("Z:\\elsewhere\\x.y"));
  t << named.GetFileName() << named.GetFilePath();
  named.Close();
  CFile::Remove(renamed.c_str());
}

}  // namespace parity
