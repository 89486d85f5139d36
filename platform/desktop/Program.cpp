// SPDX-License-Identifier: MIT
#include "platform/Program.h"

#include <sys/auxv.h>

#include <QCoreApplication>
#include <cstdlib>
#include <filesystem>

namespace platform {

namespace {

namespace fs = std::filesystem;

std::string FindProgramFolder() {
  // The path as whoever started the program gave it, with its links unresolved.
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the system hands the pointer out as a number.
  const auto* started = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
  std::error_code failed;
  const fs::path folder = fs::absolute(started, failed).parent_path();
  if (fs::exists(folder / "images", failed)) return folder.lexically_normal().string();
  return QCoreApplication::applicationDirPath().toStdString();
}

}  // namespace

std::string ProgramFolder() {
  static const std::string folder = FindProgramFolder();
  return folder;
}

void EndProgram(int exitCode) {
  std::_Exit(exitCode);
}

}  // namespace platform
