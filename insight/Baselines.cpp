// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Baselines.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "base/Environment.h"
#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/Utf8Path.h"
#include "insight/Difference.h"
#include "insight/Export.h"

namespace logbook::insight {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;
constexpr std::string_view kExtension = ".json";
constexpr std::size_t kMostName = 64;

Json ValuesJson(const LogReading& reading) {
  Json values = Json::object();
  for (int place = 0; place < kAllRows; ++place) {
    const RowValue& value = reading.Values[static_cast<std::size_t>(place)];
    Json entry = {{"state", NameOf(value.State)}};
    if (value.State == ValueState::kOk) {
      entry["number"] = value.Number;
      entry["text"] = value.Text;
    }
    values[NameOf(RowAtPlace(place))] = std::move(entry);
  }
  return values;
}

RowValue ParseValue(const Json& entry) {
  RowValue value;
  const auto state = FindState(entry.at("state").get<std::string>());
  if (!state) throw BaselineError("unknown state");
  value.State = *state;
  if (*state != ValueState::kOk) return value;
  value.Number = entry.at("number");
  value.Text = entry.at("text");
  return value;
}

std::uint64_t ParseFingerprint(const std::string& text) {
  return std::strtoull(text.c_str(), nullptr, 16);
}

LogReading FromJson(const Json& json) {
  if (json.at("version") != kVersion) throw BaselineError("made by another version");
  LogReading reading;
  reading.Identity = {json.at("root"), json.at("log"), json.at("date"),
                      ParseFingerprint(json.at("fingerprint"))};
  reading.Date = ParseLogDate(reading.Identity.Date);
  reading.HasComment = !json.at("comment").is_null();
  if (reading.HasComment) reading.Comment = json.at("comment");
  reading.Automatic = json.at("automatic");
  reading.HasTicks = json.at("confirmed");
  for (const Json& tick : json.at("ticks")) reading.Ticks.at(tick.get<std::size_t>()) = true;
  for (const OptionKey& option : kOptionKeys) {
    const Json& value = json.at("options").at(std::string(option.Key));
    // JSON has no number for it.
    reading.Options.*option.Member =
        value.is_null() ? std::numeric_limits<double>::infinity() : value.get<double>();
  }
  for (int place = 0; place < kAllRows; ++place) {
    reading.Values.push_back(ParseValue(json.at("values").at(NameOf(RowAtPlace(place)))));
  }
  return reading;
}

// The file routines take path texts and a machine, of which a path without a drive needs nothing.
const Machine& NoDrives() {
  static const Machine machine;
  return machine;
}

template <typename Call>
auto Reported(const std::string& what, Call call) {
  try {
    return call();
  } catch (const RunTimeError& error) {
    throw BaselineError(what + ": " + std::string(error.Description()));
  }
}

}  // namespace

std::string ReadingText(const LogReading& reading) {
  Json ticks = Json::array();
  for (std::size_t i = 0; i < reading.Ticks.size(); ++i) {
    if (reading.Ticks[i]) ticks.push_back(i);
  }
  Json options = Json::object();
  for (const OptionKey& option : kOptionKeys) {
    options[std::string(option.Key)] = reading.Options.*option.Member;
  }
  const Json json = {{"version", kVersion},
                     {"root", reading.Identity.Root},
                     {"log", reading.Identity.Folder},
                     {"date", reading.Identity.Date},
                     {"fingerprint", FingerprintText(reading.Identity)},
                     {"comment", reading.HasComment ? Json(reading.Comment) : Json(nullptr)},
                     {"automatic", reading.Automatic},
                     {"confirmed", reading.HasTicks},
                     {"ticks", std::move(ticks)},
                     {"options", std::move(options)},
                     {"values", ValuesJson(reading)}};
  return json.dump(1, ' ', false, Json::error_handler_t::replace) + '\n';
}

LogReading ParseReading(std::string_view text) {
  try {
    return FromJson(Json::parse(text));
  } catch (const Json::exception&) {
    throw BaselineError("it is damaged, or no baseline");
  } catch (const std::out_of_range&) {
    throw BaselineError("a tick that does not exist");
  }
}

bool IsBaselineName(std::string_view name) {
  const auto is_letter = [](char each) {
    return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
           (each >= '0' && each <= '9') || each == '-' || each == '_' || each == '.';
  };
  return !name.empty() && name.size() <= kMostName && name.front() != '.' &&
         std::all_of(name.begin(), name.end(), is_letter);
}

std::string BaselineFolder::FileOf(std::string_view name) const {
  if (!IsBaselineName(name)) {
    throw BaselineError("\"" + std::string(name) + "\" is no name for a baseline");
  }
  return path_ + "/" + std::string(name).append(kExtension);
}

void BaselineFolder::Keep(std::string_view name, const LogReading& reading) const {
  const std::string file = FileOf(name);
  std::error_code error;
  fs::create_directories(Utf8Path(path_), error);
  if (error) throw BaselineError(path_ + ": " + error.message());
  fs::permissions(Utf8Path(path_), fs::perms::owner_all, error);
  Reported(file, [&] { WriteFile(NoDrives(), PathText(file), ReadingText(reading)); });
}

LogReading BaselineFolder::Find(std::string_view name) const {
  const std::string file = FileOf(name);
  if (!Exists(NoDrives(), PathText(file))) {
    throw BaselineError("there is no baseline \"" + std::string(name) + "\"");
  }
  const std::string text = Reported(file, [&] { return ReadFile(NoDrives(), PathText(file)); });
  try {
    return ParseReading(text);
  } catch (const BaselineError& problem) {
    throw BaselineError(file + ": " + problem.what());
  }
}

std::vector<std::string> BaselineFolder::Names() const {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator each(Utf8Path(path_), error), end; !error && each != end;
       each.increment(error)) {
    std::string name = each->path().filename().string();
    if (!name.ends_with(kExtension)) continue;
    name.resize(name.size() - kExtension.size());
    if (IsBaselineName(name)) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void BaselineFolder::Drop(std::string_view name) const {
  const std::string file = FileOf(name);
  if (!Exists(NoDrives(), PathText(file))) {
    throw BaselineError("there is no baseline \"" + std::string(name) + "\"");
  }
  Reported(file, [&] { DeleteFile(NoDrives(), PathText(file)); });
}

std::string ConfigFolder() {
  const std::string config = UserConfigFolder();
  return config.empty() ? config : config + "/quorex-logbook";
}

}  // namespace logbook::insight
