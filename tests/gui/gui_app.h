// One QApplication for every GUI test (offscreen platform).
#pragma once

#include <QApplication>

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

} // namespace vantrel::testing
