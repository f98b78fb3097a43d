// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Instrument.h"

#include <charconv>
#include <span>
#include <string_view>

#include "host/Quantity.h"
#include "host/Wear.h"
#include "host/tables/AnalogReadings.h"
#include "host/tables/MeterReadings.h"
#include "host/tables/SystemParameters.h"

namespace logbook::host {
namespace {

std::string NumberText(double value, std::chars_format format, int places) {
  std::array<char, 64> buffer;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, places).ptr;
  std::string text(buffer.data(), end);
  // A negative value that rounds to nothing keeps no sign.
  if (text.front() == '-' && text.find_first_of("123456789") == std::string::npos) text.erase(0, 1);
  return text;
}

std::string Text(double value, Notation notation, int places) {
  if (notation == Notation::kFixed) return FixedText(value, places);
  return NumberText(value, std::chars_format::scientific, places);
}

std::vector<std::string> Fields(std::span<const ReadingRow> rows, const Instrument& instrument,
                                int log_number, std::uint32_t quantity) {
  std::vector<std::string> fields;
  for (const ReadingRow& row : rows) {
    if (!IsFitted(instrument.build, row.fitted)) {
      fields.emplace_back("0");
      continue;
    }
    const double value = row.fresh + row.worn_by * WearAt(log_number, row.wear) +
                         row.noise * Scatter(instrument.seed, log_number, quantity, row.row);
    fields.push_back(Text(value, row.notation, row.places));
  }
  return fields;
}

bool IsSet(const SignalRow& signal, int chance) {
  switch (signal.habit) {
    case Habit::kAlways:
      return true;
    case Habit::kOften:
      return chance < 70;
    case Habit::kRarely:
      return chance < 3;
  }
  return false;
}

std::array<std::uint16_t, kBitWords> Words(std::span<const SignalRow> signals,
                                           const Instrument& instrument, int log_number,
                                           std::uint32_t quantity) {
  std::array<std::uint16_t, kBitWords> words{};
  int row = 0;
  for (const SignalRow& signal : signals) {
    const int chance = Pick(instrument.seed, log_number, quantity, row++, 100);
    if (!IsFitted(instrument.build, signal.fitted) || !IsSet(signal, chance)) continue;
    auto& word = words[static_cast<std::size_t>(signal.word)];
    word = static_cast<std::uint16_t>(word | signal.mask);
  }
  return words;
}

std::string Stamp(const Instrument& instrument) {
  const int number = Pick(instrument.seed, 0, kStampQuantity, 0, 9000) + 1000;
  return "\"LA" + std::to_string(number) + "-07, rev C\"";
}

}  // namespace

std::string FixedText(double value, int places) {
  return NumberText(value, std::chars_format::fixed, places);
}

std::vector<std::string> MeterFields(const Instrument& instrument, int log_number) {
  return Fields(kMeterReadings, instrument, log_number, kMeterQuantity);
}

std::vector<std::string> AnalogFields(const Instrument& instrument, int log_number) {
  return Fields(kAnalogReadings, instrument, log_number, kAnalogQuantity);
}

std::vector<std::string> SystemFields(const Instrument& instrument) {
  std::vector<std::string> fields;
  for (const ParameterRow& row : kSystemParameters) {
    if (row.row == kStampRow) {
      fields.push_back(Stamp(instrument));
    } else if (!IsFitted(instrument.build, row.fitted)) {
      fields.emplace_back("0");
    } else {
      const double own = row.spread * Scatter(instrument.seed, 0, kSystemQuantity, row.row);
      fields.push_back(Text(row.usual + own, row.notation, row.places));
    }
  }
  return fields;
}

std::array<std::uint16_t, kBitWords> OutputWords(const Instrument& instrument, int log_number) {
  return Words(kOutputSignals, instrument, log_number, kOutputQuantity);
}

std::array<std::uint16_t, kBitWords> InputWords(const Instrument& instrument, int log_number) {
  return Words(kInputSignals, instrument, log_number, kInputQuantity);
}

std::string InstrumentName(const Instrument& instrument) {
  const int serial = Pick(instrument.seed, 0, kStampQuantity, 1, 9000) + 1000;
  return "Quorex Tessaline No. " + std::to_string(serial);
}

}  // namespace logbook::host
