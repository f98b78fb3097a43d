// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "viewer/ReportPrinting.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "printing/PrintBridge.h"
#include "printing/SheetSettings.h"
#include "resources/ResourceText.h"
#include "text/TextParts.h"
#include "upload/ECMSub.h"
#include "viewer/TextLogs.h"

namespace logbook {

namespace {

constexpr std::int16_t kTuneReport = 1;
constexpr int kCommentHeading = 123;
constexpr std::size_t kLineEnd = 2;
constexpr int kCommentCharacters = 70;
constexpr SheetEdge kRule{4, 0};

struct ReportRow {
  std::int16_t view_mode;
  const char* file;
  bool landscape;
  int sheet_name;  // string number
};

// clang-format off
//    mode  file            landscape  sheet name
constexpr auto kReports = std::to_array<ReportRow>({
    {  2,   "acqlog.txt",   false,     152 },
    {  3,   "sequence.log", true,      153 },
    {  4,   "chnseq.log",   false,     154 },
    {  5,   "errlog.txt",   false,     155 },
    {  6,   "mainte.rpt",   false,     156 },
    {  7,   "meter.rpt",    false,     157 },
    {  8,   "analog.rpt",   false,     158 },
    {  9,   "bitout.rpt",   false,     159 },
    { 10,   "bitin.rpt",    false,     160 },
    { 11,   "sys.rpt",      false,     161 },
});
// clang-format on

const ReportRow* ReportOf(std::int16_t view_mode) {
  const auto* found = std::find_if(kReports.begin(), kReports.end(), [&](const ReportRow& report) {
    return report.view_mode == view_mode;
  });
  return found == kReports.end() ? nullptr : found;
}

// The lines of a text file, one to a row of the sheet.
class SheetLines {
 public:
  SheetLines(const Machine& machine, F1Book& sheet) : machine_(machine), sheet_(sheet) {}

  // Puts the lines of a file below each other; nothing if the file is missing, or after a stop.
  template <typename Cut>
  void AddFile(const std::string& path, const Cut& cut) {
    if (!Exists(machine_, path)) return;
    InputFile file(machine_, path);
    while (!stopped_ && !file.AtEnd()) {
      const std::string line = machine_.code_page->ToUtf8(ReadLineUpTo(file, kLongestOfInterest));
      stopped_ = machine_.code_page->Length(line) + kLineEnd >= kTextLimit;
      if (!stopped_) Add(cut(line));
    }
  }

  void Add(const std::string& text) { sheet_.SetText(row_++, 1, text); }

  int row_ = 1;  // the next one

 private:
  const Machine& machine_;
  F1Book& sheet_;
  bool stopped_ = false;  // at a line that is too long; never reset
};

void ShowError(Services& services, const RunTimeError& error) {
  services.messages.Show({.Text = error.Description(), .Icon = MessageIcon::kExclamation});
}

// The log's folder name and the file's name.
std::string DocumentName(const LogView& view, const std::string& file_name) {
  const std::string folder = view.LogFolderPath.substr(0, view.LogFolderPath.size() - 1);
  return GetLastPathComponent(folder) + "_" + file_name;
}

}  // namespace

void cmdPrint_Click(AppState& state, Services& services, LogView& view) {
  try {
    if (state.ViewMode == kTuneReport) return PrintTuneReport(state, services, view);
    const ReportRow* report = ReportOf(state.ViewMode);
    if (report != nullptr) PrintReport(state, services, view, report->file, report->landscape);
  } catch (const RunTimeError& error) {
    ShowError(services, error);
  }
}

void InitReport(const AppState& state, LogView& view) {
  BeginSheet(view.Sheet);
  const ReportRow* report = ReportOf(state.ViewMode);
  if (report != nullptr) view.Sheet.SetSheetName(ResourceText(report->sheet_name));
}

void FillReportSheet(const AppState& state, LogView& view, const std::string& file_name) {
  SheetLines lines(state.machine, view.Sheet);
  lines.AddFile(LogFolder(view) + file_name, [](const std::string& line) { return line; });
  // The counter stands on the row behind the last line: that row and the next one stay empty.
  lines.row_ += 2;
  view.Sheet.SetSelection(lines.row_, 1, lines.row_, 1);
  view.Sheet.SetBorder({.Top = kRule});
  lines.Add(ResourceText(kCommentHeading) + ":");
  lines.AddFile(LogFolder(view) + "comment.txt",
                [](const std::string& line) { return FirstCharacters(line, kCommentCharacters); });
}

void PrintReport(AppState& state, Services& services, LogView& view, const std::string& file_name,
                 bool landscape) {
  try {
    const LongWork work(services.events);
    InitReport(state, view);
    FillReportSheet(state, view, file_name);
    FinishSheet(view.Sheet, landscape);
    std::string image_path;
    PrepareDocumentOutput(state, services, DocumentName(view, file_name), "", kPrintTimeOut,
                          image_path);
    services.print.PrintSheet(view.Sheet);
    UploadPrintImage(state, services, image_path);
  } catch (const RunTimeError& error) {
    ShowError(services, error);
    services.forms.ShowLogViewAgain();
  }
}

}  // namespace logbook
