// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/HostLinkNames.h"

#include "base/PlainText.h"

namespace logbook {
namespace {

bool StandsAsItIs(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || IsDigit(c) || c == '_';
}

}  // namespace

std::string HostBusName(std::string_view host_id) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string name(kHostBusNamePrefix);
  name += '.';
  if (host_id.empty()) name += '_';
  bool first = true;
  for (const char c : host_id) {
    if (StandsAsItIs(c) && !(first && IsDigit(c))) {
      name += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      name += '_';
      name += kDigits[byte >> 4];
      name += kDigits[byte & 15];
    }
    first = false;
  }
  return name;
}

}  // namespace logbook
