// Small helpers for the card and board widget tests: the application object,
// an active host window and synthetic key presses (no QtTest needed).
#pragma once

#include "gui/gui_app.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QWidget>

#include <gtest/gtest.h>

#include <string>

namespace vantrel::test {

using vantrel::testing::GuiApp;

// Base of widget fixtures: the application exists before any member widget.
struct GuiTest : ::testing::Test {
    GuiTest() { GuiApp(); }
};

// Shows `host` and waits (up to two seconds) until it is the active window.
inline bool ShowActive(QWidget& host) {
    GuiApp();
    host.show();
    host.activateWindow();
    QElapsedTimer timer;
    timer.start();
    while (!host.isActiveWindow() && timer.elapsed() < 2000)
        QApplication::processEvents();
    QApplication::processEvents();
    return host.isActiveWindow();
}

inline void PressKey(QWidget* target, int key, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(target, &release);
}

// Types every character of `s` (digits, ".", letters) into `target`.
inline void TypeText(QWidget* target, const std::string& s) {
    for (char c : s) {
        int key = (c >= '0' && c <= '9') ? Qt::Key_0 + (c - '0')
                  : c == '.'             ? Qt::Key_Period
                                         : Qt::Key_A + (c | 0x20) - 'a';
        PressKey(target, key, QString(QChar(c)));
    }
}

} // namespace vantrel::test
