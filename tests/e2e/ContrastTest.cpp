// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is selected can be read, measured on the screen, whatever colours the user has chosen for
// the desktop.

#include <QColor>
#include <regex>

#include "Pages.h"
#include "Workplace.h"
#include "qt/SelectionColours.h"

namespace logbook::e2e {
namespace {

using Colours = DesktopKind::Colours;

std::string NameOf(Colours colours) {
  constexpr const char* kNames[] = {"Usual", "Dark", "HighContrast"};
  return kNames[static_cast<std::size_t>(colours)];
}

// What people with weak eyes need.
constexpr double kNeeded = 4.5;

struct Painted {
  QColor ground, text;
};

class ContrastTest : public ReadableProgram, public testing::WithParamInterface<Colours> {
 protected:
  DesktopKind Kind() const override { return {.colours = GetParam()}; }

  // The colour that most of a place has, and the one that stands out most from it.
  Painted ColoursAt(const Place& place) {
    const std::string picture = desktop().NewFile("screen.png");
    desktop().TakePicture(picture);
    const std::string part = std::to_string(place.width) + "x" + std::to_string(place.height) +
                             "+" + std::to_string(place.x) + "+" + std::to_string(place.y);
    const auto counted = RunCommand(
        {"convert", picture, "-crop", part, "-depth", "8", "-format", "%c", "histogram:info:-"},
        desktop().Variables(), desktop().NewFile("colours"));
    const std::regex line(R"((\d+):[^#\n]*(#[0-9A-F]{6}))");
    std::vector<QColor> colours;
    Painted painted;
    long most = 0;
    for (std::sregex_iterator found(counted.output.begin(), counted.output.end(), line), end;
         found != end; ++found) {
      colours.emplace_back(QString::fromStdString((*found)[2]));
      const long count = std::stol((*found)[1]);
      if (count <= most) continue;
      most = count;
      painted.ground = colours.back();
    }
    painted.text = painted.ground;
    for (const QColor& colour : colours) {
      if (Contrast(colour, painted.ground) > Contrast(painted.text, painted.ground))
        painted.text = colour;
    }
    return painted;
  }

  void ExpectReadable(const std::string& what, const Painted& painted) {
    EXPECT_GE(Contrast(painted.text, painted.ground), kNeeded)
        << what << ": " << painted.text.name().toStdString() << " on "
        << painted.ground.name().toStdString();
  }
};

TEST_P(ContrastTest, SelectedAndOtherRowsCanBeReadAndToldApart) {
  work().RunHost({"fill", "--logs", "3", "--until", "2026-06-30"});
  work().StartHostWithLogbook();
  const MainPage main(desktop());
  const Place row = Row("26062100").place;
  const Painted before = ColoursAt(row);
  ClickRow("26062100");
  Painted selected;
  WaitFor("the row to be painted as selected", [&] {
    selected = ColoursAt(row);
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
