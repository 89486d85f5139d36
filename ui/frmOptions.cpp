// SPDX-License-Identifier: MIT
#include "ui/frmOptions.h"

#include <QLabel>
#include <QPushButton>
#include <QSlider>

#include "platform/Messages.h"
#include "platform/Volume.h"
#include "platform/desktop/Layout.h"
#include "rules/state/basGameState.h"
#include "scores/basMiscelFunctions.h"
#include "sound/DXAudio.h"

namespace glimmerfall {

using namespace platform::desktop;

namespace {

constexpr WindowLook kWindow = {"frmOptions", "Options Menu", 240, 168, qRgb(192, 255, 192)};
constexpr Control kLabels[] = {
    {"Label2", "Music Volume", {0, 0, 81, 25}},
    {"Label1", "Sound Effects Volume", {80, 0, 81, 25}},
    {"Label3", "On", {128, 40, 17, 17}},
    {"Label4", "Off", {128, 128, 25, 17}},
};
constexpr Control kVolume = {"VolSlider", "Music Volume", {16, 32, 42, 121}};
constexpr Control kEffects = {"fxSlider", "Sound Effects Volume", {80, 32, 42, 121}};
constexpr Control kReset = {"Command1", "Reset Scores", {152, 48, 81, 25}};
constexpr Control kOk = {"OKButton", "OK", {152, 112, 81, 25}};
constexpr QRgb kGrooveColour = qRgb(176, 208, 176);
constexpr QRgb kButtonColour = qRgb(255, 192, 192);

// The music's volume in hundredths of a decibel a step; the last value is silence, not a step.
constexpr int kSilentValue = 20;
constexpr int kStartValue = 10;
constexpr int kVolumeLargeStep = 5;
constexpr int32 kVolumePerStep = -90;

constexpr int kEffectsOn = 0;
constexpr int kEffectsOff = 1;

constexpr int32 VolumeOf(int value) {
  return value == kSilentValue ? platform::kSilence : value * kVolumePerStep;
}

// From 0 at the top to `last` at the foot; arrow keys and wheel move the handle the way they point.
QSlider* AddSlider(QWidget& window, const Control& control, int last, int largeStep) {
  auto* const slider = new QSlider(Qt::Vertical, &window);
  Put(*slider, control);
  slider->setInvertedAppearance(true);
  slider->setInvertedControls(true);
  slider->setRange(0, last);
  slider->setPageStep(largeStep);
  slider->setTickPosition(QSlider::TicksRight);
  slider->setTickInterval(1);
  // The toolkit fills the groove above the handle, which here would grow as the sound gets softer.
  QPalette colours = slider->palette();
  colours.setColor(QPalette::Highlight, QColor(kGrooveColour));
  slider->setPalette(colours);
  return slider;
}

void AskForReset() {
  using platform::MessageAnswer;
  const MessageAnswer answer =
      platform::ShowMessage("Are you sure you want to reset your high scores?", "Reset Scores",
                            platform::MessageIcon::None, platform::MessageButtons::YesNo);
  if (answer == MessageAnswer::Yes) {
    ResetScoreTables();
  } else {
    platform::ShowMessage("Whew.  That was close.  I didn't reset the scores.");
  }
}

class frmOptions : public SmallWindow {
 public:
  frmOptions() : SmallWindow(kWindow) {
    for (const Control& label : kLabels)
      AddLabel(*this, label, kPlainText);
    VolSlider = AddSlider(*this, kVolume, kSilentValue, kVolumeLargeStep);
    VolSlider->setValue(kStartValue);
    fxSlider = AddSlider(*this, kEffects, kEffectsOff, kEffectsOff);
    auto* const Command1 = AddButton(*this, kReset, kButtonColour);
    auto* const OKButton = AddButton(*this, kOk, kButtonColour);
    OKButton->setDefault(true);
    connect(VolSlider, &QSlider::valueChanged, this, &frmOptions::VolSlider_Change);
    connect(fxSlider, &QSlider::valueChanged, this, &frmOptions::fxSlider_Change);
    connect(Command1, &QPushButton::clicked, this, &AskForReset);
    connect(OKButton, &QPushButton::clicked, this, &frmOptions::OKButton_Click);
  }

 private:
  void VolSlider_Change() {
    musicVolume = VolumeOf(VolSlider->value());
    if (music != nullptr) music->BackgroundVolume(musicVolume);
  }

  // The check mark of Play Sound is another master of soundOn and does not follow.
  void fxSlider_Change() { soundOn = fxSlider->value() == kEffectsOn ? kTrue : kFalse; }

  void OKButton_Click() {
    fxSlider_Change();
    hide();
  }

  QSlider* VolSlider;
  QSlider* fxSlider;
};

}  // namespace

void ShowOptions(QWidget* parent) {
  Present(TheWindow<frmOptions>(), parent);
}

}  // namespace glimmerfall
