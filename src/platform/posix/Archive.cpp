// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/Archive.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <utility>
#include <vector>

#include "platform/Files.h"
#include "platform/posix/ZipStore.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

// As the well-known programs do: the gain of higher levels is small, their time is not.
constexpr zip_uint32_t kDeflateLevel = 6;
constexpr zip_uint16_t kExtendedTimeStamp = 0x5455;

// Why a run of the writer failed. Stays inside this file.
struct Failure {
  ZipResult code;
  std::string reason;
};

[[noreturn]] void FailWith(ZipResult code, std::string reason) {
  throw Failure{code, std::move(reason)};
}

[[noreturn]] void FailWithSystem(ZipResult code, const std::string& what, int error) {
  if (error == ENOSPC || error == EDQUOT) code = ZipResult::kDiskFull;
  FailWith(code, what + ": " + std::strerror(error));
}

[[noreturn]] void FailWithLibrary(zip_error_t* error) {
  const int code = zip_error_code_zip(error);
  const bool has_errno = zip_error_system_type(error) == ZIP_ET_SYS;
  const int number = has_errno ? zip_error_code_system(error) : 0;
  ZipResult result = ZipResult::kFailed;
  if (code == ZIP_ER_OPEN || code == ZIP_ER_READ) result = ZipResult::kSourceUnreadable;
  if (code == ZIP_ER_WRITE || code == ZIP_ER_TMPOPEN || code == ZIP_ER_RENAME)
    result = ZipResult::kCannotWrite;
  if (code == ZIP_ER_NOZIP || code == ZIP_ER_INCONS) result = ZipResult::kNoZipFile;
  if (number == ENOSPC || number == EDQUOT) result = ZipResult::kDiskFull;
  FailWith(result, zip_error_strerror(error));
}

std::string_view UpToNul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

// The text into a buffer that keeps its size.
void Fill(std::string& buffer, const std::string& text) {
  const std::size_t count = std::min(buffer.size(), text.size());
  std::fill(buffer.begin(), buffer.end(), '\0');
  buffer.replace(0, count, text, 0, count);
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

// The identity of a file on the disk.
using Identity = std::pair<dev_t, ino_t>;
Identity IdentityOf(const struct stat& status) {
  return {status.st_dev, status.st_ino};
}

bool IsUtf8(const std::string& text) {
  // A page without double bytes maps what is no UTF-8 to one "?" for each byte; text that is UTF-8
  // has no byte above 127 outside a valid sequence. The zip library checks the same way.
  zip_error_t error;
  zip_error_init(&error);
  std::size_t i = 0;
  while (i < text.size()) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || i + length > text.size()) return false;
    for (std::size_t k = 1; k < length; ++k)
      if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
    i += length;
  }
  return true;
}

// One addition of a folder to an open archive.
class Addition {
 public:
  Addition(const Machine& machine, zip_t* archive, ZipStore& store, Identity zip_file)
      : machine_(machine), archive_(archive), store_(store) {
    avoid_.push_back(zip_file);
    struct stat status {};
    if (fstat(store.Descriptor(), &status) == 0) avoid_.push_back(IdentityOf(status));
  }

  // The folder with its entry, its files and, if wanted, its folders.
  void AddFolder(const std::string& native, const std::string& name, bool recurse) {
    struct stat status {};
    if (stat(native.c_str(), &status) != 0)
      FailWithSystem(ZipResult::kSourceUnreadable, native, errno);
    const Identity identity = IdentityOf(status);
    // A link that leads to a folder above would go round for ever.
    if (std::find(above_.begin(), above_.end(), identity) != above_.end()) return;
    above_.push_back(identity);
    AddFolderEntry(name + "/", status);
    for (const std::string& child : Children(native)) AddChild(native, name, child, recurse);
    above_.pop_back();
  }

  std::string NameInside(const std::string& disk_name) const {
    return IsUtf8(disk_name) ? disk_name : machine_.code_page->ToUtf8(disk_name);
  }

 private:
  static std::vector<std::string> Children(const std::string& native) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(native, error), end; !error && entry != end;
         entry.increment(error))
      names.push_back(entry->path().filename().string());
    if (error) FailWithSystem(ZipResult::kSourceUnreadable, native, error.value());
    std::sort(names.begin(), names.end());
    return names;
  }

  void AddChild(const std::string& native, const std::string& name, const std::string& child,
                bool recurse) {
    const std::string path = native + "/" + child;
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
      if (errno == ENOENT) return;  // a link that leads nowhere, or gone meanwhile
      FailWithSystem(ZipResult::kSourceUnreadable, path, errno);
    }
    const std::string child_name = name + "/" + NameInside(child);
    if (S_ISDIR(status.st_mode)) {
      if (recurse) AddFolder(path, child_name, recurse);
    } else if (S_ISREG(status.st_mode) && !IsZipFileItself(status)) {
      AddFile(path, child_name, status);
    }
  }

  bool IsZipFileItself(const struct stat& status) const {
    return std::find(avoid_.begin(), avoid_.end(), IdentityOf(status)) != avoid_.end();
  }

  void AddFolderEntry(const std::string& name, const struct stat& status) {
    zip_int64_t index = zip_name_locate(archive_, name.c_str(), ZIP_FL_ENC_UTF_8);
    if (index >= 0) {
      store_.ExpectReplacing();
    } else {
      index = zip_dir_add(archive_, name.c_str(), ZIP_FL_ENC_UTF_8);
    }
    if (index < 0) FailWithLibrary(zip_get_error(archive_));
    Describe(static_cast<zip_uint64_t>(index), status);
  }

  void AddFile(const std::string& path, const std::string& name, const struct stat& status) {
    if (zip_name_locate(archive_, name.c_str(), ZIP_FL_ENC_UTF_8) >= 0) store_.ExpectReplacing();
    zip_source_t* source = zip_source_file(archive_, path.c_str(), 0, -1);
    if (source == nullptr) FailWithLibrary(zip_get_error(archive_));
    const zip_int64_t index =
        zip_file_add(archive_, name.c_str(), source, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
    if (index < 0) {
      zip_source_free(source);
      FailWithLibrary(zip_get_error(archive_));
    }
    const auto place = static_cast<zip_uint64_t>(index);
    if (zip_set_file_compression(archive_, place, ZIP_CM_DEFLATE, kDeflateLevel) != 0)
      FailWithLibrary(zip_get_error(archive_));
    Describe(place, status);
  }

  // Date and time twice: in local time to two seconds, as every zip has it, and exactly, in the
  // extra field that most programs know. The permissions go with them.
  void Describe(zip_uint64_t index, const struct stat& status) {
    const auto seconds = static_cast<std::uint32_t>(static_cast<std::int32_t>(status.st_mtime));
    zip_uint8_t stamp[5] = {1};
    for (std::size_t i = 0; i < 4; ++i)
      stamp[i + 1] = static_cast<zip_uint8_t>(seconds >> (8 * i) & 0xFF);
    const bool described =
        zip_file_set_mtime(archive_, index, status.st_mtime, 0) == 0 &&
        zip_file_extra_field_set(archive_, index, kExtendedTimeStamp, 0, stamp, sizeof stamp,
                                 ZIP_FL_LOCAL | ZIP_FL_CENTRAL) == 0 &&
        zip_file_set_external_attributes(archive_, index, 0, ZIP_OPSYS_UNIX, Attributes(status)) ==
            0;
    if (!described) FailWithLibrary(zip_get_error(archive_));
  }

  static zip_uint32_t Attributes(const struct stat& status) {
    constexpr zip_uint32_t kReadOnly = 0x01;
    constexpr zip_uint32_t kDirectory = 0x10;
    zip_uint32_t attributes = static_cast<zip_uint32_t>(status.st_mode & 0xFFFF) << 16;
    if (S_ISDIR(status.st_mode)) attributes |= kDirectory;
    if ((status.st_mode & S_IWUSR) == 0) attributes |= kReadOnly;
    return attributes;
  }

  const Machine& machine_;
  zip_t* archive_;
  ZipStore& store_;
  std::vector<Identity> avoid_;
  std::vector<Identity> above_;
};

// An archive that is discarded unless it has been closed.
struct Discard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using OpenArchive = std::unique_ptr<zip_t, Discard>;

}  // namespace

struct ZipWriter::State {
  explicit State(const Machine& the_machine) : machine(the_machine) {}

  const Machine& machine;
  std::string target;  // native path of the zip file; empty between runs
  std::string working;
  std::unique_ptr<ZipStore> store;
  Identity old_file{};
  bool has_content = false;

  void Begin(const std::string& native, bool add);
  void CheckTarget(const std::string& native);
  void CopyOldFile(int old_file, int new_file) const;
  OpenArchive Open();
  void Add(const std::string& source, bool recurse);
  void Rename();
  void Drop();
};

// The zip file must be one that we may write, as if it were opened for writing in place.
void ZipWriter::State::CheckTarget(const std::string& native) {
  struct stat status {};
  old_file = {};
  if (stat(native.c_str(), &status) != 0) return;
  old_file = IdentityOf(status);
  if (!S_ISREG(status.st_mode)) FailWith(ZipResult::kCannotWrite, native + ": not a file");
  if ((status.st_mode & S_IWUSR) == 0) FailWith(ZipResult::kCannotWrite, native + ": read-only");
}

void ZipWriter::State::Begin(const std::string& native, bool add) {
  CheckTarget(native);
  const int old_descriptor = add ? open(native.c_str(), O_RDONLY | O_CLOEXEC) : -1;
  if (add && old_descriptor < 0 && errno != ENOENT)
    FailWithSystem(ZipResult::kCannotWrite, native, errno);
  const fs::path path(native);
  int descriptor = -1;
  for (int number = 1; descriptor < 0; ++number) {
    working = (path.parent_path() /
               ("." + path.filename().string() + "." + std::to_string(number) + ".part"))
                  .string();
    descriptor = open(working.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno != EEXIST) {
      const int error = errno;
      if (old_descriptor >= 0) close(old_descriptor);
      FailWithSystem(ZipResult::kCannotWrite, native, error);
    }
  }
  store = std::make_unique<ZipStore>(descriptor, working);
  target = native;
  has_content = false;
  if (old_descriptor >= 0) {
    CopyOldFile(old_descriptor, descriptor);
    close(old_descriptor);
    has_content = true;
  }
}

void ZipWriter::State::CopyOldFile(int old_file_descriptor, int new_file) const {
  struct stat status {};
  if (fstat(old_file_descriptor, &status) == 0) fchmod(new_file, status.st_mode & 07777);
  std::vector<char> buffer(256 * 1024);
  for (;;) {
    const ssize_t count = read(old_file_descriptor, buffer.data(), buffer.size());
    if (count == 0) return;
    if (count < 0 || write(new_file, buffer.data(), static_cast<std::size_t>(count)) != count) {
      const int error = errno;
      close(old_file_descriptor);
      FailWithSystem(ZipResult::kCannotWrite, target, error);
    }
  }
}

OpenArchive ZipWriter::State::Open() {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = store->MakeSource();
  if (source == nullptr) FailWith(ZipResult::kFailed, "out of memory");
  OpenArchive archive(
      zip_open_from_source(source, has_content ? 0 : ZIP_CREATE | ZIP_TRUNCATE, &error));
  if (archive != nullptr) return archive;
  zip_source_free(source);
  FailWithLibrary(&error);
}

void ZipWriter::State::Add(const std::string& source, bool recurse) {
  OpenArchive archive = Open();
  Addition addition(machine, archive.get(), *store, old_file);
  addition.AddFolder(source, addition.NameInside(fs::path(source).filename().string()), recurse);
  if (zip_close(archive.get()) != 0) FailWithLibrary(zip_get_error(archive.get()));
  archive.release();  // closed, and gone with it
  has_content = true;
}

void ZipWriter::State::Drop() {
  if (store != nullptr) unlink(working.c_str());
  store.reset();
  target.clear();
}

void ZipWriter::State::Rename() {
  if (!has_content) return Drop();
  if (fdatasync(store->Descriptor()) != 0 || std::rename(working.c_str(), target.c_str()) != 0) {
    const int error = errno;
    const std::string name = target;
    Drop();
    FailWithSystem(ZipResult::kCannotWrite, name, error);
  }
  store.reset();
  target.clear();
}

ZipWriter::ZipWriter(const Machine& machine) : state_(std::make_unique<State>(machine)) {}

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
    if (!fs::is_directory(folder))
      FailWith(ZipResult::kSourceMissing, std::string(UpToNul(source)) + ": no such folder");
    if (state.target.empty()) state.Begin(target, wanted.add);
    state.Add(folder, wanted.recurse);
    return 0;
  } catch (const Failure& failure) {
    Fill(result, failure.reason);
    return static_cast<std::int16_t>(failure.code);
  } catch (const std::exception& error) {
    Fill(result, error.what());
    return static_cast<std::int16_t>(ZipResult::kFailed);
  }
}

std::int16_t ZipWriter::Finish(std::string& result) {
  try {
    if (!state_->target.empty()) state_->Rename();
    return 0;
  } catch (const Failure& failure) {
    Fill(result, failure.reason);
    return static_cast<std::int16_t>(failure.code);
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
