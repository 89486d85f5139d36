// SPDX-License-Identifier: MIT
#include "ui/frmLearn.h"

#include <QLabel>
#include <QPushButton>

#include "platform/desktop/Layout.h"

namespace glimmerfall {

using namespace platform::desktop;

namespace {

constexpr WindowLook kWindow = {"frmLearn", "Learn to Play...", 512, 512, qRgb(0, 0, 64)};
constexpr Control kOk = {"OKButton", "OK", {400, 480, 81, 25}};
constexpr QRgb kOkColour = qRgb(128, 255, 128);

constexpr auto kPictureFiles = {"learn.png", "learn@2x.png"};
constexpr Control kPicture = {
    "Image4",
    "The object is to match 3 of a kind.\n\n"
    "First, look for two pieces to exchange to match 3 in a row, up, down, right or left.\n\n"
    "Click on one of the pieces, then on the other, or hold the button and drag to the other "
    "piece.\n\n"
    "The pieces change place and you score points!",
    {0, 0, 512, 511}};
constexpr QSize kPictureSize = {512, 511};
constexpr TextLook kWords = {FontFamily::Arial, 13.5, kWhite, Qt::AlignCenter | Qt::TextWordWrap};

class frmLearn : public SmallWindow {
 public:
  frmLearn() : SmallWindow(kWindow) {
    AddPicture(*this, kPicture, LoadPicture(kPictureFiles), kPictureSize, kWords);
    auto* const OKButton = AddButton(*this, kOk, kOkColour);
    OKButton->setDefault(true);
    connect(OKButton, &QPushButton::clicked, this, &QWidget::hide);
  }
};

}  // namespace

void ShowLearn(QWidget* parent) {
  Present(TheWindow<frmLearn>(), parent);
}

void ShowLearnModal(QWidget* parent) {
  auto& window = TheWindow<frmLearn>();
  // One that stands open behind a modal window could not be used.
  window.hide();
  SetOwner(window, parent);
  window.exec();
}

}  // namespace glimmerfall
