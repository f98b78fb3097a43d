// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The programs as they are installed, below a folder of the test's own.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "Pages.h"
#include "Workplace.h"

namespace fs = std::filesystem;

namespace logbook::e2e {
namespace {

class InstallTest : public ReadableProgram {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (IsSkipped()) return;
    const auto installed = RunCommand({CMAKE_PROGRAM, "--install", BUILD_FOLDER, "--prefix", Top()},
                                      desktop().Variables(), desktop().NewFile("install"));
    ASSERT_EQ(installed.status, 0) << installed.output;
  }

  std::string Top() { return desktop().Folder() + "/usr"; }
  CommandResult Run(const std::string& program, const std::string& argument) {
    return RunCommand({Top() + "/bin/" + program, argument}, work().Variables(),
                      desktop().NewFile(program));
  }
  bool OutboxIsEmpty() { return Run("ecm-agent", "--status").status == 0; }
};

TEST_F(InstallTest, EveryFileIsAtItsPlaceAndEveryLinkLeadsToOne) {
  for (const char* name : {"bin/logbook",
                           "bin/logbookctl",
                           "bin/quorex-host",
                           "bin/ecm-agent",
                           "etc/quorex-logbook/arecm.cfg",
                           "lib/quorex-logbook/arecm.cfg",
                           "etc/quorex-logbook/language.cfg",
                           "lib/quorex-logbook/language.cfg",
                           "lib/quorex-logbook/manual/logbook.hhbook",
                           "share/quorex-logbook/manual/logbook.hhbook",
                           "share/applications/com.norvane.Quorex.Demonstration.desktop",
                           "share/applications/com.norvane.Quorex.Logbook.desktop",
                           "share/metainfo/com.norvane.Quorex.Logbook.metainfo.xml",
                           "share/icons/hicolor/scalable/apps/com.norvane.Quorex.Logbook.svg",
                           "share/icons/hicolor/48x48/apps/com.norvane.Quorex.Logbook.png",
                           "share/man/man1/logbook.1.gz",
                           "share/man/man1/logbookctl.1.gz",
                           "share/man/man1/quorex-host.1.gz",
                           "share/man/man1/ecm-agent.1.gz",
                           "share/doc/maintenance-logbook/CHANGELOG.md",
                           "share/doc/maintenance-logbook/README.md",
                           "share/doc/maintenance-logbook/SECURITY.md",
                           "share/doc/maintenance-logbook/content-server.md"}) {
    EXPECT_TRUE(fs::is_regular_file(Top() + "/" + name)) << name;
  }
  for (const auto& entry : fs::recursive_directory_iterator(Top())) {
    EXPECT_TRUE(fs::exists(entry.path())) << entry.path();
    if (entry.is_symlink()) {
      EXPECT_TRUE(fs::canonical(entry.path()).string().starts_with(Top())) << entry.path();
    }
  }
}

TEST_F(InstallTest, EveryLinkOfAnInstalledPaperLeadsToAFile) {
  const fs::path papers = Top() + "/share/doc/maintenance-logbook";
  int links = 0;
  for (const auto& entry : fs::directory_iterator(papers)) {
    if (entry.path().extension() != ".md") continue;
    std::ifstream file(entry.path());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::regex link(R"(\]\(([^)#:\s]+)(#[^)]*)?\))");
    for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found) {
      EXPECT_TRUE(fs::exists(papers / (*found)[1].str())) << entry.path() << ": " << (*found)[1];
      ++links;
    }
  }
  EXPECT_GT(links, 30);
}

TEST_F(InstallTest, EveryProgramTellsItsVersion) {
  for (const std::string program : {"logbook", "logbookctl", "quorex-host", "ecm-agent"}) {
    const auto told = Run(program, "--version");
    EXPECT_EQ(told.status, 0) << told.output;
    EXPECT_EQ(told.output, program + " " LOGBOOK_VERSION "\n");
  }
}

TEST_F(InstallTest, DemonstrationNeedsNothingButWhatIsInstalled) {
  Environment variables = desktop().Variables();
  variables["LOGBOOK_DEMO"] = desktop().Folder() + "/demo";
  const auto shown = RunCommand({Top() + "/bin/quorex-host", "demo", "--autorec"}, variables,
                                desktop().NewFile("demo"));
  EXPECT_EQ(shown.status, 0) << shown.output;
  EXPECT_NE(shown.output.find("Automatically logged on Tune Report generation."), std::string::npos)
      << shown.output;
  EXPECT_TRUE(fs::exists(desktop().Folder() + "/demo/drives/c/QUOREX/help/logbook.hhbook"));
}

TEST_F(InstallTest, ARecordArrivesWhereTheConfigurationBelowEtcSaysAndHelpFindsTheManual) {
  const std::string server = desktop().Folder() + "/server";
  fs::create_directory(server);
  EXPECT_EQ(Run("ecm-agent", "--status").output.find("Content server: none\n"), 0u);
  std::ofstream(Top() + "/etc/quorex-logbook/arecm.cfg")
      << "[Content Server]\nUrl=file://" << server << "\n";
  ChildProcess host({Top() + "/bin/quorex-host", "run", "--id", kHostId, "--start-logbook",
                     Top() + "/bin/logbook"},
                    work().Variables(), desktop().NewFile("host"));
  MainPage(desktop()).Press(MainPage::Button::kHelp);
  const WindowId help = desktop().WaitForWindow("Maintenance LogBook Manual");
  desktop().Key("alt+F4");
  desktop().WaitUntilGone(help);

  MainPage main(desktop());
  const std::string log = PressRecord(work(), main);
  EditorPage editor(desktop(), kLogRoot + log + "\\");
  editor.PressOK();
  desktop().WaitUntilGone(editor.window());
  WaitForButton("Record Log");
  WaitFor("the outbox to be empty", [&] { return OutboxIsEmpty(); });
  const auto is_package = [&](const auto& entry) {
    return entry.path().filename() == log + ".qkvzip";
  };
  EXPECT_EQ(std::count_if(fs::recursive_directory_iterator(server),
                          fs::recursive_directory_iterator(), is_package),
            1);
  main.Press(MainPage::Button::kExit);
  EXPECT_EQ(host.WaitForEnd(), 0) << host.Output();
}

}  // namespace
}  // namespace logbook::e2e
