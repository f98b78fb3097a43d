// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What lies in an index, of any content and under right checksums: columns and records come back
// when they are written anew, and a search ends with an answer that is no longer than the index, or
// tells that it is damaged.

#include <algorithm>
#include <array>
#include <bit>
#include <optional>
#include <string>

#include "AllCatalogues.h"
#include "Fuzzing.h"
#include "insight/IndexLayout.h"
#include "insight/IndexSearch.h"
#include "insight/ValueColumn.h"

namespace logbook::fuzz {
namespace {

using namespace insight;
using test::AllCatalogues;

constexpr std::array kQueries = {"",         "cones",     "tick:3 OR option:LENS>0",  "on:2026",
                                 "state:na", "meter:0<5", "sys:83=x OR NOT tune:9:ok"};

// The bytes with the checksum of all behind it in their first `width` bytes.
std::string Summed(std::string bytes, int width) {
  if (bytes.size() < static_cast<std::size_t>(width)) return bytes;
  std::uint64_t sum = ChecksumOf(std::string_view(bytes).substr(static_cast<std::size_t>(width)));
  for (int i = 0; i < width; ++i, sum >>= 8)
    bytes[static_cast<std::size_t>(i)] = static_cast<char>(sum & 0xFF);
  return bytes;
}

// 16 bits tell how long it is, so that it may hold NULs.
std::string TakeBytes(Input& input) {
  std::size_t size = input.Byte();
  size = std::min(size * 256 + input.Byte(), input.Rest().size());
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(input.Byte());
  return bytes;
}

std::optional<ValueColumn> TryColumn(const std::string& bytes) {
  const std::optional<ValueColumn> column = UnpackColumn(Summed(bytes, 4));
  if (!column) return column;
  FUZZ_REQUIRE(column->States.size() == column->Numbers.size());
  FUZZ_REQUIRE(column->States.size() <= 0xFFFF);
  FUZZ_REQUIRE(UnpackColumn(PackColumn(*column)) == column);
  return column;
}

void TryRecord(const std::string& bytes) {
  const std::optional<LogRecord> record = UnpackRecord(Summed(bytes, 8));
  if (!record) return;
  FUZZ_REQUIRE(UnpackRecord(PackRecord(*record)) == record);
}

template <typename Call>
bool Succeeds(Call call) {
  try {
    call();
    return true;
  } catch (const IndexError&) {
    return false;
  }
}

void Search(IndexStore& store) {
  for (const char* text : kQueries) {
    for (const auto key : {FindRequest::Key::kDate, FindRequest::Key::kRow}) {
      FindRequest request;
      request.What = ParseQuery(AllCatalogues(), text);
      request.SortBy = key;
      request.SortRow = {{Catalogue::kSys, 83}, {Catalogue::kMeter, 0}};
      request.Columns = {
          {{Catalogue::kMeter, 0}}, {{Catalogue::kSys, 83}}, {{Catalogue::kTune, 9}}};
      FindResult result;
      if (!Succeeds([&] { result = FindInIndex(store, AllCatalogues(), request); })) continue;
      FUZZ_REQUIRE(result.Count == result.Logs.size());
      FUZZ_REQUIRE(static_cast<std::int64_t>(result.Count) <= store.NextId());
      for (const FoundLog& log : result.Logs) {
        for (const RowValue& value : log.Values) FUZZ_REQUIRE(!NameOf(value.State).empty());
      }
    }
  }
}

// An index of some logs: all columns but the one that the input gives are of two plain logs.
void Fill(IndexStore& store, Input& input, const std::string& record) {
  const std::int64_t next = std::bit_cast<std::int8_t>(input.Byte());
  store.SetNextId(input.Number(8) == 7 ? next << 55 : next);
  ValueColumn plain;
  for (int log = 0; log < 2; ++log) plain.Add(1, 0);
  for (int column = 0; column < kColumnCount; ++column) store.PutColumn(0, column, plain);
  for (int log = 0; log < 2; ++log) store.PutLog({log, std::to_string(log), 0, record});
  store.PutWords(input.Byte(), "cones");
  store.NumberOfText("x");
}

void Try(Input input) {
  std::string record = TakeBytes(input);
  TryRecord(record);
  if (record.empty()) record = PackRecord({});
  IndexStore store("", "parts");
  store.Change([&] {
    Fill(store, input, Summed(record, 8));
    while (!input.Rest().empty()) {
      const int number = input.Number(4) == 3 ? static_cast<int>(SpecialColumn::kLive) +
                                                    input.Number(8 + kOptionCount)
                                              : PlaceOf({Catalogue::kMeter, 0});
      if (const auto column = TryColumn(TakeBytes(input))) store.PutColumn(0, number, *column);
    }
  });
  Search(store);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
