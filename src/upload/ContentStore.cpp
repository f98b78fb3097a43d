// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ContentStore.h"

#include "base/Files.h"
#include "upload/FolderStore.h"
#include "upload/WebDavStore.h"

namespace logbook {

namespace {

// The scheme of an address in lower case, without its colon.
std::string SchemeOf(const std::string& url) {
  std::string scheme = url.substr(0, url.find(':'));
  for (char& byte : scheme) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return scheme;
}

}  // namespace

std::unique_ptr<ContentStore> OpenContentStore(const Machine& machine,
                                               const ServerSettings& settings) {
  const std::string scheme = SchemeOf(settings.url);
  if (scheme == "file")
    return std::make_unique<FolderStore>(FolderOfFileUrl(machine, settings.url), settings.folder);
  if (scheme != "http" && scheme != "https")
    throw DeliveryError(
        DeliveryError::Reach::kWholeServer,
        "The address " + AddressOf(settings) + " is neither http:, https: nor file:.");
  if (!settings.ca_file.empty() && !Exists(machine, settings.ca_file))
    throw DeliveryError(DeliveryError::Reach::kWholeServer,
                        "The certificate file " + settings.ca_file + " is missing.");
  const std::string ca_file =
      settings.ca_file.empty() ? std::string() : NativePath(machine, settings.ca_file);
  return std::make_unique<WebDavStore>(settings, ReadPassword(machine, settings), ca_file);
}

}  // namespace logbook
