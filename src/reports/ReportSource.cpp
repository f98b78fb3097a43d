// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/ReportSource.h"

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"

namespace logbook {
namespace {

constexpr std::string_view kDescriptorFile = "logfile.ini";

std::string ReadProfile(const Machine& machine, const std::string& path) {
  try {
    return ReadFile(machine, path, kLargestProfile);
  } catch (const RunTimeError&) {
    return {};
  }
}

}  // namespace

ReportSource::ReportSource(const Machine& machine, std::string_view folder)
    : machine_(machine), folder_(folder), below_(machine, folder) {}

const std::string& ReportSource::Descriptor() {
  if (descriptor_) return *descriptor_;
  FileStamp stamp;
  std::string_view bytes;
  const FilesBelow::Found found = below_.Read(".", kDescriptorFile, stamp, bytes);
  return found == FilesBelow::Found::kUnclear
             ? descriptor_.emplace(ReadProfile(machine_, folder_ + std::string(kDescriptorFile)))
             : descriptor_.emplace(bytes);
}

const LogOptions& ReportSource::Options() {
  if (!options_) options_ = ParseLogOptions(machine_, Descriptor());
  return *options_;
}

std::optional<SequentialReader> ReportSource::OpenSnapshot(std::string_view name) {
  FileStamp stamp;
  std::string_view bytes;
  const FilesBelow::Found found = below_.Read(".", name, stamp, bytes);
  if (found == FilesBelow::Found::kFile) return SequentialReader(*machine_.code_page, bytes);
  const std::string path = folder_ + std::string(name);
  if (found == FilesBelow::Found::kMissing || !Exists(machine_, path)) return std::nullopt;
  return SequentialReader(machine_, path);
}

}  // namespace logbook
