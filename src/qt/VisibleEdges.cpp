// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/VisibleEdges.h"

#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "qt/SelectionColours.h"

namespace logbook {
namespace {

constexpr int kSteps = 16;           // from a ground to the words on it
constexpr int kDarker = 140;         // the toolkit's edges, in hundredths
constexpr int kAboveGroup = 3;       // pixels between the title of a group and its edge
constexpr double kHardlySeen = 1.5;  // contrast

QColor Between(const QColor& from, const QColor& to, int step) {
  const auto part = [step](int a, int b) { return a + (b - a) * step / kSteps; };
  return {part(from.red(), to.red()), part(from.green(), to.green()), part(from.blue(), to.blue())};
}

// The first colour on the way that is far enough from both grounds, or the last one.
QColor FirstSeen(const QColor& ground, const QColor& other_ground, const QColor& words) {
  for (int step = 1; step < kSteps; ++step) {
    const QColor colour = Between(ground, words, step);
    if (std::min(Contrast(colour, ground), Contrast(colour, other_ground)) >= kLeastEdgeContrast)
      return colour;
  }
  return words;
}

// Paints the edge of what the option describes.
void PaintEdge(const QStyleOption& option, QPainter& painter, const QRect& place, bool is_round) {
  if (!HidesEdges(option.palette)) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, is_round);
  painter.setBrush(Qt::NoBrush);
  // A round line is spread over more pixels than its width.
  painter.setPen(QPen(EdgeColour(option.palette), is_round ? 1.5 : 1));
  const QRect edge = place.adjusted(0, 0, -1, -1);
  if (is_round) {
    painter.drawEllipse(QRectF(edge).adjusted(1, 1, -1, -1));
  } else {
    painter.drawRect(edge);
  }
  painter.restore();
}

// What has the keyboard bears a mark of its own, once keys have been used.
bool ShowsFocus(const QStyleOption& option) {
  constexpr auto kBoth = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
  return (option.state & kBoth) == kBoth;
}

bool HasEdge(QStyle::PrimitiveElement element, const QStyleOption& option) {
  switch (element) {
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_FrameLineEdit:
      return !ShowsFocus(option);
    case QStyle::PE_IndicatorCheckBox:
    case QStyle::PE_IndicatorRadioButton:
    case QStyle::PE_FrameGroupBox:
    case QStyle::PE_FrameMenu:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool HidesEdges(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Window);
  return Contrast(window.darker(kDarker), window) < kHardlySeen;
}

QColor EdgeColour(const QPalette& palette) {
  return FirstSeen(palette.color(QPalette::Window), palette.color(QPalette::Base),
                   palette.color(QPalette::Active, QPalette::WindowText));
}

QPalette WithVisibleDisabledText(const QPalette& palette) {
  QPalette visible = palette;
  for (const auto& [ground, words] : {std::pair(QPalette::Window, QPalette::WindowText),
                                      std::pair(QPalette::Base, QPalette::Text),
                                      std::pair(QPalette::Button, QPalette::ButtonText)}) {
    const QColor under = palette.color(QPalette::Disabled, ground);
    if (Contrast(palette.color(QPalette::Disabled, words), under) >= kHardlySeen) continue;
    const QColor seen = FirstSeen(under, under, palette.color(QPalette::Active, words));
    visible.setColor(QPalette::Disabled, words, seen);
  }
  return visible;
}

void VisibleEdges::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                 QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (!HasEdge(element, *option)) return;
  QRect place = option->rect;
  if (element == PE_FrameGroupBox)  // the title stands above its edge
    place.setTop(place.top() + kAboveGroup +
                 std::max(pixelMetric(PM_IndicatorHeight), option->fontMetrics.height()));
  PaintEdge(*option, *painter, place, element == PE_IndicatorRadioButton);
}

void VisibleEdges::drawControl(ControlElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawControl(element, option, painter, widget);
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  if (element != CE_ShapedFrame || frame == nullptr || frame->frameShape == QFrame::NoFrame) return;
  if (frame->frameShape != QFrame::HLine && frame->frameShape != QFrame::VLine)
    PaintEdge(*option, *painter, option->rect, false);
}

void VisibleEdges::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_ComboBox && !ShowsFocus(*option))
    PaintEdge(*option, *painter, option->rect, false);
  if (control == CC_ScrollBar) {
    const QRect slider = subControlRect(control, option, SC_ScrollBarSlider, widget);
    PaintEdge(*option, *painter, slider, false);
  }
}

}  // namespace logbook
