// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/ZipAddition.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <set>
#include <system_error>

#include "archive/FileSource.h"
#include "base/Utf8.h"

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

zip_uint32_t Attributes(const FileFacts& facts) {
  constexpr zip_uint32_t kReadOnly = 0x01;
  constexpr zip_uint32_t kDirectory = 0x10;
  zip_uint32_t attributes = (facts.mode & 0xFFFF) << 16;
  if (facts.kind == FileFacts::Kind::kFolder) attributes |= kDirectory;
  if (facts.is_read_only) attributes |= kReadOnly;
  return attributes;
}

// A used-up quota leaves no more room than a full disk does.
bool IsNoRoom(int error) {
  const std::error_condition condition(error, std::generic_category());
#ifdef EDQUOT
  if (error == EDQUOT) return true;
#endif
  return condition == std::errc::no_space_on_device;
}

}  // namespace

void FailWith(ZipResult code, std::string reason) {
  throw ZipFailure{code, std::move(reason)};
}

void FailWithSystem(ZipResult code, const std::string& what, int error) {
  if (IsNoRoom(error)) code = ZipResult::kDiskFull;
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
  if (IsNoRoom(number)) result = ZipResult::kDiskFull;
  FailWith(result, zip_error_strerror(error));
}

std::string NameInZip(const Machine& machine, const std::string& disk_name) {
  const std::string name = IsUtf8(disk_name) ? disk_name : machine.code_page->ToUtf8(disk_name);
  std::string plain;
  for (std::size_t i = 0; i < name.size();) {
    const std::size_t start = i;
    const char32_t character = NextCharacter(name, i);
    const bool is_control = character < 0x20 || (character >= 0x7F && character < 0xA0);
    plain += is_control || character == '\\' ? "_" : name.substr(start, i - start);
  }
  return plain;
}

ZipAddition::ZipAddition(const Machine& machine, zip_t* archive, ZipStore& store,
                         FileIdentity zip_file)
    : machine_(machine), archive_(archive), store_(store), avoid_{zip_file} {
  FileIdentity working;
  if (store.File().Identity(working)) avoid_.push_back(working);
}

void ZipAddition::AddFolder(const std::string& native, const std::string& name, bool recurse) {
  tree_ = std::make_shared<const SourceTree>(native);
  AddFolderAt("", name, recurse);
}

void ZipAddition::AddFolderAt(const std::string& place, const std::string& name, bool recurse) {
  AddFolderEntry(name + "/", tree_->LookAtFolder(place));
  std::set<std::string> taken;
  for (const SourceTree::Child& child : tree_->ChildrenOf(place)) {
    // Two names of the disk may be one in the archive; neither file is dropped for that.
    std::string child_name = NameInZip(machine_, child.name);
    while (!taken.insert(child_name).second) child_name += '~';
    const std::string full_name = name + "/" + child_name;
    if (child.facts.kind == FileFacts::Kind::kFolder) {
      if (recurse) AddFolderAt(child.place, full_name, recurse);
    } else if (!IsZipFileItself(child.facts)) {
      AddFile(child, full_name);
    }
  }
}

bool ZipAddition::IsZipFileItself(const FileFacts& facts) const {
  return std::find(avoid_.begin(), avoid_.end(), facts.identity) != avoid_.end();
}

void ZipAddition::AddFolderEntry(const std::string& name, const FileFacts& facts) {
  zip_int64_t index = zip_name_locate(archive_, name.c_str(), ZIP_FL_ENC_UTF_8);
  if (index >= 0) {
    store_.ExpectReplacing();
  } else {
    index = zip_dir_add(archive_, name.c_str(), ZIP_FL_ENC_UTF_8);
  }
  if (index < 0) FailWithLibrary(zip_get_error(archive_));
  Describe(static_cast<zip_uint64_t>(index), facts);
}

void ZipAddition::AddFile(const SourceTree::Child& file, const std::string& name) {
  const bool replaces = zip_name_locate(archive_, name.c_str(), ZIP_FL_ENC_UTF_8) >= 0;
  if (replaces) store_.ExpectReplacing();
  zip_source_t* source = MakeFileSource(archive_, tree_, file);
  if (source == nullptr) FailWithLibrary(zip_get_error(archive_));
  const zip_int64_t index =
      zip_file_add(archive_, name.c_str(), source, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE);
  if (index < 0) {
    zip_source_free(source);
    FailWithLibrary(zip_get_error(archive_));
  }
  const auto place = static_cast<zip_uint64_t>(index);
  if (replaces) DropOthers(name, place);
  if (zip_set_file_compression(archive_, place, ZIP_CM_DEFLATE, kDeflateLevel) != 0)
    FailWithLibrary(zip_get_error(archive_));
  Describe(place, file.facts);
}

// An archive of another program may hold a name several times, and readers take the last one.
void ZipAddition::DropOthers(const std::string& name, zip_uint64_t kept) {
  const auto count = static_cast<zip_uint64_t>(zip_get_num_entries(archive_, 0));
  for (zip_uint64_t index = 0; index < count; ++index) {
    const char* const other = index == kept ? nullptr : zip_get_name(archive_, index, 0);
    if (other != nullptr && other == name && zip_delete(archive_, index) != 0)
      FailWithLibrary(zip_get_error(archive_));
  }
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
void ZipAddition::Describe(zip_uint64_t index, const FileFacts& facts) {
  const bool described =
      zip_file_set_mtime(archive_, index, facts.modified, 0) == 0 &&
      SetExactTime(index, facts.modified) &&
      zip_file_set_external_attributes(archive_, index, 0, ZIP_OPSYS_UNIX, Attributes(facts)) == 0;
  if (!described) FailWithLibrary(zip_get_error(archive_));
}

}  // namespace logbook
