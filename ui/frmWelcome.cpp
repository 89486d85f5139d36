// SPDX-License-Identifier: MIT
#include "ui/frmWelcome.h"

#include <QFocusEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <array>

#include "platform/desktop/Layout.h"
#include "rules/state/basModes.h"
#include "ui/frmLearn.h"

namespace glimmerfall {

using namespace platform::desktop;

namespace {

constexpr WindowLook kWindow = {"frmWelcome", "Norvane Games Presents...", 527, 315, kPlainGrey};

// The picture holds the title, the heading and the words of the option buttons.
constexpr Control kPicture = {"Image1", PROGRAM_TITLE, {8, 8, 512, 300}};
constexpr QSize kPictureSize = {512, 300};
constexpr QRgb kDark = qRgb(0, 0, 64);
constexpr Control kHeading = {"Heading", "Select Game Mode", {320, 16, 192, 32}};
constexpr TextLook kTitleText = {FontFamily::Arial, 36, kWhite, Qt::AlignLeft | Qt::AlignTop, true};
constexpr TextLook kHeadingText = {FontFamily::Arial, 15, kWhite, Qt::AlignCenter, true};
constexpr TextLook kModeText = {FontFamily::Arial, 13.5, kWhite, Qt::AlignLeft | Qt::AlignVCenter};
constexpr int kWordGap = 12;
constexpr int kWordWidth = 140;

struct ModeOption {
  Control control;
  const char* tooltip;
  GameMode mode;
};
// In tab order.
constexpr auto kOptions = std::to_array<ModeOption>({
    {{"Option1", "Normal", {328, 64, 17, 25}},
     "Match 3 to earn points and time to match more.",
     modeNormal},
    {{"Option3", "Marathon", {328, 128, 17, 29}},
     "You will have 3 minutes to score as much as you can.",
     modeMarathon},
    {{"Option2", "Frantic", {328, 96, 17, 25}},
     "Fast matching mode, start with 10 seconds and it goes down from there.",
     modeFrantic},
    {{"Option4", "Relaxed", {328, 168, 17, 25}}, "No time limit, just matching", modeRelaxing},
});
static_assert(HasEachModeOnce(kOptions));

constexpr Control kLearn = {"Command2", "Learn to Play", {272, 280, 121, 25}};
constexpr QRgb kLearnColour = qRgb(192, 255, 192);
constexpr char kLearnTooltip[] = "Learn to play, it only takes a minute or two.";
constexpr Control kStart = {"OKButton", "Start", {408, 280, 89, 25}};
constexpr QRgb kStartColour = qRgb(255, 192, 192);
constexpr QSize kButtonPictureSize = {120, 30};
constexpr QRgb kFocusColour = qRgb(255, 208, 96);
constexpr double kRingRadius = 6.5;  // pixels, as is the next
constexpr double kDotRadius = 3.5;
constexpr QColor kPressedShade = {0, 0, 0, 70};

// A radio button without text, light on dark in every style of the desktop. The toolkit takes all
// but the checked button of a group out of the tab order; here all of them stay in it.
class ModeButton : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QRadioButton::focusInEvent(event);
    for (auto* const button : parentWidget()->findChildren<QRadioButton*>())
      button->setFocusPolicy(Qt::StrongFocus);
  }

  bool hitButton(const QPoint& point) const override { return rect().contains(point); }

  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(kDark));
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle = QRectF(rect()).center();
    painter.setPen(QPen(hasFocus() ? QColor(kFocusColour) : QColor(kWhite), hasFocus() ? 2 : 1));
    painter.drawEllipse(middle, kRingRadius, kRingRadius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(kWhite));
    if (isChecked()) painter.drawEllipse(middle, kDotRadius, kDotRadius);
  }
};

// A picture with the edge of a button around it.
class PictureButton : public QPushButton {
 public:
  PictureButton(QWidget* window, const QIcon& picture) : QPushButton(window), picture_(picture) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    PaintPicture(*this, picture_, kButtonPictureSize);
    QPainter painter(this);
    if (isDown()) painter.fillRect(rect(), kPressedShade);
    painter.setPen(QPen(hasFocus() ? Qt::white : Qt::black, hasFocus() ? 2 : 1));
    const int inset = hasFocus() ? 1 : 0;
    painter.drawRect(rect().adjusted(inset, inset, -1 - inset, -1 - inset));
  }

 private:
  QIcon picture_;
};

QPushButton* AddPictureButton(QWidget& window, const Control& control, const QIcon& picture,
                              QRgb colour) {
  if (picture.isNull()) return AddButton(window, control, colour);
  auto* const button = new PictureButton(&window, picture);
  Put(*button, control);
  return button;
}

class frmWelcome : public SmallWindow {
 public:
  frmWelcome() : SmallWindow(kWindow) {
    AddBackground();
    // The order in which controls are made is the tab order.
    AddButtons();
    for (std::size_t i = 0; i < kOptions.size(); ++i)
      options_[i] = AddOption(kOptions[i]);
    options_[0]->setChecked(true);
  }

  /// Waits for the player; true for Start.
  bool Ask(QWidget* parent) {
    SetOwner(*this, parent);
    OKButton->setFocus();
    return exec() == QDialog::Accepted;
  }

  void Select(GameMode mode) {
    for (std::size_t i = 0; i < kOptions.size(); ++i)
      if (kOptions[i].mode == mode) options_[i]->setChecked(true);
  }

 private:
  void AddBackground() {
    const QIcon picture = LoadPicture({"chooser.png", "chooser@2x.png"});
    auto* const Image1 = AddPicture(*this, kPicture, picture, kPictureSize, kTitleText);
    if (!picture.isNull()) return;
    Image1->setStyleSheet("background: " + QColor(kDark).name());
    AddLabel(*this, kHeading, kHeadingText);
    for (const ModeOption& option : kOptions)
      AddWord(option.control);
  }

  void AddWord(const Control& dot) {
    Control word = dot;
    word.name = "";
    word.place.left += dot.place.width + kWordGap;
    word.place.width = kWordWidth;
    AddLabel(*this, word, kModeText);
  }

  QRadioButton* AddOption(const ModeOption& option) {
    auto* const button = new ModeButton(this);
    Put(*button, option.control);
    button->setToolTip(option.tooltip);
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QRadioButton::clicked, this, [mode = option.mode] { gameMode = mode; });
    return button;
  }

  void AddButtons() {
    OKButton = AddPictureButton(
        *this, kStart, LoadPicture({"buttonstart.png", "buttonstart@2x.png"}), kStartColour);
    OKButton->setDefault(true);
    connect(OKButton, &QPushButton::clicked, this, &frmWelcome::OKButton_Click);
    auto* const Command2 = AddPictureButton(
        *this, kLearn, LoadPicture({"buttonlearn.png", "buttonlearn@2x.png"}), kLearnColour);
    Command2->setToolTip(kLearnTooltip);
    connect(Command2, &QPushButton::clicked, this, [this] { ShowLearnModal(this); });
  }

  void OKButton_Click() {
    accept();
    for (std::size_t i = 0; i < kOptions.size(); ++i)
      if (options_[i]->isChecked()) gameMode = kOptions[i].mode;
  }

  std::array<QRadioButton*, kModeCount> options_;
  QPushButton* OKButton;
};

}  // namespace

bool ChooseMode(QWidget* parent) {
  auto& window = TheWindow<frmWelcome>();
  if (window.isVisible()) return false;
  const GameMode before = gameMode;
  if (window.Ask(parent)) return true;
  gameMode = before;
  window.Select(before);
  return false;
}

}  // namespace glimmerfall
