// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Each command with each fault at each of its calls is a long test; a sample of its points is an
// ordinary one.

#include <gtest/gtest.h>

#include "Commands.h"

namespace logbook::test {
namespace {

struct Case {
  const char* name;
  Command (*make)();
};

class CrashMatrix : public ::testing::TestWithParam<Case> {};

#ifdef EVERY_POINT
TEST_P(CrashMatrix, EveryFaultLeavesWholeFilesAndIsTold) {
  RunMatrix(GetParam().make());
}
#else
TEST_P(CrashMatrix, SomeFaultsLeaveWholeFilesAndAreTold) {
  constexpr int kSome = 16;
  RunMatrix(GetParam().make(), kSome);
}
#endif

const Case kCases[] = {
    {"RecordOK", RecordOK},
    {"RecordCancel", RecordCancel},
    {"AutomaticRecord", AutomaticRecord},
    {"DeleteSeveral", DeleteSeveral},
    {"ChooseColumn", ChooseColumn},
    {"RebuildList", RebuildList},
    {"ViewAllReports", ViewAllReports},
    {"Archive", Archive},
};

std::string NameOf(const ::testing::TestParamInfo<Case>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Commands, CrashMatrix, ::testing::ValuesIn(kCases), NameOf);

}  // namespace
}  // namespace logbook::test
