// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/PrintQueue.h"

#include <cups/cups.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "base/RunTimeError.h"
#include "printing/posix/CupsLibrary.h"

namespace logbook {

namespace {

namespace fs = std::filesystem;

bool Answers() {
  constexpr int kWait = 2000;  // ms
  constexpr int kBlocking = 1;
  http_t* const scheduler = httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC,
                                         cupsEncryption(), kBlocking, kWait, nullptr);
  httpClose(scheduler);
  return scheduler != nullptr;
}

// True if a scheduler that does not answer now has answered once, or ought to.
bool IsExpected() {
  const char* const variable = std::getenv("CUPS_SERVER");
  const std::string named = variable == nullptr ? "" : variable;
  const std::string server = posix::CupsLibraryIsThere() ? cupsServer() : named;
  std::error_code ignored;
  if (server.starts_with('/')) return fs::exists(fs::path(server).parent_path(), ignored);
  if (!named.empty() || (!server.empty() && server != "localhost")) return true;
  return fs::exists("/run/cups", ignored) || fs::exists("/etc/cups/printers.conf", ignored);
}

struct FreeDestination {
  void operator()(cups_dest_t* destination) const { cupsFreeDests(1, destination); }
};

// The error with the print system's words about the last call, if it has any.
RunTimeError LastError() {
  const char* words = cupsLastErrorString();
  if (words == nullptr || *words == '\0') return RunTimeError(ErrorNumber::kPrinterError);
  return {ErrorNumber::kPrinterError, DescriptionOf(ErrorNumber::kPrinterError) + ": " + words};
}

}  // namespace

PrintSystem FindPrintSystem() {
  if (posix::CupsLibraryIsThere() && Answers()) return PrintSystem::kRunning;
  return IsExpected() ? PrintSystem::kStopped : PrintSystem::kNone;
}

void SubmitPrintJob(const std::string& queue, const std::string& title, std::string_view pdf) {
  if (!posix::CupsLibraryIsThere()) throw RunTimeError(ErrorNumber::kPrinterError);
  const std::unique_ptr<cups_dest_t, FreeDestination> destination(
      cupsGetNamedDest(CUPS_HTTP_DEFAULT, queue.c_str(), nullptr));
  if (destination == nullptr) throw LastError();
  const int job = cupsCreateJob(CUPS_HTTP_DEFAULT, queue.c_str(), title.c_str(),
                                destination->num_options, destination->options);
  if (job == 0) throw LastError();
  constexpr int kLastDocument = 1;
  const bool taken =
      cupsStartDocument(CUPS_HTTP_DEFAULT, queue.c_str(), job, title.c_str(), CUPS_FORMAT_PDF,
                        kLastDocument) == HTTP_STATUS_CONTINUE &&
      cupsWriteRequestData(CUPS_HTTP_DEFAULT, pdf.data(), pdf.size()) == HTTP_STATUS_CONTINUE;
  if (taken && cupsFinishDocument(CUPS_HTTP_DEFAULT, queue.c_str()) <= IPP_STATUS_OK_CONFLICTING)
    return;
  const RunTimeError error = LastError();  // before the next call has words of its own
  cupsCancelJob2(CUPS_HTTP_DEFAULT, queue.c_str(), job, 0);
  throw RunTimeError(error);
}

}  // namespace logbook
