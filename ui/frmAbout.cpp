// SPDX-License-Identifier: MIT
#include "ui/frmAbout.h"

#include <QLabel>
#include <QPushButton>

#include "platform/desktop/Layout.h"

namespace glimmerfall {

using namespace platform::desktop;

namespace {

constexpr WindowLook kWindow = {"frmAbout", "", 382, 206, qRgb(240, 240, 240)};
constexpr Control kIcon = {"picIcon", "The game's icon", {8, 8, 132, 132}};
constexpr Control kTitle = {"lblTitle", PROGRAM_TITLE, {160, 40, 187, 64}};
constexpr Control kVersion = {"lblVersion", "Version " PROGRAM_VERSION, {160, 128, 187, 15}};
constexpr Control kDisclaimer = {
    "lblDisclaimer", "Warning: ... this game is addictive.", {17, 175, 258, 23}};
constexpr Control kOk = {"cmdOK", "OK", {283, 175, 84, 23}};

constexpr TextLook kTitleText = {FontFamily::Arial, 14.25, kBlack, Qt::AlignLeft | Qt::AlignTop};
constexpr QSize kIconSize = {128, 128};
constexpr auto kIconFiles = {"icon128.png", "icon256.png"};

class frmAbout : public SmallWindow {
 public:
  frmAbout() : SmallWindow(kWindow) {
    setAttribute(Qt::WA_DeleteOnClose);
    AddPicture(*this, kIcon, LoadPicture(kIconFiles), kIconSize, kPlainText);
    AddLabel(*this, kTitle, kTitleText);
    AddLabel(*this, kVersion, kPlainText);
    AddLabel(*this, kDisclaimer, kPlainText);
    auto* const cmdOK = AddButton(*this, kOk, kPlainGrey);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
  }

  void Load() { setWindowTitle("About " PROGRAM_TITLE); }
};

}  // namespace

void ShowAbout(QWidget* parent) {
  Present(TheWindow<frmAbout>(), parent);
}

}  // namespace glimmerfall
