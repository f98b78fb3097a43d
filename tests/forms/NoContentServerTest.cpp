// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/qt/NoContentServer.h"

#include <gtest/gtest.h>

#include <string>

namespace logbook {
namespace {

TEST(NoContentServer, IsNotEnabledAndSaysWhy) {
  NoContentServer ecm;
  std::string message;
  EXPECT_FALSE(ecm.EcmEnabled(message));
  EXPECT_FALSE(message.empty());
}

TEST(NoContentServer, RefusesFoldersAndSaysWhy) {
  NoContentServer ecm;
  std::string message;
  EXPECT_FALSE(ecm.EcmSubmit("C:\\staging", message));
  EXPECT_FALSE(message.empty());
}

}  // namespace
}  // namespace logbook
