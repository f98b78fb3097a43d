// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/Profile.h"

#include <gtest/gtest.h>

#include "Vectors.h"
#include "platform/Files.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

constexpr char kFile[] = "C:\\folder\\test.ini";

std::string TextOf(const nlohmann::json& call, const char* name) {
  return call.at(name).is_string() ? call.at(name).get<std::string>() : std::string();
}

void CheckCall(const TestMachine& machine, const nlohmann::json& call, const std::string& id) {
  const std::string function = call.at("fn");
  const std::string section = call.at("section");
  const std::string key = call.at("key");
  if (function == "GetPrivateProfileStringA") {
    const std::string value = GetPrivateProfileString(
        machine, section, key, TextOf(call, "default"), call.at("size").get<std::size_t>(), kFile);
    EXPECT_EQ(ToHex(value), call.at("expect_hex").get<std::string>()) << id << " " << call;
    EXPECT_EQ(value.size(), call.at("return").get<std::size_t>()) << id;
  } else if (function == "GetPrivateProfileIntA") {
    EXPECT_EQ(GetPrivateProfileInt(machine, section, key, call.at("default"), kFile),
              call.at("return").get<int>())
        << id << " " << call;
  } else {
    ASSERT_EQ(function, "WritePrivateProfileStringA") << id;
    EXPECT_EQ(WritePrivateProfileString(machine, section, key, TextOf(call, "value"), kFile),
              call.at("return").get<int>() != 0)
        << id;
    if (call.at("file_after_hex").is_null()) {
      EXPECT_FALSE(machine.Has(kFile)) << id;
    } else {
      EXPECT_EQ(ToHex(machine.Get(kFile)), call.at("file_after_hex").get<std::string>()) << id;
    }
  }
}

TEST(ProfileTest, every_recorded_call_gives_its_value_and_its_file) {
  int count = 0;
  for (const auto& each : ReadCases("profile.json")) {
    const std::string id = each.at("id");
    const TestMachine machine(each.at("code_page"));
    if (id.find("nodir") == std::string::npos) machine.MakeFolders("C:\\folder");
    if (!each.at("file_hex").is_null()) machine.Put(kFile, FromHex(each.at("file_hex")));
    for (const auto& call : each.at("calls")) CheckCall(machine, call, id);
    ++count;
  }
  EXPECT_EQ(count, 154);
}

}  // namespace
}  // namespace logbook::test
