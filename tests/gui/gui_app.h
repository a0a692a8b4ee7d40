// One QApplication for every GUI test (offscreen platform), plus window
// activation and synthetic key presses for the widget tests (no QtTest needed).
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QString>
#include <QWheelEvent>
#include <QWidget>

#include <gtest/gtest.h>

#include <ostream>

// Readable QString values in failure messages.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

namespace vantrel::testing {

inline QApplication& GuiApp() {
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance())) return *app;
    static int argc = 1;
    static char name[] = "vantrel_gui_tests";
    static char* argv[] = {name, nullptr};
    // Never destroyed: tearing it down among the other statics at exit crashes.
    static auto* app = new QApplication(argc, argv);
    return *app;
}

// Base of widget fixtures: the application exists before any member widget.
struct GuiTest : ::testing::Test {
    GuiTest() { GuiApp(); }
};

// Shows `host` and waits (up to two seconds) until it is the active window.
inline bool ShowActive(QWidget& host) {
    host.show();
    host.activateWindow();
    QElapsedTimer timer;
    timer.start();
    while (!host.isActiveWindow() && timer.elapsed() < 2000)
        QApplication::processEvents();
    QApplication::processEvents();
    return host.isActiveWindow();
}

// Sends one key press and release to `w`, as typing it would.
inline void PressKey(QWidget* w, int key, const QString& text = {},
                     Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(w, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QApplication::sendEvent(w, &release);
}

// Turns the wheel over `w` by `notches` (positive: away from the user, up).
inline void Wheel(QWidget* w, int notches) {
    QWheelEvent e(QPointF(5, 5), w->mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, 120 * notches),
                  Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(w, &e);
    QApplication::processEvents();
}

// Types each character of `text` into `w`. Qt's key code for a printable
// ASCII character is its upper-case form.
inline void TypeText(QWidget* w, const QString& text) {
    for (QChar c : text)
        PressKey(w, c.toUpper().unicode(), c);
}

} // namespace vantrel::testing
