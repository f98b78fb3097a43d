// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtSaveDialog.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <functional>

#include "FormsWorkstation.h"
#include "shell/StartUp.h"

namespace logbook {
namespace {

using test::WhenModal;

class QtSaveDialogTest : public testing::Test {
 protected:
  // Shows the dialog, runs the action on it, returns the choice.
  std::optional<std::string> Show(const std::function<void(QFileDialog&)>& action) {
    WhenModal(kSaveDialogName,
              [action](QWidget* modal) { action(*qobject_cast<QFileDialog*>(modal)); });
    return QtSaveDialog(disk, messages).Show(request);
  }
  static void Type(QFileDialog& dialog, const QString& text) {
    auto* edit = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(edit, nullptr);
    edit->setText(text);  // typing would open the list of completions
    QTest::keyClick(edit, Qt::Key_Return);
  }
  static void Accept(QFileDialog& dialog) {
    QTest::keyClick(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit")), Qt::Key_Return);
  }

  test::TestMachine disk;
  test::TestMessages messages;
  SaveRequest request{.Title = "Enter the archive filename",
                      .DefaultExtension = ".zip",
                      .Filter = "Archive file(*.zip)|*.zip",
                      .InitialFolder = "C:\\",
                      .FileName = "m26B051407.zip"};
};

TEST_F(QtSaveDialogTest, ItOpensWithTitleFilterFolderAndName) {
  disk.MakeFolders("C:\\ZALM_ARC");
  request.InitialFolder = "C:\\ZALM_ARC\\";
  Show([this](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QLatin1String("Enter the archive filename"));
    EXPECT_EQ(dialog.nameFilters(), QStringList{QStringLiteral("Archive file(*.zip)")});
    EXPECT_EQ(dialog.directory().absolutePath(),
              QString::fromStdString(disk.Native("C:\\ZALM_ARC")));
    EXPECT_EQ(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(),
              QLatin1String("m26B051407.zip"));
    dialog.reject();
  });
}

TEST_F(QtSaveDialogTest, CancelGivesNothing) {
  EXPECT_EQ(Show([](QFileDialog& dialog) { dialog.reject(); }), std::nullopt);
}

TEST_F(QtSaveDialogTest, TheProposedNameComesBackWithItsDrive) {
  EXPECT_EQ(Show([](QFileDialog& dialog) { Accept(dialog); }), "C:\\m26B051407.zip");
}

TEST_F(QtSaveDialogTest, ANameWithoutExtensionGetsTheDefaultOne) {
  EXPECT_EQ(Show([](QFileDialog& dialog) { Type(dialog, QStringLiteral("mine")); }),
            "C:\\mine.zip");
}

TEST_F(QtSaveDialogTest, AFileOutsideTheDrivesIsAPathFromTheRoot) {
  const std::string folder = disk.home() + "/elsewhere";
  QDir().mkpath(QString::fromStdString(folder));
  const auto chosen =
      Show([&](QFileDialog& dialog) { Type(dialog, QString::fromStdString(folder + "/a.zip")); });
  std::string expected = folder + "/a.zip";
  for (char& byte : expected) byte = byte == '/' ? '\\' : byte;
  EXPECT_EQ(chosen, expected);
}

TEST_F(QtSaveDialogTest, AFolderThatDoesNotExistIsRefusedAndTheDialogComesAgain) {
  const QString missing = QString::fromStdString(disk.Native("C:\\missing\\a.zip"));
  const auto chosen = Show([&](QFileDialog& dialog) {
    WhenModal(kSaveDialogName, [](QWidget* again) { qobject_cast<QDialog*>(again)->reject(); });
    Type(dialog, missing);
  });
  EXPECT_EQ(chosen, std::nullopt);
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0].Text, "C:\\missing\rPath does not exist.");
}

TEST_F(QtSaveDialogTest, AFileThatExistsIsAskedAboutAndNoKeepsTheDialogOpen) {
  disk.Put("C:\\m26B051407.zip", "old");
  bool asked = false;
  const auto chosen = Show([&](QFileDialog& dialog) {
    QTimer::singleShot(0, &dialog, [&] {
      auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(question, nullptr);
      asked = true;
      QTest::mouseClick(question->button(QMessageBox::No), Qt::LeftButton);
    });
    Accept(dialog);
    EXPECT_TRUE(dialog.isVisible());
    dialog.reject();
  });
  EXPECT_TRUE(asked);
  EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(QtSaveDialogTest, AFileThatExistsIsChosenAfterYes) {
  disk.Put("C:\\m26B051407.zip", "old");
  const auto chosen = Show([&](QFileDialog& dialog) {
    QTimer::singleShot(0, &dialog, [&] {
      auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(question, nullptr);
      QTest::mouseClick(question->button(QMessageBox::Yes), Qt::LeftButton);
    });
    Accept(dialog);
  });
  EXPECT_EQ(chosen, "C:\\m26B051407.zip");
  EXPECT_EQ(disk.Get("C:\\m26B051407.zip"), "old");
}

TEST_F(QtSaveDialogTest, AReadOnlyFileIsRefusedAndTheDialogComesAgain) {
  disk.Put("C:\\old.zip", "old");
  const QString file = QString::fromStdString(disk.Native("C:\\old.zip"));
  QFile::setPermissions(file, QFileDevice::ReadOwner);
  const auto chosen = Show([&](QFileDialog& dialog) {
    auto* timer = new QTimer(&dialog);
    QObject::connect(timer, &QTimer::timeout, timer, [timer] {
      auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (question == nullptr) return;
      timer->stop();
      WhenModal(kSaveDialogName, [](QWidget* again) { qobject_cast<QDialog*>(again)->reject(); });
      QTest::mouseClick(question->button(QMessageBox::Yes), Qt::LeftButton);
    });
    timer->start(0);
    Type(dialog, file);
  });
  EXPECT_EQ(chosen, std::nullopt);
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0].Text,
            "C:\\old.zip\rThis file is read-only.\rPlease choose another file name.");
}

// A folder that nobody may write into while it lives: the administrator, whom no mode keeps out,
// gets a disk that is mounted for reading only.
class FolderToReadOnly {
 public:
  explicit FolderToReadOnly(const std::string& folder)
      : folder_(folder), is_disk_(geteuid() == 0), is_made_(Make()) {}
  ~FolderToReadOnly() {
    if (is_made_ && is_disk_) umount2(folder_.c_str(), MNT_DETACH);
  }
  FolderToReadOnly(const FolderToReadOnly&) = delete;
  FolderToReadOnly& operator=(const FolderToReadOnly&) = delete;

  bool IsMade() const { return is_made_; }

 private:
  bool Make() const {
    if (is_disk_) return mount("tmpfs", folder_.c_str(), "tmpfs", MS_RDONLY, "size=64k") == 0;
    return chmod(folder_.c_str(), S_IRUSR | S_IXUSR) == 0;
  }

  const std::string folder_;
  const bool is_disk_;
  const bool is_made_;
};

TEST_F(QtSaveDialogTest, AFolderToReadOnlyIsRefusedAndTheDialogComesAgain) {
  disk.MakeFolders("C:\\shut");
  const FolderToReadOnly shut(disk.Native("C:\\shut"));
  if (!shut.IsMade()) GTEST_SKIP() << "this administrator may not mount a disk";
  const auto chosen = Show([&](QFileDialog& dialog) {
    WhenModal(kSaveDialogName, [](QWidget* again) { qobject_cast<QDialog*>(again)->reject(); });
    Type(dialog, QString::fromStdString(disk.Native("C:\\shut\\a.zip")));
  });
  EXPECT_EQ(chosen, std::nullopt);
  ASSERT_EQ(messages.shown.size(), 1u);
  EXPECT_EQ(messages.shown[0].Text,
            "C:\\shut\rFiles cannot be saved in this folder.\rPlease choose another folder.");
}

TEST_F(QtSaveDialogTest, AnInitialFolderThatDoesNotExistGivesTheHomeFolder) {
  request.InitialFolder = "C:\\nowhere\\";
  Show([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().absolutePath(), QDir::homePath());
    dialog.reject();
  });
}

TEST(frmMainArchive, TheButtonArchivesTheSelectedLogs) {
  test::FormsWorkstation station;
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  station.save.answer = "C:\\a.zip";
  Form_Load(station.state, station.real, "HOST");
  station.state.ListView1.Row(1).Selected = true;
  station.real.forms.UpdateMain();
  QTest::mouseClick(station.Find<QPushButton>("cmdArchive"), Qt::LeftButton);
  EXPECT_TRUE(station.disk.Has("C:\\a.zip"));
}

}  // namespace
}  // namespace logbook
