// SPDX-License-Identifier: MIT
// The program: puts the shared state to its start and opens the windows.
#include <QApplication>
#include <QIcon>

#include <cstdio>

#include "platform/Program.h"
#include "platform/desktop/FilterGraph.h"
#include "rules/state/basGameState.h"
#include "ui/frmMain.h"
#include "ui/frmWelcome.h"

namespace {

// The toolkit would end with a long text and a core file when no display can be reached; all its
// lesser remarks are of no use to a player.
void EndOnFatal(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type != QtFatalMsg) return;
  const bool started = QCoreApplication::instance() != nullptr && !QCoreApplication::startingUp();
  const QByteArray reason = started ? text.toLocal8Bit() : "no window can be opened: no display";
  std::fprintf(stderr, "glimmerfall: %s\n", reason.constData());
  platform::EndProgram(1);
}

QIcon ProgramIcon() {
  QIcon icon;
  for (const char* size : {"16", "32", "48", "64", "128", "256"})
    icon.addFile(QString::fromStdString(platform::ProgramFolder()) + "/images/icon" + size +
                 ".png");
  return icon;
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(EndOnFatal);
  platform::desktop::WarmUpMedia();
  QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
  QApplication application(argc, argv);
  QApplication::setApplicationName("Glimmerfall");
  QApplication::setDesktopFileName("org.glimmerfall.Glimmerfall");
  QApplication::setWindowIcon(ProgramIcon());

  glimmerfall::ResetGameState();
  if (!glimmerfall::ChooseMode(nullptr)) platform::EndProgram(0);
  glimmerfall::frmMain window;
  window.Load();
}
