// SPDX-License-Identifier: MIT
#include "platform/Program.h"

#include <QCoreApplication>
#include <cstdlib>

namespace platform {

std::string ProgramFolder() {
  return QCoreApplication::applicationDirPath().toStdString();
}

void EndProgram(int exitCode) {
  std::_Exit(exitCode);
}

}  // namespace platform
