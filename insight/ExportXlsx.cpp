// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The export to a workbook. The library writes rows out as they come, so they must come in order
// and only the current one is held.

#include <xlsxwriter.h>

#include <chrono>
#include <fstream>

#include "base/LibraryPath.h"
#include "base/Utf8Path.h"
#include "insight/Difference.h"
#include "insight/Export.h"
#include "insight/LocalDate.h"
#include "insight/Markup.h"
#include "text/TextParts.h"

namespace logbook::insight {
namespace {

constexpr lxw_row_t kMostRows = LXW_ROW_MAX;
constexpr std::size_t kMostCharacters = 32767;
constexpr int kFirstYear = 1900;  // of a date in a workbook
constexpr double kNameWidth = 12;
constexpr double kDateWidth = 20;

void Expect(lxw_error error) {
  if (error != LXW_NO_ERROR) {
    throw ExportError(std::string("the workbook cannot be written: ") + lxw_strerror(error));
  }
}

// What a cell takes of a text.
std::string CellText(std::string_view text) {
  return FirstCharacters(CleanText(text), kMostCharacters);
}

// One sheet, filled row by row.
class Sheet {
 public:
  Sheet() = default;
  Sheet(lxw_workbook* book, const std::string& name, lxw_format* header, lxw_format* date)
      : sheet_(workbook_add_worksheet(book, name.c_str())), header_(header), date_(date) {
    if (sheet_ == nullptr) throw ExportError("the workbook has no room for the sheet " + name);
    worksheet_freeze_panes(sheet_, 1, 0);
  }

  lxw_row_t Rows() const { return row_; }

  void Title(std::string_view text, double width) {
    Expect(worksheet_set_column(sheet_, column_, column_, width, nullptr));
    Expect(worksheet_write_string(sheet_, row_, column_++, CellText(text).c_str(), header_));
  }
  void Text(std::string_view text) {
    if (!text.empty()) {
      Expect(worksheet_write_string(sheet_, row_, column_, CellText(text).c_str(), nullptr));
    }
    ++column_;
  }
  void Number(double value) {
    Expect(worksheet_write_number(sheet_, row_, column_++, value, nullptr));
  }
  void Boolean(bool value) {
    Expect(worksheet_write_boolean(sheet_, row_, column_++, value ? 1 : 0, nullptr));
  }

  // The date as a date where a workbook knows it.
  void Date(const LogReading& reading) {
    if (!reading.Date) return Text(reading.Identity.Date);
    const std::chrono::year_month_day day(DayOf(*reading.Date));
    if (static_cast<int>(day.year()) < kFirstYear) return Text(ExportDate(reading));
    const std::chrono::hh_mm_ss time(*reading.Date - DayOf(*reading.Date));
    lxw_datetime moment{};
    moment.year = static_cast<int>(day.year());
    moment.month = static_cast<int>(static_cast<unsigned>(day.month()));
    moment.day = static_cast<int>(static_cast<unsigned>(day.day()));
    moment.hour = static_cast<int>(time.hours().count());
    moment.min = static_cast<int>(time.minutes().count());
    moment.sec = static_cast<double>(time.seconds().count());
    Expect(worksheet_write_datetime(sheet_, row_, column_++, &moment, date_));
  }

  void EndRow() {
    ++row_;
    column_ = 0;
  }

 private:
  lxw_worksheet* sheet_ = nullptr;
  lxw_format* header_ = nullptr;
  lxw_format* date_ = nullptr;
  lxw_row_t row_ = 0;
  lxw_col_t column_ = 0;
};

class XlsxExporter : public Exporter {
 public:
  XlsxExporter(const std::string& native_path, const Catalogues& catalogues, ExportShape shape,
               RootColumn root)
      : rows_(catalogues), shape_(shape), root_(root) {
    // The library says on standard error what it cannot make, and says it at the end.
    if (!std::ofstream(Utf8Path(native_path))) throw ExportError("the workbook cannot be made");
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    const std::string path = PathForLibraries(native_path);
    if (path.empty())
      throw ExportError(
          "the workbook's path has letters that the system's code page does not know");
    book_ = workbook_new_opt(path.c_str(), &options);
    if (book_ == nullptr) throw ExportError("the workbook cannot be made");
    header_ = workbook_add_format(book_);
    format_set_bold(header_);
    date_ = workbook_add_format(book_);
    format_set_num_format(date_, "yyyy-mm-dd hh:mm:ss");
    if (shape_ == ExportShape::kWide) BeginWide();
  }

  ~XlsxExporter() override {
    if (book_ != nullptr) workbook_close(book_);
  }
  XlsxExporter(const XlsxExporter&) = delete;
  XlsxExporter& operator=(const XlsxExporter&) = delete;

  void Add(const LogReading& reading) override {
    shape_ == ExportShape::kLong ? AddLong(reading) : AddWide(reading);
  }

  void Finish() override {
    if (shape_ == ExportShape::kLong && sheets_.empty()) BeginLong();
    lxw_workbook* book = book_;
    book_ = nullptr;
    Expect(workbook_close(book));
  }

 private:
  Sheet& AddSheet(const std::string& name) {
    sheets_.emplace_back(book_, name, header_, date_);
    return sheets_.back();
  }

  void HeadTitles(Sheet& sheet) const {
    if (root_ == RootColumn::kWith) sheet.Title("Root", kDateWidth);
    sheet.Title("Log", kNameWidth);
    sheet.Title("Date", kDateWidth);
  }

  void HeadCells(const LogReading& reading, Sheet& sheet) const {
    if (sheet.Rows() >= kMostRows) throw ExportError("a sheet takes no more logs");
    if (root_ == RootColumn::kWith) sheet.Text(reading.Identity.Root);
    sheet.Text(reading.Identity.Folder);
    sheet.Date(reading);
  }

  void BeginWide() {
    Sheet& logs = AddSheet("Logs");
    HeadTitles(logs);
    logs.Title("Automatic", kNameWidth);
    for (const std::string& tick : rows_.TickLabels()) logs.Title(tick, kNameWidth);
    for (const OptionKey& option : kOptionKeys) logs.Title(option.Key, kNameWidth);
    logs.Title("Comment", 4 * kNameWidth);
    logs.EndRow();
    int place = 0;
    for (const CatalogueInfo& catalogue : kCatalogues) {
      Sheet& sheet = AddSheet(std::string(catalogue.Title));
      HeadTitles(sheet);
      for (int row = 0; row < catalogue.Rows; ++row)
        sheet.Title(rows_.TitleAt(place++), kNameWidth);
      sheet.EndRow();
    }
  }

  void AddWide(const LogReading& reading) {
    AddLogRow(reading, sheets_.front());
    int place = 0;
    for (std::size_t i = 0; i < kCatalogues.size(); ++i) {
      Sheet& sheet = sheets_[i + 1];
      HeadCells(reading, sheet);
      for (int row = 0; row < kCatalogues[i].Rows; ++row) AddValue(reading, place++, sheet);
      sheet.EndRow();
    }
  }

  void AddLogRow(const LogReading& reading, Sheet& sheet) const {
    HeadCells(reading, sheet);
    sheet.Boolean(reading.Automatic);
    for (const bool tick : reading.Ticks) sheet.Boolean(tick);
    for (const OptionKey& option : kOptionKeys) sheet.Number(reading.Options.*option.Member);
    sheet.Text(reading.Comment);
    sheet.EndRow();
  }

  void AddValue(const LogReading& reading, int place, Sheet& sheet) const {
    const RowValue& value = reading.Values[static_cast<std::size_t>(place)];
    if (value.State == ValueState::kOk && rows_.InfoAt(place).Kind == RowKind::kNumber) {
      sheet.Number(value.Number);
    } else {
      sheet.Text(PrintedText(rows_.AllCatalogues(), RowAtPlace(place), value));
    }
  }

  void BeginLong() {
    ++long_sheets_;
    Sheet& sheet =
        AddSheet("Values" + (long_sheets_ == 1 ? "" : " " + std::to_string(long_sheets_)));
    HeadTitles(sheet);
    for (const char* title :
         {"Catalogue", "Row", "Label", "Unit", "Section", "Value", "Text", "State"}) {
      sheet.Title(title, kNameWidth);
    }
    sheet.EndRow();
  }

  void AddLong(const LogReading& reading) {
    rows_.ForEach(reading, [&](const ExportCell& cell) {
      if (sheets_.empty() || sheets_.back().Rows() >= kMostRows) BeginLong();
      Sheet& sheet = sheets_.back();
      HeadCells(reading, sheet);
      sheet.Text(cell.catalogue);
      sheet.Number(cell.row);
      sheet.Text(cell.label);
      sheet.Text(cell.unit);
      sheet.Text(cell.section);
      cell.value ? sheet.Number(*cell.value) : sheet.Text("");
      sheet.Text(cell.text);
      sheet.Text(cell.state);
      sheet.EndRow();
    });
  }

  ExportRows rows_;
  ExportShape shape_;
  RootColumn root_;
  lxw_workbook* book_ = nullptr;
  lxw_format* header_ = nullptr;
  lxw_format* date_ = nullptr;
  std::vector<Sheet> sheets_;
  int long_sheets_ = 0;
};

}  // namespace

std::unique_ptr<Exporter> MakeXlsxExporter(const std::string& native_path,
                                           const Catalogues& catalogues, ExportShape shape,
                                           RootColumn root) {
  return std::make_unique<XlsxExporter>(native_path, catalogues, shape, root);
}

}  // namespace logbook::insight
