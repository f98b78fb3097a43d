// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateName.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace logbook {
namespace {

TEST(PrivateNameTest, ANewNameIsAnotherOneAtEachCallAndIsKnownAgain) {
  std::set<std::string> names;
  for (int i = 0; i < 50; ++i) {
    const std::string name = NewPrivateName("/area/list.xml");
    EXPECT_EQ(name.size(), std::string("/area/list.xml.").size() + 6);
    EXPECT_TRUE(name.starts_with("/area/list.xml."));
    EXPECT_TRUE(IsPrivateName(name.substr(6), "list.xml")) << name;
    names.insert(name);
  }
  EXPECT_EQ(names.size(), 50u);
}

TEST(PrivateNameTest, TheEndingIsAPointAndSixLettersOrDigits) {
  for (const char* name : {"a.xml.abcxyz", "a.xml.ABCXYZ", "a.xml.012789"})
    EXPECT_TRUE(IsPrivateName(name, "a.xml")) << name;
  for (std::size_t place = 0; place < 6; ++place)
    EXPECT_FALSE(IsPrivateName(std::string("a.xml.abcdef").replace(6 + place, 1, "-"), "a.xml"));
  for (const char letter : {'/', ':', '@', '[', '`', '{', '-', '.'})
    EXPECT_FALSE(IsPrivateName(std::string("a.xml.abcde") + letter, "a.xml")) << letter;
  for (const char* name : {"a.xml.abcde", "a.xml.abcdefg", "a.xmlxabcdef", "a.xml", "abcdef", ""})
    EXPECT_FALSE(IsPrivateName(name, "a.xml")) << name;
}

TEST(PrivateNameTest, AFileOfTheSameExtensionCountsToo) {
  EXPECT_TRUE(IsPrivateName("b.xml.abcdef", "a.xml"));
  EXPECT_TRUE(IsPrivateName(".xml.abcdef", "a.xml"));
  EXPECT_FALSE(IsPrivateName("b.txt.abcdef", "a.xml"));
  EXPECT_TRUE(IsPrivateName("plain.abcdef", "plain"));
  EXPECT_FALSE(IsPrivateName("other.abcdef", "plain"));
  EXPECT_TRUE(IsPrivateName(".abcdef", ""));
}

}  // namespace
}  // namespace logbook
