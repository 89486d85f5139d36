// SPDX-License-Identifier: MIT
#include "scores/frmHighScores.h"

#include <QEvent>
#include <QLabel>
#include <QPaintEvent>
#include <QPushButton>
#include <array>

#include "platform/desktop/Layout.h"
#include "rules/state/basModes.h"
#include "scores/basMiscelFunctions.h"

namespace glimmerfall {

using namespace platform::desktop;

namespace {

constexpr WindowLook kWindow = {"frmHighScores", "High Scores...", 484, 602, qRgb(0, 128, 0)};
constexpr Control kHeading = {"Label99", "High Scores:", {8, 0, 465, 33}};
constexpr TextLook kHeadingText = {
    FontFamily::Verdana, 20.25, qRgb(192, 255, 192), Qt::AlignHCenter | Qt::AlignTop, true, true};
constexpr TextLook kTableHeadingText = {FontFamily::Verdana, 9.75, qRgb(0, 0, 255),
                                        Qt::AlignLeft | Qt::AlignTop, true};
constexpr TextLook kLineText = {FontFamily::Verdana, 9.75, kWhite, Qt::AlignLeft | Qt::AlignVCenter,
                                true};
constexpr Control kOk = {"OKButton", "OK", {208, 568, 81, 25}};

// A mode's table, in the order in which they are read: a heading, and below it a line a place.
struct Block {
  GameMode mode;
  const char* headingName;
  const char* linePrefix;  // of the controls' names
  int firstNumber;
  int left;
  int top;
};
constexpr auto kBlocks = std::to_array<Block>({
    {modeNormal, "Label32", "Label", 1, 8, 40},
    {modeFrantic, "Label33", "Label", 11, 240, 40},
    {modeRelaxing, "Label34", "Label", 21, 8, 304},
    {modeMarathon, "Label31", "m", 1, 240, 304},
});
static_assert(HasEachModeOnce(kBlocks));
constexpr int kLineWidth = 225;
constexpr int kLineHeight = 17;
constexpr int kLineStep = 24;
constexpr int kLeastLinePixels = 10;  // of a long line's font; what does not fit then is cut off

using Lines = std::array<QLabel*, kPlaces>;

class frmHighScores : public SmallWindow {
 public:
  frmHighScores() : SmallWindow(kWindow) {
    AddLabel(*this, kHeading, kHeadingText);
    for (std::size_t i = 0; i < kBlocks.size(); ++i)
      AddBlock(kBlocks[i], lines_[i]);
    auto* const OKButton = AddButton(*this, kOk, kPlainGrey);
    OKButton->setDefault(true);
    OKButton->installEventFilter(this);
    connect(OKButton, &QPushButton::clicked, this, [this] {
      RefreshHighScores();
      hide();
    });
  }

  void Load() { RefreshHighScores(); }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::WindowActivate) AskForRefresh();
    return SmallWindow::event(event);
  }

  // The window has the focus when its one control that takes it has.
  bool eventFilter(QObject* control, QEvent* event) override {
    if (event->type() == QEvent::FocusIn) AskForRefresh();
    return SmallWindow::eventFilter(control, event);
  }

  // A new caption repaints its part of this window; that paint event comes from a refresh and must
  // not start another one.
  void paintEvent(QPaintEvent* event) override {
    if (!ownPaint_.contains(event->rect())) AskForRefresh();
  }

 private:
  void AddBlock(const Block& block, Lines& lines) {
    const auto place = [&block](int line) {
      return Place{block.left, block.top + line * kLineStep, kLineWidth, kLineHeight};
    };
    const QByteArray heading = QByteArray(RowOf(block.mode).name) + ':';
    AddLabel(*this, {block.headingName, heading.constData(), place(0)}, kTableHeadingText);
    for (int i = 0; i < kPlaces; ++i) {
      const QByteArray name = block.linePrefix + QByteArray::number(block.firstNumber + i);
      lines[static_cast<std::size_t>(i)] =
          AddLabel(*this, {name.constData(), "", place(i + 1)}, kLineText);
    }
  }

  // The toolkit is in the midst of painting or of moving the focus, where events must not run. A
  // request that comes while a refresh runs is met after it.
  void AskForRefresh() {
    QMetaObject::invokeMethod(this, &frmHighScores::RefreshWhenAsked, Qt::QueuedConnection);
  }

  void RefreshWhenAsked() {
    if (refreshing_) {
      askedMeanwhile_ = true;
      return;
    }
    refreshing_ = true;
    askedMeanwhile_ = false;
    RefreshHighScores();
    refreshing_ = false;
    if (askedMeanwhile_) AskForRefresh();
  }

  // Lets events run after each name.
  void RefreshHighScores() {
    for (std::size_t i = 0; i < kBlocks.size(); ++i) {
      ReadScores(kBlocks[i].mode);
      for (int place = 1; place <= kPlaces; ++place)
        SetCaption(*lines_[i][static_cast<std::size_t>(place - 1)],
                   QString::fromStdString(TableLine(kBlocks[i].mode, place)));
    }
  }

  void SetCaption(QLabel& line, const QString& caption) {
    if (line.text() == caption) return;
    ownPaint_ = line.geometry();
    line.setText(caption);
    line.setAccessibleName(caption);
    FitFont(line, kLineText, kLeastLinePixels);
    line.repaint();
    ownPaint_ = QRect();
  }

  std::array<Lines, kModeCount> lines_;
  QRect ownPaint_;
  bool refreshing_ = false;
  bool askedMeanwhile_ = false;
};

}  // namespace

void ShowHighScores(QWidget* parent) {
  auto& window = TheWindow<frmHighScores>();
  Present(window, parent);
  // A desktop that does not let an open window come forward does not activate it either.
  window.update();
}

}  // namespace glimmerfall
