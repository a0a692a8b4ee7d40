// The one QApplication of a Qt benchmark program, made on first use.
#pragma once

#include <QApplication>

inline QApplication& App() {
    static int argc = 1;
    static char name[] = "vantrel_bench";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
    return app;
}
