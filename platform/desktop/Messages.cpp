// SPDX-License-Identifier: MIT
#include "platform/Messages.h"

#include <QApplication>
#include <QMessageBox>

namespace platform {

MessageAnswer ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                          MessageButtons buttons) {
  const bool asks = buttons == MessageButtons::YesNo;
  QMessageBox box(QApplication::activeWindow());
  box.setWindowTitle(title.empty() ? QApplication::applicationName()
                                   : QString::fromStdString(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(text));
  box.setIcon(icon == MessageIcon::Exclamation ? QMessageBox::Warning : QMessageBox::NoIcon);
  box.setStandardButtons(asks ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok);
  const int answer = box.exec();
  if (answer == QMessageBox::Yes) return MessageAnswer::Yes;
  return asks ? MessageAnswer::No : MessageAnswer::Ok;
}

}  // namespace platform
