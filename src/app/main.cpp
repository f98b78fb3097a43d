// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The program "logbook".

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QLibraryInfo>
#include <QPixmap>
#include <QResource>
#include <QTranslator>
#include <iostream>
#include <memory>
#include <string>

#include "base/CommandLine.h"
#include "base/Files.h"
#include "qt/Display.h"
#include "qt/HostConnection.h"
#include "qt/QtClock.h"
#include "qt/QtEventDelivery.h"
#include "qt/QtForms.h"
#include "qt/QtMessageBoxes.h"
#include "qt/QtPrintService.h"
#include "qt/QtSaveDialog.h"
#include "qt/SelectionColours.h"
#include "qt/SystemServices.h"
#include "qt/VisibleEdges.h"
#include "qt/Widgets.h"
#include "qt/frmMain.h"
#include "resources/Resources.h"
#include "shell/StartUp.h"
#include "state/LanguageChoice.h"
#include "upload/ContentServerClient.h"

namespace {

// Name of the desktop entry and of the icon.
constexpr char kDesktopName[] = "com.norvane.Quorex.Logbook";

constexpr int kApplicationName = 112;  // in the string table

constexpr char kHelp[] =
    "Usage: logbook HOST [CE] [AutoRec]\n"
    "       logbook --help | --version\n"
    "\n"
    "The maintenance logbook. The host control panel of the workstation starts it.\n"
    "\n"
    "  HOST     id of the host control panel that the logbook works for\n"
    "  CE       extended columns and reports\n"
    "  AutoRec  record one log without a user, then end\n"
    "\n"
    "Without arguments, without an answering host, or beside a running logbook\n"
    "it ends silently.\n";

// Index of the manual that lies beside the program; the English one where the language has none.
QString ManualOfTheProgram() {
  const QString folder = QApplication::applicationDirPath() + QStringLiteral("/manual/");
  const QString index = QStringLiteral("/logbook.hhbook");
  const QString translated = folder + logbook::ToQt(logbook::CurrentLanguage().manual) + index;
  return QFileInfo::exists(translated) ? translated : folder + QStringLiteral("logbook.hhbook");
}

// The words of the toolkit's own dialogs; they stay English where its catalogue is missing.
void TakeToolkitWords(QTranslator& words) {
  const QString catalogue = logbook::ToQt(logbook::CurrentLanguage().toolkit);
  if (catalogue.isEmpty()) return;
  if (words.load(catalogue, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(&words);
}

// The pixels lie in the program as they are: for a picture, the toolkit would load every library of
// pictures that the machine has.
QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64}) {
    const QResource pixels(QStringLiteral(":/icons/%1.rgba").arg(size));
    const QImage image(pixels.data(), size, size, QImage::Format_RGBA8888);
    icon.addPixmap(QPixmap::fromImage(image));
  }
  return icon;
}

// The desktop's colours, and what of them cannot be seen mended.
void TakeColours() {
  const QPalette colours = QApplication::palette();
  if (logbook::HidesEdges(colours)) QApplication::setStyle(new logbook::VisibleEdges);
  QApplication::setPalette(
      logbook::WithReadableSelection(logbook::WithVisibleDisabledText(colours)));
}

// Runs the program until it ends itself; returns only if the toolkit's loop is made to.
int RunLogbook(QApplication& application, const std::string& command_line) {
  using namespace logbook;
  const Machine machine = OpenMachine(DefaultHome());
  AppState state(machine);
  state.AppPath = DrivePathText(machine, QCoreApplication::applicationDirPath().toStdString());
  state.AppName = QFileInfo(QApplication::applicationFilePath()).completeBaseName().toStdString();
  TakeLanguage(machine, state.AppPath, LOGBOOK_LANGUAGE);
  QTranslator toolkit_words;
  TakeToolkitWords(toolkit_words);
  QApplication::setApplicationName(ToQt(LoadResString(kApplicationName)));
  const std::unique_ptr<HostConnection> host = ConnectToHost(*machine.code_page);
  QtEventDelivery events;
  QtMessageBoxes messages;
  QtClock clock;
  ContentServerClient ecm(state);
  ecm.Resume();
  QtForms forms(state);
  const std::unique_ptr<WindowSystem> windows = MakeWindowSystem();
  QtPrintService print(machine, clock, [&events] { events.Paint(); });
  const std::unique_ptr<HelpEngine> help = MakeHelpEngine(machine, ManualOfTheProgram());
  QtSaveDialog save(machine, messages);
  Services services{host->Link(), host->Cell(), events,   messages, clock, host->Itself(),
                    ecm,          forms,        *windows, print,    *help, save};
  frmMain window(state, services);
  forms.Attach(window, services);

  RunHandler(services, [&] {
    Form_Initialize(state, services);
    Form_Load(state, services, command_line);
  });
  window.show();
  return application.exec();
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command_line = logbook::CommandLineOf(argc, argv);
  // Such a start shows, says and asks nothing, so that it needs neither display nor bus.
  if (command_line.empty()) return 0;
  if (command_line == "--help") {
    std::cout << kHelp;
    return 0;
  }
  if (command_line == "--version") {
    std::cout << "logbook " LOGBOOK_VERSION "\n";
    return 0;
  }
  if (!logbook::DisplayIsNamed()) {
    std::cerr << "logbook: there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set\n";
    return 1;
  }
  // The arguments are the program's own: the toolkit sees none of them.
  int toolkit_argc = argc > 0 ? 1 : 0;
  QApplication application(toolkit_argc, argv);
  QApplication::setApplicationVersion(QStringLiteral(LOGBOOK_VERSION));
  QGuiApplication::setDesktopFileName(QString::fromLatin1(kDesktopName));
  QApplication::setWindowIcon(ProgramIcon());
  TakeColours();
  QApplication::setQuitOnLastWindowClosed(false);  // the run ends in GlobalEnd alone
  return RunLogbook(application, command_line);
}
