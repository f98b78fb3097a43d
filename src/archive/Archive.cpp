// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/Archive.h"

#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>
#include <utility>

#include "archive/WorkingFile.h"
#include "archive/ZipAddition.h"
#include "archive/ZipStore.h"
#include "base/Files.h"
#include "base/PlainText.h"
#include "base/Utf8Path.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

// The text into a buffer that keeps its size.
void Fill(std::string& buffer, const std::string& text) {
  const std::size_t count = std::min(buffer.size(), text.size());
  std::fill(buffer.begin(), buffer.end(), '\0');
  buffer.replace(0, count, text, 0, count);
}

// The code of the failure that is being handled, with its words in the buffer.
std::int16_t CodeOfFailure(std::string& buffer) {
  try {
    throw;
  } catch (const ZipFailure& failure) {
    Fill(buffer, failure.reason);
    return static_cast<std::int16_t>(failure.code);
  } catch (const std::exception& error) {
    Fill(buffer, error.what());
    return static_cast<std::int16_t>(ZipResult::kFailed);
  }
}

struct Options {
  bool add = false;
  bool recurse = false;
};

Options ParseOptions(std::string_view text) {
  Options options;
  std::istringstream words{std::string(text)};
  for (std::string word; words >> word;) {
    if (word == "-a") {
      options.add = true;
    } else if (word == "-r") {
      options.recurse = true;
    } else {
      FailWith(ZipResult::kBadOptions, "unknown option " + word);
    }
  }
  return options;
}

// An archive that is discarded unless it has been closed.
struct Discard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using OpenArchive = std::unique_ptr<zip_t, Discard>;

}  // namespace

struct ZipWriter::State {
  State(const Machine& the_machine, std::function<void()> the_pause)
      : machine(the_machine), between_files(std::move(the_pause)) {}

  const Machine& machine;
  const std::function<void()> between_files;
  std::string target;  // native path of the zip file; empty between runs
  std::unique_ptr<ZipStore> store;
  FileIdentity old_file{};
  bool has_content = false;
  // Folders put into a new file stand in parts of their own; with an old file, or a folder that
  // comes again, the library has to see the whole archive.
  bool in_parts = false;
  std::set<std::string> names;

  void Begin(const std::string& native, bool add);
  void CheckTarget(const std::string& native);
  OpenArchive Open();
  void Add(const std::string& source, bool recurse);
  void TellOfProgress(zip_t* archive);
  void CheckResult();
  void Rename();
  void Drop();
};

// The zip file must be one that we may write, as if it were opened for writing in place.
void ZipWriter::State::CheckTarget(const std::string& native) {
  int error = 0;
  switch (LookAtTarget(native, old_file, error)) {
    case ZipTarget::kNoFile:
      FailWith(ZipResult::kCannotWrite, native + ": not a file");
    case ZipTarget::kReadOnly:
      FailWith(ZipResult::kCannotWrite, native + ": read-only");
    case ZipTarget::kRefused:
      FailWithSystem(ZipResult::kCannotWrite, native, error);
    case ZipTarget::kNothing:
    case ZipTarget::kFile:
      return;
  }
}

void ZipWriter::State::Begin(const std::string& native, bool add) {
  CheckTarget(native);
  WorkingFile file = WorkingFile::MakeFor(native);
  if (!file.IsOpen()) FailWithSystem(ZipResult::kCannotWrite, native, errno);
  bool has_old = false;
  if (add && !file.CopyFrom(native, has_old)) {
    const int error = errno;
    file.Remove();
    FailWithSystem(ZipResult::kCannotWrite, native, error);
  }
  store = std::make_unique<ZipStore>(std::move(file));
  target = native;
  has_content = has_old;
  in_parts = !has_old;
  names.clear();
}

OpenArchive ZipWriter::State::Open() {
  zip_error_t error;
  zip_error_init(&error);
  const std::unique_ptr<zip_error_t, void (*)(zip_error_t*)> release(&error, zip_error_fini);
  zip_source_t* source = store->MakeSource();
  if (source == nullptr) FailWith(ZipResult::kFailed, "out of memory");
  const bool anew = in_parts || !has_content;
  OpenArchive archive(zip_open_from_source(source, anew ? ZIP_CREATE | ZIP_TRUNCATE : 0, &error));
  if (archive != nullptr) return archive;
  zip_source_free(source);
  FailWithLibrary(&error);
}

void ZipWriter::State::Add(const std::string& source, bool recurse) {
  const std::string name = NameInZip(machine, Utf8Path(source).filename().string());
  if (!names.insert(name).second) in_parts = false;
  if (!(in_parts ? store->BeginPart() : store->JoinParts()))
    FailWithSystem(ZipResult::kCannotWrite, target, errno);
  OpenArchive archive = Open();
  ZipAddition(machine, archive.get(), *store, old_file).AddFolder(source, name, recurse);
  TellOfProgress(archive.get());
  if (zip_close(archive.get()) != 0) FailWithLibrary(zip_get_error(archive.get()));
  static_cast<void>(archive.release());  // closed, and gone with it
  if (in_parts && !store->EndPart()) FailWithSystem(ZipResult::kCannotWrite, target, errno);
  has_content = true;
}

// The library reads and packs all files while it closes the archive.
void ZipWriter::State::TellOfProgress(zip_t* archive) {
  constexpr double kStep = 0;  // of the whole: at every buffer that is written
  const auto tell = [](zip_t*, double, void* state) {
    static_cast<const State*>(state)->between_files();
  };
  if (between_files) zip_register_progress_callback_with_state(archive, kStep, tell, nullptr, this);
}

void ZipWriter::State::Drop() {
  if (store != nullptr) store->File().Remove();
  store.reset();
  target.clear();
}

// An addition to a damaged archive may give a file that nobody can open.
void ZipWriter::State::CheckResult() {
  try {
    if (!in_parts) Open();
  } catch (...) {
    Drop();
    throw;
  }
}

void ZipWriter::State::Rename() {
  if (!has_content) return Drop();
  CheckResult();
  if (!store->JoinParts() || !store->File().Sync() || !store->File().GiveName(target)) {
    const int error = errno;
    const std::string name = target;
    Drop();
    FailWithSystem(ZipResult::kCannotWrite, name, error);
  }
  store.reset();
  target.clear();
}

ZipWriter::ZipWriter(const Machine& machine, std::function<void()> between_files)
    : state_(std::make_unique<State>(machine, std::move(between_files))) {}

ZipWriter::~ZipWriter() {
  std::string lost;
  Finish(lost);
}

std::int16_t ZipWriter::arZip(std::int32_t, std::string_view zip_file, std::string_view source,
                              std::string_view options, std::string& result) {
  State& state = *state_;
  try {
    const Options wanted = ParseOptions(UpToNul(options));
    if (UpToNul(zip_file).empty() || UpToNul(source).empty())
      FailWith(ZipResult::kBadOptions, "no file or no source named");
    const std::string target = NativePath(state.machine, UpToNul(zip_file));
    const std::string folder = NativePath(state.machine, UpToNul(source));
    if (!state.target.empty() && state.target != target) state.Rename();
    std::error_code unreachable;
    if (!fs::is_directory(Utf8Path(folder), unreachable))
      FailWith(ZipResult::kSourceMissing, std::string(UpToNul(source)) + ": no such folder");
    if (state.target.empty()) state.Begin(target, wanted.add);
    state.Add(folder, wanted.recurse);
    return 0;
  } catch (...) {
    return CodeOfFailure(result);
  }
}

std::int16_t ZipWriter::Finish(std::string& result) {
  try {
    if (!state_->target.empty()) state_->Rename();
    return 0;
  } catch (...) {
    return CodeOfFailure(result);
  }
}

std::int16_t arZip(const Machine& machine, std::int32_t number, std::string_view zip_file,
                   std::string_view source, std::string_view options, std::string& result) {
  ZipWriter writer(machine);
  const std::int16_t code = writer.arZip(number, zip_file, source, options, result);
  const std::int16_t finished = writer.Finish(result);
  return code != 0 ? code : finished;
}

}  // namespace logbook
