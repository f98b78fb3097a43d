// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/PrintBridge.h"

#include <array>

#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "help/arvbsub.h"

namespace logbook {

namespace {

constexpr std::int32_t kInvalidParameter = 87;
using Buffer = std::array<char, 260>;

std::string TextOf(const Buffer& buffer) {
  return TrimToNul({buffer.data(), buffer.size()});
}

std::string WithNul(const std::string& text) {
  return text + '\0';
}

std::string MessageOf(PrintService& print, std::int32_t error_code) {
  Buffer message{};
  print.exptGetMessageFromErrorCode(error_code, 0, message);
  return TextOf(message);
}

// The output folder for an argument, with backslash and NUL.
std::string OutputFolder(const AppState& state, std::string folder) {
  if (folder.empty()) {
    folder = GetHostPath(state.machine);
    folder += folder.ends_with('\\') ? "PDF\\" : "\\PDF\\";
    return WithNul(folder);
  }
  if (folder.ends_with('\0')) folder = TrimToNul(folder);
  if (!folder.ends_with('\\')) folder += '\\';
  return WithNul(folder);
}

std::string ProgramFile(const AppState& state) {
  std::string file = state.AppPath;
  if (!file.ends_with('\\')) file += '\\';
  file += state.AppName;
  return WithNul(EndsInIgnoringCase(file, ".EXE") ? file : file + ".exe");
}

}  // namespace

void PrepareDocumentOutput(AppState& state, Services& services, const std::string& document_name,
                           const std::string& folder, std::int32_t time_out,
                           std::string& image_path) {
  std::int32_t error_code = 0;
  std::string message;
  if (SetPdfOutput(state, services, document_name, folder, time_out, "", image_path, error_code,
                   message))
    return;
  services.messages.Show({.Text = message, .Icon = MessageIcon::kCritical, .Title = ""});
}

bool SetPdfOutput(const AppState& state, Services& services, const std::string& document_name,
                  const std::string& folder, std::int32_t time_out, const std::string& program_file,
                  std::string& path, std::int32_t& error_code, std::string& message) {
  PrintService& print = services.print;
  path.clear();
  std::string printer_name;
  std::string driver_name;
  if (!GetPrinterNames(print, printer_name, driver_name, error_code)) {
    message = MessageOf(print, error_code);
    return false;
  }
  if (!EqualIgnoringCase(driver_name, kPdfDriverName)) {
    message = MessageOf(print, error_code);
    return true;
  }
  if (document_name.empty()) {
    error_code = kInvalidParameter;
    message = MessageOf(print, error_code);
    return false;
  }
  const std::string output_folder = OutputFolder(state, folder);
  const std::string caller = program_file.empty() ? ProgramFile(state) : WithNul(program_file);
  if (time_out == 0) throw RunTimeError(ErrorNumber::kOverflow);
  Buffer output_file{};
  if (print.exptSetAcrobatOutput(caller, WithNul(document_name), output_folder, time_out,
                                 output_file, &error_code) == 0) {
    message = MessageOf(print, error_code);
    return false;
  }
  path = TextOf(output_file);
  return true;
}

bool GetPrinterNames(PrintService& print, std::string& printer_name, std::string& driver_name,
                     std::int32_t& error_code) {
  Buffer printer{};
  Buffer driver{};
  const bool found = print.exptGetDefaultPrinter(printer, driver, &error_code) != 0;
  printer_name = found ? TextOf(printer) : std::string();
  driver_name = found ? TextOf(driver) : std::string();
  if (found) error_code = 0;
  return found;
}

std::string TrimToNul(std::string_view text) {
  return std::string(text.substr(0, text.find('\0')));
}

std::string GetLastPathComponent(std::string_view path) {
  const std::size_t last = path.rfind('\\');
  return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

}  // namespace logbook
