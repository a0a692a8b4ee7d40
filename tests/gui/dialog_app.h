// The application object and key presses for the dialog tests.
#pragma once

#include "gui/gui_app.h"

#include <QApplication>
#include <QKeyEvent>
#include <QString>
#include <QWidget>

#include <ostream>

// Readable QString values in failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

namespace vantrel::testing {

inline QApplication& DialogTestApp() {
    return GuiApp();
}

// Sends one key press and release to `w`, as typing it would.
inline void PressKey(QWidget* w, int key, const QString& text = {},
                     Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(w, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(w, &release);
}

// Types each character of `text` into `w`.
inline void TypeText(QWidget* w, const QString& text) {
    for (QChar c : text)
        PressKey(w, c.isDigit() || c.isLetter() ? c.toUpper().unicode() : 0, c);
}

} // namespace vantrel::testing
