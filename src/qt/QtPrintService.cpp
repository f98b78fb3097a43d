// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtPrintService.h"

#include <QPrinterInfo>
#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <utility>

#include "base/Files.h"
#include "base/Registry.h"
#include "base/RunTimeError.h"
#include "printing/PrintBridge.h"
#include "printing/PrintQueue.h"
#include "qt/SheetPrinting.h"
#include "qt/SystemServices.h"
#include "qt/Widgets.h"
#include "resources/ResourceText.h"
#include "state/F1Report.h"

namespace logbook {

namespace {

constexpr char kHostKey[] = "SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";
constexpr char kPdfDeviceName[] = "PDF";
constexpr std::size_t kLongestPath = 259;

struct CodeText {
  std::int32_t code;
  int text;  // in the string table
};
constexpr int kAnyError = 1456;
// clang-format off
constexpr auto kMessages = std::to_array<CodeText>({
    { QtPrintService::kNoError,          1450 },
    { QtPrintService::kNoDefaultPrinter, 1451 },
    { QtPrintService::kNoFolder,         1452 },
    { QtPrintService::kInvalidParameter, 1453 },
    { QtPrintService::kNameTooLong,      1454 },
    { QtPrintService::kUnknownPrinter,   1455 },
});
// clang-format on

void Fill(std::span<char> buffer, const std::string& text) {
  if (buffer.empty()) return;
  const std::size_t length = std::min(text.size(), buffer.size() - 1);
  std::copy_n(text.begin(), length, buffer.begin());
  buffer[length] = '\0';
}

std::string FileNameFor(const std::string& document_name) {
  std::string name = document_name;
  for (char& c : name) {
    const bool forbidden = static_cast<unsigned char>(c) < 0x20 ||
                           std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
    if (forbidden) c = '_';
  }
  return name;
}

}  // namespace

QtPrintService::QtPrintService(const Machine& machine, Clock& clock,
                               std::function<void()> between_pages)
    : machine_(machine), clock_(clock), between_pages_(std::move(between_pages)) {}

std::optional<QtPrintService::Device> QtPrintService::DefaultDevice(
    std::int32_t& error_code) const {
  const Device pdf{kPdfDeviceName, kPdfDriverName, true};
  const auto queue = [](const QPrinterInfo& info) {
    return Device{info.printerName().toStdString(), info.makeAndModel().toStdString(), false};
  };
  const std::optional<std::string> named =
      ReadMachineRegistry(machine_.home, kHostKey, "DefaultPrinter");
  if (named && !named->empty()) {
    if (ToQt(*named).compare(QLatin1String(kPdfDeviceName), Qt::CaseInsensitive) == 0) return pdf;
    const QPrinterInfo info = QPrinterInfo::printerInfo(ToQt(*named));
    if (!info.isNull()) return queue(info);
    const bool stopped = FindPrintSystem() == PrintSystem::kStopped;
    error_code = stopped ? kNoDefaultPrinter : kUnknownPrinter;
    return std::nullopt;
  }
  const QPrinterInfo info = QPrinterInfo::defaultPrinter();
  if (!info.isNull()) return queue(info);
  const bool has_queues = !QPrinterInfo::availablePrinterNames().isEmpty();
  // A print system that does not answer hides its queues: what belongs on paper is no PDF file.
  if (!has_queues && FindPrintSystem() != PrintSystem::kStopped) return pdf;
  error_code = kNoDefaultPrinter;
  return std::nullopt;
}

std::int32_t QtPrintService::exptGetDefaultPrinter(std::span<char> printer_name,
                                                   std::span<char> driver_name,
                                                   std::int32_t* error_code) {
  const std::optional<Device> device = DefaultDevice(*error_code);
  if (!device) return 0;
  Fill(printer_name, device->name);
  Fill(driver_name, device->driver);
  *error_code = kNoError;
  return 1;
}

std::int32_t QtPrintService::exptSetAcrobatOutput(const std::string& /*program_file*/,
                                                  const std::string& document_name,
                                                  const std::string& output_folder,
                                                  std::int32_t /*time_out*/,
                                                  std::span<char> output_file,
                                                  std::int32_t* error_code) {
  const auto fail = [error_code](Code code) {
    *error_code = code;
    return 0;
  };
  armed_.reset();
  const std::string name = TrimToNul(document_name);
  if (name.empty()) return fail(kInvalidParameter);
  const std::string folder = TrimToNul(output_folder);
  const std::string path = folder + FileNameFor(name) + ".pdf";
  if (path.size() > std::min(kLongestPath, output_file.size() - 1)) return fail(kNameTooLong);
  try {
    if (!FolderExists(machine_, folder)) MakeFolder(machine_, folder);
  } catch (const RunTimeError&) {
    return fail(kNoFolder);
  }
  Fill(output_file, path);
  armed_ = path;
  *error_code = kNoError;
  return 1;
}

void QtPrintService::exptGetMessageFromErrorCode(std::int32_t error_code, std::int32_t /*reserved*/,
                                                 std::span<char> message) {
  const auto* found = std::find_if(kMessages.begin(), kMessages.end(),
                                   [&](const CodeText& entry) { return entry.code == error_code; });
  Fill(message, found == kMessages.end() ? ResourceText(kAnyError, {std::to_string(error_code)})
                                         : ResourceText(found->text));
}

void QtPrintService::PrintSheet(const F1Book& sheet) {
  const std::optional<std::string> armed = std::exchange(armed_, std::nullopt);
  if (armed) return PrintToFile(sheet, *armed);  // whoever armed waits for that file
  std::int32_t error_code = kNoError;
  const std::optional<Device> device = DefaultDevice(error_code);
  if (!device) {
    std::array<char, 260> message{};
    exptGetMessageFromErrorCode(error_code, 0, message);
    throw RunTimeError(ErrorNumber::kPrinterError, message.data());
  }
  if (device->is_pdf) {
    PrintToFile(sheet, UnannouncedFile(sheet));
  } else {
    PrintOnQueue(device->name, sheet, clock_.Now(), *machine_.code_page, between_pages_);
  }
}

void QtPrintService::PrintToFile(const F1Book& sheet, const std::string& path) {
  const QByteArray bytes =
      SheetAsPdf(sheet, clock_.Now(), PaperOfTheLocale(), *machine_.code_page, between_pages_);
  WriteFile(machine_, path, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

std::string QtPrintService::UnannouncedFile(const F1Book& sheet) const {
  const std::string folder =
      PathText(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString());
  if (!FolderExists(machine_, folder)) MakeFolder(machine_, folder);
  const std::string name = FileNameFor(sheet.Title() + " - " + sheet.SheetName());
  for (int number = 1;; ++number) {
    const std::string suffix = number == 1 ? "" : " (" + std::to_string(number) + ")";
    std::string path = folder + "\\" + name + suffix + ".pdf";
    if (!Exists(machine_, path)) return path;
  }
}

}  // namespace logbook
