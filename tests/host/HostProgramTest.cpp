// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The real program on a bus of its own. The other side of requests is gdbus; the other side of the
// cell is a peer that owns the logbook's name.

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/HostLinkNames.h"
#include "base/Profile.h"
#include "host/HostBus.h"
#include "host/Workstation.h"
#include "support/TestMachine.h"

namespace logbook::host {
namespace {

using test::LogbookPeer;
using test::PrivateBus;
using test::ProgramResult;
using test::RunningHost;
using test::Until;

const std::string kFolder = "C:\\QUOREX\\inst1\\maintain\\26111500\\";

QString Q(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QStringList Words(const std::vector<std::string>& words) {
  QStringList list;
  for (const std::string& word : words) list << QString::fromStdString(word);
  return list;
}

// A prepared workstation, with a log folder that a logbook has just made.
class HostProgram : public ::testing::Test {
 protected:
  HostProgram() {
    MakeWorkstation(home_.home(), {std::nullopt, {ParseBuild("trz-cs+new_rf"), 3}});
    NameNewLog(0);
  }

  // Makes the folder of the day's log of this number, as a logbook does, and names it to the host.
  std::string NameNewLog(int number) {
    std::string folder = kFolder;
    folder.replace(folder.size() - 2, 1, std::to_string(number));
    home_.Put(folder + "logfile.ini", "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n");
    WritePrivateProfileString(home_, "LogBook", "LogFileName", folder,
                              "C:\\QUOREX\\qrxexe\\logbook.ini");
    return folder;
  }

  QStringList NamesIn(const std::string& folder) {
    return QDir(QString::fromStdString(home_.Native(folder))).entryList(QDir::Files);
  }

  RunningHost& Start(const std::vector<std::string>& arguments = {}) {
    std::vector<std::string> all = {"--id", "HOST"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    host_ = std::make_unique<RunningHost>(home_.home(), bus_.address(), Words(all));
    return *host_;
  }

  LogbookPeer& Logbook() {
    peer_ = std::make_unique<LogbookPeer>(bus_.address());
    return *peer_;
  }

  ProgramResult Gdbus(const std::string& name, const std::string& item) {
    return test::RunProgram(QStringLiteral("gdbus"),
                            Words({"call", "--session", "--dest", name, "--object-path", "/CPWAIT",
                                   "--method", "com.norvane.Quorex.Host.Request", item}),
                            home_.home(), bus_.address());
  }

  // Asks over the peer's own connection: when the reply is there the host has seen all that the
  // peer did before.
  QDBusMessage Ask(LogbookPeer& peer, const std::string& item, int milliseconds = 60000) {
    QDBusMessage call = QDBusMessage::createMethodCall(Q(HostBusName("HOST")), Q(kHostObjectPath),
                                                       Q(kHostInterface), Q(kHostRequestMethod));
    call << QString::fromStdString(item);
    return peer.bus().call(call, QDBus::BlockWithGui, milliseconds);
  }

  // The cell reads 0 again, after having been set to something.
  bool Cleared(LogbookPeer& peer) {
    return Until([&] { return peer.Text() == QStringLiteral("0"); });
  }

  bool HasFile(const std::string& name) { return home_.Has(kFolder + name); }

  int argc_ = 1;
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};
  test::TestMachine home_;
  PrivateBus bus_;
  std::unique_ptr<RunningHost> host_;
  std::unique_ptr<LogbookPeer> peer_;
};

TEST_F(HostProgram, AnswersTheFourItems) {
  Start();
  const std::string name = "com.norvane.Quorex.Host.HOST";
  EXPECT_EQ(Gdbus(name, "_exepath$").out, "('C:\\\\QUOREX\\\\qrxexe\\\\',)\n");
  EXPECT_EQ(Gdbus(name, "_instpath$").out, "('C:\\\\QUOREX\\\\inst1\\\\',)\n");
  EXPECT_EQ(Gdbus(name, "_helppath$").out, "('C:\\\\QUOREX\\\\help\\\\',)\n");
  EXPECT_EQ(Gdbus(name, "_helpfile$").out, "('quorex.chm',)\n");
}

TEST_F(HostProgram, UnknownItemIsAnError) {
  Start();
  const ProgramResult result = Gdbus("com.norvane.Quorex.Host.HOST", "_nothing$");
  EXPECT_NE(result.status, 0);
  EXPECT_NE(result.err.find("com.norvane.Quorex.Host.Error.UnknownItem"), std::string::npos)
      << result.err;
}

TEST_F(HostProgram, EscapesItsIdInTheName) {
  RunningHost host(home_.home(), bus_.address(), Words({"--id", "7 Ger\xC3\xA4t-2"}));
  const ProgramResult result = Gdbus("com.norvane.Quorex.Host._37_20Ger_c3_a4t_2d2", "_helpfile$");
  EXPECT_EQ(result.out, "('quorex.chm',)\n") << result.err;
}

TEST_F(HostProgram, SecondHostOfTheSameIdDoesNotRun) {
  Start();
  const ProgramResult second =
      test::RunProgram(QStringLiteral(QUOREX_HOST_PATH), Words({"run", "--id", "HOST"}),
                       home_.home(), bus_.address());
  EXPECT_EQ(second.status, 1);
  EXPECT_NE(second.err.find("com.norvane.Quorex.Host.HOST"), std::string::npos) << second.err;
}

TEST_F(HostProgram, WithoutABusItDoesNotRun) {
  const ProgramResult result =
      test::RunProgram(QStringLiteral(QUOREX_HOST_PATH), Words({"run", "--id", "HOST"}),
                       home_.home(), QStringLiteral("unix:path=/nonexistent"));
  EXPECT_EQ(result.status, 1);
}

TEST_F(HostProgram, CapturesTheStateAndClearsTheCell) {
  Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("1"));
  ASSERT_TRUE(Cleared(logbook));
  for (const SnapshotFile& file : MakeSnapshot({})) EXPECT_TRUE(HasFile(file.name)) << file.name;
  EXPECT_EQ(home_.Get(kFolder + "logfile.ini")
                .rfind("[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS=1\r\nLENS2=1\r\n"
                       "LENS3=0\r\nSecurity=0\r\nSTYLEB=0\r\nNEW_RF=1\r\n",
                       0),
            0u);
  EXPECT_EQ(logbook.history(), (std::vector<std::string>{"1", "0"}));
}

TEST_F(HostProgram, CaptureGoesOnWithTheInstrumentsAge) {
  home_.MakeFolders("C:\\QUOREX\\inst1\\maintain\\26111400");
  Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("1"));
  ASSERT_TRUE(Cleared(logbook));
  std::string aall;
  for (const SnapshotFile& file :
       MakeSnapshot({{ParseBuild("trz-cs+new_rf"), 3}, 1, *ParseTime("2026-11-15"), 0})) {
    if (file.name == "aall.txt") aall = file.text;
  }
  EXPECT_EQ(home_.Get(kFolder + "aall.txt"), aall);
}

TEST_F(HostProgram, DoesOneJobAfterAnother) {
  Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  for (int i = 1; i < 6; ++i) {
    const std::string folder = NameNewLog(i);
    logbook.SetText(QStringLiteral("1"));
    ASSERT_TRUE(Cleared(logbook)) << i;
    EXPECT_TRUE(home_.Has(folder + "auser.txt")) << i;
  }
}

// What a logbook cannot write to logbook.ini, another log of an earlier day stands for.
TEST_F(HostProgram, ALogThatHoldsASnapshotStaysAsItIsAndTheCellIsClearedAllTheSame) {
  const std::vector<std::pair<std::string, std::string>> traces = {
      {"auser.txt", "1,2,3\r\n"},
      {"CEERRLOG.TXT", ""},
      {"logfile.ini", "[LogFile]\r\nDate=x\r\n[option]\r\nLens=0\r\n"}};
  RunningHost& host = Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  for (std::size_t i = 0; i < traces.size(); ++i) {
    const auto& [file, bytes] = traces[i];
    const std::string folder = NameNewLog(static_cast<int>(i));
    home_.Put(folder + file, bytes);
    const auto names = NamesIn(folder);
    logbook.SetText(QStringLiteral("1"));
    ASSERT_TRUE(Cleared(logbook)) << file;
    const std::string told =
        "failed: the folder \"" + folder + "\" holds a snapshot already, nothing is written";
    EXPECT_TRUE(Until([&] { return host.Output().find(told) != std::string::npos; })) << file;
    EXPECT_EQ(NamesIn(folder), names) << file;
    EXPECT_EQ(home_.Get(folder + file), bytes);
  }
}

TEST_F(HostProgram, SeesAJobThatComesWhileItClearsTheCell) {
  Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  int cleared = 0;
  QObject::connect(&logbook, &LogbookPeer::TextChanged, &application_, [&] {
    if (logbook.Text() == QStringLiteral("0") && ++cleared == 1) {
      logbook.SetText(QStringLiteral("9"));
    }
  });
  logbook.SetText(QStringLiteral("1"));
  EXPECT_TRUE(Until([&] { return cleared == 2; }));
  EXPECT_EQ(logbook.history(), (std::vector<std::string>{"1", "0", "9", "0"}));
}

TEST_F(HostProgram, SeesAJobThatWasThereBeforeIt) {
  LogbookPeer& logbook = Logbook();
  logbook.SetText(QStringLiteral("1"));
  logbook.Appear();
  // The bus is served by this thread: the host's questions are answered while it is awaited.
  Start();
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_TRUE(HasFile("auser.txt"));
}

TEST_F(HostProgram, PrintsTheTuneReportAndClearsTheCell) {
  home_.Put(kFolder + "tune.bin", "Oxide\t\r\n0.92\t\r\n\r\n");
  Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("2"));
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_NE(home_.Get("C:\\QUOREX\\tuneprint\\26111500.txt").find("0.92"), std::string::npos);
  EXPECT_FALSE(HasFile("auser.txt"));
}

TEST_F(HostProgram, ClearsTheCellWhenTheLogbookEnds) {
  Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("9"));
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_FALSE(HasFile("auser.txt"));
}

TEST_F(HostProgram, NumbersThatAreNoJobAreLeftAlone) {
  Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  for (const std::string& text :
       {std::string("5"), std::string("3"), std::string("x"), std::string("1.5"),
        std::string("1e999"), std::string("9e1"), std::string(400, '1'), std::string()}) {
    logbook.SetText(QString::fromStdString(text));
    for (int i = 0; i < 3; ++i) Ask(logbook, "_helpfile$");
    EXPECT_EQ(logbook.Text().toStdString(), text);
  }
}

TEST_F(HostProgram, AJobWithoutAFolderClearsTheCellAllTheSame) {
  WritePrivateProfileString(home_, "LogBook", "LogFileName", "C:\\QUOREX\\nowhere\\",
                            "C:\\QUOREX\\qrxexe\\logbook.ini");
  RunningHost& host = Start();
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  for (const QString& job : {QStringLiteral("1"), QStringLiteral("2")}) {
    logbook.SetText(job);
    ASSERT_TRUE(Cleared(logbook));
  }
  EXPECT_TRUE(Until([&] { return host.Output().find("failed: ") != std::string::npos; }));
  EXPECT_FALSE(home_.Has("C:\\QUOREX\\nowhere"));
}

TEST_F(HostProgram, SlowHostTakesItsTime) {
  Start({"--slow", "250"});
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  QElapsedTimer timer;
  timer.start();
  logbook.SetText(QStringLiteral("1"));
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_GE(timer.elapsed(), 250);
  EXPECT_TRUE(HasFile("auser.txt"));
}

TEST_F(HostProgram, BusyHostHoldsTheCellAtTheStartAndAfterAJob) {
  Start({"--busy", "150"});
  LogbookPeer& logbook = Logbook();
  QElapsedTimer timer;
  timer.start();
  logbook.Appear();
  ASSERT_TRUE(Until([&] { return logbook.history().size() == 2; }));
  EXPECT_GE(timer.elapsed(), 150);
  logbook.SetText(QStringLiteral("1"));
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_EQ(logbook.history(), (std::vector<std::string>{"5", "0", "1", "5", "0"}));
}

// A logbook in an automatic run looks at the cell before the busy host's number reaches it.
TEST_F(HostProgram, BusyHostDoesAJobThatCrossedItsNumber) {
  Start({"--busy", "150"});
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("1"));
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_TRUE(HasFile("auser.txt"));
  EXPECT_EQ(logbook.history(), (std::vector<std::string>{"1", "5", "5", "0"}));
}

TEST_F(HostProgram, DeadHostAnswersRequestsAndNeverTouchesTheCell) {
  Start({"--dead"});
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  for (const QString& job : {QStringLiteral("1"), QStringLiteral("9")}) {
    logbook.SetText(job);
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(Ask(logbook, "_helpfile$").type(), QDBusMessage::ReplyMessage);
    }
    EXPECT_EQ(logbook.Text(), job);
  }
  EXPECT_FALSE(HasFile("auser.txt"));
}

TEST_F(HostProgram, DeafHostNeverReplies) {
  Start({"--deaf"});
  const QDBusMessage reply = Ask(Logbook(), "_exepath$", 300);
  EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
  EXPECT_EQ(QDBusError(reply).type(), QDBusError::NoReply);
}

TEST_F(HostProgram, BrokenHostWritesDamagedFilesAndClearsTheCell) {
  Start({"--broken", "empty:aall.txt", "--broken", "missing:tune.rpt"});
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("1"));
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_EQ(home_.Get(kFolder + "aall.txt"), "");
  EXPECT_FALSE(HasFile("tune.rpt"));
  EXPECT_GT(home_.Get(kFolder + "auser.txt").size(), 100u);
}

TEST_F(HostProgram, NamedBuildCountsMoreThanTheWorkstations) {
  Start({"--build", "plain+styleb"});
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("1"));
  ASSERT_TRUE(Cleared(logbook));
  EXPECT_NE(home_.Get(kFolder + "logfile.ini").find("LENS=0\r\nLENS2=0\r\nLENS3=0\r\n"),
            std::string::npos);
  EXPECT_NE(home_.Get(kFolder + "logfile.ini").find("STYLEB=1\r\n"), std::string::npos);
}

TEST_F(HostProgram, ServesLogbookAfterLogbook) {
  Start();
  LogbookPeer& logbook = Logbook();
  for (int i = 1; i < 4; ++i) {
    const std::string folder = NameNewLog(i);
    logbook.Appear();
    logbook.SetText(QStringLiteral("1"));
    ASSERT_TRUE(Cleared(logbook)) << i;
    EXPECT_TRUE(home_.Has(folder + "auser.txt")) << i;
    logbook.Vanish();
  }
}

TEST_F(HostProgram, LastsForALogbooksLifetimeIfToldTo) {
  RunningHost& host = Start({"--for-logbook-lifetime"});
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("9"));
  ASSERT_TRUE(Cleared(logbook));
  logbook.Vanish();
  EXPECT_EQ(host.Status(), 0);
}

TEST_F(HostProgram, TermSignalEndsItWithStatusZeroAndFreesTheName) {
  RunningHost& host = Start();
  host.Terminate();
  EXPECT_EQ(host.Status(), 0);
  Start();
  EXPECT_EQ(Gdbus("com.norvane.Quorex.Host.HOST", "_helpfile$").status, 0);
}

TEST_F(HostProgram, SlowHostAnswersRequestsAndEndsInTheMiddleOfAJob) {
  RunningHost& host = Start({"--slow", "60000"});
  LogbookPeer& logbook = Logbook();
  logbook.Appear();
  logbook.SetText(QStringLiteral("1"));
  EXPECT_EQ(Ask(logbook, "_helpfile$").type(), QDBusMessage::ReplyMessage);
  EXPECT_EQ(logbook.Text(), QStringLiteral("1"));
  host.Terminate();
  EXPECT_EQ(host.Status(), 0);
  EXPECT_FALSE(HasFile("auser.txt"));
}

TEST_F(HostProgram, EndsWithTheBus) {
  RunningHost& host = Start();
  bus_.Stop();
  EXPECT_EQ(host.Status(), 1);
}

// A program in the logbook's place: a shell script.
class HostAndLogbook : public HostProgram {
 protected:
  std::string Script(const std::string& text) {
    const std::string path = home_.home() + "/logbook.sh";
    home_.Put(path, "#!/bin/sh\ncd '" + home_.home() + "'\n" + text);
    QFile::setPermissions(QString::fromStdString(path),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
  }
  std::string Read(const std::string& name) { return home_.Get(home_.home() + "/" + name); }
};

TEST_F(HostAndLogbook, StartsTheLogbookWithIdAndWordsAndEndsWithItsStatus) {
  const std::string script = Script("printf '%s|' \"$@\" > arguments; exit 7\n");
  EXPECT_EQ(Start({"--start-logbook", script}).Status(), 7);
  EXPECT_EQ(Read("arguments"), "HOST|");
  EXPECT_EQ(Start({"--start-logbook", script, "--autorec", "--ce"}).Status(), 7);
  EXPECT_EQ(Read("arguments"), "HOST|CE|AutoRec|");
}

TEST_F(HostAndLogbook, TheHomeOfTheHostIsTheLogbooksToo) {
  const std::string script = Script("printf '%s' \"$LOGBOOK_HOME\" > \"$LOGBOOK_HOME/home\"\n");
  const test::TestMachine other;
  MakeWorkstation(other.home(), {std::nullopt, {ParseBuild("plain"), 1}});
  const std::string relative =
      QDir().relativeFilePath(QString::fromStdString(other.home())).toStdString();
  for (const std::string& typed : {other.home(), relative}) {
    EXPECT_EQ(Start({"--home", typed, "--start-logbook", script}).Status(), 0);
    EXPECT_EQ(other.Get(other.home() + "/home"), other.home()) << typed;
    QFile::remove(QString::fromStdString(other.home() + "/home"));
  }
  EXPECT_EQ(Start({"--start-logbook", script}).Status(), 0);
  EXPECT_EQ(Read("home"), home_.home()) << "without the option, that of the environment";
}

TEST_F(HostAndLogbook, TheNameIsOwnedBeforeTheLogbookStarts) {
  const std::string script = Script(
      "gdbus call --session --dest com.norvane.Quorex.Host.HOST --object-path /CPWAIT"
      " --method com.norvane.Quorex.Host.Request '_helpfile$' > reply\n");
  EXPECT_EQ(Start({"--start-logbook", script}).Status(), 0);
  EXPECT_EQ(Read("reply"), "('quorex.chm',)\n");
}

TEST_F(HostAndLogbook, ALogbookThatASignalEndsGivesTheSignalsStatus) {
  EXPECT_EQ(Start({"--start-logbook", Script("kill -KILL $$\n")}).Status(), 128 + 9);
}

TEST_F(HostAndLogbook, ALogbookThatCannotBeStartedGivesStatus127) {
  EXPECT_EQ(Start({"--start-logbook", home_.home() + "/nothing"}).Status(), 127);
}

// The mask of the signals that do not reach a process, as hexadecimal digits.
std::string SignalsHeldBackBy(const std::string& process) {
  std::ifstream status("/proc/" + process + "/status");
  for (std::string word; status >> word;) {
    if (word == "SigBlk:" && status >> word) return word;
  }
  return {};
}

// Not a script: a shell would let signals through by itself.
TEST_F(HostAndLogbook, TermSignalEndsTheLogbookToo) {
  RunningHost host(home_.home(), bus_.address(),
                   Words({"--id", "600", "--start-logbook", "/bin/sleep"}));
  const std::string child = host.Child("sleep");
  ASSERT_FALSE(child.empty());
  EXPECT_EQ(SignalsHeldBackBy(child), "0000000000000000") << "it would have to be killed";
  host.Terminate();
  EXPECT_EQ(host.Status(), 0);
  EXPECT_FALSE(QFileInfo::exists(QString::fromStdString("/proc/" + child)));
}

}  // namespace
}  // namespace logbook::host
