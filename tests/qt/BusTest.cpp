// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The bus pieces against a real daemon: the link to the host, the handshake cell, the process.

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "PrivateBus.h"
#include "WaitLimit.h"
#include "base/HostLinkNames.h"
#include "base/RunTimeError.h"
#include "qt/DBusCell.h"
#include "qt/DBusHostLink.h"
#include "qt/DBusProcess.h"
#include "qt/QtEventDelivery.h"

namespace logbook {
namespace {

using test::kWaitLimit;
using test::PrivateBus;

class Bus : public testing::Test {
 protected:
  void SetUp() override {
    if (!bus.Runs()) GTEST_SKIP() << "dbus-daemon is not installed or does not start";
  }

  PrivateBus bus;
};

// A host control panel in a thread of its own, so that it can answer while the logbook waits.
class FakeHost : public QDBusVirtualObject {
 public:
  using Answer = std::function<QDBusMessage(const QDBusMessage&)>;

  FakeHost(QDBusConnection connection, const char* id, Answer answer)
      : connection_(std::move(connection)), answer_(std::move(answer)) {
    moveToThread(&thread_);
    thread_.start();
    connection_.registerVirtualObject(QStringLiteral("/CPWAIT"), this);
    registered_ = connection_.registerService(QString::fromStdString(HostBusName(id)));
  }
  ~FakeHost() override {
    connection_.unregisterObject(QStringLiteral("/CPWAIT"));
    thread_.quit();
    thread_.wait();
  }

  bool Registered() const { return registered_; }
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QDBusMessage reply = answer_(message);
    if (reply.type() != QDBusMessage::InvalidMessage) connection.send(reply);
    return true;
  }

 private:
  QDBusConnection connection_;
  Answer answer_;
  QThread thread_;
  bool registered_ = false;
};

QDBusMessage AnswerWithItem(const QDBusMessage& call) {
  if (call.interface() != QLatin1String("com.norvane.Quorex.Host") ||
      call.member() != QLatin1String("Request") || call.signature() != QLatin1String("s")) {
    return call.createErrorReply(QStringLiteral("com.norvane.Wrong"), QStringLiteral("wrong call"));
  }
  const QString item = call.arguments().constFirst().toString();
  if (item == QLatin1String("_exepath$")) return call.createReply(QStringLiteral("C:\\Qu\u00F6\\"));
  return call.createErrorReply(QStringLiteral("com.norvane.Quorex.UnknownItem"),
                               QStringLiteral("no item ") + item);
}

using HostLink = Bus;

TEST_F(HostLink, ARequestBringsTheItemsText) {
  FakeHost host(bus.Connect(), "HOST", AnswerWithItem);
  ASSERT_TRUE(host.Registered());
  DBusHostLink link(bus.Connect());
  EXPECT_EQ(link.Request("HOST", "CPWAIT", "_exepath$"), "C:\\Qu\xC3\xB6\\");
  link.Close();
  EXPECT_EQ(link.Request("HOST", "CPWAIT", "_exepath$"), "C:\\Qu\xC3\xB6\\");
}

TEST_F(HostLink, AnUnknownItemFailsWithTheHostsWords) {
  FakeHost host(bus.Connect(), "HOST", AnswerWithItem);
  DBusHostLink link(bus.Connect());
  try {
    link.Request("HOST", "CPWAIT", "_nothing$");
    FAIL() << "no error";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Description(), "no item _nothing$");
  }
}

TEST_F(HostLink, AHostThatDoesNotRunFails) {
  FakeHost host(bus.Connect(), "HOST", AnswerWithItem);
  DBusHostLink link(bus.Connect());
  EXPECT_THROW(link.Request("OTHER", "CPWAIT", "_exepath$"), RunTimeError);
  EXPECT_THROW(link.Request("HOST", "OTHER", "_exepath$"), RunTimeError);
}

TEST_F(HostLink, AReplyThatIsNoTextFails) {
  FakeHost host(bus.Connect(), "HOST",
                [](const QDBusMessage& call) { return call.createReply(7); });
  DBusHostLink link(bus.Connect());
  EXPECT_THROW(link.Request("HOST", "CPWAIT", "_exepath$"), RunTimeError);
}

TEST_F(HostLink, AHostThatDoesNotAnswerInTimeFails) {
  FakeHost host(bus.Connect(), "HOST", [](const QDBusMessage&) { return QDBusMessage(); });
  DBusHostLink link(bus.Connect(), 200);
  QElapsedTimer elapsed;
  elapsed.start();
  EXPECT_THROW(link.Request("HOST", "CPWAIT", "_exepath$"), RunTimeError);
  EXPECT_GE(elapsed.elapsed(), 150);  // timers of the toolkit may be a little early
}

TEST_F(HostLink, AHostIsThereWhileItsNameHasAnOwnerEvenIfItNeverAnswers) {
  DBusHostLink link(bus.Connect());
  EXPECT_FALSE(link.IsThere("HOST"));
  {
    FakeHost host(bus.Connect(), "HOST", [](const QDBusMessage&) { return QDBusMessage(); });
    EXPECT_TRUE(link.IsThere("HOST"));
    EXPECT_FALSE(link.IsThere("OTHER"));
  }
}

TEST_F(HostLink, WithoutABusEveryRequestFailsAndNoHostIsThere) {
  DBusHostLink link(QDBusConnection(QStringLiteral("never connected")));
  EXPECT_THROW(link.Request("HOST", "CPWAIT", "_exepath$"), RunTimeError);
  EXPECT_FALSE(link.IsThere("HOST"));
}

// Runs a program to its end while this process delivers events; returns what it printed.
std::string OutputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, arguments);
  if (!process.waitForStarted()) return "cannot start";
  EXPECT_TRUE(QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, kWaitLimit));
  return process.readAll().toStdString();
}

class Cell : public Bus {
 protected:
  void SetUp() override {
    Bus::SetUp();
    if (IsSkipped()) return;
    if (!OutputOf(QStringLiteral("gdbus"), {QStringLiteral("help")}).starts_with("Usage"))
      GTEST_SKIP() << "gdbus is not installed";
  }

  // Calls a method of the cell's object with the bus's own command-line client.
  std::string Call(const QString& method, const QStringList& arguments = {}) {
    return OutputOf(QStringLiteral("gdbus"), Common(QStringLiteral("call")) +
                                                 QStringList{QStringLiteral("--method"), method} +
                                                 arguments);
  }
  std::string Get() {
    return Call(QStringLiteral("org.freedesktop.DBus.Properties.Get"),
                {QStringLiteral("com.norvane.Quorex.Cell"), QStringLiteral("Text")});
  }
  std::string Set(const QString& text) { return SetValue(QStringLiteral("'%1'").arg(text)); }
  // The value as gdbus writes it, its type included.
  std::string SetValue(const QString& value) {
    return Call(QStringLiteral("org.freedesktop.DBus.Properties.Set"),
                {QStringLiteral("com.norvane.Quorex.Cell"), QStringLiteral("Text"),
                 QStringLiteral("<%1>").arg(value)});
  }
  QStringList Common(const QString& command) {
    return {command,
            QStringLiteral("--address"),
            bus.Address(),
            QStringLiteral("--dest"),
            connection.baseService(),
            QStringLiteral("--object-path"),
            QStringLiteral("/DDELabel")};
  }

  QDBusConnection connection = bus.Connect();
  DBusProcess process{connection};
  DBusCell cell{connection, process};
};

TEST_F(Cell, IsEmptyAtStart) {
  EXPECT_EQ(cell.Text(), "");
  EXPECT_EQ(Get(), "(<''>,)\n");
}

TEST_F(Cell, APeerReadsWhatTheLogbookWrote) {
  cell.SetText("1");
  EXPECT_EQ(Get(), "(<'1'>,)\n");
}

TEST_F(Cell, TheLogbookReadsWhatAPeerWrote) {
  cell.SetText("1");
  EXPECT_EQ(Set(QStringLiteral("0")), "()\n");
  EXPECT_EQ(cell.Text(), "0");
}

TEST_F(Cell, TakesATextAndRefusesEveryOtherType) {
  cell.SetText("1");
  for (const char* value : {"0", "0.0", "true", "byte 0x30", "@as []", "['0']", "@ay []", "@s '0'",
                            "objectpath '/'", "signature 's'", "<'0'>", "{'0': '0'}", "('0',)"}) {
    const bool is_text = value == std::string("@s '0'");
    const std::string answer = SetValue(QString::fromLatin1(value));
    EXPECT_EQ(answer.find("InvalidArgs") == std::string::npos, is_text) << value << answer;
    EXPECT_EQ(cell.Text(), is_text ? "0" : "1") << value;
    cell.SetText("1");
  }
}

TEST_F(Cell, AnswersForItsOwnPropertyAlone) {
  cell.SetText("1");
  const QString get = QStringLiteral("org.freedesktop.DBus.Properties.Get");
  const QString own = QStringLiteral("com.norvane.Quorex.Cell"), text = QStringLiteral("Text");
  EXPECT_EQ(Call(QStringLiteral("org.freedesktop.DBus.Properties.GetAll"), {own}),
            "({'Text': <'1'>},)\n");
  EXPECT_EQ(Call(get, {QStringLiteral("''"), text}), "(<'1'>,)\n");
  EXPECT_NE(Call(get, {own, QStringLiteral("Other")}).find("Error"), std::string::npos);
  EXPECT_NE(Call(get, {QStringLiteral("com.norvane.Other"), text}).find("Error"),
            std::string::npos);
  EXPECT_NE(Call(QStringLiteral("com.norvane.Quorex.Cell.Clear")).find("Error"), std::string::npos);
  EXPECT_EQ(cell.Text(), "1");
}

TEST_F(Cell, IsReachableWhileItsProcessOwnsTheLogbooksName) {
  EXPECT_FALSE(cell.IsReachable()) << "nobody has asked for the name";
  EXPECT_FALSE(process.OtherInstanceRuns());
  EXPECT_TRUE(cell.IsReachable());

  QDBusConnection other = bus.Connect();
  DBusProcess second(other);
  const DBusCell second_cell(other, second);
  EXPECT_TRUE(second.OtherInstanceRuns());
  EXPECT_FALSE(second_cell.IsReachable()) << "the name is another's";

  process.Resign();
  EXPECT_FALSE(cell.IsReachable()) << "the name has been given back";
  EXPECT_FALSE(second.OtherInstanceRuns());
  EXPECT_TRUE(second_cell.IsReachable());
}

TEST_F(Cell, IsOutOfReachOnceTheBusHasGone) {
  cell.SetText("1");
  EXPECT_FALSE(process.OtherInstanceRuns());
  EXPECT_TRUE(cell.IsReachable());
  bus.Stop();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !cell.IsReachable(); }, kWaitLimit));
  EXPECT_EQ(cell.Text(), "1");
}

TEST_F(Cell, IsIntrospectable) {
  const std::string text = OutputOf(QStringLiteral("gdbus"), Common(QStringLiteral("introspect")));
  EXPECT_NE(text.find("interface com.norvane.Quorex.Cell"), std::string::npos) << text;
  EXPECT_NE(text.find("readwrite s Text = ''"), std::string::npos) << text;
}

// gdbus watching the cell's object; what it printed so far.
class Watch {
 public:
  // `peer` is the connection that the arguments name.
  Watch(QStringList arguments, const QDBusConnection& peer) {
    arguments.removeLast();
    arguments.removeLast();  // all objects of the peer
    process_.start(QStringLiteral("gdbus"), arguments);
    // It asks the bus for signals after its first line: it listens once it has heard one.
    const QDBusMessage probe = QDBusMessage::createSignal(
        QStringLiteral("/Probe"), QStringLiteral("com.norvane.Probe"), QStringLiteral("Probe"));
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
          peer.send(probe);
          return Has("com.norvane.Probe");
        },
        kWaitLimit));
  }
  ~Watch() {
    process_.kill();
    process_.waitForFinished();
  }
  bool WaitFor(const std::string& text) {
    return QTest::qWaitFor([&] { return Has(text); }, kWaitLimit);
  }
  int Changes() const {
    int changes = 0;
    for (std::size_t at = seen_.find("PropertiesChanged"); at != std::string::npos;
         at = seen_.find("PropertiesChanged", at + 1))
      ++changes;
    return changes;
  }
  const std::string& Seen() const { return seen_; }

 private:
  bool Has(const std::string& text) {
    seen_ += process_.readAll().toStdString();
    return seen_.find(text) != std::string::npos;
  }

  QProcess process_;
  std::string seen_;
};

TEST_F(Cell, EveryChangeIsAnnouncedWhoeverMadeIt) {
  Watch watch(Common(QStringLiteral("monitor")), connection);
  cell.SetText("1");
  EXPECT_TRUE(watch.WaitFor("('com.norvane.Quorex.Cell', {'Text': <'1'>}, @as [])"))
      << watch.Seen();
  Set(QStringLiteral("0"));
  EXPECT_TRUE(watch.WaitFor("('com.norvane.Quorex.Cell', {'Text': <'0'>}, @as [])"))
      << watch.Seen();
}

TEST_F(Cell, TheSameTextAgainIsNoChange) {
  Watch watch(Common(QStringLiteral("monitor")), connection);
  cell.SetText("1");
  cell.SetText("1");
  Set(QStringLiteral("1"));
  cell.SetText("9");
  EXPECT_TRUE(watch.WaitFor("<'9'>")) << watch.Seen();
  EXPECT_EQ(watch.Changes(), 2) << watch.Seen();
}

TEST_F(Cell, APeersChangeEndsTheSleepOfAWait) {
  const QDBusConnection peer = bus.Connect();
  QDBusMessage set = QDBusMessage::createMethodCall(
      connection.baseService(), QStringLiteral("/DDELabel"),
      QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
  set << QStringLiteral("com.norvane.Quorex.Cell") << QStringLiteral("Text")
      << QVariant::fromValue(QDBusVariant(QStringLiteral("0")));
  // A sleep that nothing ended would last a minute; the peer sends when the first one begins.
  constexpr std::chrono::minutes kMinute{1};
  QtEventDelivery events(kMinute);
  int sleeps = 0;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                   &cell, [&] {
                     if (++sleeps == 1) peer.send(set);
                   });
  cell.SetText("1");
  while (cell.Text() == "1") {
    ASSERT_LT(events.Deliver(), kMinute / QtEventDelivery::kPoll);
  }
  EXPECT_EQ(cell.Text(), "0");
  EXPECT_GE(sleeps, 1);
}

TEST_F(Cell, AFloodOfWritesStarvesNobodyAndEndsWithItsLastText) {
  const QDBusConnection peer = bus.Connect();
  const auto set = [&](const QVariant& value) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        connection.baseService(), QStringLiteral("/DDELabel"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
    call << QStringLiteral("com.norvane.Quorex.Cell") << QStringLiteral("Text")
         << QVariant::fromValue(QDBusVariant(value));
    call.setDelayedReply(true);
    peer.send(call);
  };
  int turns = 0;
  QTimer others;
  QObject::connect(&others, &QTimer::timeout, &others, [&] { ++turns; });
  others.start(0);
  constexpr int kWrites = 5000;
  for (int i = 0; i < kWrites; ++i) {
    set(QStringLiteral("%1").arg(i));
    set(i);
  }
  set(QStringLiteral("last"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return cell.Text() == "last"; }, 60000)) << cell.Text();
  EXPECT_GT(turns, 0) << "nothing else was done meanwhile";
  EXPECT_EQ(Get(), "(<'last'>,)\n");
}

TEST(CellWithoutABus, StillHoldsItsTextOutOfReach) {
  const QDBusConnection none(QStringLiteral("never connected"));
  DBusProcess process(none);
  DBusCell cell(none, process);
  EXPECT_FALSE(process.OtherInstanceRuns());
  cell.SetText("9");
  EXPECT_EQ(cell.Text(), "9");
  EXPECT_FALSE(cell.IsReachable());
  process.Resign();
}

using ProcessOnTheBus = Bus;

TEST_F(ProcessOnTheBus, TheFirstOneIsTheRunningLogbookAndTheSecondIsNot) {
  DBusProcess first(bus.Connect()), second(bus.Connect());
  EXPECT_FALSE(first.OtherInstanceRuns());
  EXPECT_TRUE(second.OtherInstanceRuns());
  EXPECT_FALSE(first.OtherInstanceRuns());
}

TEST_F(ProcessOnTheBus, AHeldNameCannotBeTakenByAPeerThatWantsToReplaceItsOwner) {
  DBusProcess first(bus.Connect());
  EXPECT_FALSE(first.OtherInstanceRuns());
  QDBusConnection peer = bus.Connect();
  const auto reply = peer.interface()->registerService(
      QString::fromUtf8(kLogbookBusName.data(), kLogbookBusName.size()),
      QDBusConnectionInterface::ReplaceExistingService, QDBusConnectionInterface::AllowReplacement);
  EXPECT_EQ(reply.value(), QDBusConnectionInterface::ServiceNotRegistered);
  EXPECT_TRUE(first.IsRunningLogbook());
}

TEST_F(ProcessOnTheBus, AStrangerWhoTookTheNameFirstIsTheOtherInstance) {
  QDBusConnection stranger = bus.Connect();
  ASSERT_TRUE(
      stranger.registerService(QString::fromUtf8(kLogbookBusName.data(), kLogbookBusName.size())));
  DBusProcess process(bus.Connect());
  EXPECT_TRUE(process.OtherInstanceRuns());
  EXPECT_FALSE(process.IsRunningLogbook());
}

TEST_F(ProcessOnTheBus, TheNameIsFreeAgainWhenItsOwnerHasGone) {
  {
    const QString name = QStringLiteral("short-lived");
    DBusProcess first(QDBusConnection::connectToBus(bus.Address(), name));
    EXPECT_FALSE(first.OtherInstanceRuns());
    QDBusConnection::disconnectFromBus(name);
  }
  DBusProcess second(bus.Connect());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !second.OtherInstanceRuns(); }, kWaitLimit));
}

TEST(ProcessWithoutABus, ThereIsNoOtherInstance) {
  EXPECT_FALSE(DBusProcess(QDBusConnection(QStringLiteral("never connected"))).OtherInstanceRuns());
}

// Receives the cell's signal on a peer's connection.
class Receiver : public QObject {
  Q_OBJECT
 public:
  std::vector<std::string> texts;

 public Q_SLOTS:
  void PropertiesChanged(const QString&, const QVariantMap& changed, const QStringList&) {
    texts.push_back(changed.value(QStringLiteral("Text")).toString().toStdString());
  }
};

TEST_F(ProcessOnTheBus, TheLastValueOfTheCellIsOutWhenTheProcessHasEnded) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  QDBusConnection peer = bus.Connect();
  Receiver receiver;
  ASSERT_TRUE(peer.connect({}, QStringLiteral("/DDELabel"),
                           QStringLiteral("org.freedesktop.DBus.Properties"),
                           QStringLiteral("PropertiesChanged"), &receiver,
                           SLOT(PropertiesChanged(QString, QVariantMap, QStringList))));
  EXPECT_EXIT(
      {
        const QDBusConnection own = bus.Connect();
        DBusProcess process(own);
        DBusCell cell(own, process);
        cell.SetText("9");
        process.End(3);
      },
      testing::ExitedWithCode(3), "");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !receiver.texts.empty(); }, kWaitLimit));
  EXPECT_EQ(receiver.texts, std::vector<std::string>{"9"});
}

}  // namespace
}  // namespace logbook

#include "BusTest.moc"
