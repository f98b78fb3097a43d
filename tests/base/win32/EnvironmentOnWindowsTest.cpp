// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Where Windows has the folders of a user, and whose drives the logbook takes.

#include <gtest/gtest.h>

#include "base/Environment.h"
#include "base/Machine.h"
#include "base/win32/System.h"
#include "support/EnvironmentVariable.h"

namespace logbook::test {
namespace {

TEST(EnvironmentOnWindowsTest, CachesAndDataAreLocalAndSettingsGoWithTheUser) {
  const EnvironmentVariable local("LOCALAPPDATA", "C:\\users\\service\\Local\\");
  const EnvironmentVariable roaming("APPDATA", "C:\\users\\service\\Roaming");
  EXPECT_EQ(UserCacheFolder(), "C:/users/service/Local");
  EXPECT_EQ(UserDataFolder(), "C:/users/service/Local");
  EXPECT_EQ(UserConfigFolder(), "C:/users/service/Roaming");
}

TEST(EnvironmentOnWindowsTest, WithoutItsVariableAFolderIsEmpty) {
  const EnvironmentVariable local("LOCALAPPDATA", nullptr);
  const EnvironmentVariable roaming("APPDATA", "");
  EXPECT_EQ(UserCacheFolder(), "");
  EXPECT_EQ(UserDataFolder(), "");
  EXPECT_EQ(UserConfigFolder(), "");
}

TEST(EnvironmentOnWindowsTest, AValueOutsideTheCodePageIsReadWhole) {
  SetEnvironmentVariableW(L"LOGBOOK_TEST", L"\u30B3\u30FC\u30F3 \u00B5\u0416");
  EXPECT_EQ(EnvironmentText("LOGBOOK_TEST"),
            "\xE3\x82\xB3\xE3\x83\xBC\xE3\x83\xB3 \xC2\xB5\xD0\x96");
  SetEnvironmentVariableW(L"LOGBOOK_TEST", nullptr);
  EXPECT_EQ(EnvironmentText("LOGBOOK_TEST"), "");
}

TEST(EnvironmentOnWindowsTest, OnlyAHomeThatIsNamedIsOne) {
  const EnvironmentVariable none("LOGBOOK_HOME", nullptr);
  EXPECT_EQ(DefaultHome(), "");
  const EnvironmentVariable named("LOGBOOK_HOME", "Z:\\home");
  EXPECT_EQ(DefaultHome(), "Z:\\home");
}

}  // namespace
}  // namespace logbook::test
