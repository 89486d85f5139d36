// SPDX-License-Identifier: MIT
#include "tests/ui/WindowFixture.h"

#include <QApplication>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "display/basBoardCursor.h"
#include "rules/state/basGameState.h"
#include "scores/basMiscelFunctions.h"
#include "sound/DXAudio.h"
#include "tests/platform/Twin.h"

namespace glimmerfall {

QWidget* FindWindow(const QString& name) {
  for (QWidget* const window : QApplication::topLevelWidgets())
    if (window->objectName() == name) return window;
  return nullptr;
}

std::string RecordedText(const std::string& file) {
  std::ifstream text(TEST_DATA "/windows/" + file);
  if (!text) std::abort();
  return {std::istreambuf_iterator<char>(text), {}};
}

void Record(const std::string& file, const std::string& told) {
  if (std::getenv("RECORD_WINDOWS") != nullptr) std::ofstream(TEST_DATA "/windows/" + file) << told;
}

WindowTest::WindowTest() {
  twin::Reset();
  twin::devices.folder = folder_.Path();
  twin::OnEveryPlace([] { QApplication::processEvents(); });
  ResetGameState();
  boardCursor = {};
  gameState = stateIdle;
  ResetScoreTables();
}

WindowTest::~WindowTest() {
  main_.reset();
  for (const char* const name :
       {"frmWelcome", "frmOptions", "frmLearn", "frmAbout", "frmHighScores", "frmHSName"})
    delete FindWindow(name);
  music.reset();
}

}  // namespace glimmerfall

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // The fonts that the set-up installs, whatever else the machine has.
  qputenv("FONTCONFIG_FILE", TEST_DATA "/windows/fonts.conf");
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
