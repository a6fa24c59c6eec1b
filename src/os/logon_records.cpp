// logon_records.cpp - the records of logins. They are read as a file: the C library's own reader is shared by all threads.

#include "os/logon_records.h"

#include <utmpx.h>

#include <cstring>

namespace qxv::os {

std::vector<std::string> LoggedOnNames(std::string_view records) {
  std::vector<std::string> names;
  for (; records.size() >= sizeof(utmpx); records.remove_prefix(sizeof(utmpx))) {
    utmpx record{};
    std::memcpy(&record, records.data(), sizeof record);
    const std::string name(record.ut_user, ::strnlen(record.ut_user, sizeof record.ut_user));
    if (record.ut_type == USER_PROCESS && !name.empty()) {
      names.push_back(name);
    }
  }
  return names;
}

}  // namespace qxv::os
