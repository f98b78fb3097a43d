// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "ReportCommand.h"

#include <map>
#include <vector>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "reports/AllReports.h"
#include "reports/MaintenanceReport.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "resources/ResourceText.h"
#include "viewer/TextLogs.h"

namespace logbook {
namespace {

constexpr int kOverLimit = 221;

// What a report is made from, and where it goes.
struct Log {
  const Machine& machine;
  MessageBoxes& messages;
  Catalogues catalogues;
  std::string folder;  // with trailing backslash
  bool write;
};

std::string ReportFile(const Log& log, std::string_view name, const std::string& text) {
  if (log.write) WriteReportFile(log.machine, log.folder, name, text);
  return ReportFileBytes(log.machine, text);
}

std::string Values(const Log& log, ValueReport report) {
  return ReportFile(log, ReportFileName(report),
                    ValueReportText(log.machine, log.catalogues, report, log.folder));
}

std::string Maintenance(const Log& log) {
  return ReportFile(log, kMaintenanceReportFile,
                    MaintenanceText(log.machine, log.catalogues, log.folder));
}

std::string TuneExtract(const Log& log) {
  const std::vector<TuneCell> cells = TuneCells(log.machine, log.catalogues, log.folder);
  if (log.write) WriteTuneBin(log.machine, log.folder + std::string(kTuneBinFile), cells);
  return log.machine.code_page->FromUtf8(TuneBinText(cells));
}

std::string All(const Log& log) {
  const std::vector<MadeReport> reports = MakeAllReports(log.machine, log.catalogues, log.folder);
  if (log.write) WriteReports(log.machine, log.folder, reports);
  std::string bytes;
  for (const MadeReport& report : reports) {
    if (report.failure) throw RunTimeError(*report.failure);
    bytes += report.bytes;
  }
  return bytes;
}

std::string WholeText(const Log& log, std::string_view file) {
  return log.machine.code_page->FromUtf8(
      ReadWholeText(log.machine, log.folder + std::string(file)));
}

std::string Tune(const Log& log) {
  if (log.write) TuneExtract(log);
  return WholeText(log, kTuneReportFile);
}

std::string LimitedLog(const Log& log, std::string_view file) {
  const LimitedText text = ReadLimitedText(log.machine, log.folder + std::string(file));
  if (text.OverLimit) log.messages.Show({.Text = ResourceText(kOverLimit)});
  return log.machine.code_page->FromUtf8(text.Text);
}

}  // namespace

std::string ReportBytes(const Machine& machine, MessageBoxes& messages,
                        const ReportRequest& request) {
  Log log{machine, messages, {}, request.folder, request.write};
  if (!log.folder.ends_with('\\')) log.folder += '\\';
  if (!FolderExists(machine, log.folder)) throw RunTimeError(ErrorNumber::kPathNotFound);
  FillCatalogues(log.catalogues);

  static const std::map<std::string_view, ValueReport> kValueReports = {
      {"analog", ValueReport::kAnalog},
      {"meter", ValueReport::kMeter},
      {"sys", ValueReport::kSys},
      {"bitout", ValueReport::kBitOut},
      {"bitin", ValueReport::kBitIn}};
  if (const auto report = kValueReports.find(request.kind); report != kValueReports.end()) {
    return Values(log, report->second);
  }
  if (request.kind == "all") return All(log);
  if (request.kind == "mainte") return Maintenance(log);
  if (request.kind == "tunebin") return TuneExtract(log);
  if (request.kind == "tune") return Tune(log);
  if (request.kind == "acq") return LimitedLog(log, "acqlog.txt");
  if (request.kind == "seq") return LimitedLog(log, "sequence.log");
  if (request.kind == "chain") return WholeText(log, "chnseq.log");
  if (request.kind == "err") {
    return LimitedLog(log, request.ce_mode ? "ceerrlog.txt" : "errlog.txt");
  }
  throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
}

}  // namespace logbook
