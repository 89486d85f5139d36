// SPDX-License-Identifier: MIT
// The main window on real widgets without a screen: the status line, the commands that look at the
// state of the game, and a chooser behind which the old game's clock goes on.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <sstream>

#include "platform/Time.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/state/basModes.h"
#include "sound/DXAudio.h"
#include "tests/platform/Twin.h"
#include "ui/basBoardWords.h"
#include "ui/frmMain.h"

namespace {

bool readerListens = false;
std::string spoken;  // what a screen reader would speak, a line each

}  // namespace

// The names are those that the linker gives to wrapped calls: no bus is there to carry them.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

bool __wrap__ZN11QAccessible8isActiveEv() {
  return readerListens;
}

void __wrap__ZN11QAccessible19updateAccessibilityEP16QAccessibleEvent(QAccessibleEvent* event) {
  spoken += event->accessibleInterface()->text(QAccessible::Name).toStdString() + '\n';
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace glimmerfall {
namespace {

QWidget* OpenChooser() {
  QWidget* const modal = QApplication::activeModalWidget();
  return modal != nullptr && modal->objectName() == "frmWelcome" ? modal : nullptr;
}

class MainWindow : public testing::Test {
 protected:
  MainWindow() {
    twin::Reset();
    ResetGameState();
    gameState = stateIdle;
  }
  ~MainWindow() override { music.reset(); }

  QAction& Entry(const QString& caption) {
    for (auto* const entry : window.findChildren<QAction*>())
      if (entry->text() == caption) return *entry;
    throw std::runtime_error("no entry " + caption.toStdString());
  }

  std::string StatusLine() {
    QStringList captions;
    for (const auto* const label : window.menuBar()->cornerWidget()->findChildren<QLabel*>())
      captions << label->text();
    return captions.join(' ').toStdString();
  }

  // New Game, with `player` before its chooser; answers whether one came.
  bool NewGame(const std::function<void(QWidget& chooser)>& player) {
    bool came = false;
    QTimer::singleShot(0, &window, [&] {
      QWidget* const chooser = OpenChooser();
      if (chooser == nullptr) return;
      came = true;
      player(*chooser);
    });
    Entry("&New Game").trigger();
    QApplication::processEvents();
    return came;
  }

  static void Start(QWidget& chooser, const QString& option) {
    chooser.findChild<QRadioButton*>(option)->click();
    chooser.findChild<QPushButton*>("OKButton")->click();
  }

  frmMain window;
};

TEST_F(MainWindow, StatusLineShowsDesignCaptionsUntilTheTimerWritesTheGame) {
  EXPECT_EQ(StatusLine(), "Score: Score Level: count Matches Left: mnuMatchCount");
  score = 150;
  level = 3;
  matchCount = 4;
  window.Timer1_Timer();
  EXPECT_EQ(StatusLine(), "Score: 150 Level: 3 Matches Left: 17");
}

TEST_F(MainWindow, WantedNameIsAskedForOnce) {
  nameWanted = true;
  window.Timer1_Timer();
  auto* const entry = window.findChild<QWidget*>("frmHSName");
  ASSERT_TRUE(entry != nullptr && entry->isVisible());
  entry->close();
  window.Timer1_Timer();
  EXPECT_FALSE(entry->isVisible());
}

TEST_F(MainWindow, NewGameOpensTheChooserWhereTheStateAllowsIt) {
  std::vector<int> allowed;
  for (int state = stateLoading; state <= stateEndMessage; ++state) {
    gameState = static_cast<GameState>(state);
    if (NewGame([](QWidget& chooser) { chooser.close(); })) allowed.push_back(state);
    EXPECT_EQ(gameState, state) << "a chooser that was closed starts nothing";
  }
  EXPECT_EQ(allowed, (std::vector<int>{stateIdle, stateSelected, stateEndMessage}));
}

TEST_F(MainWindow, PauseIsMarkedBeforeItIsHeardAndANewGameClearsTheMark) {
  music = std::make_unique<DXAudio>();
  paused = kTrue;  // and not marked: the mark follows the flag, not the last mark
  bool marked = true;
  twin::ScheduleAtPlace(1, [&] { marked = Entry("Pause").isChecked(); });
  Entry("Pause").trigger();
  EXPECT_FALSE(marked);
  Entry("Pause").trigger();
  EXPECT_TRUE(Entry("Pause").isChecked());
  NewGame([](QWidget& chooser) { Start(chooser, "Option1"); });
  EXPECT_EQ(paused, kFalse);
  EXPECT_FALSE(Entry("Pause").isChecked());
}

TEST_F(MainWindow, PlaySoundAndTheOptionsAreTwoMasters) {
  QAction& mark = Entry("&Play Sound");
  for (const Flag expected : {kFalse, kTrue, kFalse}) {
    mark.trigger();
    EXPECT_EQ(soundOn, expected);
    EXPECT_EQ(mark.isChecked(), expected != kFalse);
  }
  Entry("Options").trigger();
  window.findChild<QWidget*>("frmOptions")->findChild<QPushButton*>("OKButton")->click();
  window.Timer1_Timer();
  EXPECT_EQ(soundOn, kTrue);
  EXPECT_FALSE(mark.isChecked());
}

TEST_F(MainWindow, ReadersHearTheCursorAndTheGameAndFindTheStatusLine) {
  InitGameBoard();
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  const std::string name = CellWords(1, 0);
  for (const bool listens : {false, true}) {
    readerListens = listens;
    spoken.clear();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Space, Qt::Key_T, Qt::Key_Space, Qt::Key_Left})
      QTest::keyClick(QApplication::focusWidget(), key);
    window.Timer1_Timer();
    std::ostringstream all;
    all << name << '\n' << name << ", selected\n" << StatusWords() << '\n';
    all << name << '\n' << CellWords(0, 0) << '\n';
    EXPECT_EQ(spoken, listens ? all.str() : "");
  }
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&window);
  QAccessibleInterface* const line = tree->child(tree->childCount() - 1);
  EXPECT_EQ(line->role(), QAccessible::StatusBar);
  EXPECT_EQ(line->parent(), tree);
  EXPECT_EQ(tree->indexOfChild(line), tree->childCount() - 1);
  EXPECT_EQ(line->child(4)->text(QAccessible::Name), "Matches Left:");
  QAccessibleInterface* const board =
      QAccessible::queryAccessibleInterface(QApplication::focusWidget());
  QAccessibleInterface* const cell = board->focusChild();
  EXPECT_TRUE(cell->state().focused && cell->state().selected);
  EXPECT_EQ(board->childAt(cell->rect().center().x(), cell->rect().center().y()), cell);
  EXPECT_EQ(board->indexOfChild(cell), 0);
  readerListens = false;
}

// The timer event that a pause waits for comes only when the chooser stands.
TEST_F(MainWindow, NewGameRightBehindPauseStartsAtOnceWithItsOwnTime) {
  clockRunning = kTrue;
  timeLeft = 12;
  Entry("Pause").trigger();
  NewGame([&](QWidget& chooser) {
    twin::ScheduleAt(platform::TickCount() + 5000, [] {
      ADD_FAILURE() << "the pause waits on top of the chooser";
      paused = kFalse;
    });
    window.Timer1_Timer();
    EXPECT_EQ(timeLeft, 12);
    Start(chooser, "Option3");
  });
  EXPECT_TRUE(newBoardWanted);
  Entry("Pause").trigger();
  EXPECT_EQ(pausedTimeLeft, RowOf(modeMarathon).timeLimit);
}

TEST_F(MainWindow, ChoiceStandsThoughTheOldClockRunsOutBehindTheChooser) {
  score = 700;
  timeLeft = 0.05F;
  clockRunning = kTrue;
  NewGame([&](QWidget& chooser) {
    chooser.findChild<QRadioButton*>("Option4")->click();
    window.Timer1_Timer();
    EXPECT_EQ(gameState, stateShaking);
    EXPECT_EQ(lastBeepTick, 0) << "Relaxed has no beep";
    Start(chooser, "Option4");
  });
  EXPECT_EQ(gameMode, modeRelaxing);
  EXPECT_TRUE(newBoardWanted);
  EXPECT_EQ(gameState, stateDealing);
  EXPECT_EQ(score, 0);
}

}  // namespace
}  // namespace glimmerfall
