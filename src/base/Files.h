// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Files and folders by the program's own path texts: UTF-8 with backslashes, such as
// "C:\\QUOREX\\maintain\\26111500\\logfile.ini". This module alone turns them into native paths:
// a drive X: is "drives/x" under the machine's home, a path without a drive starts at the root,
// backslash and slash are equal, doubled separators count once, a trailing separator does not
// matter, and each component is found by its exact name first and without regard to case (ASCII
// and beyond) after that. A component between double quotes is found by its exact name alone: that
// is how names stand that a scan gave, since the folder of another spelling is another one.
//
// All routines raise RunTimeError with the numbers named below and nothing else.
// kPathNotFound (76): a parent folder is missing. kFileNotFound (53): the file is missing.
// kPathFileAccess (75): a folder (or pipe, socket, device) where a file is wanted or the other way
// round, a read-only file that is to be changed. kPermissionDenied (70): the system refuses.
// kDiskFull (61). kOutOfMemory (7): a file larger than a limit. kDeviceInputOutput (57): any other
// failure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"

namespace logbook {

// The native path for a path text. A component that does not exist stands as it is given. Raises
// nothing.
std::string NativePath(const Machine& machine, std::string_view path);

// A native path as a path text without a drive. Relative paths are taken from the working folder.
std::string PathText(const std::string& native_path);

// As above, but with its drive if it lies below one of the machine's drives, as the disk spells
// them; a path below the target of a drive that is a link does too. Raises nothing.
std::string DrivePathText(const Machine& machine, const std::string& native_path);

// A path that a person has typed, as a path text: with a drive or a backslash it is one already,
// any other is a native one. Raises nothing.
std::string TypedPathText(const std::string& path);

// The path text of a folder (with or without trailing backslash) with its own name between quotes,
// and so taken exactly; the folders above it are found as before. Raises nothing.
std::string ExactFolder(std::string_view path);

// True if a file or folder of that name exists. False on any failure, and for a pipe, socket or
// device, which is no file here: nothing is read from it or waited for.
bool Exists(const Machine& machine, std::string_view path);

// True if the path is a folder. False on any failure.
bool FolderExists(const Machine& machine, std::string_view path);

// True if the name is in use in any way: also by a link that leads nowhere, a pipe, a socket or a
// device, so that nothing can be made under it. False on any failure.
bool NameIsTaken(const Machine& machine, std::string_view path);

struct FolderEntry {
  std::string name;  // UTF-8, as the disk spells it
  enum class Kind { kFile, kFolder, kUnreadable } kind = Kind::kFile;
};

// All entries of a folder but "." and "..", in ascending order without regard to case (by the
// UTF-16 code units of the upper-cased names, then by exact bytes). An entry whose attributes
// cannot be read has Kind::kUnreadable, and so has one whose name holds a backslash, which no path
// text can name. Raises 76 if the folder cannot be found.
std::vector<FolderEntry> ScanFolder(const Machine& machine, std::string_view folder);

// The names of a folder's folders in that order, the first `limit` of them at most. Memory
// does not grow with the number of entries. Raises as ScanFolder does.
std::vector<std::string> FirstFoldersIn(const Machine& machine, std::string_view folder,
                                        std::size_t limit);

// Size, time stamps and identity of a file: equal stamps mean an unchanged file. What does not
// exist in the sense of Exists has the default stamp. Raises nothing.
struct FileStamp {
  std::uint64_t device = 0, inode = 0, size = 0;
  std::int64_t modified_ns = 0, changed_ns = 0;
  bool operator==(const FileStamp&) const = default;
};
FileStamp StampOf(const Machine& machine, std::string_view path);

inline constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

// The whole file as bytes. Raises 53, 75, 76, 70, 57, and 7 for a file of more than `most` bytes.
std::string ReadFile(const Machine& machine, std::string_view path, std::size_t most = kNoLimit);

// Replaces the file by these bytes, or makes it: readers see the old file or the new one, never a
// part, also after a crash. Raises 76 if the folder is missing, 75 for a folder or a read-only
// file, 70, 61, 57; the old file is then unchanged.
void WriteFile(const Machine& machine, std::string_view path, std::string_view bytes);

// The same for a file that can be made again at any time, such as a report: it is left alone if it
// holds these bytes already, and does not wait for the disk, so that a power cut may take it.
void WriteMadeFile(const Machine& machine, std::string_view path, std::string_view bytes);

// Makes one folder; its parent must exist. Raises 75 if the name is taken, 76 if the parent is
// missing, 70, 61, 57.
void MakeFolder(const Machine& machine, std::string_view path);

// Removes an empty folder, by its exact name. Raises 75 if it is not empty, is no folder or is a
// link, 76 if it is missing.
void RemoveFolder(const Machine& machine, std::string_view path);

// Deletes one file. Raises 53 if it is missing, 75 if it is read-only (no owner's write bit).
void DeleteFile(const Machine& machine, std::string_view path);

// Deletes all files of a folder (the files that "*.*" matches), by the folder's exact name:
// folders, hidden files (names that begin with a dot) and read-only files stay. A link in the
// folder is deleted itself, whatever it leads to. When all others are gone, raises 75 if a
// read-only file stayed, else the first failure; 53 if no file matched; 76 if the folder is
// missing; 75 if it is no folder or is a link, and nothing behind that is touched.
void DeleteFilesIn(const Machine& machine, std::string_view folder);

// Copies a file's bytes to another path text, in bounded memory. Raises as ReadFile and WriteFile
// do.
void CopyFile(const Machine& machine, std::string_view from, std::string_view to);

// Read access to a file from its start, buffered; a file of any size takes bounded memory.
// A line ends at CR LF, CR or LF; a last line without a line end is a line. Every routine raises 57
// if the disk refuses to read on.
class InputFile {
 public:
  // Opens. Raises 53, 75 (also for a folder or an empty name), 76, 70.
  InputFile(const Machine& machine, std::string_view path);
  // The same over bytes that have been read already; they must outlive the object.
  explicit InputFile(std::string_view bytes);
  ~InputFile();
  InputFile(InputFile&&) noexcept;
  InputFile& operator=(InputFile&&) noexcept;

  // True if no byte is left.
  bool AtEnd();
  // The next line's bytes without its line end; of a line of more than `most` bytes the first of
  // them, and the rest is passed over. Raises 62 at the end of the file.
  std::string ReadLine(std::size_t most = kNoLimit);
  // The bytes that are at hand without reading on; at least one unless the file is at its end.
  std::string_view Buffered();
  // Takes that many of the bytes at hand.
  void Skip(std::size_t count);
  // The next byte without taking it, or -1 at the end.
  int Peek();
  // Takes the next byte, or gives -1 at the end.
  int Get();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
