// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/ZipDirectory.h"

#include <algorithm>

namespace logbook {

namespace {

constexpr std::uint32_t kEntry = 0x02014B50;
constexpr std::uint32_t kEnd = 0x06054B50;
constexpr std::uint32_t kLargeEnd = 0x06064B50;
constexpr std::uint32_t kLargeEndLocator = 0x07064B50;
constexpr std::size_t kEntrySize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kLargeEndSize = 56;
constexpr std::size_t kLocatorSize = 20;
constexpr std::uint64_t kNoLimit16 = 0xFFFF;      // the true number stands elsewhere
constexpr std::uint64_t kNoLimit32 = 0xFFFFFFFF;  // likewise
constexpr std::uint16_t kLargeField = 0x0001;

std::uint64_t Number(std::string_view bytes, std::size_t place, std::size_t width) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < width; ++i)
    number |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[place + i])) << (8 * i);
  return number;
}

std::string Bytes(std::uint64_t number, std::size_t width) {
  std::string bytes;
  for (std::size_t i = 0; i < width; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
  return bytes;
}

// Takes the field for large numbers out of an entry's extra fields; its data, or nothing.
std::optional<std::string> TakeLargeField(std::string& extra) {
  for (std::size_t place = 0; place + 4 <= extra.size();) {
    const std::size_t size = 4 + Number(extra, place + 2, 2);
    if (Number(extra, place, 2) == kLargeField) {
      const std::string data = extra.substr(place + 4, size - 4);
      extra.erase(place, size);
      return data;
    }
    place += size;
  }
  return std::nullopt;
}

// The data that the field of an entry without any would have: the library that writes the entries
// makes an empty one for a number that is the last of 32 bits.
std::string LargeFieldLeftOut(const std::string& head) {
  std::string data;
  for (const std::size_t place : {24, 20, 42}) {
    if (Number(head, place, 4) == kNoLimit32) data += Bytes(kNoLimit32, 8);
  }
  return data;
}

// One entry with its new offset. The field for large numbers holds, in this order, uncompressed
// size, compressed size, offset: those of them that do not fit in their 32 bits.
std::optional<std::string> MoveEntry(std::string head, const std::string& name, std::string extra,
                                     const std::string& comment, std::uint64_t distance) {
  std::string large = TakeLargeField(extra).value_or("");
  if (large.empty()) large = LargeFieldLeftOut(head);
  std::size_t sizes = 0;
  for (const std::size_t place : {24, 20}) sizes += Number(head, place, 4) == kNoLimit32 ? 8 : 0;
  std::uint64_t offset = Number(head, 42, 4);
  if (large.size() < sizes + (offset == kNoLimit32 ? 8u : 0u)) return std::nullopt;
  if (offset == kNoLimit32) offset = Number(large, sizes, 8);
  offset += distance;
  large.resize(sizes);
  if (offset >= kNoLimit32) large += Bytes(offset, 8);
  head.replace(42, 4, Bytes(std::min(offset, kNoLimit32), 4));
  if (!large.empty()) {
    extra = Bytes(kLargeField, 2) + Bytes(large.size(), 2) + large + extra;
    // Version 4.5 of the format is needed to extract.
    head.replace(6, 2, Bytes(std::max<std::uint64_t>(Number(head, 6, 2), 45), 2));
  }
  head.replace(30, 2, Bytes(extra.size(), 2));
  return head + name + extra + comment;
}

}  // namespace

std::optional<ZipDirectoryPlace> FindZipDirectory(std::string_view end) {
  if (end.size() < kEndSize) return std::nullopt;
  const std::string_view record = end.substr(end.size() - kEndSize);
  if (Number(record, 0, 4) != kEnd) return std::nullopt;
  ZipDirectoryPlace place{.offset = Number(record, 16, 4),
                          .size = Number(record, 12, 4),
                          .count = Number(record, 10, 2)};
  const bool is_large =
      place.offset == kNoLimit32 || place.size == kNoLimit32 || place.count == kNoLimit16;
  if (!is_large || end.size() < kZipEndBytes) return place;
  const std::string_view large = end.substr(end.size() - kZipEndBytes, kLargeEndSize);
  const std::string_view locator = end.substr(end.size() - kEndSize - kLocatorSize, kLocatorSize);
  if (Number(large, 0, 4) != kLargeEnd || Number(locator, 0, 4) != kLargeEndLocator) return place;
  return ZipDirectoryPlace{
      .offset = Number(large, 48, 8), .size = Number(large, 40, 8), .count = Number(large, 32, 8)};
}

std::optional<std::string> MoveZipDirectory(std::string_view directory, std::uint64_t distance) {
  std::string moved;
  while (!directory.empty()) {
    if (directory.size() < kEntrySize || Number(directory, 0, 4) != kEntry) return std::nullopt;
    const std::size_t name = Number(directory, 28, 2);
    const std::size_t extra = Number(directory, 30, 2);
    const std::size_t comment = Number(directory, 32, 2);
    if (directory.size() < kEntrySize + name + extra + comment) return std::nullopt;
    const auto entry =
        MoveEntry(std::string(directory.substr(0, kEntrySize)),
                  std::string(directory.substr(kEntrySize, name)),
                  std::string(directory.substr(kEntrySize + name, extra)),
                  std::string(directory.substr(kEntrySize + name + extra, comment)), distance);
    if (!entry) return std::nullopt;
    moved += *entry;
    directory.remove_prefix(kEntrySize + name + extra + comment);
  }
  return moved;
}

std::string ZipEnd(const ZipDirectoryPlace& place) {
  std::string end;
  if (place.count >= kNoLimit16 || place.size >= kNoLimit32 || place.offset >= kNoLimit32) {
    end = Bytes(kLargeEnd, 4) + Bytes(kLargeEndSize - 12, 8) + Bytes(45, 2) + Bytes(45, 2) +
          Bytes(0, 8) + Bytes(place.count, 8) + Bytes(place.count, 8) + Bytes(place.size, 8) +
          Bytes(place.offset, 8) + Bytes(kLargeEndLocator, 4) + Bytes(0, 4) +
          Bytes(place.offset + place.size, 8) + Bytes(1, 4);
  }
  const std::string count = Bytes(std::min(place.count, kNoLimit16), 2);
  return end + Bytes(kEnd, 4) + Bytes(0, 4) + count + count +
         Bytes(std::min(place.size, kNoLimit32), 4) + Bytes(std::min(place.offset, kNoLimit32), 4) +
         Bytes(0, 2);
}

}  // namespace logbook
