// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "ScreenReader.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <algorithm>
#include <atomic>
#include <utility>

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

// An event that somebody listens to; no name of a bus stands for any program's.
struct Registration {
  QString bus, event;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Registration& registration) {
  argument.beginStructure();
  argument << registration.bus << registration.event;
  argument.endStructure();
  return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, Registration& registration) {
  argument.beginStructure();
  argument >> registration.bus >> registration.event;
  argument.endStructure();
  return argument;
}

QVariant Nothing() {
  QDBusArgument argument;
  argument.beginStructure();
  argument << QString() << QDBusObjectPath(QStringLiteral("/org/a11y/atspi/null"));
  argument.endStructure();
  return QVariant::fromValue(argument);
}

}  // namespace
}  // namespace logbook::e2e

Q_DECLARE_METATYPE(logbook::e2e::Registration)

namespace logbook::e2e {

// What programs ask the desktop's accessibility: where it is, whether it is on, and who listens.
class AccessibilityBus : public QDBusVirtualObject {
 public:
  explicit AccessibilityBus(QString address) : address_(std::move(address)) {
    qDBusRegisterMetaType<Registration>();
    qDBusRegisterMetaType<QList<Registration>>();
  }

  void Listen() { listens_ = true; }
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    const QVariant answer = Answer(message.member());
    if (!answer.isValid()) return false;
    bus.send(message.createReply(answer));
    return true;
  }

 private:
  QVariant Answer(const QString& question) const {
    if (question == QStringLiteral("GetAddress")) return address_;
    // "IsEnabled" and "ScreenReaderEnabled"
    if (question == QStringLiteral("Get")) return QVariant::fromValue(QDBusVariant(true));
    if (!listens_) return {};
    if (question == QStringLiteral("Embed")) return Nothing();
    if (question == QStringLiteral("GetRegisteredEvents")) {
      return QVariant::fromValue(QList<Registration>{{{}, QStringLiteral("focus:")},
                                                     {{}, QStringLiteral("object:")},
                                                     {{}, QStringLiteral("window:")}});
    }
    // Whether a key is taken away from the program.
    if (question == QStringLiteral("NotifyListenersSync")) return false;
    return {};
  }

  const QString address_;
  std::atomic<bool> listens_ = false;
};

ScreenReader::ScreenReader(Desktop& desktop)
    : address_(QString::fromStdString(desktop.BusAddress())),
      bus_(QDBusConnection::connectToBus(address_, NewConnectionName())),
      answers_(std::make_unique<AccessibilityBus>(address_)) {
  bus_.registerVirtualObject(QStringLiteral("/org/a11y"), answers_.get(), QDBusConnection::SubPath);
  answers_->moveToThread(&thread_);
  thread_.start();
  bus_.registerService(QStringLiteral("org.a11y.Bus"));
}

ScreenReader::~ScreenReader() {
  QDBusConnection::disconnectFromBus(bus_.name());
  thread_.quit();
  thread_.wait();
}

void ScreenReader::Listen() {
  answers_->Listen();
  for (const char* name : {"Focus", "StateChanged"}) {
    const QString type = QLatin1String(name) == QLatin1String("Focus") ? QStringLiteral("Focus")
                                                                       : QStringLiteral("Object");
    bus_.connect({}, {}, QStringLiteral("org.a11y.atspi.Event.") + type, QString::fromLatin1(name),
                 this, SLOT(Hear(QDBusMessage)));
  }
  bus_.registerService(QStringLiteral("org.a11y.atspi.Registry"));
}

void ScreenReader::Hear(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  if (message.member() == QStringLiteral("Focus")) {
    heard_.push_back({message.path(), "focus", 1});
  } else if (arguments.size() > 1) {
    heard_.push_back(
        {message.path(), arguments.at(0).toString().toStdString(), arguments.at(1).toInt()});
  }
}

Readable ScreenReader::Focused() {
  const auto last = std::find_if(heard_.rbegin(), heard_.rend(),
                                 [](const Told& told) { return told.what == "focus"; });
  return last == heard_.rend() ? Readable() : ReadThing(Service(), last->path);
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

Readable ScreenReader::ReadThing(const QString& service, const QString& path) const {
  const auto ask = [&](const QString& interface, const char* method,
                       const QVariantList& arguments = {}) {
    return Ask(bus_, service, path, interface, QString::fromLatin1(method), arguments);
  };
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
  return thing;
}

QStringList ScreenReader::Children(const QString& service, const QString& path) const {
  const QVariantList children =
      Ask(bus_, service, path, kAccessible, QStringLiteral("GetChildren"));
  return children.isEmpty() ? QStringList() : PathsFrom(children.first());
}

void ScreenReader::ReadInto(std::vector<Readable>& things, const QString& service,
                            const QString& path) {
  if (path != kRoot) things.push_back(ReadThing(service, path));
  for (const QString& child : Children(service, path)) ReadInto(things, service, child);
}

std::vector<Readable> ScreenReader::ReadActive() {
  std::vector<Readable> things;
  const QString service = Service();
  if (service.isEmpty()) return things;
  for (const QString& window : Children(service, kRoot)) {
    if (ReadThing(service, window).active) ReadInto(things, service, window);
  }
  return things;
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
