// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <filesystem>

namespace logbook::windows_test {
namespace {

QString Translated(const char* catalogue, const char* text) {
  QTranslator words;
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (!words.load(QLatin1String(catalogue), folder)) return QStringLiteral("no words in ") + folder;
  return words.translate("QFileDialog", text);
}

// Wherever program and toolkit were built: the save dialog speaks the language of the logbook.
TEST(ToolkitWordsTest, TheToolkitFindsItsWordsBesideTheProgram) {
  int count = 1;
  char name[] = "tests_windows";
  char* words[] = {name, nullptr};
  const QCoreApplication application(count, words);
  EXPECT_EQ(Translated("qtbase_de", "Look in:"), QStringLiteral("Suchen in:"));
  EXPECT_EQ(Translated("qtbase_ja", "Look in:"), QString::fromUtf8("\u30A2\u30C9\u30EC\u30B9:"));
}

}  // namespace
}  // namespace logbook::windows_test
