// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "RandomLogs.h"

#include <chrono>

namespace logbook::test {

host::InstrumentBuild RandomLogs::RandomBuild() {
  host::InstrumentBuild build;
  build.lens = static_cast<host::LensFamily>(Pick(3));
  for (int* option : {&build.security, &build.styleb, &build.new_rf, &build.qptype, &build.afc,
                      &build.sc, &build.opgs, &build.pmp2, &build.colopgs}) {
    *option = Pick(9) == 0 ? 2 : Pick(1);
  }
  return build;
}

std::string RandomLogs::AddOne(std::vector<host::Damage> damages) {
  const host::Instrument instrument = {RandomBuild(), static_cast<std::uint64_t>(Pick(1000))};
  const host::LocalTime until =
      *host::ParseTime("2024-01-10") + std::chrono::days(day_++) + std::chrono::seconds(Pick(3600));
  return host::MakeHistory(host::OpenWorkstation(disk_.home()),
                           {instrument, 1, until, std::move(damages), 0})
      .front();
}

std::vector<std::string> RandomLogs::Add(int count) {
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) names.push_back(AddOne({}));
  return names;
}

std::vector<std::string> RandomLogs::AddDamaged(int count) {
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) {
    static const char* const kFiles[] = {"auser.txt",    "aall.txt",     "sys.txt",
                                         "bout.txt",     "bin.txt",      "SENSEVAR.MAC",
                                         "OTHERVAR.MAC", "PARAMVAR.MAC", "RESOVAR.MAC"};
    std::vector<host::Damage> damages;
    for (const char* file : kFiles) {
      if (Pick(1) == 0) damages.push_back({static_cast<host::DamageKind>(Pick(4)), file});
    }
    names.push_back(AddOne(damages));
  }
  return names;
}

}  // namespace logbook::test
