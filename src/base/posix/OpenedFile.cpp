// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/OpenedFile.h"

#include "base/posix/Descriptor.h"

namespace logbook {

struct OpenedFile::State {
  posix::Descriptor file;
};

OpenedFile::OpenedFile() = default;

OpenedFile::OpenedFile(const Machine& machine, std::string_view path)
    : state_(std::make_unique<State>(State{posix::OpenForReading(machine, path)})) {}

OpenedFile::~OpenedFile() = default;
OpenedFile::OpenedFile(OpenedFile&&) noexcept = default;
OpenedFile& OpenedFile::operator=(OpenedFile&&) noexcept = default;

std::size_t OpenedFile::Read(char* buffer, std::size_t size) {
  return state_ == nullptr ? 0 : posix::ReadSome(state_->file, buffer, size);
}

}  // namespace logbook
