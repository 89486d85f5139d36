// SPDX-License-Identifier: MIT
// The suites that need the toolkit, on its offscreen display.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
