// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A list control in report view: columns with headers that can be clicked, whole rows selected,
// several at a time, in the order of the model, nothing edited. And how selection and key focus go
// together in any list.
#pragma once

class QAbstractItemView;
class QTreeView;
class QWidget;

namespace logbook {

// A new list, owned by `parent`. Texts that do not fit their column end in an ellipsis, headers
// too. The Tab key leaves the list.
QTreeView* NewReportList(QWidget* parent);

// Has a list show its selection and no more: the row that has the key focus is marked only where
// some row is selected. Home and End select a row that is the first or last one already and has the
// focus alone, without having been selected.
void ShowSelectionAlone(QAbstractItemView* list);

// Selects the current row alone, unless it is selected already or there is none.
void SelectCurrentRow(QAbstractItemView* list);

}  // namespace logbook
