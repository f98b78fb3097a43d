// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/LateLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace logbook::posix {
namespace {

TEST(LateLibraryTest, ARoutineIsFoundByItsName) {
  LateLibrary library("libm.so.6");
  EXPECT_EQ(library.Find<double(double)>("fabs")(-3), 3);
  EXPECT_TRUE(library.IsThere());
}

TEST(LateLibraryTest, AMissingLibraryOrRoutineIsToldInTheLoadersWords) {
  LateLibrary missing("libnone-of-this-name.so.1");
  EXPECT_FALSE(missing.IsThere());
  try {
    missing.Find<void()>("routine");
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("libnone-of-this-name.so.1"));
  }
  LateLibrary library("libm.so.6");
  EXPECT_THROW(library.Find<void()>("no_such_routine"), std::runtime_error);
}

}  // namespace
}  // namespace logbook::posix
