// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is selected can be read, measured on the screen, whatever colours the user has chosen for
// the desktop.

#include "Pages.h"
#include "Painted.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

using Colours = DesktopKind::Colours;

std::string NameOf(Colours colours) {
  constexpr const char* kNames[] = {"Usual", "Dark", "HighContrast"};
  return kNames[static_cast<std::size_t>(colours)];
}

class ContrastTest : public ReadableProgram, public testing::WithParamInterface<Colours> {
 protected:
  DesktopKind Kind() const override { return {.colours = GetParam()}; }

  Painted ColoursOf(const Place& place) { return ColoursAt(ScreenPicture(desktop()), place); }

  void ExpectReadable(const std::string& what, const Painted& painted) {
    EXPECT_GE(painted.contrast(), kReadable) << what << ": " << painted.text.name().toStdString()
                                             << " on " << painted.ground.name().toStdString();
  }
};

TEST_P(ContrastTest, SelectedAndOtherRowsCanBeReadAndToldApart) {
  work().RunHost({"fill", "--logs", "3", "--until", "2026-06-30"});
  work().StartHostWithLogbook();
  const MainPage main(desktop());
  const Place row = Row("26062100").place;
  const Painted before = ColoursOf(row);
  ClickRow("26062100");
  Painted selected;
  WaitFor("the row to be painted as selected", [&] {
    selected = ColoursOf(row);
    return selected.ground != before.ground;
  });
  ExpectReadable("other row", before);
  ExpectReadable("selected row", selected);
  const bool is_dark = Contrast(before.ground, Qt::white) > Contrast(before.ground, Qt::black);
  EXPECT_EQ(is_dark, GetParam() != Colours::kUsual) << "the desktop's colours are taken";
  desktop().TakePicture(main.window(), PictureFolder() + "/colours-" + NameOf(GetParam()) + ".png");
}

INSTANTIATE_TEST_SUITE_P(Colours, ContrastTest,
                         testing::Values(Colours::kUsual, Colours::kDark, Colours::kHighContrast),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace logbook::e2e
