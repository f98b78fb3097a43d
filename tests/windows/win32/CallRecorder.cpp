// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A stand-in for the help engine hhctrl.ocx that shows nothing and writes down what it was asked
// for, a line a call, into the file that LOGBOOK_CALLS names. When the program loads it, it also
// puts itself between the program and some routines of the system, so that their calls are
// written down too; those that place windows are passed on.

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr UINT kInitialize = 28;
constexpr DWORD kCookie = 4711;

using SetWindowPosRoutine = decltype(&SetWindowPos);
using SetWindowPlacementRoutine = decltype(&SetWindowPlacement);
SetWindowPosRoutine set_window_pos = nullptr;
SetWindowPlacementRoutine set_window_placement = nullptr;

std::string Number(std::intptr_t number) {
  return " " + std::to_string(number);
}

std::string Name(HWND window) {
  return window != nullptr && window == GetDesktopWindow()
             ? " desktop"
             : Number(reinterpret_cast<std::intptr_t>(window));
}

void WriteDown(const std::string& call) {
  char file[MAX_PATH] = {};
  if (GetEnvironmentVariableA("LOGBOOK_CALLS", file, sizeof file) == 0) return;
  const HANDLE out = CreateFileA(file, FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
  const std::string line = call + "\n";
  DWORD written = 0;
  WriteFile(out, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  CloseHandle(out);
}

BOOL WINAPI RecordWinHelp(HWND window, LPCSTR file, UINT command, ULONG_PTR data) {
  const std::string name = file == nullptr ? "" : file;
  WriteDown("WinHelp" + Name(window) + " " + name + Number(command) +
            Number(static_cast<std::intptr_t>(data)));
  return TRUE;
}

BOOL WINAPI RecordSetWindowPos(HWND window, HWND after, int x, int y, int width, int height,
                               UINT flags) {
  WriteDown("SetWindowPos" + Name(window) + Name(after) + Number(x) + Number(y) + Number(width) +
            Number(height) + Number(flags));
  return set_window_pos(window, after, x, y, width, height, flags);
}

BOOL WINAPI RecordSetWindowPlacement(HWND window, const WINDOWPLACEMENT* placement) {
  const RECT& place = placement->rcNormalPosition;
  WriteDown("SetWindowPlacement" + Name(window) + Number(placement->length) + Number(place.left) +
            Number(place.top) + Number(place.right) + Number(place.bottom));
  return set_window_placement(window, placement);
}

template <typename Routine>
FARPROC Address(Routine routine) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(routine));
}

template <typename Type>
Type* At(HMODULE module, DWORD offset) {
  return reinterpret_cast<Type*>(reinterpret_cast<std::uintptr_t>(module) + offset);
}

// Writes another address into the slot through which the program calls this routine. What was
// there, or null if the program has no such slot.
FARPROC Divert(HMODULE program, const char* routine, FARPROC to) {
  const auto* dos = At<IMAGE_DOS_HEADER>(program, 0);
  const auto* headers = At<IMAGE_NT_HEADERS>(program, static_cast<DWORD>(dos->e_lfanew));
  const IMAGE_DATA_DIRECTORY& imports =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(program, imports.VirtualAddress);
       library->Name != 0; ++library) {
    const auto* names = At<IMAGE_THUNK_DATA>(program, library->OriginalFirstThunk);
    auto* slots = At<IMAGE_THUNK_DATA>(program, library->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
      if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
      const auto* by_name =
          At<IMAGE_IMPORT_BY_NAME>(program, static_cast<DWORD>(names->u1.AddressOfData));
      if (std::strcmp(reinterpret_cast<const char*>(by_name->Name), routine) != 0) continue;
      DWORD before = 0;
      VirtualProtect(slots, sizeof *slots, PAGE_READWRITE, &before);
      const auto old = reinterpret_cast<FARPROC>(slots->u1.Function);
      slots->u1.Function = reinterpret_cast<std::uintptr_t>(to);
      VirtualProtect(slots, sizeof *slots, before, &before);
      return old;
    }
  }
  return nullptr;
}

}  // namespace

extern "C" __declspec(dllexport) HWND WINAPI
    HtmlHelpA(HWND caller, LPCSTR file, UINT command, DWORD_PTR data) {
  if (command == kInitialize) {
    *reinterpret_cast<DWORD*>(data) = kCookie;
    data = 0;
  }
  WriteDown("HtmlHelp" + Name(caller) + " " + file + Number(command) +
            Number(static_cast<std::intptr_t>(data)));
  return nullptr;
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  const HMODULE program = GetModuleHandleA(nullptr);
  const auto divert = [program](const char* routine, auto to) {
    return reinterpret_cast<void*>(Divert(program, routine, Address(to)));
  };
  set_window_pos =
      reinterpret_cast<SetWindowPosRoutine>(divert("SetWindowPos", RecordSetWindowPos));
  set_window_placement = reinterpret_cast<SetWindowPlacementRoutine>(
      divert("SetWindowPlacement", RecordSetWindowPlacement));
  divert("WinHelpA", RecordWinHelp);
  return TRUE;
}
