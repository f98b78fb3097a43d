// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>
#include <array>

#include "base/Files.h"
#include "base/OpenedFile.h"
#include "base/RunTimeError.h"

namespace logbook {

struct InputFile::State {
  OpenedFile file;
  const char* bytes = nullptr;  // those at hand
  std::array<char, 65536> buffer;
  std::size_t next = 0;
  std::size_t end = 0;
  // The rest of a line that was given in part is passed over when somebody wants to read on.
  bool inside_line = false;

  // True if there is a byte at `next`; reads on where the buffer is used up.
  bool Fill() {
    if (inside_line) PassLineOver();
    if (next < end) return true;
    next = end = 0;
    bytes = buffer.data();
    end = file.Read(buffer.data(), buffer.size());
    return end > 0;
  }

  std::string_view Rest() const { return {bytes + next, end - next}; }

  // Number of bytes at hand before the next line end.
  std::size_t LineLength() const {
    std::size_t at = next;
    while (at < end && bytes[at] != '\r' && bytes[at] != '\n') ++at;
    return at - next;
  }

  void TakeLineEnd() {
    const char byte = bytes[next++];
    if (byte == '\r' && Fill() && bytes[next] == '\n') ++next;
  }

  void PassLineOver() {
    inside_line = false;
    while (Fill()) {
      next += LineLength();
      if (next < end) return TakeLineEnd();
    }
  }
};

InputFile::InputFile(const Machine& machine, std::string_view path)
    : state_(std::make_unique_for_overwrite<State>()) {
  state_->file = OpenedFile(machine, path);
}

InputFile::InputFile(std::string_view bytes) : state_(std::make_unique_for_overwrite<State>()) {
  state_->bytes = bytes.data();
  state_->end = bytes.size();
}

InputFile::~InputFile() = default;
InputFile::InputFile(InputFile&&) noexcept = default;
InputFile& InputFile::operator=(InputFile&&) noexcept = default;

bool InputFile::AtEnd() {
  return !state_->Fill();
}

std::string_view InputFile::Buffered() {
  return state_->Fill() ? state_->Rest() : std::string_view();
}

void InputFile::Skip(std::size_t count) {
  state_->next += count;
}

int InputFile::Peek() {
  return state_->Fill() ? static_cast<unsigned char>(state_->bytes[state_->next]) : -1;
}

int InputFile::Get() {
  const int byte = Peek();
  if (byte >= 0) ++state_->next;
  return byte;
}

std::string InputFile::ReadLine(std::size_t most) {
  if (AtEnd()) throw RunTimeError(ErrorNumber::kInputPastEndOfFile);
  std::string line;
  while (state_->Fill()) {
    const std::size_t length = state_->LineLength();
    line.append(state_->Rest().substr(0, std::min(length, most - line.size())));
    state_->next += length;
    state_->inside_line = line.size() == most && state_->next == state_->end;
    if (state_->inside_line) return line;
    if (state_->next == state_->end) continue;
    state_->TakeLineEnd();
    return line;
  }
  return line;
}

}  // namespace logbook
