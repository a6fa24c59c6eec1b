// profile_name.h - which initialisation files stand in the system's own folder, the same question on both systems.
#pragma once

#include "os/utf.h"

namespace qxv::os {

/// What a file system takes as one component. The service puts longer names together without a look at its room.
inline constexpr std::size_t kLongestProfileName = 255;

/// Whether the name says nothing of a folder.
inline bool IsBareProfileName(TextView file) noexcept { return file.find_first_of(QXT("\\/:")) == TextView::npos; }

/// Whether no file can have the name: a bare one too long for a component.
inline bool IsImpossibleProfileName(TextView file) noexcept {
  return IsBareProfileName(file) && file.size() > kLongestProfileName;
}

}  // namespace qxv::os
