// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Tests of what prints through the toolkit. They run offscreen, in the toolkit's own plain locale,
// and see no printer but those that a test sets up.

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("LC_ALL", "C");
  qputenv("CUPS_SERVER", "/nonexistent/no-print-system.sock");
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
