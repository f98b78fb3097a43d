// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All forms, loaded as the program does it, to be walked as data, and how much room a caption has.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <algorithm>
#include <string>
#include <vector>

#include "FormsWorkstation.h"
#include "placement/LogbookGen.h"
#include "qt/frmChangeItem.h"
#include "qt/frmLogEditor.h"
#include "qt/frmLogView.h"
#include "resources/Resources.h"

namespace logbook::test {

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
  explicit FormsAsData(int code_page = 1252) : workstation(code_page) {
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

inline QString CaptionOf(const QWidget* widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) return button->text();
  if (const auto* label = qobject_cast<const QLabel*>(widget)) return label->text();
  if (const auto* group = qobject_cast<const QGroupBox*>(widget)) return group->title();
  return {};
}

// The room that the style leaves for the caption.
inline QSize RoomForCaption(QWidget* widget) {
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

// No control leaves its container or overlaps another.
inline void ExpectRoomForEachControl(const std::vector<FormCase>& forms) {
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

// Each caption stands whole in its control.
inline void ExpectRoomForEachCaption(const std::vector<FormCase>& forms) {
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

}  // namespace logbook::test
