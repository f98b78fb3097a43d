// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Rights that a file or folder has from its making on: those of this user and of the system's own
// services, and nobody else's.
#pragma once

#include <string>

#include "base/win32/System.h"

namespace logbook::win32 {

class PrivateRights {
 public:
  PrivateRights() = default;
  ~PrivateRights() { LocalFree(descriptor_); }
  PrivateRights(const PrivateRights&) = delete;
  PrivateRights& operator=(const PrivateRights&) = delete;

  // For the system's calls that make something. What is made in such a folder later has the
  // folder's rights. They last as long as the object. Where nobody can tell who this user is, they
  // are those of whoever owns the thing. Raise std::bad_alloc rather than make up none.
  SECURITY_ATTRIBUTES* ForFolder() { return Make(L"OICI"); }
  SECURITY_ATTRIBUTES* ForFile() { return Make(L""); }

  // Gives these rights, in the place of all others, to what bears the name. False with the last
  // error set on failure.
  bool GiveTo(const std::string& native_path);

 private:
  SECURITY_ATTRIBUTES* Make(const wchar_t* inheritance);

  PSECURITY_DESCRIPTOR descriptor_ = nullptr;
  SECURITY_ATTRIBUTES attributes_ = {};
};

// The owner of a file or folder as the system writes it, and this user; empty if nobody can tell.
std::wstring OwnerOf(const std::string& native_path);
std::wstring ThisUser();
// Whom the system makes the owner of what this user makes: for an administrator that may be the
// group of them.
std::wstring OwnerOfNewFiles();

// True if the rights of a file let every user read it.
bool EverybodyHasReadRight(const std::string& native_path);

}  // namespace logbook::win32
