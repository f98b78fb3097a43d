// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ContentStore.h"

#include "base/Files.h"
#include "upload/FolderStore.h"
#include "upload/ServerAddress.h"
#include "upload/WebDavStore.h"

namespace logbook {

std::unique_ptr<ContentStore> OpenContentStore(const Machine& machine,
                                               const ServerSettings& settings) {
  CheckAddress(settings.url);
  if (SchemeOf(settings.url) == "file")
    return std::make_unique<FolderStore>(FolderOfFileUrl(machine, settings.url), settings.folder);
  if (!settings.ca_file.empty() && !Exists(machine, settings.ca_file))
    throw DeliveryError(DeliveryError::Reach::kWholeServer,
                        "The certificate file " + settings.ca_file + " is missing.");
  const std::string ca_file =
      settings.ca_file.empty() ? std::string() : NativePath(machine, settings.ca_file);
  return std::make_unique<WebDavStore>(settings, ReadPassword(machine, settings), ca_file);
}

}  // namespace logbook
