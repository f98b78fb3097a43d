// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The view routines of frmLogView and the menu commands that run them.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "reports/MaintenanceReport.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "resources/ResourceText.h"
#include "state/HandshakeCell.h"
#include "viewer/LogView.h"
#include "viewer/TextLogs.h"

namespace logbook {
namespace {

constexpr int kOverLimit = 221;
// What a long text begins with, in bytes of its file: more than the pane shows at first.
constexpr std::size_t kFirstPart = 256 * 1024;

void ClearReport(LogView& view) {
  view.ReportText.clear();
  view.ReportRest = {};
}

void ViewValues(const AppState& state, LogView& view, ValueReport report) {
  ClearReport(view);
  try {
    view.ReportText = ValueReportText(state.machine, state.catalogues, report, LogFolder(view));
    WriteReportFile(state.machine, LogFolder(view), ReportFileName(report), view.ReportText);
  } catch (const RunTimeError&) {
    // Any failure ends the view in silence; the pane shows what has been made.
  }
}

void ViewLimitedLog(const AppState& state, Services& services, LogView& view,
                    std::string_view file) {
  ClearReport(view);
  LimitedText log = ReadLimitedText(state.machine, LogFolder(view) + std::string(file));
  if (log.OverLimit) services.messages.Show({.Text = ResourceText(kOverLimit)});
  view.ReportText = std::move(log.Text);
}

void ViewWholeText(const AppState& state, LogView& view, std::string_view file) {
  ClearReport(view);
  TextLines lines(state.machine, LogFolder(view) + std::string(file));
  view.ReportText = lines.Take(kFirstPart);
  view.ReportRest = std::move(lines);
}

}  // namespace

void ViewAnalog(const AppState& state, LogView& view) {
  ViewValues(state, view, ValueReport::kAnalog);
}
void ViewMeter(const AppState& state, LogView& view) {
  ViewValues(state, view, ValueReport::kMeter);
}
void ViewSys(const AppState& state, LogView& view) {
  ViewValues(state, view, ValueReport::kSys);
}
void ViewBout(const AppState& state, LogView& view) {
  ViewValues(state, view, ValueReport::kBitOut);
}
void ViewBin(const AppState& state, LogView& view) {
  ViewValues(state, view, ValueReport::kBitIn);
}

void ViewMainte(const AppState& state, LogView& view) {
  ClearReport(view);
  try {
    view.ReportText = MaintenanceText(state.machine, state.catalogues, LogFolder(view));
    WriteReportFile(state.machine, LogFolder(view), kMaintenanceReportFile, view.ReportText);
  } catch (const RunTimeError&) {
    // As in ViewValues.
  }
}

void ViewACQLog(const AppState& state, Services& services, LogView& view) {
  ViewLimitedLog(state, services, view, "acqlog.txt");
}
void ViewSeqLog(const AppState& state, Services& services, LogView& view) {
  ViewLimitedLog(state, services, view, "sequence.log");
}
void ViewErrLog(const AppState& state, Services& services, LogView& view) {
  ViewLimitedLog(state, services, view, "errlog.txt");
}
void ViewCEErrLog(const AppState& state, Services& services, LogView& view) {
  ViewLimitedLog(state, services, view, "ceerrlog.txt");
}

void ViewChnSeqLog(const AppState& state, LogView& view) {
  ViewWholeText(state, view, "chnseq.log");
}
void ViewTuneReport(const AppState& state, LogView& view) {
  ViewWholeText(state, view, kTuneReportFile);
}

void CreateTuneText(const AppState& state, const LogView& view) {
  try {
    WriteTuneBin(state.machine, LogFolder(view) + std::string(kTuneBinFile),
                 TuneCells(state.machine, state.catalogues, LogFolder(view)));
  } catch (const RunTimeError&) {
    // The host then prints from the older file, or from none.
  }
}

void PrintTuneReport(const AppState& state, Services& services, const LogView& view) {
  while (CellValue(services.cell) != 0) services.events.Deliver();
  WritePrivateProfileString(state.machine, "LogBook", "LogFileName", view.LogFolderPath,
                            state.IniFile);
  services.cell.SetText("2");
  while (CellValue(services.cell) == 2) services.events.Deliver();
}

namespace {

void ShowTuneReport(AppState& state, Services&, LogView& view) {
  ViewTuneReport(state, view);
  CreateTuneText(state, view);
  state.ViewMode = 1;
}

using ViewRoutine = void (*)(const AppState&, LogView&);
using LogRoutine = void (*)(const AppState&, Services&, LogView&);

template <ViewRoutine Routine, std::int16_t Mode>
void Show(AppState& state, Services&, LogView& view) {
  Routine(state, view);
  state.ViewMode = Mode;
}

template <LogRoutine Routine, std::int16_t Mode>
void ShowLog(AppState& state, Services& services, LogView& view) {
  Routine(state, services, view);
  state.ViewMode = Mode;
}

// The CE error log has no ViewMode: the report shown before it stays the one that is printed.
void ShowCEErrLog(AppState& state, Services& services, LogView& view) {
  ViewCEErrLog(state, services, view);
}

}  // namespace

// clang-format off
const std::array<ViewCommand, 12> kViewCommands = {{
    {&LogView::mnuTune,     ShowTuneReport},
    {&LogView::mnuACQlog,   ShowLog<ViewACQLog, 2>},
    {&LogView::mnuSeqlog,   ShowLog<ViewSeqLog, 3>},
    {&LogView::mnuChainlog, Show<ViewChnSeqLog, 4>},
    {&LogView::mnuErrLog,   ShowLog<ViewErrLog, 5>},
    {&LogView::mnuCeErrLog, ShowCEErrLog},
    {&LogView::mnuMainte,   Show<ViewMainte, 6>},
    {&LogView::mnuMeter,    Show<ViewMeter, 7>},
    {&LogView::mnuAna,      Show<ViewAnalog, 8>},
    {&LogView::mnuBout,     Show<ViewBout, 9>},
    {&LogView::mnuBin,      Show<ViewBin, 10>},
    {&LogView::mnuSYS,      Show<ViewSys, 11>},
}};
// clang-format on

}  // namespace logbook
