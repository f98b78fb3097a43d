// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The hardware of the simulated instrument: its lens family and its options. A build is written as
// a lens family's name and option flags, such as "trz-ce+styleb+new_rf+afc"; docs/simulated-host.md
// lists them.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace logbook::host {

enum class LensFamily { kPlain, kLumarin, kTrzCs, kTrzCe };

// An option is 0 where it is not fitted and 1 where it is; other numbers are possible and count as
// fitted.
struct InstrumentBuild {
  LensFamily lens = LensFamily::kPlain;
  int security = 0;
  int styleb = 0;
  int new_rf = 0;
  int qptype = 0;
  int afc = 0;
  int sc = 0;
  int opgs = 0;
  int pmp2 = 0;
  int colopgs = 0;
  bool operator==(const InstrumentBuild&) const = default;
};

// The text of an option that is fitted or not: "1" or "0".
inline std::string Flag(bool set) {
  return set ? "1" : "0";
}

// The hardware that a reading needs.
enum class Fitted {
  kAlways,
  kPlainLens,
  kLumarin,
  kTrzCs,
  kTrzCe,
  kCell,           // any lens family but the plain one
  kCellOptionGas,  // cell and COLOPGS
  kOptionGas,      // OPGS
  kSampleCooler,   // SC
  kStyleB,
  kSeparatePumps,  // not Style B
  kNewRf,
  kClassicRf,  // not NEW_RF
  kAfc,
  kClassicFlow,  // not AFC
  kQpType,
  kClassicQuad,  // not QPTYPE
};

// The build that is taken where none is named: every kind of row has a value in it.
inline constexpr std::string_view kDemonstrationBuild =
    "trz-ce+security+new_rf+qptype+afc+sc+opgs+colopgs";

// The build of a name: a lens family (plain, lumarin, trz-cs, trz-ce), then any number of options,
// each behind a "+": security, styleb, new_rf, qptype, afc, sc, opgs, pmp2, colopgs, for any number
// but 1 followed by "=" and the number. Case does not matter. Raises std::invalid_argument with a
// sentence for the user.
InstrumentBuild ParseBuild(std::string_view text);

// The name that ParseBuild reads as this build.
std::string BuildName(const InstrumentBuild& build);

// Keys and values of section "OPTION" of a log's logfile.ini, in the order in which the host
// writes them.
std::vector<std::pair<std::string, std::string>> OptionSection(const InstrumentBuild& build);

bool IsFitted(const InstrumentBuild& build, Fitted hardware);

}  // namespace logbook::host
