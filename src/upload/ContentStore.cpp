// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ContentStore.h"

#include "base/Files.h"
#include "base/LibraryPath.h"
#include "upload/FolderStore.h"
#include "upload/ServerAddress.h"
#include "upload/WebDavStore.h"

namespace logbook {

namespace {

// For the library that carries the requests; empty for the certificates that the system trusts.
std::string CertificateFile(const Machine& machine, const ServerSettings& settings) {
  if (settings.ca_file.empty()) return {};
  const auto fail = [&](const char* what) {
    throw DeliveryError(DeliveryError::Reach::kWholeServer,
                        "The certificate file " + settings.ca_file + what);
  };
  if (!Exists(machine, settings.ca_file)) fail(" is missing.");
  std::string file = PathForLibraries(NativePath(machine, settings.ca_file));
  if (file.empty()) fail(" has letters in its path that the system's code page does not know.");
  return file;
}

}  // namespace

std::unique_ptr<ContentStore> OpenContentStore(const Machine& machine,
                                               const ServerSettings& settings) {
  CheckAddress(settings.url);
  if (SchemeOf(settings.url) == "file")
    return std::make_unique<FolderStore>(FolderOfFileUrl(machine, settings.url), settings.folder);
  const std::string ca_file = CertificateFile(machine, settings);
  return std::make_unique<WebDavStore>(settings, ReadPassword(machine, settings), ca_file);
}

}  // namespace logbook
