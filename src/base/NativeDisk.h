// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The disk by native paths, a call at a time: for the services that keep folders of their own, the
// outbox and the shared folder of a content server. Nothing here raises but the two routines whose
// names say so. A failure is the system's error code, to be compared with std::errc; a used-up
// quota counts as std::errc::no_space_on_device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace logbook::native {

// What bears a name. kOther is a pipe, a socket or a device.
enum class Kind { kNothing, kFile, kFolder, kLink, kOther };
enum class Links { kAsThemselves, kFollowed };

// Looks what bears the name. kNothing without an error says that nobody does; what cannot be told
// is kNothing with the error.
std::error_code LookAt(const std::string& path, Links links, Kind& kind);

// The path of the file that a link leads to, if that file lies in this folder or below it; empty
// for any other link and on any failure.
std::string FileBehind(const std::string& link, const std::string& folder);

// Who may look into a new folder: its owner alone, or whom the owner's settings let.
enum class Audience { kOwner, kUsers };

// Makes one folder; std::errc::file_exists if the name is taken.
std::error_code MakeFolder(const std::string& path, Audience audience);

// Removes an empty folder.
std::error_code RemoveFolder(const std::string& path);

// Removes a folder and all that is in it, links as themselves, or whatever else bears the name.
std::error_code RemoveTree(const std::string& path);

// Gives what bears the first name the second one in one step; a file of that name is replaced.
std::error_code Rename(const std::string& from, const std::string& to);

// Brings a file's bytes, or a folder's names, to the disk. Waits for nobody at the other end of a
// pipe.
std::error_code Sync(const std::string& path);

// All names in a folder but "." and "..", ascending by their bytes; none on failure, never a part.
std::error_code NamesIn(const std::string& folder, std::vector<std::string>& names);

// The same with what bears them, links as themselves.
struct Entry {
  std::string name;
  Kind kind;
};
std::error_code EntriesIn(const std::string& folder, std::vector<Entry>& entries);

// Read access to a file from its start. Nothing but a file can be opened.
class Reader {
 public:
  Reader();
  ~Reader();
  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

  // std::errc::is_a_directory for a folder, std::errc::not_supported for a pipe or a device, and
  // std::errc::too_many_symbolic_link_levels for a link that is not to be followed.
  std::error_code Open(const std::string& path, Links links);
  // Size in bytes that the open file had when it was opened.
  std::uint64_t Size() const;
  // Reads at most `size` bytes; 0 at the end and on failure, which Failure then tells.
  std::size_t Read(char* buffer, std::size_t size);
  // The next byte to read, counted from the start.
  std::error_code SeekTo(std::uint64_t offset);
  // Why the last Read failed, if it did.
  std::error_code Failure() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Copies what is left to read to a file, made or begun anew, up to the disk, in bounded memory. On
// failure nothing is left of the file. The error is that of writing; look at the reader's, too.
std::error_code CopyAndSync(Reader& from, const std::string& to);

// Raises the run-time error that Files.h names for a failed call on a file, or on a folder.
[[noreturn]] void RaiseFileError(const std::error_code& error, const std::string& path);
[[noreturn]] void RaiseFolderError(const std::error_code& error);

}  // namespace logbook::native
