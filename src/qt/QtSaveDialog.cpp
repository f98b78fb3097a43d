// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtSaveDialog.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <initializer_list>

#include "base/Files.h"
#include "qt/Widgets.h"
#include "resources/ResourceText.h"

namespace logbook {
namespace {

// In the string table.
constexpr int kNoPath = 1442, kReadOnly = 1443, kAnotherName = 1444, kCannotSave = 1445,
              kAnotherFolder = 1446;

// "Archive file(*.zip)|*.zip" as the toolkit has it: one text for each pair, the pattern between
// parentheses at its end.
QStringList NameFilters(const std::string& filter) {
  const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString pattern = parts[i + 1];
    pattern.replace(QLatin1Char(';'), QLatin1Char(' '));
    const QString ending = QLatin1Char('(') + pattern + QLatin1Char(')');
    filters += parts[i].endsWith(ending) ? parts[i] : QString(parts[i] + QLatin1Char(' ') + ending);
  }
  return filters;
}

QString InitialFolder(const Machine& machine, const std::string& folder) {
  if (!FolderExists(machine, folder)) return QDir::homePath();
  return ToQt(NativePath(machine, folder));
}

// Why the choice is not taken, or nothing.
std::string ReasonToRefuse(const Machine& machine, const SaveRequest& request,
                           const QFileInfo& file) {
  const QFileInfo folder(file.absolutePath());
  const auto text = [&](const QFileInfo& place, std::initializer_list<int> reasons) {
    std::string lines = DrivePathText(machine, place.absoluteFilePath().toStdString());
    for (const int reason : reasons) lines += "\r" + ResourceText(reason);
    return lines;
  };
  if (request.PathMustExist && !folder.isDir()) return text(folder, {kNoPath});
  if (!request.NoReadOnlyReturn) return {};
  const bool is_open = file.isWritable() && file.permission(QFileDevice::WriteOwner);
  if (file.exists() && !is_open) return text(file, {kReadOnly, kAnotherName});
  if (folder.isDir() && !folder.isWritable()) return text(folder, {kCannotSave, kAnotherFolder});
  return {};
}

void Prepare(QFileDialog& dialog, const Machine& machine, const SaveRequest& request) {
  dialog.setObjectName(QLatin1String(kSaveDialogName));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.OverwritePrompt);
  dialog.setWindowTitle(ToQt(request.Title));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setNameFilters(NameFilters(request.Filter));
  QString suffix = ToQt(request.DefaultExtension);
  if (suffix.startsWith(QLatin1Char('.'))) suffix.remove(0, 1);
  dialog.setDefaultSuffix(suffix);
  dialog.setDirectory(InitialFolder(machine, request.InitialFolder));
  dialog.selectFile(ToQt(request.FileName));
}

}  // namespace

std::optional<std::string> QtSaveDialog::Show(const SaveRequest& request) {
  QFileDialog dialog(QApplication::activeWindow());
  Prepare(dialog, machine_, request);
  for (;;) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    const QFileInfo file(dialog.selectedFiles().constFirst());
    const std::string reason = ReasonToRefuse(machine_, request, file);
    if (reason.empty()) return DrivePathText(machine_, file.absoluteFilePath().toStdString());
    messages_.Show({.Text = reason, .Title = request.Title});
  }
}

}  // namespace logbook
