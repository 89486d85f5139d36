// SPDX-License-Identifier: MIT
#include "ui/frmMain.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <exception>
#include <utility>

#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "platform/Events.h"
#include "platform/Messages.h"
#include "platform/Program.h"
#include "platform/desktop/BoardView.h"
#include "rules/basBoardKeys.h"
#include "rules/basGameClock.h"
#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basManipulatingGems.h"
#include "rules/basNewGame.h"
#include "rules/basStatusCaptions.h"
#include "rules/state/basGameState.h"
#include "scores/frmHSName.h"
#include "scores/frmHighScores.h"
#include "sound/basDirectSoundStuff.h"
#include "ui/basScreenReader.h"
#include "ui/frmAbout.h"
#include "ui/frmLearn.h"
#include "ui/frmOptions.h"
#include "ui/frmWelcome.h"

namespace glimmerfall {

namespace {

constexpr int kBoardFontPixels = 35;  // 26 points at 96 dots an inch
constexpr int32 kIdleNapTicks = 1000;

// The status line, in pixels.
constexpr int kMenuFontPixels = 12;
constexpr int kStatusSpacing = 5;
constexpr int kStatusMargin = 4;
constexpr int kStatusDrop = 3;  // sets the labels level with the menu's own captions

frmMain* mainWindow = nullptr;

void ForwardTimer() {
  mainWindow->Timer1_Timer();
}

void TakeKey(platform::Key key) {
  if (key == platform::Key::Tell) return TellStatus();
  KeyDown(key);
  TellReaders();
}

// The one handler of the load: tells of a failed step and goes on with the next.
void TakeStep(void (*step)()) {
  try {
    step();
  } catch (const std::exception& error) {
    platform::ShowMessage(std::string("Some error has occurred!\n") + error.what(),
                          "This is uncalled-for!", platform::MessageIcon::Exclamation);
  }
}

void SetPaths() {
  const std::string folder = platform::ProgramFolder() + "/images";
  boardBitmapPath = folder + "/Board.bmp";
  gemSheetPath = folder + "/gemsheet1024x512.bmp";
  targetBitmapPath = folder + "/Target.bmp";
}

// Once the frames have ended the window stays with its last picture, and New Game starts them
// again where the state that they ended in allows it.
[[noreturn]] void ServeMenusForever() {
  for (;;) {
    while (!newBoardWanted)
      platform::LetEventsRunFor(kIdleNapTicks);
    RunGameLoop();
  }
}

}  // namespace

frmMain::frmMain() {
  mainWindow = this;
  setWindowTitle("Glintworks");
  setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                 Qt::WindowCloseButtonHint);
  picBoard = new platform::desktop::BoardView(
      this, {MouseDown, MouseMove, MouseUp, Click, TakeKey, HideCursor});
  picBoard->setFixedSize(kSurfaceWidth, kSurfaceHeight);
  setCentralWidget(picBoard);
  picBoard->setFocus();
  CreateMenus();
  CreateStatusLine();
  layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void frmMain::Load() {
  level = 1;
  soundOn = kTrue;
  mnuPlaySound->setChecked(true);
  SetPaths();
  frmMainHandle = static_cast<QWidget*>(this);
  picBoardHandle = picBoard;
  mainWindowFont = {"Arial", kBoardFontPixels};
  gameState = stateLoading;
  platform::StartTimer(ForwardTimer);
  CenterOnScreen();
  show();
  for (void (*step)() : {LoadSounds, InitDisplay, InitGameBoard, RunGameLoop})
    TakeStep(step);
  ServeMenusForever();
}

void frmMain::Timer1_Timer() {
  // A modal window holds the game by itself. A wait on top of it would not let the command go on
  // that opened it; the pause takes hold when the window is gone.
  if (PauseHolds() && QApplication::activeModalWidget() != nullptr) return;
  const StatusCaptions captions = CurrentCaptions();
  mnuScore->setText(QString::fromStdString(captions.mnuScore));
  mnuCount->setText(QString::fromStdString(captions.mnuCount));
  mnuMatchCount->setText(QString::fromStdString(captions.mnuMatchCount));
  TellReaders();
  UpdateClock();
  if (std::exchange(nameWanted, false)) ShowNameEntry(this);
}

void frmMain::closeEvent(QCloseEvent*) {
  quitRequested = kTrue;
  ReleaseAll();
  platform::EndProgram(0);
}

QAction* frmMain::AddEntry(QMenu* menu, const char* caption, const char* hotKey,
                           const std::function<void()>& command) {
  QAction* entry = menu->addAction(caption, QKeySequence(hotKey), this, command);
  entry->setMenuRole(QAction::NoRole);
  return entry;
}

void frmMain::CreateMenus() {
  menuBar()->setNativeMenuBar(false);
  QFont font = menuBar()->font();
  font.setPixelSize(kMenuFontPixels);
  menuBar()->setFont(font);
  QMenu* mnuGame = menuBar()->addMenu("&Game");
  AddEntry(mnuGame, "&New Game", "F2", [this] { mnuNewGame_Click(); });
  mnuPlaySound = AddEntry(mnuGame, "&Play Sound", "Ctrl+P", [this] { mnuPlaySound_Click(); });
  mnuPause = AddEntry(mnuGame, "Pause", "F4", [this] { mnuPause_Click(); });
  mnuGame->addSeparator();
  AddEntry(mnuGame, "&Hint", "F3", TakeHint);
  AddEntry(mnuGame, "High Scores", "Ctrl+S", [this] { ShowHighScores(this); });
  mnuGame->addSeparator();
  AddEntry(mnuGame, "&Quit", "Ctrl+Q", [this] { close(); });
  connect(menuBar()->addAction("Options"), &QAction::triggered, this,
          [this] { ShowOptions(this); });
  QMenu* mnuHelp = menuBar()->addMenu("&Help");
  AddEntry(mnuHelp, "&How to play...", "F1", [this] { ShowLearn(this); });
  mnuHelp->addSeparator();
  AddEntry(mnuHelp, "&About...", "Ctrl+A", [this] { ShowAbout(this); });
  mnuPlaySound->setCheckable(true);
  mnuPause->setCheckable(true);
}

// Plain labels: an entry of the menu bar would take clicks. Their widths are fixed, so that a
// growing score moves nothing.
void frmMain::CreateStatusLine() {
  auto* line = new QWidget(menuBar());
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, kStatusDrop, kStatusMargin, 0);
  row->setSpacing(kStatusSpacing);
  const auto add = [&](const char* caption, const char* widest) {
    auto* label = new QLabel(caption, line);
    label->setFont(menuBar()->font());
    label->setFixedWidth(label->fontMetrics().horizontalAdvance(widest));
    row->addWidget(label);
    return label;
  };
  add("Score:", "Score:");
  mnuScore = add("Score", "99999999");
  add("Level:", "Level:");
  mnuCount = add("count", "Marathon");
  add("Matches Left:", "Matches Left:");
  mnuMatchCount = add("mnuMatchCount", "9999");
  menuBar()->setCornerWidget(line, Qt::TopRightCorner);
  DescribeToReaders(this, picBoard, line);
}

void frmMain::CenterOnScreen() {
  adjustSize();
  QRect frame(QPoint(0, 0), sizeHint());
  frame.moveCenter(screen()->availableGeometry().center());
  move(frame.topLeft());
}

void frmMain::mnuNewGame_Click() {
  // The clock of the game in progress goes on behind the chooser; whatever it does there, the
  // player's choice stands.
  if (!NewGameAllowed() || !ChooseMode(this)) return;
  StartNewGame();
  mnuPause->setChecked(paused != kFalse);
}

void frmMain::mnuPlaySound_Click() {
  soundOn = Complement(soundOn);
  mnuPlaySound->setChecked(soundOn != kFalse);
}

void frmMain::mnuPause_Click() {
  TogglePause();
  mnuPause->setChecked(paused != kFalse);
  TellReaders();
  PlayPauseSound();
}

}  // namespace glimmerfall
