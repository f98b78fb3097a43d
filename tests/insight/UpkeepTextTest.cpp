// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/UpkeepText.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "GoldenText.h"
#include "SampleTrends.h"

namespace logbook::insight {
namespace {

using nlohmann::json;
using test::Noon;

DueReport SampleReport() {
  UpkeepRecord first{Noon("2026-01-10"), "26011000", UpkeepRecord::Kind::kConfirmed, {}};
  first.ticks[1] = first.ticks[9] = true;
  UpkeepRecord second{Noon("2026-02-20"), "26022000", UpkeepRecord::Kind::kConfirmed, {}};
  second.ticks[1] = second.ticks[0] = true;
  const Intervals intervals =
      ParseIntervals("i.ini",
                     "[Intervals]\nClean Cones=30\nChange Torch=1 year\nChange EM=2 years\n"
                     "Check Drain Vessel=10 days\n");
  const LocalDay today = ParseDay("2026-03-01").value();
  return {"/srv/logs", today, TickKind::kCertain,
          ReckonDue(std::vector{first, second}, intervals, TickKind::kCertain, today)};
}

TEST(UpkeepText, TheMostUrgentItemStandsFirst) {
  test::ExpectGolden("due.txt", DueTable(SampleReport()));
}

TEST(UpkeepText, WhereTheTableIsTooWideTheDatesHaveALineOfTheirOwn) {
  const std::string wide = DueTable(SampleReport());
  const auto longest = static_cast<int>(wide.find('\n', wide.find('\n') + 1) - wide.find('\n') - 1);
  EXPECT_EQ(DueTable(SampleReport(), longest), wide);
  test::ExpectGolden("due-narrow.txt", DueTable(SampleReport(), longest - 1));
}

TEST(UpkeepText, JsonTellsEveryItem) {
  const json document = json::parse(DueJson({SampleReport()}));
  const json& root = document.at("roots").at(0);
  EXPECT_EQ(root.at("root"), "/srv/logs");
  EXPECT_EQ(root.at("today"), "2026-03-01");
  EXPECT_EQ(root.at("reckoned_from"), "certain");
  ASSERT_EQ(root.at("items").size(), 18U);
  EXPECT_EQ(root.at("items").at(1),
            json({{"item", 1},
                  {"label", "Clean Cones"},
                  {"state", "overdue"},
                  {"interval", "30 days"},
                  {"due", "2026-02-09"},
                  {"days_left", -20},
                  {"certain", {{"date", "2026-01-10T12:00:00"}, {"log", "26011000"}}},
                  {"claimed", {{"date", "2026-02-20T12:00:00"}, {"log", "26022000"}}}}));
  EXPECT_TRUE(root.at("items").at(17).at("due").is_null());
  EXPECT_EQ(root.at("items").at(17).at("state"), "never");
}

}  // namespace
}  // namespace logbook::insight
