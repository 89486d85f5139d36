// SPDX-License-Identifier: MIT
// What the suites of the windows share: real widgets without a screen on the scripted platform, in
// a program's folder of a test's own.
#pragma once

#include <gtest/gtest.h>

#include <QWidget>
#include <memory>
#include <string>

#include "tests/platform/ScratchFolder.h"
#include "ui/frmMain.h"

namespace glimmerfall {

/// The top-level window of this name; null if there is none.
QWidget* FindWindow(const QString& name);

/// What a file of the folder data/windows holds. Ends the program if it can't be read.
std::string RecordedText(const std::string& file);
/// Replaces that file by `told`, if the environment holds RECORD_WINDOWS.
void Record(const std::string& file, const std::string& told);

class WindowTest : public testing::Test {
 protected:
  /// A game at rest, with the tables of a reset; no window.
  WindowTest();
  ~WindowTest() override;

  const ScratchFolder folder_;
  std::unique_ptr<frmMain> main_;  ///< null until a test makes it
};

}  // namespace glimmerfall
