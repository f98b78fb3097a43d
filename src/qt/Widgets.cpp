// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/Widgets.h"

#include "qt/Twips.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QFontDatabase>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStringList>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace logbook {
namespace {

// Fixedsys is a bitmap of 8 by 15 pixels; the fixed-pitch fonts below are that wide at this size.
constexpr int kFixedsysPixels = 13;
// The same width of 8 pixels in a font whose letters are half an em wide.
constexpr int kDoubleBytePixels = 16;

bool IsFontName(const QString& name, QLatin1String prefix) {
  return name.startsWith(prefix, Qt::CaseInsensitive);
}

QStringList SansSerifFamilies(const QString& name) {
  if (IsFontName(name, QLatin1String("MS "))) {  // its letters are narrow, unlike those behind it
    return {name, QStringLiteral("Liberation Sans"), QStringLiteral("IPAPGothic"),
            QStringLiteral("Noto Sans CJK JP"), QStringLiteral("TakaoPGothic")};
  }
  return {name, QStringLiteral("Liberation Sans"), QStringLiteral("Arimo"),
          QStringLiteral("Nimbus Sans"), QStringLiteral("Helvetica")};
}

QStringList FixedPitchFamilies(const QString& name) {
  return {name, QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Liberation Mono"),
          QStringLiteral("Noto Sans Mono"), QStringLiteral("monospace")};
}

// Fonts of a double-byte page in which a letter is half an em wide, best first.
QStringList DoubleByteFamilies(int code_page) {
  switch (code_page) {
    case 932:
      return {QStringLiteral("IPAGothic"), QStringLiteral("TakaoGothic"),
              QStringLiteral("Noto Sans Mono CJK JP")};
    case 936:
      return {QStringLiteral("Noto Sans Mono CJK SC"), QStringLiteral("IPAGothic")};
    case 949:
      return {QStringLiteral("NanumGothicCoding"), QStringLiteral("Noto Sans Mono CJK KR")};
    case 950:
      return {QStringLiteral("Noto Sans Mono CJK TC"), QStringLiteral("IPAGothic")};
    default:
      return {};
  }
}

void SetCaption(QWidget* widget, const QString& caption) {
  if (widget->isWindow()) {
    widget->setWindowTitle(caption);
  } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
    button->setText(caption);
  } else if (auto* label = qobject_cast<QLabel*>(widget)) {
    label->setText(caption);
  } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
    group->setTitle(caption);
  }
}

constexpr char kReadAsFrame[] = "readAsFrame";

QAccessibleInterface* FrameInterface(const QString& class_name, QObject* object) {
  if (class_name != QLatin1String("QWidget") || !object->property(kReadAsFrame).toBool())
    return nullptr;
  return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::Window);
}

}  // namespace

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QFont ToolkitFont(const Font& font) {
  const QString name = ToQt(font.Name);
  const bool fixedsys = IsFontName(name, QLatin1String("Fixedsys"));
  const bool fixed = fixedsys || IsFontName(name, QLatin1String("Courier"));
  QFont result;
  result.setFamilies(fixed ? FixedPitchFamilies(name) : SansSerifFamilies(name));
  result.setStyleHint(fixed ? QFont::TypeWriter : QFont::SansSerif);
  result.setFixedPitch(fixed);
  const int pixels = static_cast<int>(std::lround(font.Size * 96 / 72));
  result.setPixelSize(fixedsys ? kFixedsysPixels : std::max(pixels, 1));
  return result;
}

QFont ColumnFont(const Font& font, int code_page) {
  QFont result = ToolkitFont(font);
  for (const QString& family : DoubleByteFamilies(code_page)) {
    if (!QFontDatabase::hasFamily(family)) continue;
    result.setFamilies(QStringList{family} + result.families());
    result.setPixelSize(kDoubleBytePixels);
    break;
  }
  return result;
}

QString SpokenCaption(const std::string& caption) {
  const QString text = ToQt(caption);
  QString spoken;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == QLatin1Char('&') && i + 1 < text.size()) ++i;
    spoken += text[i];
  }
  return spoken;
}

void ApplyControl(QWidget* widget, const Control& control) {
  widget->setObjectName(ToQt(control.Name));
  if (!control.TextFont.Name.empty()) widget->setFont(ToolkitFont(control.TextFont));
  SetCaption(widget, ToQt(control.Caption));
  if (!control.Caption.empty()) widget->setAccessibleName(SpokenCaption(control.Caption));
  widget->setEnabled(control.Enabled);
  if (widget->isWindow()) return;
  widget->setGeometry(Pixels(control.Place.Left), Pixels(control.Place.Top),
                      Pixels(control.Place.Width), Pixels(control.Place.Height));
  widget->setVisible(control.Visible);
}

bool EnterPressesButton(QWidget* window, const QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) return false;
  auto* button = qobject_cast<QPushButton*>(window->focusWidget());
  if (button == nullptr || !button->isEnabled()) return false;
  button->click();
  return true;
}

void ReadAsFrame(QWidget* window) {
  QAccessible::installFactory(FrameInterface);  // once, however often it is called
  window->setProperty(kReadAsFrame, true);
}

void GiveHelpKey(QPushButton* help) {
  const auto* key = new QShortcut(QKeySequence::HelpContents, help->window());
  QObject::connect(key, &QShortcut::activated, help, &QPushButton::click);
}

}  // namespace logbook
