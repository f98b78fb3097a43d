// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "viewer/LogView.h"

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

#include "base/Files.h"
#include "placement/Arrangement.h"
#include "resources/Resources.h"
#include "state/Fonts.h"
#include "viewer/TextLogs.h"

namespace logbook {

LogView::LogView() {
  const std::pair<Control*, const char*> controls[] = {
      {&Window, "frmLogView"}, {&txtReport, "txtReport"}, {&txtComment, "txtComment"},
      {&cmdPrint, "cmdPrint"}, {&cmdExit, "cmdExit"},     {&cmdHelp, "cmdHelp"},
      {&F1Report, "F1Report"}};
  const std::vector<Rect> places = LoadPlaces("IDRES_VIEWER_ARRANGE", std::size(controls));
  auto place = places.begin();
  for (const auto& [control, name] : controls) *control = {.Name = name, .Place = *place++};
  F1Report.Visible = false;
}

void LoadLogView(AppState& state, LogView& view) {
  const FileRecord& log = RowAt(state.FileList, state.CurrentLog);
  view.LogFolderPath = state.LogRoot + log.Name + "\\";
  ChangeMode(state, view);
  SetViewerFonts(view);
  SetViewerCaptions(view);
  LoadComment(state, view);
}

void ChangeMode(const AppState& state, LogView& view) {
  view.mnuCeErrLog.Visible = false;
  for (MenuEntry* entry : {&view.mnuAna, &view.mnuBit, &view.mnuSYS}) entry->Visible = state.CEMode;
}

void SetViewerFonts(LogView& view) {
  const Font font = FormFont();
  view.Window.TextFont = font;
  const auto controls = view.Controls();
  for (std::size_t i = 0; i + 2 <= controls.size(); ++i) controls[i]->TextFont = font;
  for (Control* pane : {&view.txtComment, &view.txtReport}) pane->TextFont = FixedPitchFont();
}

void SetViewerCaptions(LogView& view) {
  view.Window.Caption = LoadResString(135);
  const std::pair<Control*, int> buttons[] = {
      {&view.cmdPrint, 116}, {&view.cmdExit, 118}, {&view.cmdHelp, 119}};
  for (const auto& [button, number] : buttons) button->Caption = LoadResString(number);
  const std::pair<MenuEntry*, int> entries[] = {
      {&view.mnuTune, 136},     {&view.mnuLog, 139},      {&view.mnuACQlog, 140},
      {&view.mnuSeqlog, 141},   {&view.mnuChainlog, 142}, {&view.mnuErrLog, 143},
      {&view.mnuCeErrLog, 144}, {&view.mnuMainte, 145},   {&view.mnuMeter, 146},
      {&view.mnuAna, 147},      {&view.mnuBit, 148},      {&view.mnuBout, 149},
      {&view.mnuBin, 150},      {&view.mnuSYS, 151}};
  for (const auto& [entry, number] : entries) entry->Caption = LoadResString(number);
}

std::string LogFolder(const LogView& view) {
  return ExactFolder(view.LogFolderPath);
}

void LoadComment(const AppState& state, LogView& view) {
  view.CommentText = ReadWholeText(state.machine, LogFolder(view) + "comment.txt");
}

void LogViewExit(AppState& state, LogView& view) {
  state.ViewMode = 0;
  view.Unloaded = true;
}

}  // namespace logbook
