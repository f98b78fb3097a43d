// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Walks all forms as data: names, captions, places, tab order.

#include "FormsAsData.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <algorithm>
#include <string>
#include <vector>

#include "resources/Resources.h"

namespace logbook {
namespace {

using test::CaptionOf;
using test::ExpectedControl;
using test::FormCase;
using test::FormsAsData;
using test::FormsWorkstation;

TEST_F(FormsAsData, EveryControlIsThereOnceUnderItsName) {
  for (const FormCase& c : forms) {
    for (const ExpectedControl& control : c.controls) {
      const auto found = c.form->findChildren<QWidget*>(QString::fromStdString(control.name));
      const auto in_form = [&](const QWidget* widget) { return widget->window() == c.form; };
      EXPECT_EQ(std::count_if(found.begin(), found.end(), in_form), 1)
          << c.form->objectName().toStdString() << "." << control.name;
    }
  }
}

// So that none is left out of the rules below.
TEST_F(FormsAsData, EveryControlOfAFormIsWalked) {
  for (const FormCase& c : forms) {
    for (const QWidget* widget : c.form->findChildren<QWidget*>()) {
      const std::string name = widget->objectName().toStdString();
      const bool is_part = name.empty() || name.starts_with("qt_") || widget->window() != c.form ||
                           widget->inherits("QHeaderView");
      const bool is_control = widget->inherits("QAbstractButton") ||
                              widget->inherits("QGroupBox") ||
                              widget->inherits("QAbstractScrollArea") || widget->inherits("QLabel");
      if (is_part || !is_control) continue;
      EXPECT_TRUE(std::any_of(c.controls.begin(), c.controls.end(),
                              [&](const ExpectedControl& control) { return control.name == name; }))
          << c.form->objectName().toStdString() << "." << name;
    }
  }
}

TEST_F(FormsAsData, EveryCaptionComesFromTheStringTable) {
  for (const FormCase& c : forms) {
    for (const ExpectedControl& control : c.controls) {
      if (control.caption == 0) continue;
      const auto* widget = FormsWorkstation::FindIn<QWidget>(c.form, control.name.c_str());
      EXPECT_EQ(CaptionOf(widget).toStdString(), LoadResString(control.caption)) << control.name;
    }
  }
}

TEST_F(FormsAsData, EveryControlThatTakesTheFocusCanBeReadOut) {
  for (const FormCase& c : forms) {
    for (const ExpectedControl& control : c.controls) {
      const auto* widget = FormsWorkstation::FindIn<QWidget>(c.form, control.name.c_str());
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << control.name;
      EXPECT_FALSE(widget->accessibleName().contains(QLatin1Char('&'))) << control.name;
    }
  }
}

TEST_F(FormsAsData, ListsAndBoxesAreReadOutUnderTheirNames) {
  const auto name = [](QWidget* form, const char* control) {
    return FormsWorkstation::FindIn<QWidget>(form, control)->accessibleName().toStdString();
  };
  EXPECT_EQ(name(&workstation.window, "ListView1"), "Maintenance logs");
  EXPECT_EQ(name(&editor_form, "txtComment"), "Comment");
  EXPECT_EQ(name(&view_form, "txtReport"), "Report");
  EXPECT_EQ(name(&view_form, "txtComment"), "Comment");
  EXPECT_EQ(name(&chooser_form, "List1"), "Items");
}

TEST_F(FormsAsData, TheMainWindowIsReadAsAFrameAndTheOthersAsDialogs) {
  const auto role = [](QWidget* form) {
    return QAccessible::queryAccessibleInterface(form)->role();
  };
  EXPECT_EQ(role(&workstation.window), QAccessible::Window);
  for (QWidget* form : {static_cast<QWidget*>(&editor_form), static_cast<QWidget*>(&view_form),
                        static_cast<QWidget*>(&chooser_form)}) {
    EXPECT_EQ(role(form), QAccessible::Dialog);
  }
}

TEST_F(FormsAsData, TheTabKeyGoesThroughTheControlsInOrder) {
  for (const FormCase& c : forms) {
    std::vector<std::string> expected, found;
    for (const ExpectedControl& control : c.controls) {
      if (control.takes_focus) expected.push_back(control.name);
    }
    for (QWidget* widget = c.form->nextInFocusChain(); widget != c.form;
         widget = widget->nextInFocusChain()) {
      const std::string name = widget->objectName().toStdString();
      if (std::find(expected.begin(), expected.end(), name) == expected.end()) continue;
      EXPECT_TRUE((widget->focusPolicy() & Qt::TabFocus) != 0) << name;
      found.push_back(name);
    }
    EXPECT_EQ(found, expected) << c.form->objectName().toStdString();
  }
}

TEST_F(FormsAsData, NoControlLeavesItsContainerOrOverlapsAnother) {
  test::ExpectRoomForEachControl(forms);
}

TEST_F(FormsAsData, NoCaptionIsCut) {
  test::ExpectRoomForEachCaption(forms);
}

}  // namespace
}  // namespace logbook
