// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The library of workbooks, loaded when the first workbook is written. A call raises
// std::runtime_error if the machine lacks it.

#include <xlsxwriter.h>

#include "base/posix/LateLibrary.h"

namespace {

logbook::posix::LateLibrary& Workbooks() {
  static logbook::posix::LateLibrary library(LOGBOOK_XLSXWRITER_LIBRARY);
  return library;
}

}  // namespace

// clang-format off
#define LATE(result, name, parameters, arguments) \
  LOGBOOK_LATE_ROUTINE(Workbooks(), result, name, parameters, arguments)

LATE(char*, lxw_strerror, (lxw_error error), (error))

LATE(lxw_workbook*, workbook_new_opt, (const char* file, lxw_workbook_options* options),
     (file, options))
LATE(lxw_worksheet*, workbook_add_worksheet, (lxw_workbook* book, const char* name), (book, name))
LATE(lxw_format*, workbook_add_format, (lxw_workbook* book), (book))
LATE(lxw_error, workbook_close, (lxw_workbook* book), (book))

LATE(void, format_set_bold, (lxw_format* format), (format))
LATE(void, format_set_num_format, (lxw_format* format, const char* picture), (format, picture))

LATE(void, worksheet_freeze_panes, (lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column),
     (sheet, row, column))
LATE(lxw_error, worksheet_set_column,
     (lxw_worksheet* sheet, lxw_col_t first, lxw_col_t last, double width, lxw_format* format),
     (sheet, first, last, width, format))
LATE(lxw_error, worksheet_write_string,
     (lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const char* text, lxw_format* format),
     (sheet, row, column, text, format))
LATE(lxw_error, worksheet_write_number,
     (lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, double number, lxw_format* format),
     (sheet, row, column, number, format))
LATE(lxw_error, worksheet_write_boolean,
     (lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, int value, lxw_format* format),
     (sheet, row, column, value, format))
LATE(lxw_error, worksheet_write_datetime,
     (lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, lxw_datetime* time,
      lxw_format* format),
     (sheet, row, column, time, format))
