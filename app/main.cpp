// Vantrel desktop program: start-up, then the main window.
#include "app/qt_gui_ports.h"
#include "app/qt_settings_store.h"
#include "base/paths.h"
#include "forms/frmBuild.h"
#include "forms/frmMerge.h"
#include "forms/frmOptions.h"
#include "forms/qt_icon.h"
#include "forms/qt_text.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/game_commands.h"
#include "mainwindow/qt_edit_history.h"
#include "mainwindow/qt_file_dialogs.h"
#include "startup/frmLoad.h"
#include "startup/main_sequence.h"
#include "startup/zip_steps.h"

#include <QApplication>
#include <QIcon>

#include <cstdlib>

using namespace vantrel;

namespace {
// The program folder: --app-dir DIR when given (the demo uses it), else the
// executable's folder when writable, else the per-user data folder.
std::string ProgramFolder(const QStringList& args) {
    int i = static_cast<int>(args.indexOf("--app-dir"));
    if (i >= 0 && i + 1 < args.size()) return StdPath(args[i + 1]);
    const char* xdg = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    std::string exeDir = ExecutableDir();
    std::string folder =
        ChooseProgramFolder(exeDir, IsWritableDirectory(exeDir), xdg ? xdg : "", home ? home : "");
    MakeDirectory(folder);
    return folder;
}
} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("vantrel");
    QApplication::setWindowIcon(QIcon(VantrelIcon(64)));

    Definitions defs;
    frmLoad progress;
    QtMessages messages;
    QtSettingsStore settings;
    QtShell shell;
    SystemClock clock;
    DefaultRandom random;

    // The game's archives (the game folder searched for) and the zip steps.
    ArchiveReading archives;
    LibzipSteps zips;

    StartupPorts ports{progress, messages, settings, shell, random, archives, zips};
    if (Main(defs, ports, ProgramFolder(QApplication::arguments())) != LoadOutcome::Loaded)
        return 0;

    QtFileDialogs dialogs;
    GameProfileIO profiles; // SaveAI, ReadAI, ReadTessalyAI; also inside the game's archives
    frmMain window(defs, {messages, settings, shell, progress, clock, random, dialogs, profiles});
    messages.SetParent(&window);
    dialogs.SetParent(&window);
    window.showMerge = [&] {
        frmMerge dialog(defs, progress, &window);
        dialog.exec();
    };
    window.showOptions = [&] {
        frmOptions dialog(defs, settings, &window);
        dialog.exec();
    };
    window.showBuildSet = [&] {
        frmBuild dialog(defs, &window);
        // Each tick takes effect at once and is one step of the edit history.
        dialog.OnIncludeChanged = [&](int unit, bool before) {
            window.History().RecordEdit(unit, UnitField::Include, before ? 1.0 : 0.0);
        };
        dialog.exec();
    };
    window.Load();
    return QApplication::exec();
}
