// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/posix/ZipAddition.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <set>

#include "base/NativeFile.h"
#include "base/Utf8.h"

namespace fs = std::filesystem;

namespace logbook {

namespace {

// As the well-known programs do: the gain of higher levels is small, their time is not.
constexpr zip_uint32_t kDeflateLevel = 6;
constexpr zip_uint16_t kExtendedTimeStamp = 0x5455;

// Half a surrogate pair is none: readers of the archive would refuse the name.
bool IsUtf8(const std::string& text) {
  for (std::size_t i = 0; i < text.size();) {
    const char32_t character = NextCharacter(text, i);
    if (character == kNotUtf8 || (character >= 0xD800 && character <= 0xDFFF)) return false;
  }
  return true;
}

std::vector<std::string> Children(const std::string& native) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(native, error), end; !error && entry != end;
       entry.increment(error)) {
    std::string name = entry->path().filename().string();
    // What a writer that was killed has left is no file of the log.
    if (!name.starts_with(kTemporaryName)) names.push_back(std::move(name));
  }
  if (error) FailWithSystem(ZipResult::kSourceUnreadable, native, error.value());
  std::sort(names.begin(), names.end());
  return names;
}

zip_uint32_t Attributes(const struct stat& status) {
  constexpr zip_uint32_t kReadOnly = 0x01;
  constexpr zip_uint32_t kDirectory = 0x10;
  zip_uint32_t attributes = static_cast<zip_uint32_t>(status.st_mode & 0xFFFF) << 16;
  if (S_ISDIR(status.st_mode)) attributes |= kDirectory;
  if ((status.st_mode & S_IWUSR) == 0) attributes |= kReadOnly;
  return attributes;
}

}  // namespace

void FailWith(ZipResult code, std::string reason) {
  throw ZipFailure{code, std::move(reason)};
}

void FailWithSystem(ZipResult code, const std::string& what, int error) {
  if (error == ENOSPC || error == EDQUOT) code = ZipResult::kDiskFull;
  FailWith(code, what + ": " + std::strerror(error));
}

void FailWithLibrary(zip_error_t* error) {
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

FileIdentity IdentityOf(const struct stat& status) {
  return {status.st_dev, status.st_ino};
}

std::string NameInZip(const Machine& machine, const std::string& disk_name) {
  return IsUtf8(disk_name) ? disk_name : machine.code_page->ToUtf8(disk_name);
}

ZipAddition::ZipAddition(const Machine& machine, zip_t* archive, ZipStore& store,
                         FileIdentity zip_file)
    : machine_(machine), archive_(archive), store_(store), avoid_{zip_file} {
  struct stat status {};
  if (fstat(store.Descriptor(), &status) == 0) avoid_.push_back(IdentityOf(status));
}

void ZipAddition::AddFolder(const std::string& native, const std::string& name, bool recurse) {
  struct stat status {};
  if (stat(native.c_str(), &status) != 0)
    FailWithSystem(ZipResult::kSourceUnreadable, native, errno);
  const FileIdentity identity = IdentityOf(status);
  if (std::find(above_.begin(), above_.end(), identity) != above_.end()) return;
  above_.push_back(identity);
  AddFolderEntry(name + "/", status);
  std::set<std::string> taken;
  for (const std::string& child : Children(native)) {
    // Two names of the disk may be one in the archive; neither file is dropped for that.
    std::string child_name = NameInZip(machine_, child);
    while (!taken.insert(child_name).second) child_name += '~';
    AddChild(native + "/" + child, name + "/" + child_name, recurse);
  }
  above_.pop_back();
}

void ZipAddition::AddChild(const std::string& path, const std::string& name, bool recurse) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT) return;  // a link that leads nowhere, or gone meanwhile
    FailWithSystem(ZipResult::kSourceUnreadable, path, errno);
  }
  if (S_ISDIR(status.st_mode)) {
    if (recurse) AddFolder(path, name, recurse);
  } else if (S_ISREG(status.st_mode) && !IsZipFileItself(status)) {
    AddFile(path, name, status);
  }
}

bool ZipAddition::IsZipFileItself(const struct stat& status) const {
  return std::find(avoid_.begin(), avoid_.end(), IdentityOf(status)) != avoid_.end();
}

void ZipAddition::AddFolderEntry(const std::string& name, const struct stat& status) {
  zip_int64_t index = zip_name_locate(archive_, name.c_str(), ZIP_FL_ENC_UTF_8);
  if (index >= 0) {
    store_.ExpectReplacing();
  } else {
    index = zip_dir_add(archive_, name.c_str(), ZIP_FL_ENC_UTF_8);
  }
  if (index < 0) FailWithLibrary(zip_get_error(archive_));
  Describe(static_cast<zip_uint64_t>(index), status);
}

void ZipAddition::AddFile(const std::string& path, const std::string& name,
                          const struct stat& status) {
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

// The field holds 32 bits with a sign; a time beyond them stands in local time alone.
bool ZipAddition::SetExactTime(zip_uint64_t index, std::time_t time) {
  if (time != static_cast<std::int32_t>(time)) {
    zip_file_extra_field_delete_by_id(archive_, index, kExtendedTimeStamp, ZIP_EXTRA_FIELD_ALL,
                                      ZIP_FL_LOCAL | ZIP_FL_CENTRAL);
    return true;
  }
  const auto seconds = static_cast<std::uint32_t>(time);
  zip_uint8_t stamp[5] = {1};
  for (std::size_t i = 0; i < 4; ++i)
    stamp[i + 1] = static_cast<zip_uint8_t>(seconds >> (8 * i) & 0xFF);
  return zip_file_extra_field_set(archive_, index, kExtendedTimeStamp, 0, stamp, sizeof stamp,
                                  ZIP_FL_LOCAL | ZIP_FL_CENTRAL) == 0;
}

// Date and time twice: in local time to two seconds, as every zip has it, and exactly, in the
// extra field that most programs know. The permissions go with them.
void ZipAddition::Describe(zip_uint64_t index, const struct stat& status) {
  const bool described =
      zip_file_set_mtime(archive_, index, status.st_mtime, 0) == 0 &&
      SetExactTime(index, status.st_mtime) &&
      zip_file_set_external_attributes(archive_, index, 0, ZIP_OPSYS_UNIX, Attributes(status)) == 0;
  if (!described) FailWithLibrary(zip_get_error(archive_));
}

}  // namespace logbook
