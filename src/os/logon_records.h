// logon_records.h - who is logged on, as the system's login programs record it (Linux only).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qxv::os {

/// The names in a file of utmpx records: those of user processes, in the order of the file. An unfinished record at the end is
/// left out.
std::vector<std::string> LoggedOnNames(std::string_view records);

}  // namespace qxv::os
