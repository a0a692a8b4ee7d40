// The main window's File and View commands without the widgets: the save
// prompt, New, Open, Merge, Save, External and the Side menu's rules. The
// window supplies the dialogs and the board through small interfaces, so the
// commands run the same in the program and in tests.
#pragma once

#include "catalogue/definitions.h"
#include "profile/profile.h"
#include "startup/ports.h"

#include <string>
#include <vector>

namespace vantrel {

inline constexpr const char* OpenFilter = "AI Text File|*.txt|Tessaly 1.x|*.tsy";
inline constexpr const char* SaveFilter = "AI Text Files|*.txt";
inline constexpr const char* ExternalFileName = "AI.txt";

// What an open or save dialog ended with.
struct FileDialogResult {
    bool accepted = false;
    std::string path;    // the chosen file (full path) when accepted
    int filterIndex = 1; // 1-based index of the selected filter
    std::string folder;  // the folder the dialog ended in, also after a cancel
};

// The open and save dialogs. `filter` is "Description|pattern|Description|pattern...".
class FileDialogs {
  public:
    virtual ~FileDialogs() = default;
    // Only existing files can be chosen.
    virtual FileDialogResult Open(const std::string& title, const std::string& filter,
                                  const std::string& initialFolder) = 0;
    // Asks before overwriting an existing file; adds no extension.
    virtual FileDialogResult Save(const std::string& title, const std::string& filter,
                                  const std::string& initialFolder,
                                  const std::string& proposedName) = 0;
};

// The profile writer and readers as the commands call them.
class ProfileIO {
  public:
    virtual ~ProfileIO() = default;
    virtual void Save(ProfileContext& ctx, const std::string& path) { SaveAI(ctx, path); }
    virtual void Read(ProfileContext& ctx, const std::string& path, bool merge) {
        ReadAI(ctx, path, merge);
    }
    virtual void ReadTessaly(ProfileContext& ctx, const std::string& path, bool merge) {
        ReadTessalyAI(ctx, path, merge);
    }
};

// What the commands need from the main window.
class MainWindowHooks {
  public:
    virtual ~MainWindowHooks() = default;
    // Rebuilds the board for the current side and the checked category.
    virtual void ReselectCurrentSide() = 0;
    // false: the window is out of use (disabled) while a file is read or written.
    virtual void SetInUse(bool inUse) = 0;
    // The Settings dialog, modal; `forNewAI` marks it for a new AI first (Tag "New").
    virtual void ShowSettings(bool forNewAI) = 0;
    // The Merge dialog, modal; it reports through DialogOK.
    virtual void ShowMerge() = 0;
    // New and Open start a fresh edit history; a Save marks the values as saved.
    virtual void StartFreshHistory() {}
    virtual void ValuesSaved() {}
};

struct FileCommandPorts {
    Definitions& defs;
    Messages& messages;
    SettingsStore& settings;
    Shell& shell;
    Progress& progress; // frmLoad
    SettingsFields& fields;
    Clock& clock;
    FileDialogs& dialogs;
    ProfileIO& profiles;
};

class FileCommands {
  public:
    FileCommands(FileCommandPorts ports, MainWindowHooks& window);

    // Form load: the dialogs start in LastDir.
    void Load();
    // Returns false when the user cancelled (the calling command stops).
    bool SavePrompt();
    // true: the window may close.
    bool Closing() { return SavePrompt(); }
    void New();
    void Open() { OpenOrMerge(false); }
    void Merge() { OpenOrMerge(true); }
    void Save();
    void External();

    const std::string& RememberedFolder() const { return remembered_; }
    const std::string& InitialFolder() const { return initialFolder_; }

  private:
    void OpenOrMerge(bool merge);
    // Folder handling before a dialog: the remembered folder, when set, is where it opens.
    void UseRememberedFolder();
    // Runs the reader or writer with the window out of use and frmLoad shown.
    // A ProfileError is shown (title `title`); returns false then.
    template <class Work> bool RunWithProgress(const std::string& title, Work work);
    ProfileContext Context();

    FileCommandPorts p_;
    MainWindowHooks& window_;
    std::string remembered_;
    std::string initialFolder_;
};

// ---------------------------------------------------------------------------
// Rules shared with the window's menus and dialogs.
// ---------------------------------------------------------------------------

// Captions (proper case) of the Side menu items for further sides: every side
// after the first whose upper-cased name does not occur in "ARM;CORE".
std::vector<std::string> FurtherSideCaptions(const Definitions& defs);
// true when the current side is ARM or CORE (re-selected through mnuSideOptionA).
bool IsStandardSide(const std::string& currentSide);
// The folder part of a path, trailing separator kept ("" when there is none).
std::string FolderPart(const std::string& path);
// The Settings dialog's OK is enabled for a name that is not blank.
bool IsAcceptableAIName(const std::string& name);
// OK of the Settings dialog after File, New: every unit starts from nothing.
void ResetUnitsForNewAI(Definitions& defs);

} // namespace vantrel
