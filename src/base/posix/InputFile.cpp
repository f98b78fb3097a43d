// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>
#include <array>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/posix/Descriptor.h"

namespace logbook {

struct InputFile::State {
  posix::Descriptor file;
  const char* bytes = nullptr;  // those at hand
  std::array<char, 65536> buffer;
  std::size_t next = 0;
  std::size_t end = 0;

  // True if there is a byte at `next`; reads on where the buffer is used up.
  bool Fill() {
    if (next < end) return true;
    if (!file.IsOpen()) return false;
    next = 0;
    bytes = buffer.data();
    end = posix::ReadSome(file, buffer.data(), buffer.size());
    return end > 0;
  }
};

InputFile::InputFile(const Machine& machine, std::string_view path)
    : state_(std::make_unique_for_overwrite<State>()) {
  state_->file = posix::OpenForReading(machine, path);
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
  if (!state_->Fill()) return {};
  return {state_->bytes + state_->next, state_->end - state_->next};
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

std::string InputFile::ReadLine() {
  if (AtEnd()) throw RunTimeError(ErrorNumber::kInputPastEndOfFile);
  std::string line;
  while (state_->Fill()) {
    const std::string_view rest = Buffered();
    const auto is_line_end = [](char byte) { return byte == '\r' || byte == '\n'; };
    const auto length = static_cast<std::size_t>(
        std::find_if(rest.begin(), rest.end(), is_line_end) - rest.begin());
    line.append(rest.substr(0, length));
    state_->next += length;
    if (length == rest.size()) continue;
    if (Get() == '\r' && Peek() == '\n') Get();
    return line;
  }
  return line;
}

}  // namespace logbook
