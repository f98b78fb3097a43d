// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Tune.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "host/Quantity.h"
#include "host/Wear.h"
#include "host/tables/TuneVariables.h"

namespace logbook::host {
namespace {

// What the tests of a tune measure at one log. Slots of a list count from 0.
class TuneTest {
 public:
  TuneTest(const Instrument& instrument, int log_number)
      : instrument_(instrument), log_number_(log_number) {}

  double Mean(std::size_t slot) const {
    const SenseSlot& test = kSenseSlots[slot];
    return test.mean + test.worn_by * WearAt(log_number_, Wear::kCones) +
           0.02 * test.mean * Scattered(kSenseQuantity, slot);
  }
  double Rsd(std::size_t slot) const {
    return kSenseSlots[slot].rsd + 1.1 * WearAt(log_number_, Wear::kTubing) +
           0.15 * Scattered(kSenseQuantity, kSlots + slot);
  }
  double DoublyCharged() const {
    return 1.35 + 0.5 * WearAt(log_number_, Wear::kCones) + 0.08 * Scattered(kOtherQuantity, 0);
  }
  double Oxide() const {
    return 0.92 + 0.6 * WearAt(log_number_, Wear::kCones) + 0.05 * Scattered(kOtherQuantity, 1);
  }
  double Background(std::size_t slot) const {
    const double mean = kBackgroundSlots[slot].mean;
    return mean * (1.0 + 0.3 * WearAt(log_number_, Wear::kCones) +
                   0.1 * Scattered(kOtherQuantity, 2 + slot));
  }
  double Axis(std::size_t slot) const {
    return kAxisSlots[slot].mass + 0.04 * Scattered(kResoQuantity, slot);
  }
  double Width50(std::size_t slot) const {
    return kAxisSlots[slot].w50 + 0.02 * Scattered(kResoQuantity, 3 + slot);
  }
  double Width10(std::size_t slot) const {
    return kAxisSlots[slot].w10 + 0.02 * Scattered(kResoQuantity, 6 + slot);
  }
  double Parameter(std::size_t row) const {
    const VariableRow& variable = kParamVariables[row];
    if (!IsFitted(instrument_.build, variable.fitted)) return 0.0;
    return variable.fresh + variable.worn_by * WearAt(log_number_, variable.wear) +
           variable.noise * Scattered(kParamQuantity, row);
  }

 private:
  double Scattered(std::uint32_t quantity, std::size_t row) const {
    return Scatter(instrument_.seed, log_number_, quantity, static_cast<int>(row));
  }

  const Instrument& instrument_;
  int log_number_;
};

// The masses of the two ratio tests, as the tune files name them.
constexpr std::string_view kDoublyChargedMasses = "70/140";
constexpr std::string_view kOxideMasses = "156/140";

// Collects the assignments of a macro file.
class Macro {
 public:
  explicit Macro(std::string_view title) { text_.append("'").append(title).append("\r\n"); }

  void Number(std::string_view name, std::string_view value) {
    text_.append(name).append("=").append(value).append("\r\n");
  }
  void Element(std::string_view name, std::size_t slot, std::string_view value) {
    Number(std::string(name) + "[" + std::to_string(slot + 1) + "]", value);
  }
  void Text(std::string_view name, std::string_view value) {
    Number(name, "\"" + std::string(value) + "\"");
  }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

constexpr std::string_view kUnused = "-1";

bool HasCellOptionGas(const Instrument& instrument) {
  return IsFitted(instrument.build, Fitted::kCellOptionGas);
}

std::string Cell(std::string_view text, std::size_t width) {
  std::string cell(width > text.size() ? width - text.size() : 0, ' ');
  return cell.append(text);
}

std::string SenseTable(const TuneTest& test) {
  std::string text = "Sensitivity\r\n     m/z      Count     RSD%\r\n";
  for (std::size_t i = 0; i < kSenseSlots.size(); ++i) {
    text += Cell(std::to_string(kSenseSlots[i].mass), 8) + Cell(FixedText(test.Mean(i), 0), 11) +
            Cell(FixedText(test.Rsd(i), 2), 9) + "\r\n";
  }
  return text + "\r\n";
}

std::string AxisTable(const TuneTest& test) {
  std::string text = "Axis / Resolution\r\n     m/z       Axis    W-50%    W-10%\r\n";
  for (std::size_t i = 0; i < kAxisSlots.size(); ++i) {
    text += Cell(std::to_string(kAxisSlots[i].mass), 8) + Cell(FixedText(test.Axis(i), 2), 11) +
            Cell(FixedText(test.Width50(i), 2), 9) + Cell(FixedText(test.Width10(i), 2), 9) +
            "\r\n";
  }
  return text + "\r\n";
}

std::string ParameterTable(const Instrument& instrument, const TuneTest& test) {
  std::string text = "Tuning Parameters\r\n";
  for (std::size_t i = 0; i < kParamVariables.size(); ++i) {
    const VariableRow& row = kParamVariables[i];
    if (!IsFitted(instrument.build, row.fitted)) continue;
    text += "    " + std::string(row.name) + Cell(FixedText(test.Parameter(i), row.places), 12) +
            "\r\n";
  }
  return text;
}

}  // namespace

std::string SenseMacro(const Instrument& instrument, int log_number) {
  const TuneTest test(instrument, log_number);
  Macro macro("Sensitivity test");
  macro.Number("SENSEINTEG", "0.1000");
  macro.Number("SENSEPERIOD", "0.6200");
  for (std::size_t i = 0; i < kSlots; ++i) {
    const bool used = i < kSenseSlots.size();
    macro.Element("SenseMass", i, used ? std::to_string(kSenseSlots[i].mass) : kUnused);
    macro.Element("SenseRatioMass", i, used ? std::to_string(kSenseSlots[i].ratio_mass) : kUnused);
    macro.Element("SenseMean", i, used ? FixedText(test.Mean(i), 1) : kUnused);
    macro.Element("SenseRsd", i, used ? FixedText(test.Rsd(i), 3) : kUnused);
  }
  return macro.Take();
}

std::string OtherMacro(const Instrument& instrument, int log_number) {
  const TuneTest test(instrument, log_number);
  Macro macro("Ratio and background test");
  // The flag stands here too: whoever reads this file learns from it alone whether the ratio masses
  // count.
  macro.Number("OPT_COLOPGS", Flag(HasCellOptionGas(instrument)));
  macro.Text("DblRatioMass$", kDoublyChargedMasses);
  macro.Number("DblRatioCount", FixedText(test.DoublyCharged(), 3));
  macro.Text("OxideRatioMass$", kOxideMasses);
  macro.Number("OxideRatioCount", FixedText(test.Oxide(), 3));
  for (std::size_t i = 0; i < kSlots; ++i) {
    const bool used = i < kBackgroundSlots.size();
    macro.Element("BackMass", i, used ? std::to_string(kBackgroundSlots[i].mass) : kUnused);
    macro.Element("BackMean", i, used ? FixedText(test.Background(i), 2) : kUnused);
  }
  return macro.Take();
}

std::string ResoMacro(const Instrument& instrument, int log_number) {
  const TuneTest test(instrument, log_number);
  Macro macro("Axis and resolution test");
  macro.Number("RESOINTEG", "0.0100");
  macro.Number("RESOACQTIME", "22.7600");
  for (std::size_t i = 0; i < kAxisSlots.size(); ++i) {
    macro.Element("ResoMass", i, std::to_string(kAxisSlots[i].mass));
    macro.Element("ResoAxis", i, FixedText(test.Axis(i), 3));
    macro.Element("ResoW50", i, FixedText(test.Width50(i), 3));
    macro.Element("ResoW10", i, FixedText(test.Width10(i), 3));
  }
  return macro.Take();
}

std::string ParamMacro(const Instrument& instrument, int log_number) {
  const TuneTest test(instrument, log_number);
  Macro macro("Tuning parameters");
  macro.Text("InstrumentName$", InstrumentName(instrument));
  macro.Number("OPT_COLOPGS", Flag(HasCellOptionGas(instrument)));
  macro.Number("CLMD", Flag(IsFitted(instrument.build, Fitted::kCell)));
  for (std::size_t i = 0; i < kParamVariables.size(); ++i) {
    const VariableRow& row = kParamVariables[i];
    macro.Number(row.name, FixedText(test.Parameter(i), row.places));
  }
  return macro.Take();
}

std::string TuneReport(const Instrument& instrument, int log_number, LocalTime time) {
  const TuneTest test(instrument, log_number);
  std::string text = "                         Tune Report\r\n\r\n";
  text += "Instrument : " + InstrumentName(instrument) + "\r\n";
  text += "Date       : " + StampText(time) + "\r\n\r\n";
  text += SenseTable(test);
  text += "Doubly Charged " + std::string(kDoublyChargedMasses) +
          Cell(FixedText(test.DoublyCharged(), 3), 10) + " %\r\n";
  text += "Oxide         " + std::string(kOxideMasses) + Cell(FixedText(test.Oxide(), 3), 10) +
          " %\r\n\r\n";
  return text + AxisTable(test) + ParameterTable(instrument, test);
}

}  // namespace logbook::host
