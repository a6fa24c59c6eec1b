// process.cpp - what both systems do alike.

#include "os/process.h"

namespace qxv::os {

Text ExecutableName() {
  const Text path = ExecutablePath();
  return path.substr(path.rfind(QXT('\\')) + 1);  // npos + 1 is 0
}

}  // namespace qxv::os
