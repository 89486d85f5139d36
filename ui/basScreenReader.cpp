// SPDX-License-Identifier: MIT
#include "ui/basScreenReader.h"

#include <QAccessibleWidget>
#include <QWidget>
#include <algorithm>
#include <array>
#include <utility>

#include "display/basBoardCursor.h"
#include "rules/basManipulatingGems.h"
#include "ui/basBoardWords.h"

namespace glimmerfall {

namespace {

constexpr int kNoCell = -1;

// The widgets that readers are told of, and what was told last.
struct Told {
  QWidget* window = nullptr;
  QWidget* board = nullptr;
  QWidget* statusLine = nullptr;
  BoardNews news;
  QString notification;
  int cell = kNoCell;    // where the cursor was
  std::string cellName;  // and the words for it
  bool boardHadFocus = false;
};
Told told;

int CursorCell() {
  return boardCursor.shown ? boardCursor.x + kBoardCells * boardCursor.y : kNoCell;
}

QAccessibleInterface* AccessibleOf(QWidget* widget) {
  return QAccessible::queryAccessibleInterface(widget);
}

// A part of the board that is no widget.
class PartAccessible : public QAccessibleInterface {
 public:
  explicit PartAccessible(QAccessible::Role role) : role_(role) {}

  bool isValid() const override { return true; }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return AccessibleOf(told.board); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}
  QAccessible::Role role() const override { return role_; }
  QRect rect() const override { return parent()->rect(); }
  QAccessible::State state() const override { return {}; }

 private:
  QAccessible::Role role_;
};

class CellAccessible : public PartAccessible {
 public:
  explicit CellAccessible(int cell) : PartAccessible(QAccessible::ListItem), cell_(cell) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? QString::fromStdString(CellWords(Column(), Row()))
                                     : QString();
  }
  QRect rect() const override {
    return {told.board->mapToGlobal(QPoint(Column(), Row()) * kCellPixels),
            QSize(kCellPixels, kCellPixels)};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.focusable = state.selectable = true;
    state.focused = cell_ == CursorCell() && told.board->hasFocus();
    state.selected = gameState == stateSelected && boardCells[cell_].gemId == firstGem;
    return state;
  }

 private:
  int Column() const { return cell_ % kBoardCells; }
  int Row() const { return cell_ / kBoardCells; }

  int cell_;
};

class NotificationAccessible : public PartAccessible {
 public:
  NotificationAccessible() : PartAccessible(QAccessible::Notification) {}

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? told.notification : QString();
  }
};

// The cells in their order, and behind them the notification.
class BoardAccessible : public QAccessibleWidget {
 public:
  explicit BoardAccessible(QWidget* board) : QAccessibleWidget(board, QAccessible::List) {
    for (int cell = 0; cell < kGemCount; ++cell)
      parts_[static_cast<std::size_t>(cell)] = new CellAccessible(cell);
    parts_.back() = new NotificationAccessible;
    for (QAccessibleInterface* const part : parts_)
      QAccessible::registerAccessibleInterface(part);
  }
  BoardAccessible(const BoardAccessible&) = delete;
  BoardAccessible& operator=(const BoardAccessible&) = delete;
  ~BoardAccessible() override {
    for (QAccessibleInterface* const part : parts_)
      QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(part));
  }

  int childCount() const override { return static_cast<int>(parts_.size()); }
  QAccessibleInterface* child(int index) const override {
    return index >= 0 && index < childCount() ? parts_[static_cast<std::size_t>(index)] : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* part) const override {
    const auto* const found = std::find(parts_.begin(), parts_.end(), part);
    return found == parts_.end() ? -1 : static_cast<int>(found - parts_.begin());
  }
  QAccessibleInterface* focusChild() const override { return child(CursorCell()); }
  QAccessibleInterface* childAt(int x, int y) const override {
    for (int cell = 0; cell < kGemCount; ++cell)
      if (child(cell)->rect().contains(x, y)) return child(cell);
    return nullptr;
  }
  QAccessibleInterface* Notification() const { return parts_.back(); }

 private:
  std::array<QAccessibleInterface*, kGemCount + 1> parts_{};
};

// The toolkit's own tree leaves out what stands in the corner of a menu bar.
class StatusLineAccessible : public QAccessibleWidget {
 public:
  StatusLineAccessible() : QAccessibleWidget(told.statusLine, QAccessible::StatusBar) {}

  QAccessibleInterface* parent() const override { return AccessibleOf(told.window); }
};

class WindowAccessible : public QAccessibleWidget {
 public:
  WindowAccessible() : QAccessibleWidget(told.window, QAccessible::Window) {}

  int childCount() const override { return QAccessibleWidget::childCount() + 1; }
  QAccessibleInterface* child(int index) const override {
    return index == QAccessibleWidget::childCount() ? AccessibleOf(told.statusLine)
                                                    : QAccessibleWidget::child(index);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child == AccessibleOf(told.statusLine) ? QAccessibleWidget::childCount()
                                                  : QAccessibleWidget::indexOfChild(child);
  }
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
  if (object == nullptr) return nullptr;
  if (object == told.board) return new BoardAccessible(told.board);
  if (object == told.statusLine) return new StatusLineAccessible;
  if (object == told.window) return new WindowAccessible;
  return nullptr;
}

BoardAccessible& Board() {
  return dynamic_cast<BoardAccessible&>(*AccessibleOf(told.board));
}

void Send(QAccessibleInterface* part, QAccessible::Event what) {
  QAccessibleEvent event(part, what);
  QAccessible::updateAccessibility(&event);
}

void Notify(const std::string& words) {
  if (words.empty()) return;
  told.notification = QString::fromStdString(words);
  Send(Board().Notification(), QAccessible::ObjectShow);
}

// The toolkit itself tells that the board has got the focus; the cell follows.
void FollowCursor() {
  const bool hasFocus = told.board->hasFocus();
  const bool gained = !std::exchange(told.boardHadFocus, hasFocus) && hasFocus;
  const int before = std::exchange(told.cell, CursorCell());
  if (!hasFocus || told.cell == kNoCell || !(gained || told.cell != before)) return;
  told.cellName = CellWords(boardCursor.x, boardCursor.y);
  Send(Board().child(told.cell), QAccessible::Focus);
}

// What the cursor's cell has come to hold; nothing while gems are under way.
std::string NewsOfCell() {
  if (told.cell == kNoCell || !PicksAllowed()) return "";
  std::string name = CellWords(boardCursor.x, boardCursor.y);
  return name == std::exchange(told.cellName, name) ? "" : name;
}

}  // namespace

// Accessible interfaces that the toolkit has cached already would hide the ones made here.
void DescribeToReaders(QWidget* window, QWidget* board, QWidget* statusLine) {
  for (QWidget* const widget : {window, board, statusLine})
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(AccessibleOf(widget)));
  told = Told{};
  told.window = window;
  told.board = board;
  told.statusLine = statusLine;
  QAccessible::installFactory(MakeAccessible);
}

void TellReaders() {
  if (!QAccessible::isActive()) return;
  FollowCursor();
  Notify(JoinWords(told.news.Look(), NewsOfCell()));
}

void TellStatus() {
  if (QAccessible::isActive()) Notify(StatusWords());
}

}  // namespace glimmerfall
