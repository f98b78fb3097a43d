// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A list control in report view: columns with headers that can be clicked, whole rows selected,
// several at a time, in the order of the model, nothing edited.
#pragma once

class QTreeView;
class QWidget;

namespace logbook {

// A new list, owned by `parent`. Texts that do not fit their column end in an ellipsis, headers
// too. The Tab key leaves the list.
QTreeView* NewReportList(QWidget* parent);

}  // namespace logbook
