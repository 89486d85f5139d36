// SPDX-License-Identifier: MIT
// Message boxes on the real toolkit, with a player who presses a key.
#include "platform/Messages.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace platform {
namespace {

QString told;

void TellAndPress(Qt::Key key) {
  QTimer::singleShot(0, [key] {
    const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    QStringList parts = {box->windowTitle(), box->text(), QString::number(box->textFormat()),
                         QString::number(box->icon())};
    for (const auto* const button : box->buttons())
      parts << button->text();
    told = parts.join('|');
    QTest::keyClick(QApplication::activeModalWidget(), key);
  });
}

TEST(Messages, StandAsTheyWereAskedForAndTellTheAnswer) {
  QApplication::setApplicationName("Program");
  TellAndPress(Qt::Key_Return);
  EXPECT_EQ(ShowMessage("<b>gone</b>"), MessageAnswer::Ok);
  EXPECT_EQ(told, "Program|<b>gone</b>|0|0|OK");
  for (const auto& [key, answer] :
       {std::pair{Qt::Key_Return, MessageAnswer::Yes}, {Qt::Key_Escape, MessageAnswer::No}}) {
    TellAndPress(key);
    EXPECT_EQ(ShowMessage("Sure?", "Ask", MessageIcon::Exclamation, MessageButtons::YesNo), answer);
    EXPECT_EQ(told, "Ask|Sure?|0|2|&Yes|&No");
  }
}

}  // namespace
}  // namespace platform
