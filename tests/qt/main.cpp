// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Form tests run offscreen unless the environment names another platform of the toolkit.

#include <gtest/gtest.h>

#include <QApplication>

// Asked by the leak sanitizer. A test's end of the process is an exception, which leaves the
// toolkit's delivery of a click without its clean-up; the program's own end does not return.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n";
}

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
