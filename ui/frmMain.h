// SPDX-License-Identifier: MIT
// The game's window: the board's picture box, the menu bar with its status line, the timer, and the
// start and end of the whole program.
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <functional>

namespace glimmerfall {

class frmMain : public QMainWindow {
 public:
  frmMain();

  /// The load of the window: starts sound and display, deals the first board and runs the game. A
  /// failure in a step is told to the player, and the next step follows. Does not come back.
  [[noreturn]] void Load();

  /// The timer event: writes the status line and steps the clock.
  void Timer1_Timer();

 protected:
  /// The close box and Quit end the program on the spot.
  void closeEvent(QCloseEvent* event) override;

 private:
  void CreateMenus();
  void CreateStatusLine();
  QAction* AddEntry(QMenu* menu, const char* caption, const char* hotKey,
                    const std::function<void()>& command);
  void CenterOnScreen();

  void mnuNewGame_Click();
  void mnuPlaySound_Click();
  void mnuPause_Click();

  QWidget* picBoard = nullptr;
  QAction* mnuPlaySound = nullptr;
  QAction* mnuPause = nullptr;
  QLabel* mnuScore = nullptr;
  QLabel* mnuCount = nullptr;
  QLabel* mnuMatchCount = nullptr;
};

}  // namespace glimmerfall
