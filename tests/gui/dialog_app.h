// The application object and key presses for the dialog tests.
#pragma once

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
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance())) return *app;
    static int argc = 1;
    static char name[] = "vantrel_gui_tests";
    static char* argv[] = {name, nullptr};
    // Never destroyed: tearing it down among the other statics at exit crashes.
    static auto* app = new QApplication(argc, argv);
    return *app;
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
