// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What peers on the bus hand over, of any type: the cell takes a text and nothing else, and a
// host's reply is a text or an error. Both sides are real connections, without a daemon between
// them.

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServer>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QEventLoop>
#include <QThread>
#include <array>
#include <memory>
#include <string>

#include "Fuzzing.h"
#include "base/HostLinkNames.h"
#include "base/RunTimeError.h"
#include "qt/DBusCell.h"
#include "qt/DBusHostLink.h"
#include "qt/DBusProcess.h"

namespace logbook::fuzz {
namespace {

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// What the wire can carry: no NUL, and nothing that is half a pair.
QString AnyText(Input& input) {
  return QString::fromUtf8(Text(input.Text()).toUtf8());
}

QVariant AnyValue(Input& input, int depth);

QVariantMap AnyMap(Input& input, int depth) {
  QVariantMap map;
  for (int i = input.Number(4); i > 0; --i) map.insert(AnyText(input), AnyValue(input, depth));
  return map;
}

QVariantList AnyList(Input& input, int depth) {
  QVariantList list;
  for (int i = input.Number(4); i > 0; --i) list.append(AnyValue(input, depth));
  return list;
}

QVariant AnyStructure(Input& input) {
  QDBusArgument structure;
  structure.beginStructure();
  structure << AnyText(input) << input.Number(256);
  structure.endStructure();
  return QVariant::fromValue(structure);
}

QVariant AnyNumber(Input& input) {
  const int number = (input.Number(256) - 128) * 8421504;
  switch (input.Number(6)) {
    case 0:
      return QVariant::fromValue(static_cast<uchar>(number));
    case 1:
      return QVariant::fromValue(static_cast<short>(number));
    case 2:
      return number;
    case 3:
      return static_cast<qulonglong>(number);
    case 4:
      return number * 0.5;
    default:
      return number % 2 == 0;
  }
}

QVariant AnyValue(Input& input, int depth) {
  const int kind = input.Number(depth > 0 ? 9 : 5);
  switch (kind) {
    case 0:
      return AnyText(input);
    case 1:
      return AnyNumber(input);
    case 2:
      return QByteArray::fromStdString(input.Text());
    case 3:
      return QVariant::fromValue(QDBusObjectPath(QStringLiteral("/a")));
    case 4:
      return QVariant::fromValue(QDBusSignature(QStringLiteral("a{sv}")));
    case 5:
      return AnyList(input, depth - 1);
    case 6:
      return AnyMap(input, depth - 1);
    case 7:
      return QVariant::fromValue(QDBusVariant(AnyValue(input, depth - 1)));
    default:
      return AnyStructure(input);
  }
}

// The far end of the wire, in a thread of its own: a server that answers requests with what it is
// told to.
class Peer : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
    QDBusMessage reply = call.createReply();
    reply.setArguments(answer);
    connection.send(reply);
    return true;
  }
  QVariantList answer;
};

// Two connections to one server: the logbook's and a peer's.
class Wire {
 public:
  Wire() {
    int count = 0;
    static char name[] = "fuzz";
    static char* names[] = {name, nullptr};
    count = 1;
    application_ = std::make_unique<QCoreApplication>(count, names);
    server_ = std::make_unique<QDBusServer>(QStringLiteral("unix:tmpdir=/tmp"));
    server_->setAnonymousAuthenticationAllowed(true);
    QObject::connect(server_.get(), &QDBusServer::newConnection, server_.get(),
                     [this](const QDBusConnection& connection) { Begin(connection); });
    logbook = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToPeer(server_->address(), QStringLiteral("logbook")));
    while (far_ == nullptr) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    process_ = std::make_unique<DBusProcess>(*logbook);
    cell = std::make_unique<DBusCell>(*logbook, *process_);
    link = std::make_unique<DBusHostLink>(*logbook, 5000);
  }

  // Waits for the answer while the cell does its work.
  QDBusMessage Ask(const QDBusMessage& call) {
    // Asleep: the far end's thread needs the processor.
    const QDBusPendingCallWatcher pending(far_->asyncCall(call));
    QEventLoop wait;
    QObject::connect(&pending, &QDBusPendingCallWatcher::finished, &wait, &QEventLoop::quit);
    if (!pending.isFinished()) wait.exec();
    return pending.reply();
  }
  void SetAnswer(const QVariantList& answer) { peer_.answer = answer; }

  std::unique_ptr<QDBusConnection> logbook;
  std::unique_ptr<DBusCell> cell;
  std::unique_ptr<DBusHostLink> link;

 private:
  void Begin(const QDBusConnection& connection) {
    far_ = std::make_unique<QDBusConnection>(connection);
    peer_.moveToThread(&thread_);
    thread_.start();
    far_->registerVirtualObject(Text(kHostObjectPath), &peer_);
  }

  std::unique_ptr<QCoreApplication> application_;
  std::unique_ptr<QDBusServer> server_;
  std::unique_ptr<QDBusConnection> far_;
  std::unique_ptr<DBusProcess> process_;
  QThread thread_;
  Peer peer_;
};

// Texts that the wire refuses end the connection's call before it leaves.
bool IsForTheWire(const QVariantList& arguments) {
  QString all;
  for (const QVariant& argument : arguments) all += argument.toString();
  return !all.contains(QChar(0));
}

void SetTheCell(Wire& wire, Input& input) {
  wire.cell->SetText("before");
  constexpr std::array kMembers = {"Set", "Get", "GetAll", "set"};
  const bool to_the_cell = input.Number(4) != 0;
  const QString member =
      to_the_cell ? QStringLiteral("Set")
                  : Text(kMembers[static_cast<std::size_t>(input.Number(kMembers.size()))]);
  QDBusMessage call = QDBusMessage::createMethodCall(
      {}, Text(kCellObjectPath), QStringLiteral("org.freedesktop.DBus.Properties"), member);
  const QVariant value = AnyValue(input, 3);
  if (to_the_cell) {
    call << Text(kCellInterface) << Text(kCellProperty) << QVariant::fromValue(QDBusVariant(value));
  } else {
    call.setArguments(AnyList(input, 2));
  }
  const QDBusMessage reply = wire.Ask(call);
  const bool is_text = to_the_cell && value.userType() == QMetaType::QString;
  FUZZ_REQUIRE(!to_the_cell || is_text == (reply.type() == QDBusMessage::ReplyMessage));
  FUZZ_REQUIRE(wire.cell->Text() == (is_text ? value.toString().toStdString() : "before"));
}

void AskTheHost(Wire& wire, Input& input) {
  const QVariantList answer = AnyList(input, 3);
  if (!IsForTheWire(answer)) return;
  wire.SetAnswer(answer);
  const bool is_text = answer.size() == 1 && answer[0].userType() == QMetaType::QString;
  try {
    const std::string text = wire.link->Request("HOST", "CPWAIT", "_exepath$");
    FUZZ_REQUIRE(is_text && text == answer[0].toString().toStdString());
  } catch (const RunTimeError& error) {
    FUZZ_REQUIRE(!is_text && error.Number() == ErrorNumber::kDeviceInputOutput);
  }
}

void Try(Input input) {
  static Wire& wire = *new Wire;  // threads of the toolkit outlive the end of main
  SetTheCell(wire, input);
  AskTheHost(wire, input);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
