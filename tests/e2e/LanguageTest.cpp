// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The whole road once in each language: start, record, list, view, print, archive, help, exit. The
// program stands in a folder of its own, since the profile beside it names the language.

#include <gmock/gmock.h>

#include <QLibraryInfo>
#include <QTranslator>
#include <filesystem>
#include <fstream>
#include <regex>

#include "PrintShop.h"
#include "PrintedPages.h"
#include "base/CodePage.h"
#include "resources/Resources.h"

namespace fs = std::filesystem;

namespace logbook::e2e {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

class LanguageTest : public PrintShop, public testing::WithParamInterface<std::size_t> {
 protected:
  void SetUp() override {
    PrintShop::SetUp();
    if (IsSkipped()) return;
    fs::create_directory(Application());
    fs::copy_file(LOGBOOK_PROGRAM, Application() + "/logbook");
    fs::create_directory_symlink(MANUAL_DIR, Application() + "/manual");
    std::ofstream(Application() + "/language.cfg") << "[Language]\r\nUse=" << language().id;
    SetCodePage();
    work().RunHost({"fill", "--logs", "2", "--until", "2026-06-30"});
  }

  static const Language& language() { return LanguageAt(GetParam()); }
  static const CodePage& page() {
    return *CodePage::Find(IsWrittenIn(language(), 1252) ? 1252 : 932);
  }
  // A text of the language, as it is read out: without the mark of its access key.
  static std::string Word(int number) {
    std::string text(LoadResString(number, GetParam()));
    std::erase(text, '&');
    return text;
  }
  static std::string Key(int number) {
    const std::string_view text = LoadResString(number, GetParam());
    return std::string("alt+") + static_cast<char>(text.at(text.find('&') + 1) | 0x20);
  }

  std::string Application() { return desktop().Folder() + "/application"; }
  std::string Get(const std::string& path) { return work().machine().Get(path); }
  void SetCodePage() {
    const std::string hive = work().machine().home() + "/machine.reg";
    std::string text = Get(hive);
    const std::string usual = "\"ACP\"=\"1252\"";
    text.replace(text.find(usual), usual.size(),
                 "\"ACP\"=\"" + std::to_string(page().Number()) + "\"");
    work().machine().Put(hive, text);
  }

  void Press(int caption, const char* role = "push button") {
    const std::string name = Word(caption);
    WaitFor(name + " to be enabled", [&] { return reader().WaitFor(role, name).enabled; });
    desktop().ClickScreen(reader().WaitFor(role, name).place.Middle());
  }
  void Picture(WindowId window, const std::string& name) {
    desktop().TakePicture(window, PictureFolder() + "/" + std::string(language().id) + "-" + name);
  }

  void Record();
  void View(const std::string& log);
  void PrintList();
  void SeeWordsOfTheToolkit();
  void Archive(const std::string& log);
  void Help();
};

void LanguageTest::Record() {
  const std::size_t before = work().Logs().size();
  Press(113);
  WaitFor("a new log folder", [&] { return work().Logs().size() > before; });
  const std::string folder = kLogRoot + work().Logs().back() + "\\";
  const WindowId editor = desktop().WaitForWindow(Word(176) + ":" + folder);
  Press(180, "check box");
  Picture(editor, "editor.png");
  Press(120);
  desktop().WaitUntilGone(editor);
  WaitForButton(Word(113));
  EXPECT_THAT(Get(folder + "logfile.ini"), HasSubstr("Item1=1\r\n"));
  EXPECT_THAT(Get(kLogRoot + std::string("listlog.csv")),
              StartsWith(page().FromUtf8(Word(121) + "," + Word(122) + ",")));
}

void LanguageTest::View(const std::string& log) {
  desktop().DoubleClickScreen(Row(log).place.Middle());
  const WindowId viewer = desktop().WaitForWindow(Word(135) + ":" + DateOf(work(), log));
  desktop().Key(Key(146));
  const std::string report = kLogRoot + log + "\\meter.rpt";
  WaitFor("the report in its pane", [&] {
    for (const Readable& thing : reader().Read()) {
      if (thing.name == Word(1412) && thing.text.starts_with(Word(250) + "\n")) return true;
    }
    return false;
  });
  EXPECT_THAT(Get(report), StartsWith(page().FromUtf8(Word(250)) + "\r\n"));
  Picture(viewer, "viewer.png");
  Press(116);
  const std::string image = WaitForImage(log + "_meter.rpt.pdf");
  const std::string picture = PictureFolder() + "/" + std::string(language().id) + "-page";
  RunCommand({"pdftoppm", "-png", "-singlefile", "-r", "58", image, picture}, work().Variables(),
             desktop().NewFile("page"));
  const auto pages = ReadPrintedPages(image);
  EXPECT_EQ(pages.at(0).header, Word(157));
  std::string footer;
  for (const auto& word : pages.at(0).footer) footer += word.text + " ";
  EXPECT_THAT(footer, HasSubstr(Word(1460).substr(0, Word(1460).find(' ')) + " 1/"));
  desktop().Key("Escape");
  desktop().WaitUntilGone(viewer);
}

void LanguageTest::PrintList() {
  Press(117);
  const auto pages = ReadPrintedPages(WaitForImage("Logbook_List.pdf"));
  EXPECT_EQ(pages.at(0).header, Word(164));
  EXPECT_THAT(pages.at(0).body.at(0), StartsWith(Word(121)));
}

// The program has loaded the toolkit's catalogue: its dialog labels the file name in the language.
void LanguageTest::SeeWordsOfTheToolkit() {
  QTranslator words;
  const QString catalogue = QString::fromUtf8(language().toolkit);
  std::string label = "File &name:";
  if (!catalogue.isEmpty()) {
    if (!words.load(catalogue, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) return;
    label = words.translate("QFileDialog", label.c_str()).toStdString();
    ASSERT_NE(label, "");
  }
  const std::string unmarked = std::regex_replace(label, std::regex("\\(&.\\)"), "");
  std::erase(label, '&');
  WaitFor("\"" + label + "\" in the save dialog", [&] {
    for (const Readable& thing : reader().Read())
      if (thing.name == label || thing.name == unmarked) return true;
    return false;
  });
}

void LanguageTest::Archive(const std::string& log) {
  ClickRow(log);
  Press(132);
  const WindowId dialog = desktop().WaitForWindow(Word(1193));
  Picture(dialog, "save.png");
  SeeWordsOfTheToolkit();
  desktop().Key("Return");
  desktop().WaitUntilGone(dialog);
  WaitFor("the zip file", [&] {
    for (const auto& [file, bytes] : work().FilesIn("C:\\ZALM_ARC\\"))
      if (file.ends_with(".zip") && bytes.find(log) != std::string::npos) return true;
    return false;
  });
}

void LanguageTest::Help() {
  Press(119);
  std::ifstream index(std::string(MANUAL_DIR "/") + std::string(language().manual) +
                      "/logbook.hhbook");
  std::string title = "#";
  while (title.starts_with('#')) ASSERT_TRUE(std::getline(index, title));
  const WindowId help = desktop().WaitForWindow(title);
  WaitFor("the notice above the page", [&] {
    for (const Readable& thing : reader().Read())
      if (thing.role == "label" && thing.name.ends_with(Word(1426))) return true;
    return false;
  });
  Picture(help, "help.png");
  desktop().Key("Escape");
  desktop().WaitUntilGone(help);
}

TEST_P(LanguageTest, TheWholeRoadGoesFromStartToExit) {
  ChildProcess& host = work().StartHost({"--start-logbook", Application() + "/logbook"});
  const WindowId main = desktop().WaitForWindow(Word(112));
  Record();
  Picture(main, "main.png");
  const std::string log = work().Logs().front();
  View(log);
  PrintList();
  Archive(log);
  Help();
  Press(118);
  EXPECT_EQ(host.WaitForEnd(), 0) << host.Output();
}

INSTANTIATE_TEST_SUITE_P(All, LanguageTest, testing::Range(std::size_t{0}, LanguageCount()),
                         [](const auto& test) { return std::string(LanguageAt(test.param).id); });

}  // namespace
}  // namespace logbook::e2e
