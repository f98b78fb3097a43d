// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A chained log of any size as the viewer opens it, in a pane like its own.
//
//   bench_text HOME make MEGABYTES   makes C:\chnseq.log in this home
//   bench_text HOME first            the wall time until the first text is in the pane (text.first)
//   bench_text HOME all              the memory taken when all of it is, in bytes a byte of the
//                                    file (text.memory)
//
// Each time it is looked at whether the pane holds the log's own text, as much as was to be shown.

#include <QApplication>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "Samples.h"
#include "qt/ColumnKeeper.h"
#include "qt/Widgets.h"
#include "state/AppState.h"
#include "viewer/LogView.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

std::string NativeLog(const std::string& home) {
  return home + "/drives/c/chnseq.log";
}

void Make(const std::string& home, int megabytes) {
  std::filesystem::create_directories(home + "/drives/c");
  std::ofstream file(NativeLog(home), std::ios::binary);
  for (long long size = 0, line = 0; size < 1000000LL * megabytes; ++line) {
    const std::string text = "11/15/2026 05:09:59  sample " + std::to_string(line) +
                             "  acquired, 31 masses, 3 repetitions, no warnings\r\n";
    file << text;
    size += static_cast<long long>(text.size());
  }
}

// The report pane of the viewer with the log in it.
class Viewer {
 public:
  explicit Viewer(const std::string& home) : machine_{.home = home}, state_(machine_) {
    auto* document = new QTextDocument(&pane_);
    document->setDocumentLayout(new ColumnKeeper(document, *machine_.code_page));
    pane_.setDocument(document);
    pane_.setUndoRedoEnabled(false);
    pane_.setLineWrapMode(QPlainTextEdit::NoWrap);
    pane_.show();
    QApplication::processEvents();
    view_.LogFolderPath = "C:\\";
  }

  void ShowFirst() {
    ViewChnSeqLog(state_, view_);
    if (view_.ReportText.empty()) std::abort();
    Append(view_.ReportText);
  }
  void ShowRest() {
    while (!view_.ReportRest.AtEnd()) Append(view_.ReportRest.Take(kSlice));
  }

  // That the pane holds the first lines of the log, and no others.
  void ExpectFirst(const std::string& home) const {
    const QString shown = pane_.toPlainText();
    std::ifstream file(NativeLog(home), std::ios::binary);
    std::string begin(view_.ReportText.size(), 0);
    file.read(begin.data(), static_cast<std::streamsize>(begin.size()));
    Expect(begin.size() >= kLeastFirst && file, "the first text");
    Expect(shown == QString::fromStdString(begin).remove(QLatin1Char('\r')), "the log's own text");
  }
  // That all lines are there with all their characters; a line end is one in the pane.
  void ExpectAll(const std::string& home) const {
    std::ifstream file(NativeLog(home), std::ios::binary);
    long long lines = 0, characters = 0;
    for (std::string line; std::getline(file, line); ++lines)
      characters += static_cast<long long>(line.size());
    Expect(pane_.document()->blockCount() == lines + 1, "all lines");
    Expect(pane_.document()->characterCount() - 1 == characters, "all characters");
  }

 private:
  static constexpr std::size_t kSlice = 128 * 1024;
  static constexpr std::size_t kLeastFirst = 10000;  // more than a pane shows at once

  void Append(const std::string& text) {
    QTextCursor end(pane_.document());
    end.movePosition(QTextCursor::End);
    end.insertText(ToQt(text));
    QApplication::processEvents();
  }

  Machine machine_;
  AppState state_;
  LogView view_;
  QPlainTextEdit pane_;
};

void First(const std::string& home) {
  Viewer viewer(home);
  const double start = WallSeconds();
  viewer.ShowFirst();
  Report("text.first", WallSeconds() - start);
  viewer.ExpectFirst(home);
}

void All(const std::string& home) {
  Viewer viewer(home);
  const double before = PeakBytes();
  viewer.ShowFirst();
  viewer.ShowRest();
  const auto size = static_cast<double>(std::filesystem::file_size(NativeLog(home)));
  Report("text.memory", (PeakBytes() - before) / size);
  viewer.ExpectAll(home);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  if (argc == 4 && std::strcmp(argv[2], "make") == 0) {
    Make(argv[1], std::atoi(argv[3]));
  } else if (argc == 3 && std::strcmp(argv[2], "first") == 0) {
    First(argv[1]);
  } else if (argc == 3 && std::strcmp(argv[2], "all") == 0) {
    All(argv[1]);
  } else {
    std::cerr << "usage: bench_text HOME make MEGABYTES | first | all\n";
    return 2;
  }
  return 0;
}
