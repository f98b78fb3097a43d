// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A test workstation whose windows are the real ones.
#pragma once

#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <functional>
#include <stdexcept>
#include <string>

#include "qt/QtForms.h"
#include "qt/Widgets.h"
#include "qt/frmMain.h"
#include "support/TestServices.h"

namespace logbook::test {

class FormsWorkstation : public TestWorkstation {
 public:
  explicit FormsWorkstation(int code_page = 1252) : TestWorkstation(code_page) {
    qt_forms.Attach(window, real);
  }

  // The control of this name in the main window or another; fails the test if there is none.
  template <typename Widget>
  Widget* Find(const char* name) {
    return FindIn<Widget>(&window, name);
  }
  template <typename Widget>
  static Widget* FindIn(QWidget* form, const char* name) {
    for (Widget* widget : form->findChildren<Widget*>(QString::fromUtf8(name))) {
      if (widget->window() == form) return widget;  // and not one of a dialog that it owns
    }
    throw std::runtime_error(std::string("no control ") + name);
  }

  QtForms qt_forms{state};
  Services real{host, cell,     events,  messages, clock, process,
                ecm,  qt_forms, windows, print,    help,  save};
  frmMain window{state, real};
};

// Runs `action` on the modal window with this object name as soon as it is up.
inline void WhenModal(const char* name, const std::function<void(QWidget*)>& action) {
  auto* timer = new QTimer(qApp);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, name, action] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr || modal->objectName() != QString::fromUtf8(name)) return;
    timer->deleteLater();
    timer->stop();
    action(modal);
  });
  timer->start(0);
}

}  // namespace logbook::test
