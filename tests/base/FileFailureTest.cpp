// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FileFailure.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

namespace logbook {
namespace {

constexpr std::pair<int, ErrorNumber> kAlike[] = {
    {EISDIR, ErrorNumber::kPathFileAccess},    {EEXIST, ErrorNumber::kPathFileAccess},
    {ENOTEMPTY, ErrorNumber::kPathFileAccess}, {EACCES, ErrorNumber::kPermissionDenied},
    {EPERM, ErrorNumber::kPermissionDenied},   {EROFS, ErrorNumber::kPermissionDenied},
    {ETXTBSY, ErrorNumber::kPermissionDenied}, {ENOSPC, ErrorNumber::kDiskFull},
    {EFBIG, ErrorNumber::kDiskFull},           {ENOMEM, ErrorNumber::kOutOfMemory},
    {EIO, ErrorNumber::kDeviceInputOutput},    {EMFILE, ErrorNumber::kDeviceInputOutput},
    {ELOOP, ErrorNumber::kDeviceInputOutput},  {0, ErrorNumber::kDeviceInputOutput},
};

TEST(FileFailure, MostRefusalsAreTheSameForFilesAndFolders) {
  for (const auto& [error, number] : kAlike) {
    EXPECT_EQ(FileFailure(error, true).Number(), number) << error;
    EXPECT_EQ(FileFailure(error, false).Number(), number) << error;
    EXPECT_EQ(FolderFailure(error).Number(), number) << error;
  }
}

TEST(FileFailure, AMissingFileIsToldFromAMissingFolder) {
  EXPECT_EQ(FileFailure(ENOENT, true).Number(), ErrorNumber::kFileNotFound);
  EXPECT_EQ(FileFailure(ENOENT, false).Number(), ErrorNumber::kPathNotFound);
  EXPECT_EQ(FolderFailure(ENOENT).Number(), ErrorNumber::kPathNotFound);
}

TEST(FileFailure, AFileInPlaceOfAFolderIsAMissingPathOrARefusedFolder) {
  EXPECT_EQ(FileFailure(ENOTDIR, true).Number(), ErrorNumber::kPathNotFound);
  EXPECT_EQ(FileFailure(ENOTDIR, false).Number(), ErrorNumber::kPathNotFound);
  EXPECT_EQ(FolderFailure(ENOTDIR).Number(), ErrorNumber::kPathFileAccess);
}

}  // namespace
}  // namespace logbook
