// Vantrel desktop program: start-up, then the main window.
#include "app/qt_gui_ports.h"
#include "app/qt_settings_store.h"
#include "base/paths.h"
#include "forms/frmBuild.h"
#include "forms/frmFirstStart.h"
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
#include "vantrel_version.h"

#include <QApplication>
#include <QIcon>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <optional>

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

// --version and --help are answered before Qt starts, so they need no display.
// Returns the exit status when one of them was given.
std::optional<int> AnswerWithoutWindow(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--version") || !std::strcmp(argv[i], "-V")) {
            std::cout << "vantrel " << VANTREL_VERSION_TEXT << "\n";
            return 0;
        }
        if (!std::strcmp(argv[i], "--help") || !std::strcmp(argv[i], "-h")) {
            std::cout << "usage: vantrel [--app-dir DIR] [Qt options]\n"
                         "       vantrel --version | --help\n\n"
                         "Starts the Vantrel desktop program. --app-dir DIR uses DIR as the program\n"
                         "folder (default: $XDG_DATA_HOME/vantrel, or the program's own folder\n"
                         "when it is writable and not a system folder). See vantrel(1).\n";
            return 0;
        }
    }
    return std::nullopt;
}
} // namespace

int main(int argc, char** argv) {
    if (std::optional<int> status = AnswerWithoutWindow(argc, argv)) return *status;
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
    if (!settings.Problem().empty())
        messages.Inform(settings.Problem(), "Vantrel", MsgIcon::Exclamation);

    // The game's archives (the game folder searched for) and the zip steps.
    ArchiveReading archives;
    LibzipSteps zips;

    // With no units the player chooses how to go on instead of the program ending.
    frmFirstStart firstStart;
    StartupPorts ports{progress, messages, settings, shell, random, archives, zips, &firstStart};
    const LoadOutcome outcome = Main(defs, ports, ProgramFolder(QApplication::arguments()));
    if (outcome == LoadOutcome::Restarted) return 0;
    if (outcome != LoadOutcome::Loaded) return 1; // no units, and the player chose Quit

    QtFileDialogs dialogs;
    GameProfileIO profiles; // SaveAI, ReadAI, ReadTessalyAI; also inside the game's archives
    frmMain window(defs, {messages, settings, shell, progress, clock, random, dialogs, profiles});
    messages.SetParent(&window);
    dialogs.SetParent(&window);
    window.showMerge = [&] {
        frmMerge dialog(defs, progress, &window);
        return dialog.exec();
    };
    window.showOptions = [&] {
        frmOptions dialog(defs, settings, &window);
        return dialog.exec();
    };
    window.showBuildSet = [&] {
        frmBuild dialog(defs, &window);
        // Each tick takes effect at once and is one step of the edit history.
        dialog.OnIncludeChanged = [&](int unit, bool before) {
            window.History().RecordEdit(unit, UnitField::Include, before ? 1.0 : 0.0);
        };
        return dialog.exec();
    };
    window.Load();
    return QApplication::exec();
}
