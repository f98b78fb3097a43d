// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Trends as drawings: on the terminal, as SVG, as HTML. The whole drawings are held against golden
// files that a person has looked at.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "GoldenText.h"
#include "SampleTrends.h"
#include "insight/TrendHtml.h"
#include "insight/TrendSvg.h"
#include "insight/TrendTerminal.h"
#include "support/RunProgram.h"
#include "support/TestMachine.h"
#include "text/TextParts.h"

namespace logbook::insight {
namespace {

using test::DailySeries;
using test::ExpectGolden;
using test::OxideAndGas;

const double kGap = std::nan("");

Trend TrendOf(const std::vector<double>& values) {
  return MakeTrend(DailySeries(values), ParseControlRules("1").value(), {});
}

std::size_t Count(const std::string& text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + 1)) ++count;
  return count;
}

std::size_t WidestLine(const std::string& text) {
  std::istringstream lines(text);
  std::size_t widest = 0;
  for (std::string line; std::getline(lines, line);) {
    widest = std::max(
        widest, static_cast<std::size_t>(std::count_if(line.begin(), line.end(), BeginsCharacter)));
  }
  return widest;
}

TEST(TrendDrawing, TerminalShowsTheCurveInBraille) {
  const TerminalStyle style{.width = 100, .height = 16};
  std::string text;
  for (const Trend& trend : OxideAndGas()) {
    text += TrendChart(trend, style) + TrendFigures(trend, style);
  }
  ExpectGolden("trend-unicode.txt", text);
}

TEST(TrendDrawing, TerminalShowsTheCurveInAsciiWhereItMust) {
  const TerminalStyle style{.width = 72, .height = 12, .unicode = false};
  const Trend trend = OxideAndGas()[0];
  const std::string text = TrendChart(trend, style) + TrendFigures(trend, style);
  EXPECT_TRUE(std::all_of(text.begin(), text.end(),
                          [](char each) { return static_cast<unsigned char>(each) < 0x80; }));
  ExpectGolden("trend-ascii.txt", text);
}

TEST(TrendDrawing, NoLineOfTheChartIsWiderThanTheTerminal) {
  for (const bool unicode : {true, false}) {
    for (int width = 1; width <= 200; width += 7) {
      const std::string text =
          TrendChart(OxideAndGas()[0], {.width = width, .height = 5, .unicode = unicode});
      EXPECT_LE(WidestLine(text), static_cast<std::size_t>(std::max(40, width)));
      EXPECT_GE(WidestLine(text), static_cast<std::size_t>(std::max(40, width)) / 2);
    }
  }
}

TEST(TrendDrawing, AGapInterruptsTheCurve) {
  const auto drawn = [](const std::vector<double>& values) {
    Trend trend = TrendOf(values);
    trend.control.reset();
    return TrendChart(trend, {.width = 60, .height = 4, .unicode = false});
  };
  const std::string whole = drawn({1, 1, 1, 2, 1, 1});
  const std::string broken = drawn({1, 1, kGap, 2, 1, 1});
  EXPECT_EQ(Count(whole, "*"), 6U) << whole;
  EXPECT_EQ(Count(broken, "*"), 5U) << broken;
  EXPECT_GT(Count(whole, "."), Count(broken, ".") + 5) << broken;
}

TEST(TrendDrawing, WhatARuleNamesStandsOutAndIsRedOnlyWhereColourIsWanted) {
  std::vector<double> values(20, 1);
  for (std::size_t i = 0; i < values.size(); i += 2) values[i] = 1.1;
  values[10] = 5;
  const Trend trend = TrendOf(values);
  EXPECT_EQ(Count(TrendChart(trend, {.color = true}), "\x1B[1;31m●\x1B[0m"), 1U);
  EXPECT_EQ(Count(TrendChart(trend, {}), "●"), 1U);
  EXPECT_EQ(Count(TrendChart(trend, {.unicode = false}), "#"), 1U);
  EXPECT_EQ(TrendChart(trend, {}).find('\x1B'), std::string::npos);
  EXPECT_NE(TrendFigures(trend, {}).find("rule 1, beyond a limit"), std::string::npos);
}

TEST(TrendDrawing, WithoutAValueTheChartSaysSo) {
  EXPECT_EQ(TrendChart(TrendOf({kGap, kGap}), {}), "Oxide (%)\nno value\n");
  EXPECT_EQ(TrendFigures(TrendOf({kGap}), {}),
            "values    0 values, 1 gap, 2026-01-01 to 2026-01-01\n");
  EXPECT_EQ(TrendChart(TrendOf({}), {}), "Oxide (%)\nno value\n");
  EXPECT_NE(TrendSvg({TrendOf({kGap})}).find(">no value<"), std::string::npos);
}

TEST(TrendDrawing, OneValueIsDrawn) {
  EXPECT_EQ(Count(TrendChart(TrendOf({3}), {.unicode = false}), "*"), 1U);
  EXPECT_EQ(Count(TrendSvg({TrendOf({3})}), "<circle"), 1U);
}

TEST(TrendDrawing, MarksBeyondTheAlphabetHaveTwoLetters) {
  EXPECT_EQ(MarkLetter(0), "A");
  EXPECT_EQ(MarkLetter(25), "Z");
  EXPECT_EQ(MarkLetter(26), "AA");
  EXPECT_EQ(MarkLetter(27 * 26), "AAA");
}

TEST(TrendDrawing, LimitsThatWouldFlattenTheCurveAreLeftOut) {
  Limits limits;
  limits.reference = 1.5;
  limits.tolerance = Amount{1, false};
  limits.action = Amount{1000, false};
  Trend trend = MakeTrend(DailySeries({1, 2, 1, 2}), {}, limits);
  const Axis axis = ValueAxisOf(trend, 5);
  EXPECT_LT(axis.high, 10);
  EXPECT_EQ(LevelLinesOf(trend).size(), 6U) << "mean, two limits, reference, two tolerances";
}

TEST(TrendDrawing, SvgIsAPictureOfItsOwn) {
  const std::string svg = TrendSvg(OxideAndGas());
  ExpectGolden("trend.svg", svg);
  EXPECT_EQ(Count(svg, "<path class=\"hit\""), 1U);
  EXPECT_EQ(Count(svg, "<circle class=\"point\""), 77U);
  EXPECT_EQ(Count(svg, "class=\"marktext\""), 4U);
  EXPECT_EQ(Count(svg, "http"), 1U) << "the name space and no other address";
  EXPECT_EQ(Count(svg, "<script"), 0U);
}

TEST(TrendDrawing, SvgAndHtmlAreWellFormed) {
  if (!test::HasProgram("xmllint"))
    GTEST_FAIL() << "the machine has no libxml2-utils; ./test installs them";
  const test::TestMachine scratch;
  std::ofstream(scratch.home() + "/t.svg") << TrendSvg(OxideAndGas());
  const test::ProgramResult svg =
      test::RunProgram("xmllint --noout " + test::Quoted(scratch.home() + "/t.svg"));
  EXPECT_EQ(svg.status, 0) << svg.output;
  std::ofstream(scratch.home() + "/t.html") << TrendHtml(OxideAndGas(), "/srv/<logs>");
  const test::ProgramResult html = test::RunProgram(
      "xmllint --html --noout " + test::Quoted(scratch.home() + "/t.html") +
      " 2>&1 | grep -vE 'Tag (section|figure|svg|title|style|rect|g|text|line|path|circle|details|"
      "summary) invalid|^[[:space:]]*[<^]|\\^' || true");
  EXPECT_EQ(html.output.find("error"), std::string::npos) << html.output;
}

TEST(TrendDrawing, HtmlIsAPageOfItsOwn) {
  const std::string html = TrendHtml(OxideAndGas(), "/srv/<logs>");
  ExpectGolden("trend.html", html);
  EXPECT_NE(html.find("/srv/&lt;logs&gt;"), std::string::npos);
  EXPECT_EQ(Count(html, "http"), 1U);
  EXPECT_EQ(Count(html, "<script"), 0U);
  EXPECT_EQ(Count(html, "<link"), 0U);
}

TEST(TrendDrawing, LabelsOfMarksNeverTouchEachOther) {
  Series series = DailySeries(std::vector<double>(300, 1));
  for (int i = 0; i < 100; ++i) {
    series.marks.push_back({series.points[static_cast<std::size_t>(i) * 3].when,
                            {"Replace Peripump Tube"},
                            "26010100"});
  }
  const std::string svg = TrendSvg({MakeTrend(series, {}, {})});
  EXPECT_EQ(Count(svg, "class=\"mark\""), 100U) << "every mark has its line";
  const std::size_t labels = Count(svg, "class=\"marktext\"");
  EXPECT_GE(labels, 6U);
  EXPECT_LE(labels, 36U) << "six lanes of six labels at most";
}

}  // namespace
}  // namespace logbook::insight
