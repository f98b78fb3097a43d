// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/win32/PrivateRights.h"

#include <aclapi.h>
#include <sddl.h>

#include <memory>
#include <new>
#include <vector>

namespace logbook::win32 {

namespace {

struct FreeLocal {
  void operator()(void* memory) const { LocalFree(memory); }
};

std::wstring TextOf(PSID sid) {
  wchar_t* text = nullptr;
  if (sid == nullptr || !ConvertSidToStringSidW(sid, &text)) return {};
  const std::unique_ptr<wchar_t, FreeLocal> freed(text);
  return text;
}

// What the process's token tells; empty on failure.
std::vector<char> TokenFacts(TOKEN_INFORMATION_CLASS kind) {
  HANDLE opened = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) return {};
  const Handle token(opened);
  DWORD size = 0;
  GetTokenInformation(token.Value(), kind, nullptr, 0, &size);
  std::vector<char> facts(size);
  if (!GetTokenInformation(token.Value(), kind, facts.data(), size, &size)) facts.clear();
  return facts;
}

// The rights of a file or folder; the list lies in the descriptor.
using Descriptor = std::unique_ptr<void, FreeLocal>;
Descriptor ReadRights(const std::string& native_path, SECURITY_INFORMATION what, PSID* owner,
                      PACL* rights) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  std::wstring path = WidePath(native_path);
  if (GetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, what, owner, nullptr, rights, nullptr,
                            &descriptor) != ERROR_SUCCESS)
    return nullptr;
  return Descriptor(descriptor);
}

bool IsEverybody(PSID sid) {
  return IsWellKnownSid(sid, WinWorldSid) || IsWellKnownSid(sid, WinBuiltinUsersSid) ||
         IsWellKnownSid(sid, WinAuthenticatedUserSid);
}

}  // namespace

SECURITY_ATTRIBUTES* PrivateRights::Make(const wchar_t* inheritance) {
  const auto entry = [inheritance](const std::wstring& who) {
    return std::wstring(L"(A;") + inheritance + L";FA;;;" + who + L")";
  };
  const std::wstring user = ThisUser();
  LocalFree(descriptor_);
  descriptor_ = nullptr;
  const std::wstring text = L"D:P" + entry(user.empty() ? L"OW" : user) + entry(L"SY");
  if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1,
                                                            &descriptor_, nullptr))
    throw std::bad_alloc();
  attributes_ = {sizeof attributes_, descriptor_, FALSE};
  return &attributes_;
}

bool PrivateRights::GiveTo(const std::string& native_path) {
  ForFolder();
  BOOL present = FALSE, defaulted = FALSE;
  PACL rights = nullptr;
  if (!GetSecurityDescriptorDacl(descriptor_, &present, &rights, &defaulted)) return false;
  std::wstring path = WidePath(native_path);
  const DWORD error = SetNamedSecurityInfoW(
      path.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
      nullptr, nullptr, rights, nullptr);
  SetLastError(error);
  return error == ERROR_SUCCESS;
}

std::wstring OwnerOf(const std::string& native_path) {
  PSID owner = nullptr;
  const Descriptor kept = ReadRights(native_path, OWNER_SECURITY_INFORMATION, &owner, nullptr);
  return kept == nullptr ? std::wstring() : TextOf(owner);
}

std::wstring ThisUser() {
  const std::vector<char> facts = TokenFacts(TokenUser);
  return facts.empty() ? std::wstring()
                       : TextOf(reinterpret_cast<const TOKEN_USER*>(facts.data())->User.Sid);
}

std::wstring OwnerOfNewFiles() {
  const std::vector<char> facts = TokenFacts(TokenOwner);
  return facts.empty() ? std::wstring()
                       : TextOf(reinterpret_cast<const TOKEN_OWNER*>(facts.data())->Owner);
}

bool EverybodyHasReadRight(const std::string& native_path) {
  PACL rights = nullptr;
  const Descriptor kept = ReadRights(native_path, DACL_SECURITY_INFORMATION, nullptr, &rights);
  if (kept == nullptr) return false;
  if (rights == nullptr) return true;  // no list at all: whoever comes may do everything
  for (DWORD i = 0; i < rights->AceCount; ++i) {
    void* entry = nullptr;
    if (!GetAce(rights, i, &entry)) continue;
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE) continue;
    const bool reads = (allowed->Mask & (FILE_READ_DATA | GENERIC_READ | GENERIC_ALL)) != 0;
    if (reads && IsEverybody(&allowed->SidStart)) return true;
  }
  return false;
}

}  // namespace logbook::win32
