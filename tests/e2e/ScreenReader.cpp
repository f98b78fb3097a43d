// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "ScreenReader.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariantMap>

namespace logbook::e2e {
namespace {

constexpr int kCallLimit = 5000;  // milliseconds

// Bits of the state words that assistive technology agrees on.
constexpr int kActive = 1, kChecked = 4, kEnabled = 8, kFocused = 12, kSelected = 23;

const QString kRoot = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString kAccessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString kText = QStringLiteral("org.a11y.atspi.Text");
const QString kComponent = QStringLiteral("org.a11y.atspi.Component");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

QString NewConnectionName() {
  static int number = 0;
  return QStringLiteral("screen-reader-%1").arg(++number);
}

// One call to a thing; an error reply gives no arguments.
QVariantList Ask(const QDBusConnection& bus, const QString& service, const QString& path,
                 const QString& interface, const QString& method,
                 const QVariantList& arguments = {}) {
  QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
  call.setArguments(arguments);
  const QDBusMessage reply = bus.call(call, QDBus::Block, kCallLimit);
  return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
}

std::vector<unsigned> Numbers(const QVariant& array) {
  std::vector<unsigned> numbers;
  if (!array.canConvert<QDBusArgument>()) return numbers;
  const auto argument = array.value<QDBusArgument>();
  argument.beginArray();
  while (!argument.atEnd()) {
    unsigned number = 0;
    argument >> number;
    numbers.push_back(number);
  }
  argument.endArray();
  return numbers;
}

Place PlaceFrom(const QVariant& structure) {
  Place place;
  if (!structure.canConvert<QDBusArgument>()) return place;
  const auto argument = structure.value<QDBusArgument>();
  argument.beginStructure();
  argument >> place.x >> place.y >> place.width >> place.height;
  argument.endStructure();
  return place;
}

QStringList PathsFrom(const QVariant& array) {
  QStringList paths;
  if (!array.canConvert<QDBusArgument>()) return paths;
  const auto argument = array.value<QDBusArgument>();
  argument.beginArray();
  while (!argument.atEnd()) {
    QString service;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> service >> path;
    argument.endStructure();
    paths << path.path();
  }
  argument.endArray();
  return paths;
}

bool Bit(const std::vector<unsigned>& words, int bit) {
  const auto word = static_cast<std::size_t>(bit / 32);
  return word < words.size() && ((words[word] >> (bit % 32)) & 1u) != 0;
}

std::string First(const QVariantList& arguments) {
  if (arguments.isEmpty()) return {};
  const QVariant value = arguments.first();
  if (value.canConvert<QDBusVariant>())
    return value.value<QDBusVariant>().variant().toString().toStdString();
  return value.toString().toStdString();
}

}  // namespace

ScreenReader::ScreenReader(Desktop& desktop)
    : address_(QString::fromStdString(desktop.BusAddress())),
      bus_(QDBusConnection::connectToBus(address_, NewConnectionName())) {
  bus_.registerVirtualObject(QStringLiteral("/org/a11y/bus"), this);
  bus_.registerService(QStringLiteral("org.a11y.Bus"));
}

ScreenReader::~ScreenReader() {
  QDBusConnection::disconnectFromBus(bus_.name());
}

bool ScreenReader::handleMessage(const QDBusMessage& message, const QDBusConnection& bus) {
  if (message.member() == QStringLiteral("GetAddress")) {
    bus.send(message.createReply(address_));
  } else if (message.member() == QStringLiteral("Get")) {
    // "IsEnabled" and "ScreenReaderEnabled"
    bus.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
  } else {
    return false;
  }
  return true;
}

QString ScreenReader::Service() {
  const QStringList names = bus_.interface()->registeredServiceNames();
  if (names.contains(service_)) return service_;
  service_.clear();
  for (const QString& name : names) {
    if (!name.startsWith(QLatin1Char(':')) || name == bus_.baseService()) continue;
    if (Ask(bus_, name, kRoot, kAccessible, QStringLiteral("GetChildren")).isEmpty()) continue;
    service_ = name;
    break;
  }
  return service_;
}
void ScreenReader::ReadInto(std::vector<Readable>& things, const QString& service,
                            const QString& path) {
  const auto ask = [&](const QString& interface, const char* method,
                       const QVariantList& arguments = {}) {
    return Ask(bus_, service, path, interface, QString::fromLatin1(method), arguments);
  };
  if (path != kRoot) {
    Readable thing;
    thing.role = First(ask(kAccessible, "GetRoleName"));
    thing.name = First(ask(kProperties, "Get", {kAccessible, QStringLiteral("Name")}));
    thing.text = First(ask(kText, "GetText", {0, -1}));
    const QVariantList states = ask(kAccessible, "GetState");
    const auto words = states.isEmpty() ? std::vector<unsigned>() : Numbers(states.first());
    thing.active = Bit(words, kActive);
    thing.enabled = Bit(words, kEnabled);
    thing.checked = Bit(words, kChecked);
    thing.selected = Bit(words, kSelected);
    thing.focused = Bit(words, kFocused);
    const QVariantList extents = ask(kComponent, "GetExtents", {0u});
    if (!extents.isEmpty()) thing.place = PlaceFrom(extents.first());
    things.push_back(thing);
  }
  const QVariantList children = ask(kAccessible, "GetChildren");
  if (children.isEmpty()) return;
  const QStringList paths = PathsFrom(children.first());
  for (const QString& child : paths) ReadInto(things, service, child);
}

std::vector<Readable> ScreenReader::Read() {
  std::vector<Readable> things;
  const QString service = Service();
  if (!service.isEmpty()) ReadInto(things, service, kRoot);
  return things;
}

Readable ScreenReader::WaitFor(const std::string& role, const std::string& name) {
  Readable found;
  e2e::WaitFor("the " + role + " \"" + name + "\"", [&] {
    for (const Readable& thing : Read()) {
      if (thing.role != role || thing.name != name) continue;
      found = thing;
      return true;
    }
    return false;
  });
  return found;
}

}  // namespace logbook::e2e
