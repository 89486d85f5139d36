// SPDX-License-Identifier: MIT
#include "scores/frmHSName.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "platform/desktop/Layout.h"
#include "scores/basMiscelFunctions.h"
#include "scores/frmHighScores.h"

namespace glimmerfall {

using namespace platform::desktop;

namespace {

constexpr WindowLook kWindow = {"frmHSName", "Login", 313, 69, qRgb(128, 0, 0)};
constexpr Control kPrompt = {"lblLabels", "Enter Your Name:", {0, 48, 88, 17}};
constexpr TextLook kPromptText = {FontFamily::Arial, 8.25, kWhite, Qt::AlignHCenter | Qt::AlignTop};
constexpr Control kUserName = {"txtUserName", "Enter Your Name:", {88, 40, 155, 23}};
constexpr Control kOk = {"cmdOK", "OK", {248, 40, 60, 26}};
constexpr Control kHeading = {"Label1", "You got a HIGH SCORE!!!", {24, 8, 273, 25}};
constexpr TextLook kHeadingText = {FontFamily::Verdana, 15.75, qRgb(0, 255, 0),
                                   Qt::AlignLeft | Qt::AlignTop};

class frmHSName : public SmallWindow {
 public:
  frmHSName() : SmallWindow(kWindow), txtUserName(new QLineEdit(this)) {
    AddLabel(*this, kPrompt, kPromptText);
    AddLabel(*this, kHeading, kHeadingText);
    Put(*txtUserName, kUserName);
    QPalette colours = txtUserName->palette();
    colours.setColor(QPalette::Base, QColor(kWhite));
    colours.setColor(QPalette::Text, QColor(kBlack));
    txtUserName->setPalette(colours);
    cmdOK = AddButton(*this, kOk, kPlainGrey);
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmHSName::cmdOK_Click);
  }

  void Open(QWidget* parent) {
    Present(*this, parent);
    txtUserName->setFocus();
  }

 private:
  // Events run while the names are read: a second press must not enter the score twice.
  void cmdOK_Click() {
    cmdOK->setEnabled(false);
    const QString typed = txtUserName->text().normalized(QString::NormalizationForm_C);
    EnterHighScore(typed.toStdString());
    cmdOK->setEnabled(true);
    hide();
    ShowHighScores(parentWidget());
  }

  QLineEdit* txtUserName;
  QPushButton* cmdOK;
};

}  // namespace

void ShowNameEntry(QWidget* parent) {
  TheWindow<frmHSName>().Open(parent);
}

}  // namespace glimmerfall
