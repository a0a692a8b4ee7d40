// One QApplication for every GUI test (offscreen platform).
#pragma once

#include <QApplication>

namespace vantrel::testing {

inline QApplication& GuiApp() {
    static int argc = 1;
    static char name[] = "vantrel_gui_tests";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
    return app;
}

} // namespace vantrel::testing
