// The main window's File and View commands without the widgets: the save
// prompt, New, Open, Merge, Save, External and the Side menu's rules. The
// window supplies the dialogs and the board through small interfaces, so the
// commands run the same in the program and in tests.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "profile/profile.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

inline constexpr const char* OpenFilter = "AI Text File|*.txt|Tessaly 1.x|*.tsy";
inline constexpr const char* SaveFilter = "AI Text File|*.txt";
inline constexpr const char* ExternalFileName = "AI.txt";
// The extension Save gives a name typed without one.
inline constexpr const char* ProfileExtension = ".txt";

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
    // Asks before overwriting an existing file. A name typed without an
    // extension gets the selected filter's (".txt" for "*.txt") before that
    // question is asked.
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
    // true when it was closed with OK.
    virtual bool ShowSettings(bool forNewAI) = 0;
    // The Merge dialog, modal; true when it was closed with OK.
    virtual bool ShowMerge() = 0;
    // New and Open start a fresh edit history; a Save marks the values as saved.
    virtual void StartFreshHistory() {}
    virtual void ValuesSaved() {}
    // The current file or the unsaved-changes state may have changed (title).
    virtual void FileStateChanged() {}
    // A line for the status bar confirming what a command did, with any note
    // on what was read ("" clears it).
    virtual void ShowStatus(const std::string&) {}
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
    // Asks whether to save unsaved changes. Returns false when the calling
    // command must stop: Cancel, or Yes followed by a cancelled or failed
    // save; the changes then stay unsaved.
    bool SavePrompt();
    // true: the window may close.
    bool Closing() { return SavePrompt(); }
    void New();
    void Open() { OpenOrMerge(false); }
    void Merge() { OpenOrMerge(true); }
    // Writes the current file without a dialog; with no current file, or one
    // Save cannot write back (inside an archive, a Tessaly file), it is Save As.
    // true when the profile was written; it then counts as saved.
    bool Save();
    // Asks for the file, proposing the current file's name, else the AI's name.
    bool SaveAs();
    // Writes AI.txt (and its build-set file) into `folder` and opens it with
    // the desktop's viewer. The folder is the program's own scratch folder.
    void External(const std::string& folder);
    // Opens a profile the game has (a loose file or "ARCHIVE#inner") as Open
    // does once its dialog is done; LastDir stays as it was.
    void OpenGameProfile(const std::string& path);
    // The file last opened or saved ("" after New and at start); it may name
    // a profile inside an archive ("ARCHIVE#inner").
    const std::string& CurrentFile() const { return current_; }
    // true when Save writes the current file without asking.
    bool CanSaveQuietly() const { return !current_.empty() && currentWritable_; }
    bool HasUnsavedChanges() const { return p_.defs.Profile.Changed; }

    const std::string& RememberedFolder() const { return remembered_; }
    const std::string& InitialFolder() const { return initialFolder_; }

  private:
    void OpenOrMerge(bool merge);
    // Open or Merge after the dialog; a file the player chose in a file
    // dialog moves the remembered folder, a profile inside the game does not.
    void ReadChosen(const std::string& path, bool tessaly, bool merge, bool rememberFolder);
    // Folder handling before a dialog: the remembered folder, when set, is where it opens.
    void UseRememberedFolder();
    // After a file was read or written: its folder is the remembered folder of
    // this run and the stored LastDir of the next.
    void RememberFolderOf(const std::string& path);
    // false when the chosen file does not look like a profile and the user
    // does not want it opened.
    bool ConfirmProfile(const std::string& path, const std::string& title);
    // Runs the reader or writer with the window out of use and frmLoad shown.
    // A ProfileError is shown (title `title`); returns false then.
    template <class Work> bool RunWithProgress(const std::string& title, Work work);
    // Writes the profile to `path`, which becomes the current file.
    bool WriteTo(const std::string& path);
    void SetCurrentFile(const std::string& path, bool writable);
    ProfileContext Context();

    FileCommandPorts p_;
    MainWindowHooks& window_;
    std::string remembered_;
    std::string initialFolder_;
    std::string current_;
    bool currentWritable_ = false;
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
// A file name is offered with the profile extension ("Rusher" -> "Rusher.txt").
std::string ProposedFileName(const std::string& aiName);
// The bare file name of a path, also of one inside an archive
// ("/g/TOTALA1.HPI#ai/DEFAULT.TXT" -> "DEFAULT.TXT").
std::string DisplayFileName(const std::string& path);
// What a save confirms: "Saved PATH (425 units, 3 excluded)".
std::string SavedStatus(const Definitions& defs, const std::string& path);
// A profile has a header ("Name:" or "Auth:") or at least one WEIGHT or LIMIT
// entry (any letter case, own or Tessaly form). Anything else (a program, a
// picture) is asked about before it is read.
bool LooksLikeAIProfile(std::string_view text);

} // namespace vantrel
