// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The mutator of the target ZipAddition. It takes an archive apart into its entries, changes one
// thing, and puts it together again with lengths and offsets that fit, so that most of what comes
// out is an archive; then it may spoil one number of it.

#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "ZipInput.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace logbook::fuzz {
namespace {

using Random = std::minstd_rand;

constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kCentralSize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kLargeEndSize = 56;

struct Field {
  std::size_t place;
  std::size_t width;
};
constexpr Field kLocalFields[] = {{4, 2},  {6, 2},  {8, 2},  {10, 2}, {12, 2},
                                  {14, 4}, {18, 4}, {22, 4}, {26, 2}, {28, 2}};
constexpr Field kCentralFields[] = {{4, 2},  {6, 2},  {8, 2},  {10, 2}, {12, 2}, {14, 2},
                                    {16, 4}, {20, 4}, {24, 4}, {28, 2}, {30, 2}, {32, 2},
                                    {34, 2}, {36, 2}, {38, 4}, {42, 4}};
constexpr Field kEndFields[] = {{4, 2}, {6, 2}, {8, 2}, {10, 2}, {12, 4}, {16, 4}, {20, 2}};

struct Entry {
  std::string local, local_name, local_extra, data;
  std::string central, name, extra, comment;
};

struct Archive {
  std::string prefix;
  std::vector<Entry> entries;
  std::string comment;
  bool is_large = false;
};

std::size_t Below(Random& random, std::size_t limit) {
  return limit == 0 ? 0 : random() % limit;
}

std::uint64_t Number(std::string_view bytes, Field field) {
  std::uint64_t number = 0;
  for (std::size_t i = field.width; i > 0; --i)
    number = number << 8 | static_cast<unsigned char>(bytes[field.place + i - 1]);
  return number;
}

void SetNumber(std::string& bytes, Field field, std::uint64_t number) {
  for (std::size_t i = 0; i < field.width; ++i)
    bytes[field.place + i] = static_cast<char>(number >> (8 * i) & 0xFF);
}

std::string NumberBytes(std::uint64_t number, std::size_t width) {
  std::string bytes(width, '\0');
  SetNumber(bytes, {0, width}, number);
  return bytes;
}

std::string Piece(std::string_view bytes, std::uint64_t place, std::uint64_t size) {
  return place > bytes.size() ? std::string() : std::string(bytes.substr(place, size));
}

// Name, extra field and comment stand behind a head; `place` moves behind what is taken.
std::optional<Entry> TakeEntry(std::string_view bytes, std::uint64_t& place) {
  Entry entry;
  entry.central = Piece(bytes, place, kCentralSize);
  if (entry.central.size() < kCentralSize || !entry.central.starts_with("PK\1\2"))
    return std::nullopt;
  place += kCentralSize;
  for (const auto& [text, field] :
       {std::pair(&entry.name, Field{28, 2}), std::pair(&entry.extra, Field{30, 2}),
        std::pair(&entry.comment, Field{32, 2})}) {
    *text = Piece(bytes, place, Number(entry.central, field));
    place += text->size();
  }
  const std::uint64_t start = Number(entry.central, {42, 4});
  entry.local = Piece(bytes, start, kLocalSize);
  if (entry.local.size() < kLocalSize) return std::nullopt;
  const std::uint64_t name = Number(entry.local, {26, 2}), extra = Number(entry.local, {28, 2});
  entry.local_name = Piece(bytes, start + kLocalSize, name);
  entry.local_extra = Piece(bytes, start + kLocalSize + name, extra);
  entry.data = Piece(bytes, start + kLocalSize + name + extra, Number(entry.central, {20, 4}));
  return entry;
}

std::optional<Archive> TakeApart(std::string_view bytes) {
  const std::size_t end = bytes.rfind("PK\5\6");
  if (end == std::string_view::npos || end + kEndSize > bytes.size()) return std::nullopt;
  Archive archive;
  archive.comment = bytes.substr(end + kEndSize);
  std::uint64_t place = Number(bytes.substr(end), {16, 4});
  while (archive.entries.size() < 64) {
    auto entry = TakeEntry(bytes, place);
    if (!entry) break;
    archive.entries.push_back(*std::move(entry));
  }
  return archive;
}

// The end with large numbers, and its locator.
std::string LargeEnd(std::uint64_t count, std::uint64_t size, std::uint64_t offset) {
  return "PK\6\6" + NumberBytes(kLargeEndSize - 12, 8) + NumberBytes(45, 2) + NumberBytes(45, 2) +
         NumberBytes(0, 8) + NumberBytes(count, 8) + NumberBytes(count, 8) + NumberBytes(size, 8) +
         NumberBytes(offset, 8) + "PK\6\7" + NumberBytes(0, 4) + NumberBytes(offset + size, 8) +
         NumberBytes(1, 4);
}

std::string PutTogether(Archive archive) {
  std::string bytes = archive.prefix;
  std::string directory;
  for (Entry& entry : archive.entries) {
    SetNumber(entry.central, {42, 4}, bytes.size());
    SetNumber(entry.central, {28, 2}, entry.name.size());
    SetNumber(entry.central, {30, 2}, entry.extra.size());
    SetNumber(entry.central, {32, 2}, entry.comment.size());
    SetNumber(entry.local, {26, 2}, entry.local_name.size());
    SetNumber(entry.local, {28, 2}, entry.local_extra.size());
    bytes += entry.local + entry.local_name + entry.local_extra + entry.data;
    directory += entry.central + entry.name + entry.extra + entry.comment;
  }
  const std::uint64_t count = archive.entries.size(), offset = bytes.size();
  bytes += directory;
  if (archive.is_large) bytes += LargeEnd(count, directory.size(), offset);
  const std::uint64_t shown = archive.is_large ? 0xFFFFFFFF : offset;
  return bytes + "PK\5\6" + NumberBytes(0, 4) + NumberBytes(count, 2) + NumberBytes(count, 2) +
         NumberBytes(directory.size(), 4) + NumberBytes(shown, 4) +
         NumberBytes(archive.comment.size(), 2) + archive.comment;
}

// A number of a head, changed to one that programs stumble over.
template <std::size_t kCount>
void SpoilNumber(std::string& head, const Field (&fields)[kCount], Random& random) {
  const Field field = fields[Below(random, kCount)];
  if (head.size() < field.place + field.width) return;
  const std::uint64_t old = Number(head, field);
  const std::uint64_t numbers[] = {0,       1,       old + 1,    old - 1,   ~0ULL,
                                   old * 2, 1 << 15, 0xFFFFFFFE, 1 << 11,   old ^ 1,
                                   8,       12,      random(),   old + 256, 0x7FFFFFFF};
  SetNumber(head, field, numbers[Below(random, std::size(numbers))]);
}

void MutateText(std::string& text, Random& random) {
  constexpr std::size_t kMost = 300;
  const std::size_t size = std::min(text.size(), kMost);
  std::string buffer = text.substr(0, size);
  buffer.resize(kMost);
  buffer.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(buffer.data()), size, kMost));
  text = Below(random, 8) == 0 ? std::string() : buffer;
}

// A field of a known kind, of a size that may be wrong.
std::string ExtraField(Random& random) {
  constexpr std::uint64_t kKinds[] = {0x0001, 0x5455, 0x7075, 0x6375, 0x9901, 0x7875, 0x000A};
  const std::size_t size = Below(random, 33);
  std::string data(size, '\0');
  for (char& byte : data) byte = static_cast<char>(random());
  const std::size_t told = Below(random, 4) == 0 ? Below(random, 64) : size;
  return NumberBytes(kKinds[Below(random, std::size(kKinds))], 2) + NumberBytes(told, 2) + data;
}

void ChangeName(Entry& entry, Random& random) {
  constexpr std::string_view kNames[] = {"log/",   "log/a.txt", "log",   "../a.txt", "/a.txt",
                                         "log//a", "\x81.txt",  "a.txt", "",         "b/"};
  if (Below(random, 3) == 0) return MutateText(entry.name, random);
  entry.name = kNames[Below(random, std::size(kNames))];
  if (Below(random, 4) != 0) entry.local_name = entry.name;
}

void ChangeEntry(Entry& entry, Random& random) {
  switch (Below(random, 7)) {
    case 0:
      return SpoilNumber(entry.central, kCentralFields, random);
    case 1:
      return SpoilNumber(entry.local, kLocalFields, random);
    case 2:
      return ChangeName(entry, random);
    case 3:
      entry.extra += ExtraField(random);
      return;
    case 4:
      entry.local_extra += ExtraField(random);
      return;
    case 5:
      return MutateText(entry.comment, random);
    default:
      return MutateText(entry.data, random);
  }
}

void ChangeOrder(Archive& archive, Random& random) {
  std::vector<Entry>& entries = archive.entries;
  const auto any = [&] {
    return entries.begin() + static_cast<std::ptrdiff_t>(Below(random, entries.size()));
  };
  switch (Below(random, 3)) {
    case 0:
      entries.erase(any());
      return;
    case 1:
      entries.push_back(*any());
      return;
    default:
      std::swap(*any(), *any());
  }
}

void Change(Archive& archive, Random& random) {
  const std::size_t what = Below(random, 10);
  if (what == 0) {
    archive.is_large = !archive.is_large;
  } else if (what == 1) {
    MutateText(archive.comment, random);
  } else if (what == 2) {
    MutateText(archive.prefix, random);
  } else if (archive.entries.empty()) {
    return;
  } else if (what == 3) {
    ChangeOrder(archive, random);
  } else {
    ChangeEntry(archive.entries[Below(random, archive.entries.size())], random);
  }
}

// Lengths, offsets and counts, which putting together has made right.
void SpoilTheWhole(std::string& bytes, Random& random) {
  const std::size_t end = bytes.rfind("PK\5\6");
  const std::size_t entry = bytes.find("PK\1\2", Below(random, bytes.size()));
  if (Below(random, 2) == 0 && entry != std::string::npos) {
    std::string head = bytes.substr(entry, kCentralSize);
    SpoilNumber(head, kCentralFields, random);
    bytes.replace(entry, head.size(), head);
  } else {
    std::string head = bytes.substr(end, kEndSize);
    SpoilNumber(head, kEndFields, random);
    bytes.replace(end, head.size(), head);
  }
}

}  // namespace
}  // namespace logbook::fuzz

// One input in four goes to the library's own mutator as a whole.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned seed) {
  using namespace logbook::fuzz;
  Random random(seed);
  ZipInput input = ZipInput::From({data, size});
  auto archive = TakeApart(input.archive);
  if (!archive || Below(random, 4) == 0) return LLVMFuzzerMutate(data, size, most);
  for (std::size_t count = 1 + Below(random, 3); count > 0; --count) Change(*archive, random);
  input.archive = PutTogether(*archive);
  if (Below(random, 3) == 0) SpoilTheWhole(input.archive, random);
  const std::string bytes = input.Bytes();
  if (bytes.size() > most) return LLVMFuzzerMutate(data, size, most);
  std::memcpy(data, bytes.data(), bytes.size());
  return bytes.size();
}
