// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/NativeDisk.h"

#include <algorithm>
#include <cerrno>

#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "base/win32/PrivateRights.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook::native {

using win32::Handle;
using win32::Status;
using win32::WidePath;

namespace {

std::error_code ErrorOf(int error) {
  return {error, std::generic_category()};
}

// Of a call that gives something else than 0 for success.
std::error_code ResultOf(int result) {
  return result != 0 ? std::error_code() : ErrorOf(win32::LastErrno());
}

Kind KindOf(DWORD attributes, Links links) {
  const bool is_link = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (is_link && links == Links::kAsThemselves) return Kind::kLink;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::kFolder : Kind::kFile;
}

win32::Follow FollowFor(Links links) {
  return links == Links::kFollowed ? win32::Follow::kYes : win32::Follow::kNo;
}

std::string WholePath(const std::string& path) {
  const Handle file = win32::OpenToRead(path, win32::Follow::kYes);
  std::wstring buffer(32768, L'\0');
  const DWORD length = file.IsOpen()
                           ? GetFinalPathNameByHandleW(file.Value(), buffer.data(),
                                                       static_cast<DWORD>(buffer.size()), 0)
                           : 0;
  return length < buffer.size() ? win32::Narrow(buffer.substr(0, length)) : std::string();
}

}  // namespace

std::error_code LookAt(const std::string& path, Links links, Kind& kind) {
  kind = Kind::kNothing;
  Status status;
  if (!StatusOf(path, FollowFor(links), status)) {
    const int error = win32::LastErrno();
    if (error == ENOTSUP) kind = Kind::kOther;
    return error == ENOENT || error == ENOTSUP ? std::error_code() : ErrorOf(error);
  }
  kind = KindOf(status.attributes, links);
  return {};
}

std::string FileBehind(const std::string& link, const std::string& folder) {
  const std::string target = WholePath(link);
  const std::string place = WholePath(folder);
  if (target.empty() || place.empty() || win32::IsFolder(link)) return {};
  const bool inside = target.size() > place.size() + 1 && target[place.size()] == '\\' &&
                      EqualIgnoringCase(target.substr(0, place.size()), place);
  return inside ? target : std::string();
}

std::error_code MakeFolder(const std::string& path, Audience audience) {
  win32::PrivateRights rights;
  SECURITY_ATTRIBUTES* owner_only = audience == Audience::kOwner ? rights.ForFolder() : nullptr;
  return ResultOf(CreateDirectoryW(WidePath(path).c_str(), owner_only));
}

std::error_code RemoveFolder(const std::string& path) {
  return ResultOf(RemoveDirectoryW(WidePath(path).c_str()));
}

std::error_code RemoveTree(const std::string& path) {
  Status status;
  if (!StatusOf(path, win32::Follow::kNo, status)) {
    const int error = win32::LastErrno();
    return error == ENOENT ? std::error_code() : ErrorOf(error);
  }
  const std::wstring wide = WidePath(path);
  if ((status.attributes & FILE_ATTRIBUTE_READONLY) != 0)
    SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (!status.IsFolder()) return ResultOf(DeleteFileW(wide.c_str()));
  if (!status.IsLink()) {
    std::vector<std::string> names;
    if (const std::error_code error = NamesIn(path, names)) return error;
    for (const std::string& name : names) {
      if (const std::error_code error = RemoveTree(path + "/" + name)) return error;
    }
  }
  return ResultOf(RemoveDirectoryW(wide.c_str()));
}

std::error_code Rename(const std::string& from, const std::string& to) {
  return ResultOf(MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(),
                              MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

// The system writes a folder's names through by itself.
std::error_code Sync(const std::string& path) {
  Status status;
  if (!StatusOf(path, win32::Follow::kYes, status)) return ErrorOf(win32::LastErrno());
  if (status.IsFolder() || status.IsReadOnly()) return {};
  const Handle file(CreateFileW(WidePath(path).c_str(), GENERIC_WRITE,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, 0, nullptr));
  return ResultOf(file.IsOpen() && FlushFileBuffers(file.Value()));
}

std::error_code EntriesIn(const std::string& folder, std::vector<Entry>& entries) {
  entries.clear();
  const bool done = win32::ForEachEntry(folder, [&entries](const WIN32_FIND_DATAW& found) {
    entries.push_back(
        {win32::Narrow(found.cFileName), KindOf(found.dwFileAttributes, Links::kAsThemselves)});
  });
  if (!done) {
    entries.clear();
    return ErrorOf(win32::LastErrno());
  }
  std::sort(entries.begin(), entries.end(),
            [](const Entry& one, const Entry& other) { return one.name < other.name; });
  return {};
}

struct Reader::State {
  Handle file;
  std::uint64_t size = 0;
  std::error_code failure;
};

Reader::Reader() : state_(std::make_unique<State>()) {}

Reader::~Reader() = default;

std::error_code Reader::Open(const std::string& path, Links links) {
  state_->failure = {};
  state_->file = win32::OpenToRead(path, FollowFor(links));
  if (!state_->file.IsOpen()) return ErrorOf(win32::LastErrno());
  Status status;
  int error = 0;
  if (GetFileType(state_->file.Value()) != FILE_TYPE_DISK) {
    error = ENOTSUP;
  } else if (!StatusOf(state_->file, status)) {
    error = win32::LastErrno();
  } else if (links == Links::kAsThemselves && status.IsLink()) {
    error = ELOOP;
  } else if (status.IsFolder()) {
    error = EISDIR;
  }
  state_->size = status.stamp.size;
  if (error == 0) return {};
  state_->file.Close();
  return ErrorOf(error);
}

std::uint64_t Reader::Size() const {
  return state_->size;
}

std::size_t Reader::Read(char* buffer, std::size_t size) {
  try {
    return win32::ReadSome(state_->file, buffer, size);
  } catch (const RunTimeError&) {
    state_->failure = ErrorOf(EIO);
    return 0;
  }
}

std::error_code Reader::SeekTo(std::uint64_t offset) {
  LARGE_INTEGER place = {};
  place.QuadPart = static_cast<LONGLONG>(offset);
  return ResultOf(SetFilePointerEx(state_->file.Value(), place, nullptr, FILE_BEGIN));
}

std::error_code Reader::Failure() const {
  return state_->failure;
}

std::error_code CopyAndSync(Reader& from, const std::string& to) {
  Handle out(CreateFileW(WidePath(to).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                         CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!out.IsOpen()) return ErrorOf(win32::LastErrno());
  constexpr std::size_t kBuffer = 256 * 1024;
  std::string buffer(kBuffer, '\0');
  std::error_code error;
  while (const std::size_t count = from.Read(buffer.data(), buffer.size())) {
    error = ResultOf(WriteAll(out, std::string_view(buffer.data(), count)));
    if (error) break;
  }
  if (!error && !from.Failure()) error = ResultOf(FlushFileBuffers(out.Value()));
  out.Close();
  if (error || from.Failure()) DeleteFileW(WidePath(to).c_str());
  return error;
}

void RaiseFileError(const std::error_code& error, const std::string& path) {
  win32::RaiseFileError(error.value(), path);
}

void RaiseFolderError(const std::error_code& error) {
  win32::RaiseFolderError(error.value());
}

}  // namespace logbook::native
