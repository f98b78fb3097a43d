// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "base/posix/Descriptor.h"
#include "base/posix/SystemError.h"

namespace logbook {

struct FileLock::State {
  posix::Descriptor file;
};

FileLock::FileLock(const std::string& path, Patience patience) {
  // A link would have a file made wherever it leads.
  posix::Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file.IsOpen()) posix::RaiseFileError(errno, path);
  const int operation = LOCK_EX | (patience == Patience::kTry ? LOCK_NB : 0);
  while (flock(file.Number(), operation) != 0) {
    if (errno == EINTR) continue;
    if (errno == EWOULDBLOCK) return;
    posix::RaiseFileError(errno, path);
  }
  state_ = std::make_unique<State>(State{std::move(file)});
}

FileLock::~FileLock() = default;

}  // namespace logbook
