// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtHelpEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTextBrowser>
#include <QTreeWidget>
#include <filesystem>
#include <functional>

#include "FormsWorkstation.h"
#include "WaitLimit.h"
#include "help/arvbsub.h"

namespace logbook {
namespace {

using test::FormsWorkstation;
using test::kWaitLimit;
using test::WhenModal;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t kContents = 1, kContext = 15, kCloseAll = 18;

// Takes the place of the desktop's programs for files.
class DesktopPrograms : public QObject {
  Q_OBJECT
 public:
  DesktopPrograms() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "Open"); }
  ~DesktopPrograms() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

  std::vector<std::string> opened;

 public Q_SLOTS:
  void Open(const QUrl& url) { opened.push_back(url.toLocalFile().toStdString()); }
};

// While it lives, programs are found in this folder first, or in no other.
class ProgramFolder {
 public:
  enum class Others { kStay, kAreHidden };
  ProgramFolder(const std::string& folder, Others others) : path_(qgetenv("PATH")) {
    QByteArray path = QByteArray::fromStdString(folder);
    if (others == Others::kStay) path += ":" + path_;
    qputenv("PATH", path);
  }
  ~ProgramFolder() { qputenv("PATH", path_); }

 private:
  const QByteArray path_;
};

class QtHelpEngineTest : public testing::Test {
 protected:
  QtHelpEngineTest() {
    PutBook("C:\\help\\quorex.hhbook", "Workstation help");
    PutBook("C:\\manual\\logbook.hhbook", "Own manual");
  }
  void PutBook(const std::string& index, const std::string& title) {
    const std::string folder = index.substr(0, index.rfind('\\') + 1);
    w.disk.Put(index, title +
                          "\n-\tfirst.html\tFirst\n16700\tmain.html\tMain\n16703\teditor.html\t" +
                          "  Editor\n");
    for (const char* page : {"first", "main", "editor"})
      w.disk.Put(folder + page + ".html",
                 std::string("<h1>Page ") + page + "</h1><a href=\"main.html\">to main</a>");
  }
  void Html(const std::string& file, std::uint32_t command, std::uint32_t data = 0) {
    engine.HtmlHelp(0, file, command, data);
  }
  void Win(const std::string& file, std::uint32_t command, std::uint32_t data = 0) {
    engine.WinHelp(0, file, command, data);
  }

  static QWidget* HelpWindow() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == QLatin1String("HelpWindow")) return widget;
    }
    return nullptr;
  }
  template <typename Widget>
  static Widget* Part(const char* name) {
    return HelpWindow()->findChild<Widget*>(QString::fromLatin1(name));
  }
  static std::string Page() {
    return Part<QTextBrowser>("HelpText")
        ->toPlainText()
        .section(QLatin1Char('\n'), 0, 0)
        .toStdString();
  }
  static std::string Entry() {
    const QTreeWidgetItem* entry = Part<QTreeWidget>("HelpContents")->currentItem();
    return entry == nullptr ? "" : entry->text(0).toStdString();
  }

  FormsWorkstation w;
  QtHelpEngine engine{w.disk.machine(),
                      QString::fromStdString(w.disk.Native("C:\\manual\\logbook.hhbook"))};
  Services services{w.host, w.cell,     w.events,  w.messages, w.clock, w.process,
                    w.ecm,  w.qt_forms, w.windows, w.print,    engine,  w.save};
};

TEST_F(QtHelpEngineTest, InitialisingGivesACookie) {
  std::uint32_t cookie = 0;
  engine.HtmlHelp(1, "1", 28, cookie);
  EXPECT_NE(cookie, 0u);
  EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(QtHelpEngineTest, ATopicOfABookShowsItsPageAndMarksItInTheContents) {
  Html("C:\\help\\quorex.hhbook", kContext, 16703);
  EXPECT_EQ(HelpWindow()->windowTitle(), QStringLiteral("Workstation help"));
  EXPECT_EQ(QAccessible::queryAccessibleInterface(HelpWindow())->role(), QAccessible::Window);
  EXPECT_EQ(Page(), "Page editor");
  EXPECT_EQ(Entry(), "Editor");
  EXPECT_EQ(Part<QLabel>("HelpNotice"), nullptr);
}

TEST_F(QtHelpEngineTest, TheWindowIsNoLargerThanTheScreenHasRoom) {
  Html("C:\\help\\quorex.hhbook", kContext, 16703);
  const QSize room = HelpWindow()->screen()->availableSize();
  ASSERT_LT(room.width(), 960) << "this screen has room for the window as it would like to be";
  EXPECT_LT(HelpWindow()->width(), room.width());
  EXPECT_LT(HelpWindow()->height(), room.height());
  // A screen of 1280 pixels shows half as many at twice the size.
  EXPECT_LT(HelpWindow()->minimumSizeHint().width(), 1280 / 2);
}

TEST_F(QtHelpEngineTest, TheOtherEngineShowsTopicsOfTheSameBook) {
  for (const std::uint32_t command : {1u, kContext}) {
    Win("C:\\help\\quorex.hhbook", command, 16703);
    EXPECT_EQ(Page(), "Page editor") << command;
    Win("", 2);
    EXPECT_EQ(HelpWindow(), nullptr);
  }
}

TEST_F(QtHelpEngineTest, ABookMayBeNamedByItsFolder) {
  Win("C:\\help", kContext, 16700);
  EXPECT_EQ(Page(), "Page main");
}

TEST_F(QtHelpEngineTest, ABookStandsForAHelpFileOfItsNameThatIsNotThere) {
  Html("C:\\help\\quorex.chm", kContext, 16700);
  EXPECT_EQ(Page(), "Page main");
  EXPECT_EQ(Part<QLabel>("HelpNotice"), nullptr);
  Html("", kCloseAll);
  Win("C:\\HELP\\QUOREX.HLP", kContext, 16703);
  EXPECT_EQ(Page(), "Page editor");
}

TEST_F(QtHelpEngineTest, ContentsAndUnknownTopicsShowTheFirstPage) {
  Html("C:\\help\\quorex.hhbook", kContents, 1);
  EXPECT_EQ(Page(), "Page first");
  Html("C:\\help\\quorex.hhbook", kContext, 4242);
  EXPECT_EQ(Page(), "Page first");
}

TEST_F(QtHelpEngineTest, AHelpFileThatIsNotThereGivesWayToTheOwnManualWithANotice) {
  Html("quorex.chm", kContext, 16700);
  EXPECT_EQ(HelpWindow()->windowTitle(), QStringLiteral("Own manual"));
  EXPECT_EQ(Page(), "Page main");
  EXPECT_EQ(
      Part<QLabel>("HelpNotice")->text(),
      QStringLiteral("The help file quorex.chm is not there. This is the logbook's own manual."));
}

TEST_F(QtHelpEngineTest, AHelpFileOfAFormatWithoutAViewerGivesWayToTheOwnManual) {
  w.disk.Put("C:\\other\\quorex.hlp", "?_");
  Win("C:\\other\\quorex.hlp", kContext, 16703);
  EXPECT_EQ(Page(), "Page editor");
  EXPECT_THAT(Part<QLabel>("HelpNotice")->text().toStdString(),
              HasSubstr("This machine has nothing to show C:\\other\\quorex.hlp with."));
}

TEST_F(QtHelpEngineTest, WithoutAnyManualTheNoticeStandsAlone) {
  QtHelpEngine bare(w.disk.machine(), QString());
  std::uint32_t topic = 16700;
  bare.HtmlHelp(0, "quorex.chm", kContext, topic);
  EXPECT_THAT(Part<QLabel>("HelpNotice")->text().toStdString(), HasSubstr("is not there"));
  EXPECT_EQ(Page(), "");
}

TEST_F(QtHelpEngineTest, ClosingAllClosesTheWindow) {
  Html("C:\\help\\quorex.hhbook", kContext, 16700);
  ASSERT_NE(HelpWindow(), nullptr);
  Html("1", kCloseAll);
  EXPECT_EQ(HelpWindow(), nullptr);
  Html("1", kCloseAll);
}

TEST_F(QtHelpEngineTest, TheWindowBelongsToNoOther) {
  Html("C:\\help\\quorex.hhbook", kContext, 16700);
  EXPECT_EQ(HelpWindow()->parentWidget(), nullptr);
  EXPECT_FALSE(HelpWindow()->isModal());
  EXPECT_FALSE(HelpWindow()->testAttribute(Qt::WA_QuitOnClose));
}

TEST_F(QtHelpEngineTest, ContentsLinksAndButtonsLeadThroughTheBook) {
  Html("C:\\help\\quorex.hhbook", kContents, 1);
  auto* contents = Part<QTreeWidget>("HelpContents");
  contents->setCurrentItem(contents->topLevelItem(1)->child(0));
  EXPECT_EQ(Page(), "Page editor");
  Part<QTextBrowser>("HelpText")
      ->setSource(
          QUrl::fromLocalFile(QString::fromStdString(w.disk.Native("C:\\help\\main.html"))));
  EXPECT_EQ(Entry(), "Main");
  Part<QPushButton>("HelpBack")->click();
  EXPECT_EQ(Page(), "Page editor");
  Part<QPushButton>("HelpForward")->click();
  EXPECT_EQ(Page(), "Page main");
  Part<QPushButton>("HelpFirst")->click();
  EXPECT_EQ(Page(), "Page first");
}

TEST_F(QtHelpEngineTest, EscapeClosesTheWindow) {
  Html("C:\\help\\quorex.hhbook", kContext, 16700);
  ASSERT_TRUE(QTest::qWaitForWindowActive(HelpWindow(), kWaitLimit));
  QTest::keyClick(HelpWindow(), Qt::Key_Escape);
  EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(QtHelpEngineTest, AChmFileGoesToTheMachinesViewerOnceWithItsTopic) {
  const std::string log = w.disk.Native("C:\\viewer.log");
  const std::string viewer = w.disk.Native("C:\\bin\\xchm");
  w.disk.Put("C:\\bin\\xchm", "#!/bin/sh\ntrap 'echo ended >> " + log +
                                  "; exit' TERM\necho \"$@\" >> " + log +
                                  "\nwhile :; do sleep 0.05; done\n");
  std::filesystem::permissions(viewer, std::filesystem::perms(0755));
  const ProgramFolder with_viewer(w.disk.Native("C:\\bin"), ProgramFolder::Others::kStay);
  w.disk.Put("C:\\other\\quorex.chm", "ITSF");

  ShowHelp(w.state, services, 0, "C:\\other\\quorex.chm", kHelpContext, 16700);
  const auto wait_for_lines = [&](const std::string& text) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kWaitLimit &&
           !(w.disk.Has("C:\\viewer.log") && w.disk.Get("C:\\viewer.log") == text))
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(w.disk.Get("C:\\viewer.log"), text);
  };
  const std::string started = "--contextid=16700 " + w.disk.Native("C:\\other\\quorex.chm") + "\n";
  wait_for_lines(started);
  EXPECT_EQ(HelpWindow(), nullptr);
  Html("1", kCloseAll);
  EXPECT_EQ(w.disk.Get("C:\\viewer.log"), started + "ended\n");
}

TEST_F(QtHelpEngineTest, WithoutThatViewerTheDesktopOpensAChmFileOnceForEachHelp) {
  w.disk.Put("C:\\other\\quorex.chm", "ITSF");
  const std::string file = w.disk.Native("C:\\other\\quorex.chm");
  const ProgramFolder no_viewer(w.disk.Native("C:\\bin"), ProgramFolder::Others::kAreHidden);
  DesktopPrograms desktop;
  ShowHelp(w.state, services, 0, "C:\\other\\quorex.chm", kHelpContext, 16700);
  EXPECT_THAT(desktop.opened, ElementsAre(file)) << "contents and topic are one help";
  ShowHelp(w.state, services, 0, "", kHelpContext, 16703);
  EXPECT_THAT(desktop.opened, ElementsAre(file, file));
  QCoreApplication::processEvents();
  ShowHelp(w.state, services, 0, "", kHelpContext, 16703);
  EXPECT_THAT(desktop.opened, ElementsAre(file, file, file));
  EXPECT_EQ(HelpWindow(), nullptr);
}

TEST_F(QtHelpEngineTest, AChmFileThatNothingOpensGivesWayToTheOwnManual) {
  w.disk.Put("C:\\other\\quorex.chm", "ITSF");
  const ProgramFolder no_viewer(w.disk.Native("C:\\bin"), ProgramFolder::Others::kAreHidden);
  ShowHelp(w.state, services, 0, "C:\\other\\quorex.chm", kHelpContext, 16703);
  ASSERT_NE(HelpWindow(), nullptr);
  EXPECT_EQ(Page(), "Page editor");
  EXPECT_THAT(Part<QLabel>("HelpNotice")->text().toStdString(),
              HasSubstr("This machine has nothing to show C:\\other\\quorex.chm with."));
}

// Asks for help in each window, with and without CE mode, and expects its topic.
void AskEachWindowForHelp(FormsWorkstation& w, const std::function<void(QWidget*)>& ask) {
  w.disk.Put(w.disk.home() + "/machine.reg",
             "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex Tessaline"
             "\\CurrentVersion]\r\n\"Path\"=\"C:\\\\QUOREX\\\\\"\r\n");
  w.disk.Put("C:\\QUOREX\\qrxexe\\qrxgen.ist", "[PCS,1]\r\n_HELPFILE$=a.hlp\r\n");
  w.MakeLog("26111500", "11/15/2026 05:09:59");
  w.state.LogPath = std::string(w.kLogRoot) + "26111500\\";
  w.state.CurrentLog = 1;
  w.state.FileList[1].Name = "26111500";
  w.state.ChangeColumn = 3;
  const auto ask_and_close = [&](QWidget* form) {
    ask(form);
    FormsWorkstation::FindIn<QPushButton>(
        form, form->objectName() == QLatin1String("frmLogView") ? "cmdExit" : "cmdCancel")
        ->click();
  };
  for (const bool ce_mode : {false, true}) {
    w.state.CEMode = ce_mode;
    w.help.calls.clear();
    ask(&w.window);
    WhenModal("frmLogView", ask_and_close);
    w.qt_forms.ShowLogView("Logbook Viewer");
    WhenModal("frmChangeItem", ask_and_close);
    w.qt_forms.ShowChangeItem();
    const std::string window = std::to_string(w.qt_forms.MainWindowHandle());
    EXPECT_THAT(w.help.calls,
                ElementsAre("WinHelp " + window + " a.hlp 15 16700",
                            "WinHelp " + window + " a.hlp 15 " + (ce_mode ? "16702" : "16701"),
                            "WinHelp " + window + " a.hlp 15 " + (ce_mode ? "16705" : "16704")));
  }
  w.help.calls.clear();
  WhenModal("frmLogEditor", ask_and_close);
  w.qt_forms.ShowLogEditor(std::nullopt);
  EXPECT_EQ(w.help.calls.size(), 1u);
  EXPECT_THAT(w.help.calls.back(), HasSubstr("a.hlp 15 16703"));
}

TEST_F(QtHelpEngineTest, EachHelpButtonAsksForItsTopic) {
  AskEachWindowForHelp(
      w, [](QWidget* form) { FormsWorkstation::FindIn<QPushButton>(form, "cmdHelp")->click(); });
}

TEST_F(QtHelpEngineTest, F1AsksForTheTopicOfTheWindow) {
  w.window.show();
  AskEachWindowForHelp(w, [](QWidget* form) {
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == form; }, kWaitLimit));
    QTest::keyClick(form, Qt::Key_F1);
  });
}

TEST_F(QtHelpEngineTest, HelpStaysUsableWhileADialogIsOpen) {
  w.MakeLog("26111500", "11/15/2026 05:09:59");
  w.state.LogPath = std::string(w.kLogRoot) + "26111500\\";
  w.window.show();
  bool looked = false;
  WhenModal("frmLogEditor", [&](QWidget* form) {
    Html("C:\\help\\quorex.hhbook", kContents, 1);
    auto* contents = Part<QTreeWidget>("HelpContents");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(HelpWindow(), kWaitLimit));
    const QPoint place = contents->visualItemRect(contents->topLevelItem(1)->child(0)).center();
    QTest::mouseClick(HelpWindow()->windowHandle(), Qt::LeftButton, {},
                      contents->viewport()->mapTo(HelpWindow(), place));
    EXPECT_EQ(Page(), "Page editor");
    looked = true;
    FormsWorkstation::FindIn<QPushButton>(form, "cmdCancel")->click();
  });
  w.qt_forms.ShowLogEditor(std::nullopt);
  EXPECT_TRUE(looked);
}

}  // namespace
}  // namespace logbook

#include "QtHelpEngineTest.moc"
