// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// From the program's records of controls to the toolkit's widgets: text, font and place of a
// widget come from a Control and from nowhere else.
#pragma once

#include <QFont>
#include <QString>
#include <string>
#include <string_view>

#include "state/Control.h"

class QKeyEvent;
class QPushButton;
class QWidget;

namespace logbook {

// The text for the toolkit.
QString ToQt(std::string_view text);

// The font for a name and size of the string table. The names are of fonts that few machines have,
// so each stands for a list: "Arial" for fonts of the same widths, "Fixedsys" for fixed-pitch ones.
// "Fixedsys" exists in one size only, characters 8 pixels wide; its stand-ins take that size, so
// that a line of the comment box holds as many characters. Sizes are in points of 96/72 pixel.
QFont ToolkitFont(const Font& font);

// The fixed-pitch font for texts whose columns are counted in bytes of a code page. For the
// double-byte pages it is one, if the machine has it, in which such a character is twice as wide as
// a letter; for the others it is that of ToolkitFont.
QFont ColumnFont(const Font& font, int code_page);

// The caption as it is read out: without the ampersands that mark access keys.
QString SpokenCaption(const std::string& caption);

// Brings a widget to what the control says: object name, accessible name (if there is a caption),
// caption, font (if it has a name), enabled state, and, for a child, place and visibility. A
// top-level window keeps its place and stays hidden or shown.
void ApplyControl(QWidget* widget, const Control& control);

// Presses the push button that has the focus if the key is Enter; true if it did. A window calls
// it for the keys that its controls leave.
bool EnterPressesButton(QWidget* window, const QKeyEvent* event);

// Has assistive technology read a window as a frame of the program, as it does with the main
// windows of most, and not as a nameless part.
void ReadAsFrame(QWidget* window);

// Has the desktop's key for help (F1) press this button of a window.
void GiveHelpKey(QPushButton* help);

}  // namespace logbook
