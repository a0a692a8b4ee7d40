#include "mainwindow/file_commands.h"

#include "catalogue/text.h"

namespace vantrel {

FileCommands::FileCommands(FileCommandPorts ports, MainWindowHooks& window)
    : p_(ports), window_(window) {}

void FileCommands::Load() {
    initialFolder_ = p_.defs.LastDir;
}

ProfileContext FileCommands::Context() {
    return ProfileContext{p_.defs, p_.progress, p_.fields, p_.clock};
}

bool FileCommands::SavePrompt() {
    if (!p_.defs.Changed) return true;
    p_.defs.Changed = false;
    MsgAnswer answer = p_.messages.Show("Save Changes to " + p_.fields.Banner() + " now?", "Save",
                                        MsgButtons::YesNoCancel, MsgIcon::Question);
    if (answer == MsgAnswer::Cancel) return false;
    if (answer == MsgAnswer::Yes) Save(); // the command goes on even if the save was cancelled
    return true;
}

void FileCommands::New() {
    if (!SavePrompt()) return;
    p_.defs.ParentAIs.clear();
    p_.fields.SetAIName("New");
    window_.ShowSettings(true);
    window_.ReselectCurrentSide();
    window_.StartFreshHistory();
}

void FileCommands::UseRememberedFolder() {
    if (!remembered_.empty()) initialFolder_ = remembered_;
}

template <class Work> bool FileCommands::RunWithProgress(const std::string& title, Work work) {
    window_.SetInUse(false);
    p_.progress.SetValue(0);
    p_.progress.Show();
    try {
        ProfileContext ctx = Context();
        work(ctx);
    } catch (const ProfileError& e) {
        p_.progress.Close();
        window_.SetInUse(true);
        p_.messages.Inform(e.what(), title, MsgIcon::Exclamation);
        return false;
    }
    p_.progress.Close();
    return true;
}

void FileCommands::OpenOrMerge(bool merge) {
    UseRememberedFolder();
    FileDialogResult chosen = p_.dialogs.Open("Open", OpenFilter, initialFolder_);
    // The dialog's last folder is remembered even when it was cancelled.
    if (!chosen.folder.empty()) remembered_ = chosen.folder;
    if (!chosen.accepted) return;

    p_.defs.Changed = true;
    const bool tessaly = chosen.filterIndex != 1; // the filter decides, not the extension
    bool read = RunWithProgress(merge ? "Merge" : "Vantrel", [&](ProfileContext& ctx) {
        if (tessaly)
            p_.profiles.ReadTessaly(ctx, chosen.path, merge);
        else
            p_.profiles.Read(ctx, chosen.path, merge);
    });
    if (!read) return;

    if (!merge) {
        window_.StartFreshHistory();
        window_.ReselectCurrentSide();
        window_.SetInUse(true);
        p_.settings.Set("LastDir", FolderPart(chosen.path));
        return;
    }
    p_.defs.DialogOK = false;
    window_.ShowMerge();
    window_.ReselectCurrentSide(); // whatever the dialog's answer
    window_.SetInUse(true);
    p_.settings.Set("LastDir", FolderPart(chosen.path));
    if (p_.defs.DialogOK) p_.messages.Inform("Merge complete", "Merge", MsgIcon::Information);
}

void FileCommands::Save() {
    UseRememberedFolder();
    FileDialogResult chosen =
        p_.dialogs.Save("Save", SaveFilter, initialFolder_, p_.fields.AIName());
    if (!chosen.accepted) return;

    p_.defs.Changed = true;
    bool written =
        RunWithProgress("Save", [&](ProfileContext& ctx) { p_.profiles.Save(ctx, chosen.path); });
    if (!written) return;
    window_.ValuesSaved();
    window_.SetInUse(true);
    p_.settings.Set("LastDir", FolderPart(chosen.path));
}

void FileCommands::External() {
    const std::string path = p_.defs.AppDir + ExternalFileName;
    bool written =
        RunWithProgress("Vantrel", [&](ProfileContext& ctx) { p_.profiles.Save(ctx, path); });
    window_.SetInUse(true);
    if (!written) return;
    if (!p_.shell.OpenDocument(path)) p_.messages.Beep();
}

// ---------------------------------------------------------------------------

std::vector<std::string> FurtherSideCaptions(const Definitions& defs) {
    std::vector<std::string> captions;
    for (int i = 2; i <= defs.Races.UBound(); ++i) {
        const std::string& name = defs.Races[i].Name;
        if (!ContainsText(StandardSides, UCase(name))) captions.push_back(ProperCase(name));
    }
    return captions;
}

bool IsStandardSide(const std::string& currentSide) {
    const std::string side = UCase(currentSide);
    return side == "ARM" || side == "CORE";
}

std::string FolderPart(const std::string& path) {
    const std::size_t last = path.find_last_of("\\/");
    return last == std::string::npos ? std::string() : path.substr(0, last + 1);
}

bool IsAcceptableAIName(const std::string& name) {
    return !TrimSpaces(name).empty();
}

void ResetUnitsForNewAI(Definitions& defs) {
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        defs.Units[i].Weight = 0.0f;
        defs.Units[i].Limit = 0.0f;
        defs.Units[i].Include = true;
    }
}

} // namespace vantrel
