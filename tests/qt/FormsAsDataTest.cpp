// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Walks all forms as data: names, captions, places, tab order.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionGroupBox>
#include <algorithm>
#include <string>
#include <vector>

#include "FormsWorkstation.h"
#include "placement/LogbookGen.h"
#include "qt/frmChangeItem.h"
#include "qt/frmLogEditor.h"
#include "qt/frmLogView.h"
#include "resources/Resources.h"

namespace logbook {
namespace {

using test::FormsWorkstation;

struct ExpectedControl {
  std::string name;
  int caption;  // number in the string table, 0 for none
  bool takes_focus = true;
};

// One form, loaded as the program does it, and what it should hold in tab order.
struct FormCase {
  QWidget* form;
  std::vector<ExpectedControl> controls;
};

class FormsAsData : public testing::Test {
 protected:
  FormsAsData() {
    SetMainFonts(workstation.state);
    SetMainCaptions(workstation.state);
    ArrangeMainWindow(workstation.state, workstation.real);
    workstation.qt_forms.UpdateMain();
    editor_form.Load();
    view_form.Load("Logbook Viewer:");
    workstation.state.CEMode = true;  // all options are visible
    chooser_form.Load();
    forms = {{&workstation.window,
              {{"ListView1", 0},
               {"cmdRecord", 113},
               {"cmdBrowse", 114},
               {"cmdDelete", 115},
               {"cmdPrint", 117},
               {"cmdExit", 118},
               {"cmdHelp", 119},
               {"cmdArchive", 132}}},
             {&editor_form, EditorControls()},
             {&view_form,
              {{"txtReport", 0},
               {"txtComment", 0},
               {"cmdPrint", 116},
               {"cmdExit", 118},
               {"cmdHelp", 119}}},
             {&chooser_form,
              {{"cmdOK", 120},
               {"Option1", 209},
               {"Option2", 210},
               {"Option3", 211},
               {"List1", 0},
               {"cmdCancel", 127},
               {"cmdHelp", 119},
               {"Frame1", 208, false}}}};
  }

  static std::vector<ExpectedControl> EditorControls() {
    std::vector<ExpectedControl> controls;
    for (int i = 0; i < LogEditor::kChecks; ++i) {
      controls.push_back({"Check1(" + std::to_string(i) + ")", 179 + i});
    }
    controls.insert(controls.end(), {{"txtComment", 0},
                                     {"cmdOK", 120},
                                     {"cmdCancel", 127},
                                     {"cmdHelp", 119},
                                     {"Frame1", 177, false},
                                     {"Label1", 178, false}});
    return controls;
  }

  FormsWorkstation workstation;
  LogEditor editor;
  frmLogEditor editor_form{&workstation.window, workstation.state, workstation.real, editor};
  LogView view;
  frmLogView view_form{&workstation.window, workstation.state, workstation.real, view};
  ColumnChooser chooser;
  frmChangeItem chooser_form{&workstation.window, workstation.state, workstation.real, chooser};
  std::vector<FormCase> forms;
};

QString CaptionOf(const QWidget* widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) return button->text();
  if (const auto* label = qobject_cast<const QLabel*>(widget)) return label->text();
  if (const auto* group = qobject_cast<const QGroupBox*>(widget)) return group->title();
  return {};
}

// The room that the style leaves for the caption.
QSize RoomForCaption(QWidget* widget) {
  QStyleOptionButton option;
  option.initFrom(widget);
  if (qobject_cast<QCheckBox*>(widget) != nullptr) {
    return widget->style()->subElementRect(QStyle::SE_CheckBoxContents, &option, widget).size();
  }
  if (qobject_cast<QRadioButton*>(widget) != nullptr) {
    return widget->style()->subElementRect(QStyle::SE_RadioButtonContents, &option, widget).size();
  }
  if (qobject_cast<QPushButton*>(widget) != nullptr) {
    return widget->style()->subElementRect(QStyle::SE_PushButtonContents, &option, widget).size();
  }
  return widget->contentsRect().size();
}

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
  for (const FormCase& c : forms) {
    std::vector<QWidget*> widgets;
    for (const ExpectedControl& control : c.controls) {
      widgets.push_back(FormsWorkstation::FindIn<QWidget>(c.form, control.name.c_str()));
    }
    for (QWidget* a : widgets) {
      const std::string name = a->objectName().toStdString();
      EXPECT_TRUE(a->parentWidget()->rect().contains(a->geometry())) << name;
      for (QWidget* b : widgets) {
        if (a == b || a->parentWidget() != b->parentWidget()) continue;
        // Neighbours may share one row of pixels, as the tick boxes do.
        const QRect common = a->geometry().intersected(b->geometry());
        EXPECT_TRUE(common.width() <= 1 || common.height() <= 1)
            << name << " and " << b->objectName().toStdString();
      }
    }
  }
}

TEST_F(FormsAsData, NoCaptionIsCut) {
  for (const FormCase& c : forms) {
    for (const ExpectedControl& control : c.controls) {
      auto* widget = FormsWorkstation::FindIn<QWidget>(c.form, control.name.c_str());
      if (CaptionOf(widget).isEmpty()) continue;
      widget->ensurePolished();
      const QSize text = widget->fontMetrics().size(Qt::TextShowMnemonic, CaptionOf(widget));
      const QSize room = RoomForCaption(widget);
      EXPECT_LE(text.width(), room.width()) << control.name;
      EXPECT_LE(text.height(), room.height()) << control.name;
    }
  }
}

}  // namespace
}  // namespace logbook
