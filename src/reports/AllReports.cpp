// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/AllReports.h"

#include "base/MadeFiles.h"
#include "reports/MaintenanceReport.h"
#include "reports/ReportSource.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"

namespace logbook {
namespace {

constexpr ValueReport kValueReports[] = {ValueReport::kAnalog, ValueReport::kMeter,
                                         ValueReport::kSys, ValueReport::kBitOut,
                                         ValueReport::kBitIn};

template <typename Make>
MadeReport Made(std::string_view file, const Make& make) {
  try {
    return {file, make(), {}};
  } catch (const RunTimeError& error) {
    return {file, {}, error};
  }
}

}  // namespace

std::vector<MadeReport> MakeAllReports(const Machine& machine, const Catalogues& catalogues,
                                       std::string_view log_folder) {
  ReportSource log(machine, log_folder);
  std::vector<MadeReport> reports;
  for (const ValueReport report : kValueReports) {
    reports.push_back(Made(ReportFileName(report), [&] {
      return ReportFileBytes(machine, ValueReportText(log, catalogues, report));
    }));
  }
  reports.push_back(Made(kMaintenanceReportFile, [&] {
    return ReportFileBytes(machine, MaintenanceText(log, catalogues));
  }));
  reports.push_back(Made(kTuneBinFile, [&] {
    return machine.code_page->FromUtf8(TuneBinText(TuneCells(log, catalogues)));
  }));
  return reports;
}

void WriteReports(const Machine& machine, std::string_view log_folder,
                  std::span<const MadeReport> reports) {
  MadeFiles files(machine, log_folder);
  std::optional<RunTimeError> first;
  for (const MadeReport& report : reports) {
    std::optional<RunTimeError> failure = report.failure;
    try {
      if (!failure) files.Write(report.file, report.bytes);
    } catch (const RunTimeError& error) {
      failure = error;
    }
    if (!first) first = failure;
  }
  if (first) throw RunTimeError(*first);
}

}  // namespace logbook
