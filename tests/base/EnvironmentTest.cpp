// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Environment.h"

#include <gtest/gtest.h>

#include "base/Machine.h"
#include "support/EnvironmentVariable.h"

namespace logbook::test {
namespace {

TEST(EnvironmentTest, AVariableThatIsNotSetReadsAsAnEmptyOne) {
  const EnvironmentVariable set("LOGBOOK_TEST", "one two");
  EXPECT_EQ(EnvironmentText("LOGBOOK_TEST"), "one two");
  const EnvironmentVariable none("LOGBOOK_TEST", nullptr);
  EXPECT_EQ(EnvironmentText("LOGBOOK_TEST"), "");
}

TEST(EnvironmentTest, AFolderOfTheUserIsWhatItsVariableNames) {
  const EnvironmentVariable home("HOME", "/home/service");
  const EnvironmentVariable data("XDG_DATA_HOME", "/data/");
  const EnvironmentVariable config("XDG_CONFIG_HOME", "/config");
  const EnvironmentVariable cache("XDG_CACHE_HOME", "/cache//");
  EXPECT_EQ(UserDataFolder(), "/data");
  EXPECT_EQ(UserConfigFolder(), "/config");
  EXPECT_EQ(UserCacheFolder(), "/cache");
}

TEST(EnvironmentTest, TheFolderAboveAllOthersKeepsItsSlash) {
  const EnvironmentVariable home("HOME", "/home/service");
  const EnvironmentVariable data("XDG_DATA_HOME", "/");
  const EnvironmentVariable config("XDG_CONFIG_HOME", "//");
  EXPECT_EQ(UserDataFolder(), "/");
  EXPECT_EQ(UserConfigFolder(), "/");
}

TEST(EnvironmentTest, AFolderThatNoneOrARelativeOneIsNamedForLiesInTheHome) {
  const EnvironmentVariable home("HOME", "/home/service/");
  const EnvironmentVariable data("XDG_DATA_HOME", nullptr);
  const EnvironmentVariable config("XDG_CONFIG_HOME", "");
  const EnvironmentVariable cache("XDG_CACHE_HOME", "relative");
  EXPECT_EQ(UserDataFolder(), "/home/service/.local/share");
  EXPECT_EQ(UserConfigFolder(), "/home/service/.config");
  EXPECT_EQ(UserCacheFolder(), "/home/service/.cache");
  const EnvironmentVariable no_home("HOME", nullptr);
  EXPECT_EQ(UserDataFolder(), "");
  EXPECT_EQ(UserConfigFolder(), "");
  EXPECT_EQ(UserCacheFolder(), "");
}

TEST(EnvironmentTest, TheHomeIsTheFirstOfThreeVariablesThatIsSet) {
  const EnvironmentVariable home("HOME", "/home/service");
  const EnvironmentVariable data("XDG_DATA_HOME", "/data/");
  {
    const EnvironmentVariable own("LOGBOOK_HOME", "/srv/logbook/");
    EXPECT_EQ(DefaultHome(), "/srv/logbook");
    for (const char* root : {"/", "//"}) {
      const EnvironmentVariable highest("LOGBOOK_HOME", root);
      EXPECT_EQ(DefaultHome(), "/");
    }
  }
  const EnvironmentVariable none("LOGBOOK_HOME", nullptr);
  EXPECT_EQ(DefaultHome(), "/data/quorex-logbook");
  const EnvironmentVariable no_data("XDG_DATA_HOME", nullptr);
  EXPECT_EQ(DefaultHome(), "/home/service/.local/share/quorex-logbook");
}

TEST(EnvironmentTest, AnEmptyVariableDoesNotCountNorDoesARelativeDataFolder) {
  const EnvironmentVariable home("HOME", "/home/service");
  const EnvironmentVariable own("LOGBOOK_HOME", "");
  {
    const EnvironmentVariable data("XDG_DATA_HOME", "");
    EXPECT_EQ(DefaultHome(), "/home/service/.local/share/quorex-logbook");
  }
  const EnvironmentVariable data("XDG_DATA_HOME", "relative");
  EXPECT_EQ(DefaultHome(), "/home/service/.local/share/quorex-logbook");
}

}  // namespace
}  // namespace logbook::test
