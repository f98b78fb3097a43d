// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A content server that is a shared folder, at a "file:" address.
#pragma once

#include <string>
#include <vector>

#include "upload/ContentStore.h"

namespace logbook {

class FolderStore : public ContentStore {
 public:
  // Below the native folder `base`, which must exist; `folder` as in the settings.
  FolderStore(const std::string& base, const std::string& folder);

  void MakeRoot() override;
  void MakeFolder(const std::string& path) override;
  std::optional<Digest> DigestOf(const std::string& path, std::uint64_t most) override;
  void Put(const std::string& path, native::Reader& file) override;
  void Move(const std::string& from, const std::string& to) override;

 private:
  std::string base_;
  std::vector<std::string> components_;
  std::string root_;
};

}  // namespace logbook
