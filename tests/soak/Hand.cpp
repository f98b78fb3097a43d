// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Hand.h"

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <cstdio>

namespace logbook::soak {
namespace {

void Tell(const QString& line) {
  std::printf("%s\n", qPrintable(line));
  std::fflush(stdout);
}

// A control of any window by its name; none if no window has it.
template <class Control>
Control* Find(const QString& name) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* control = window->findChild<Control*>(name)) return control;
  }
  return nullptr;
}

qulonglong BytesInUse() {
  const struct mallinfo2 heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

}  // namespace

Hand::Hand() : commands_(STDIN_FILENO, QSocketNotifier::Read) {
  connect(&commands_, &QSocketNotifier::activated, this, &Hand::ReadCommands);
  qApp->installEventFilter(this);
}

void Hand::ReadCommands() {
  char bytes[4096];
  const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
  if (count <= 0) {
    commands_.setEnabled(false);
    return;
  }
  read_.append(bytes, count);
  for (qsizetype end; (end = read_.indexOf('\n')) >= 0; read_.remove(0, end + 1)) {
    // From the event loop: a command waits in loops of its own.
    QTimer::singleShot(0, this,
                       [this, command = QString::fromUtf8(read_.left(end))] { Obey(command); });
  }
}

void Hand::Obey(const QString& command) {
  const QString record = QStringLiteral("record ");
  if (command.startsWith(record)) {
    comment_ = command.mid(record.size());
    Press(QStringLiteral("cmdRecord"));
  } else if (command == QLatin1String("delete")) {
    if (auto* list = Find<QAbstractItemView>(QStringLiteral("ListView1"))) list->selectAll();
    Press(QStringLiteral("cmdDelete"));
    Plant();
  } else if (command == QLatin1String("exit")) {
    Press(QStringLiteral("cmdExit"));
  } else {
    Tell(QStringLiteral("message no command: ") + command);
  }
}

void Hand::Press(const QString& button) {
  auto* const control = Find<QPushButton>(button);
  if (control == nullptr || !control->isEnabled()) {
    Tell(QStringLiteral("message no button to press: ") + button);
    return;
  }
  Tell(QStringLiteral("pressed"));
  for (int i = 0; i < wakes_; ++i) QThread::usleep(1);
  control->click();
  // What was deleted meanwhile is taken away at the next turn of the event loop.
  QTimer::singleShot(0, this, [] { Tell(QStringLiteral("done %1").arg(BytesInUse())); });
}

bool Hand::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show && watched->isWidgetType()) {
    auto* const window = static_cast<QWidget*>(watched);
    if (window->isWindow()) QTimer::singleShot(0, window, [this, window] { Confirm(window); });
  }
  return false;
}

void Hand::Confirm(QWidget* window) {
  if (auto* box = qobject_cast<QMessageBox*>(window)) {
    auto* const yes = box->button(QMessageBox::Yes);
    if (yes == nullptr) {
      Tell(QStringLiteral("message ") + box->text().replace(QLatin1Char('\n'), QLatin1Char(' ')));
    }
    (yes != nullptr ? yes : box->button(QMessageBox::Ok))->click();
    return;
  }
  auto* const comment = window->findChild<QPlainTextEdit*>(QStringLiteral("txtComment"));
  auto* const ok = window->findChild<QPushButton*>(QStringLiteral("cmdOK"));
  if (comment == nullptr || ok == nullptr) return;
  comment->setPlainText(comment_);
  ok->click();
}

void Hand::Plant() {
  if (!qEnvironmentVariableIsSet("SOAK_PLANT")) return;
  new QByteArray(200'000, 'x');
  for (int i = 0; i < 4; ++i) open("/dev/null", O_RDONLY | O_CLOEXEC);
  wakes_ += 100;
}

class HandPlugin : public QGenericPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "hand.json")

 public:
  QObject* create(const QString&, const QString&) override { return new Hand; }
};

}  // namespace logbook::soak

#include "Hand.moc"
