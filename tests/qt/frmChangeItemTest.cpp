// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/frmChangeItem.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <string>
#include <utility>

#include "FormsWorkstation.h"
#include "loglist/LogList.h"
#include "qt/Twips.h"
#include "records/LogCommands.h"

namespace logbook {
namespace {

using test::FormsWorkstation;
using test::WhenModal;

// The chooser as a click on the header of list column 4 opens it, over one log.
class frmChangeItemTest : public testing::Test {
 protected:
  frmChangeItemTest() {
    w.MakeLog("26111500", "11/15/2026 05:09:59");
    w.disk.Put(w.InLog("26111500", "auser.txt"), "21.4,22,23,24,25\r\n");
    FillCatalogues(w.state.catalogues);
    Init_FileList(w.state, w.real);
  }

  // Shows the chooser and runs the action in it, which closes it.
  void Choose(const std::function<void(QWidget*)>& action) {
    WhenModal("frmChangeItem", [&action](QWidget* form) {
      action(form);
      if (!form->isVisible()) return;
      ADD_FAILURE() << "the chooser stayed open";
      form->close();
    });
    ListView1_ColumnClick(w.state, w.real, 4);
  }
  static QPushButton* Button(QWidget* form, const char* name) {
    return FormsWorkstation::FindIn<QPushButton>(form, name);
  }
  static QRadioButton* Option(QWidget* form, int number) {
    return FormsWorkstation::FindIn<QRadioButton>(form,
                                                  ("Option" + std::to_string(number)).c_str());
  }
  static QListWidget* List(QWidget* form) {
    return FormsWorkstation::FindIn<QListWidget>(form, "List1");
  }
  static QPoint PlaceOf(QListWidget* list, int row) {
    list->scrollToItem(list->item(row));
    return list->visualItemRect(list->item(row)).center();
  }
  static void ClickEntry(QWidget* form, int row) {
    QListWidget* list = List(form);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, PlaceOf(list, row));
  }
  std::string Ini() { return w.disk.Has(w.state.IniFile) ? w.disk.Get(w.state.IniFile) : ""; }
  std::string Header() { return w.state.ListView1.Column(4).Text; }
  std::string Cell() { return w.state.ListView1.Row(1).SubItem(3); }

  FormsWorkstation w;
};

TEST_F(frmChangeItemTest, OpensOnTheTuneRowsWithNothingSelected) {
  Choose([&](QWidget* form) {
    EXPECT_EQ(form->windowTitle().toStdString(), "Change List Item");
    EXPECT_TRUE(Option(form, 1)->isChecked());
    EXPECT_EQ(List(form)->count(), 155);
    EXPECT_EQ(List(form)->item(0)->text().toStdString(), "Mass1(Sense)");
    EXPECT_TRUE(List(form)->selectedItems().isEmpty());
    EXPECT_EQ(form->focusWidget(), Button(form, "cmdOK"));
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, AnalogValuesAreOfferedInCeModeAlone) {
  Choose([&](QWidget* form) {
    EXPECT_TRUE(Option(form, 2)->isVisible());
    EXPECT_FALSE(Option(form, 3)->isVisible());
    Button(form, "cmdCancel")->click();
  });
  w.state.CEMode = true;
  Choose([&](QWidget* form) {
    EXPECT_TRUE(Option(form, 3)->isVisible());
    QTest::mouseClick(Option(form, 3), Qt::LeftButton, {}, QPoint(8, 12));
    EXPECT_EQ(List(form)->count(), 215);
    ClickEntry(form, 107);
    EXPECT_EQ(List(form)->currentItem()->text().toStdString(), "Lumarin:Extract");
    Button(form, "cmdOK")->click();
  });
  EXPECT_EQ(Ini(), "[Header_CE4]\r\nCat=Analog\r\nItem=107\r\n");
  EXPECT_EQ(Header(), "Extract (V)");
}

TEST_F(frmChangeItemTest, AClickOnACategoryFillsTheListAnewWithNothingSelected) {
  Choose([&](QWidget* form) {
    ClickEntry(form, 3);
    EXPECT_EQ(List(form)->selectedItems().size(), 1);
    QTest::mouseClick(Option(form, 2), Qt::LeftButton, {}, QPoint(8, 12));
    EXPECT_EQ(List(form)->count(), 29);
    EXPECT_EQ(List(form)->item(25)->text().toStdString(), "Style B:IF/BK Press");
    EXPECT_TRUE(List(form)->selectedItems().isEmpty());
    Button(form, "cmdOK")->click();
    EXPECT_EQ(w.messages.shown.size(), 1u);
    EXPECT_TRUE(form->isVisible());
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, AnOptionSetByAScreenReaderFillsTheListToo) {
  Choose([&](QWidget* form) {
    ClickEntry(form, 3);
    QAccessibleInterface* option = QAccessible::queryAccessibleInterface(Option(form, 2));
    ASSERT_NE(option, nullptr);
    option->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(Option(form, 2)->isChecked());
    EXPECT_EQ(List(form)->count(), 29);
    ClickEntry(form, 4);
    Button(form, "cmdOK")->click();
  });
  EXPECT_EQ(Ini(), "[Header4]\r\nCat=Meter\r\nItem=4\r\n");
}

TEST_F(frmChangeItemTest, AClickOnTheCategoryThatIsSetFillsTheListAnewToo) {
  Choose([&](QWidget* form) {
    ClickEntry(form, 3);
    QTest::mouseClick(Option(form, 1), Qt::LeftButton, {}, QPoint(8, 12));
    EXPECT_EQ(List(form)->count(), 155);
    EXPECT_TRUE(List(form)->selectedItems().isEmpty());
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, OneEntryAtMostIsSelected) {
  Choose([&](QWidget* form) {
    QListWidget* list = List(form);
    ClickEntry(form, 2);
    for (const auto modifier : {Qt::ControlModifier, Qt::ShiftModifier}) {
      const int row = modifier == Qt::ControlModifier ? 4 : 6;
      QTest::mouseClick(list->viewport(), Qt::LeftButton, modifier, PlaceOf(list, row));
      ASSERT_EQ(list->selectedItems().size(), 1);
      EXPECT_EQ(list->row(list->selectedItems().first()), row);
    }
    QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(list->selectedItems().size(), 1);
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, HomeAndEndSelectTheEntryThatHasTheFocusAlone) {
  Choose([&](QWidget* form) {
    QListWidget* list = List(form);
    for (const auto& [key, row] : {std::pair(Qt::Key_Home, 0), std::pair(Qt::Key_End, 154)}) {
      list->clearSelection();
      list->setCurrentRow(row, QItemSelectionModel::NoUpdate);
      QTest::keyClick(list, key);
      ASSERT_EQ(list->selectedItems().size(), 1) << row;
      EXPECT_EQ(list->row(list->selectedItems().first()), row);
    }
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, OkStoresTheChoiceAndTheListShowsIt) {
  EXPECT_EQ(Header(), "Item 2");
  Choose([&](QWidget* form) {
    QTest::mouseClick(Option(form, 2), Qt::LeftButton, {}, QPoint(8, 12));
    ClickEntry(form, 4);
    QTest::mouseClick(Button(form, "cmdOK"), Qt::LeftButton);
    EXPECT_FALSE(form->isVisible());
  });
  EXPECT_EQ(Ini(), "[Header4]\r\nCat=Meter\r\nItem=4\r\n");
  EXPECT_EQ(Header(), "Carrier Gas (L/min)");
  EXPECT_EQ(Cell(), "25.00");
}

TEST_F(frmChangeItemTest, ADoubleClickOnAnEntryStoresIt) {
  Choose([&](QWidget* form) {
    QListWidget* list = List(form);
    ClickEntry(form, 7);  // the first half of a double click
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, PlaceOf(list, 7));
    EXPECT_FALSE(form->isVisible());
  });
  EXPECT_EQ(Ini(), "[Header4]\r\nCat=Tune\r\nItem=7\r\n");
}

TEST_F(frmChangeItemTest, ADoubleClickOnAnEmptyPartWithNothingSelectedAsksForASelection) {
  Choose([&](QWidget* form) {
    List(form)->clear();
    QTest::mouseDClick(List(form)->viewport(), Qt::LeftButton, {}, QPoint(20, 20));
    ASSERT_EQ(w.messages.shown.size(), 1u);
    EXPECT_EQ(w.messages.shown[0].Text, "Select List Item!");
    EXPECT_EQ(w.messages.shown[0].Icon, MessageIcon::kExclamation);
    EXPECT_TRUE(form->isVisible());
    Button(form, "cmdCancel")->click();
  });
  EXPECT_EQ(Ini(), "");
}

TEST_F(frmChangeItemTest, AnEntryCanBeChosenWithTheKeyboard) {
  Choose([&](QWidget* form) {
    Option(form, 2)->setFocus();
    QTest::keyClick(Option(form, 2), Qt::Key_Space);
    List(form)->setFocus();
    EXPECT_TRUE(List(form)->selectedItems().isEmpty()) << "the focus alone selects nothing";
    QTest::keyClick(List(form), Qt::Key_Home);
    QTest::keyClick(List(form), Qt::Key_Down);
    Button(form, "cmdOK")->setFocus();
    QTest::keyClick(Button(form, "cmdOK"), Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
  });
  EXPECT_EQ(Ini(), "[Header4]\r\nCat=Meter\r\nItem=1\r\n");
}

TEST_F(frmChangeItemTest, CancelEscapeAndTheCloseBoxWriteNothingAndTheListIsRebuilt) {
  const std::function<void(QWidget*)> ways[] = {
      [](QWidget* form) { QTest::mouseClick(Button(form, "cmdCancel"), Qt::LeftButton); },
      [](QWidget* form) { QTest::keyClick(form, Qt::Key_Escape); },
      [](QWidget* form) { form->close(); }};
  for (const auto& way : ways) {
    w.MakeLog("2611150" + std::to_string(w.state.LogCount), "11/15/2026 06:00:00");
    const int before = w.state.LogCount;
    Choose([&](QWidget* form) {
      ClickEntry(form, 5);
      way(form);
      EXPECT_FALSE(form->isVisible());
    });
    EXPECT_EQ(w.state.LogCount, before + 1);
    EXPECT_EQ(Header(), "Item 2");
    EXPECT_EQ(Ini(), "");
  }
  EXPECT_TRUE(w.messages.shown.empty());
}

TEST_F(frmChangeItemTest, AnotherClickOnAHeaderDoesNothingWhileItIsVisible) {
  Choose([&](QWidget* form) {
    ListView1_ColumnClick(w.state, w.real, 7);
    EXPECT_EQ(w.state.ChangeColumn, 4);
    EXPECT_EQ(QApplication::activeModalWidget(), form);
    Button(form, "cmdCancel")->click();
  });
  EXPECT_FALSE(w.qt_forms.ChangeItemVisible());
}

TEST_F(frmChangeItemTest, DoesNotShowTheColumnsPresentChoice) {
  w.disk.Put(w.state.IniFile, "[Header4]\r\nCat=Meter\r\nItem=4\r\n");
  Choose([&](QWidget* form) {
    EXPECT_TRUE(Option(form, 1)->isChecked());
    EXPECT_TRUE(List(form)->selectedItems().isEmpty());
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, HelpShowsTheTopicOfTheModeAndLeavesTheChooserOpen) {
  w.state.HelpFileName = "C:\\QUOREX\\help\\quorex.chm";
  for (const bool ce_mode : {false, true}) {
    w.state.CEMode = ce_mode;
    w.help.calls.clear();
    Choose([&](QWidget* form) {
      Button(form, "cmdHelp")->click();
      EXPECT_TRUE(form->isVisible());
      Button(form, "cmdCancel")->click();
    });
    ASSERT_FALSE(w.help.calls.empty());
    const std::string topic = ce_mode ? " 15 16705" : " 15 16704";
    EXPECT_TRUE(w.help.calls.back().ends_with("C:\\QUOREX\\help\\quorex.chm" + topic))
        << w.help.calls.back();
  }
}

TEST_F(frmChangeItemTest, ControlsStandAtTheirPlaces) {
  Choose([&](QWidget* form) {
    const auto place = [&](const char* name) {
      const QRect pixels = FormsWorkstation::FindIn<QWidget>(form, name)->geometry();
      return std::vector<int>{TwipsOf(pixels.x()), TwipsOf(pixels.y()), TwipsOf(pixels.width()),
                              TwipsOf(pixels.height())};
    };
    using Place = std::vector<int>;
    EXPECT_EQ(TwipsOf(form->width()), 5190);
    EXPECT_EQ(TwipsOf(form->height()), 5130);
    EXPECT_EQ(place("Frame1"), (Place{120, 120, 4935, 1575}));
    EXPECT_EQ(place("Option1"), (Place{240, 360, 3855, 375}));
    EXPECT_EQ(place("Option2"), (Place{240, 720, 3855, 375}));
    EXPECT_EQ(place("Option3"), (Place{240, 1080, 3975, 375}));
    EXPECT_EQ(place("List1"), (Place{120, 1920, 4935, 2400}));
    EXPECT_EQ(place("cmdOK"), (Place{480, 4560, 975, 375}));
    EXPECT_EQ(place("cmdCancel"), (Place{2160, 4560, 975, 375}));
    EXPECT_EQ(place("cmdHelp"), (Place{3720, 4560, 975, 375}));
    EXPECT_EQ(Option(form, 1)->parentWidget(), FormsWorkstation::FindIn<QGroupBox>(form, "Frame1"));
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, IsPlacedAndRaisedAtEachActivation) {
  Choose([&](QWidget* form) {
    const auto handle = static_cast<std::intptr_t>(form->winId());
    QEvent activate(QEvent::WindowActivate);
    for (int pass = 0; pass < 2; ++pass) {
      w.windows.positions.clear();
      w.windows.calls.clear();
      QApplication::sendEvent(form, &activate);
      EXPECT_EQ(w.windows.positions.count(handle), 1u);
      ASSERT_FALSE(w.windows.calls.empty());
      EXPECT_EQ(w.windows.calls.back(), "SetBand " + std::to_string(handle) + " normal");
    }
    Button(form, "cmdCancel")->click();
  });
}

TEST_F(frmChangeItemTest, BelongsToTheMainWindow) {
  Choose([&](QWidget* form) {
    EXPECT_EQ(form->parentWidget(), &w.window);
    EXPECT_TRUE(form->isModal());
    Button(form, "cmdCancel")->click();
  });
}

}  // namespace
}  // namespace logbook
