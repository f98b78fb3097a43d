// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Each command with each fault at each of its calls is a long test; a sample of its points is an
// ordinary one.

#include <gtest/gtest.h>

#include "Commands.h"
#include "support/DavServer.h"

namespace logbook::test {
namespace {

struct Case {
  const char* name;
  Command (*make)();
};

class CrashMatrix : public ::testing::TestWithParam<Case> {};

#ifdef EVERY_POINT
constexpr int kMostPoints = 0;
#else
constexpr int kMostPoints = 16;
#endif

TEST_P(CrashMatrix, EveryFaultLeavesWholeFilesAndIsTold) {
  RunMatrix(GetParam().make(), kMostPoints);
}

TEST_P(CrashMatrix, EveryAllocationThatFailsIsErrorSevenOrNothing) {
  RunShortOfMemory(GetParam().make(), kMostPoints);
}

TEST(CrashMatrix, EveryFaultOfTheAgentLeavesEachUploadOnceAndWhole) {
  if (!HasDavServer()) GTEST_SKIP() << "apache2 with mod_dav_fs is not installed";
  DavServer server;
  server.Start();
  RunMatrix(DeliverToServer(server.Url(), server.Root()), kMostPoints);
}

TEST(CrashMatrix, EveryAllocationOfTheAgentThatFailsIsErrorSevenOrNothing) {
  if (!HasDavServer()) GTEST_SKIP() << "apache2 with mod_dav_fs is not installed";
  DavServer server;
  server.Start();
  RunShortOfMemory(DeliverToServer(server.Url(), server.Root()), kMostPoints);
}

const Case kCases[] = {
    {"RecordOK", RecordOK},
    {"RecordCancel", RecordCancel},
    {"AutomaticRecord", AutomaticRecord},
    {"DeleteSeveral", DeleteSeveral},
    {"ChooseColumn", ChooseColumn},
    {"RebuildList", RebuildList},
    {"ViewAllReports", ViewAllReports},
    {"WriteAllReports", WriteAllReports},
    {"Archive", Archive},
    {"ExportValues", ExportValues},
    {"RecordAndUpload", RecordAndUpload},
    {"DeleteAndUpload", DeleteAndUpload},
    {"PrintListToPdf", PrintListToPdf},
    {"DeliverToFolder", DeliverToFolder},
};

std::string NameOf(const ::testing::TestParamInfo<Case>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Commands, CrashMatrix, ::testing::ValuesIn(kCases), NameOf);

}  // namespace
}  // namespace logbook::test
