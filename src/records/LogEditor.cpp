// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/LogEditor.h"

#include <iterator>
#include <utility>
#include <vector>

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "placement/Arrangement.h"
#include "resources/ResourceText.h"
#include "resources/Resources.h"
#include "state/Fonts.h"
#include "text/CSVMan.h"
#include "text/LeadingNumber.h"

namespace logbook {

namespace {

constexpr int kAutomaticComment = 131;
constexpr int kEditorCaption = 176;
constexpr int kFirstCheckCaption = 179;
constexpr int kCannotDelete = 222;  // and what follows the folder: the next number

std::string ItemKey(std::size_t index) {
  return "Item" + std::to_string(index);
}

void SetEditorFonts(LogEditor& editor) {
  const Font font = FormFont();
  for (Control* control : {&editor.Window, &editor.Frame1, &editor.Label1, &editor.txtComment,
                           &editor.cmdOK, &editor.cmdCancel, &editor.cmdHelp})
    control->TextFont = font;
  for (Control& check : editor.Check1) check.TextFont = font;
  editor.txtComment.TextFont = FixedPitchFont();
}

void SetEditorCaptions(const AppState& state, LogEditor& editor) {
  editor.Window.Caption = ResourceText(kEditorCaption) + ":" + state.LogPath;
  const std::pair<Control*, int> captions[] = {{&editor.cmdOK, 120},
                                               {&editor.cmdCancel, 127},
                                               {&editor.cmdHelp, 119},
                                               {&editor.Frame1, 177},
                                               {&editor.Label1, 178}};
  for (const auto& [control, number] : captions) control->Caption = LoadResString(number);
  int number = kFirstCheckCaption;
  for (Control& check : editor.Check1) check.Caption = LoadResString(number++);
}

void SaveComment(const AppState& state, const WrappedTextBox& comment) {
  const std::string text = GetWrappedText(state.machine, comment) + "\r\n";
  WriteFile(state.machine, ExactFolder(state.LogPath) + "comment.txt",
            state.machine.code_page->FromUtf8(text));
}

}  // namespace

LogEditor::LogEditor() {
  const std::pair<Control*, const char*> controls[] = {
      {&Window, "frmLogEditor"},   {&Frame1, "Frame1"}, {&Label1, "Label1"},
      {&txtComment, "txtComment"}, {&cmdOK, "cmdOK"},   {&cmdCancel, "cmdCancel"},
      {&cmdHelp, "cmdHelp"}};
  const std::vector<Rect> places =
      LoadPlaces("IDRES_EDITOR_ARRANGE", std::size(controls) + kChecks);
  auto place = places.begin();
  for (const auto& [control, name] : controls) *control = {.Name = name, .Place = *place++};
  for (std::size_t i = 0; i < kChecks; ++i)
    Check1[i] = {.Name = "Check1(" + std::to_string(i) + ")", .Place = *place++};
}

void LoadLogEditor(AppState& state, LogEditor& editor, WrappedTextBox& comment) {
  SetEditorFonts(editor);
  SetEditorCaptions(state, editor);
  for (std::size_t i = 0; i < LogEditor::kChecks; ++i) {
    std::string tick;
    GetIniString(state.machine, "Maintenance", ItemKey(i), "0", tick, state.IniFile);
    editor.Ticked[i] = LeadingNumber(tick) == 1;
  }
  if (state.AutoRec) {
    comment.SetText(ResourceText(kAutomaticComment));
    LogEditorOK(state, editor, comment);
  }
}

void LogEditorOK(AppState& state, LogEditor& editor, WrappedTextBox& comment) {
  std::vector<ProfileValue> values;
  for (std::size_t i = 0; i < LogEditor::kChecks; ++i) {
    values.push_back({"Maintenance", ItemKey(i), editor.Ticked[i] ? "1" : "0"});
  }
  WritePrivateProfileStrings(state.machine, values, ExactFolder(state.LogPath) + "logfile.ini");
  values.push_back({"LogBook", "LastFile", state.LogPath});
  WritePrivateProfileStrings(state.machine, values, state.IniFile);
  SaveComment(state, comment);
  editor.Unloaded = true;
}

void LogEditorCancel(AppState& state, Services& services, LogEditor& editor) {
  const std::string folder = ExactFolder(state.LogPath);
  try {
    DeleteFilesIn(state.machine, folder);
  } catch (const RunTimeError&) {
    // What stays shows up when the folder cannot be removed.
  }
  try {
    // The platform that this program comes from needs a look at ".." here, to end a search that
    // holds the folder open. Removing a folder waits for no search on this one.
    RemoveFolder(state.machine, folder);
    editor.Unloaded = true;
  } catch (const RunTimeError&) {
    services.messages.Show(
        {.Text = ResourceText(kCannotDelete) + state.LogRoot + ResourceText(kCannotDelete + 1)});
  }
}

}  // namespace logbook
