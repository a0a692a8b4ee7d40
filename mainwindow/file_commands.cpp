#include "mainwindow/file_commands.h"

#include "base/paths.h"
#include "base/staged_file.h"
#include "base/text.h"
#include "startup/game_profiles.h"

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
    if (!p_.defs.Profile.Changed) return true;
    MsgAnswer answer = p_.messages.Show("Save Changes to " + p_.fields.Banner() + " now?", "Save",
                                        MsgButtons::YesNoCancel, MsgIcon::Question);
    if (answer == MsgAnswer::Cancel) return false;
    if (answer == MsgAnswer::Yes) return Save();
    return true; // No: the caller goes on and decides what the changes become
}

void FileCommands::New() {
    if (!SavePrompt()) return;
    const std::string oldName = p_.fields.AIName();
    const std::string oldParents = p_.defs.Profile.ParentAIs;
    p_.defs.Profile.ParentAIs.clear();
    p_.fields.SetAIName("New");
    if (!window_.ShowSettings(true)) {
        // Cancel: no new AI, so the name field goes back to the one in the banner.
        p_.fields.SetAIName(oldName);
        p_.defs.Profile.ParentAIs = oldParents;
        return;
    }
    p_.defs.Profile.Changed = false;   // a new AI has nothing to save yet
    SetCurrentFile("", false); // nor a file of its own
    window_.ReselectCurrentSide();
    window_.StartFreshHistory();
}

void FileCommands::SetCurrentFile(const std::string& path, bool writable) {
    current_ = path;
    currentWritable_ = writable;
    window_.FileStateChanged();
}

void FileCommands::UseRememberedFolder() {
    if (!remembered_.empty()) initialFolder_ = remembered_;
}

void FileCommands::RememberFolderOf(const std::string& path) {
    remembered_ = FolderPart(path);
    p_.settings.Set("LastDir", remembered_);
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

bool FileCommands::ConfirmProfile(const std::string& path, const std::string& title) {
    FileText file = ReadProfileFile(path);
    if (!file.ok() || LooksLikeAIProfile(file.data)) return true; // the reader reports failures
    std::string name = path;
    name = StripPath(name);
    return p_.messages.Show("'" + name + "' does not look like an AI profile. Open it anyway?",
                            title, MsgButtons::YesNo, MsgIcon::Question) == MsgAnswer::Yes;
}

void FileCommands::OpenOrMerge(bool merge) {
    // Opening replaces the profile being edited; merging keeps it.
    if (!merge && !SavePrompt()) return;
    UseRememberedFolder();
    FileDialogResult chosen = p_.dialogs.Open(merge ? "Merge" : "Open", OpenFilter, initialFolder_);
    // The dialog's last folder is remembered even when it was cancelled.
    if (!chosen.folder.empty()) remembered_ = chosen.folder;
    if (!chosen.accepted) return;
    if (!ConfirmProfile(chosen.path, merge ? "Merge" : "Open")) return;
    // The filter decides the reader, not the extension.
    ReadChosen(chosen.path, chosen.filterIndex != 1, merge, true);
}

void FileCommands::OpenGameProfile(const std::string& path) {
    if (!SavePrompt()) return;
    ReadChosen(path, false, false, false);
}

void FileCommands::ReadChosen(const std::string& path, bool tessaly, bool merge,
                              bool rememberFolder) {
    bool read = RunWithProgress(merge ? "Merge" : "Vantrel", [&](ProfileContext& ctx) {
        if (tessaly)
            p_.profiles.ReadTessaly(ctx, path, merge);
        else
            p_.profiles.Read(ctx, path, merge);
    });
    if (!read) return; // nothing was read: the edits and their flag stay as they were
    // A merge leaves changes to save; an opened profile is what its file holds.
    p_.defs.Profile.Changed = merge;
    // Values above the maxima are kept; the status bar says how many there are.
    const std::string above =
        AboveMaximaText(ValuesAboveMaxima(p_.defs, merge ? p_.defs.SavedUnits : p_.defs.Units));
    const std::string note = above.empty() ? "" : " - " + above;

    if (!merge) {
        // Save writes this file back from now on, unless it is no file of our
        // own format (one inside the game, a Tessaly file): that is saved as.
        SetCurrentFile(path, !tessaly && IsRegularFile(path));
        window_.StartFreshHistory();
        window_.ReselectCurrentSide();
        window_.SetInUse(true);
        if (rememberFolder) RememberFolderOf(path);
        window_.ShowStatus("Opened " + path + note);
        return;
    }
    const bool merged = window_.ShowMerge();
    window_.ReselectCurrentSide(); // whatever the dialog's answer
    window_.SetInUse(true);
    if (rememberFolder) RememberFolderOf(path);
    window_.FileStateChanged();
    if (merged) {
        window_.ShowStatus("Merged " + path + note);
        p_.messages.Inform("Merge complete", "Merge", MsgIcon::Information);
    }
}

bool FileCommands::Save() {
    return CanSaveQuietly() ? WriteTo(current_) : SaveAs();
}

bool FileCommands::SaveAs() {
    UseRememberedFolder();
    std::string folder = initialFolder_;
    std::string proposed = ProposedFileName(p_.fields.AIName());
    if (CanSaveQuietly()) {
        folder = FolderPart(current_);
        proposed = DisplayFileName(current_);
    } else if (!current_.empty()) {
        // A profile from the game or a Tessaly file: its name, as one of ours.
        std::string name = DisplayFileName(current_);
        const std::size_t dot = name.rfind('.');
        proposed = ProposedFileName(dot == std::string::npos ? name : name.substr(0, dot));
    }
    FileDialogResult chosen = p_.dialogs.Save("Save As", SaveFilter, folder, proposed);
    if (!chosen.accepted) return false;
    return WriteTo(chosen.path);
}

bool FileCommands::WriteTo(const std::string& path) {
    bool written =
        RunWithProgress("Save", [&](ProfileContext& ctx) { p_.profiles.Save(ctx, path); });
    if (!written) return false;
    window_.ValuesSaved();
    window_.SetInUse(true);
    RememberFolderOf(path);
    p_.defs.Profile.Changed = false;
    SetCurrentFile(path, true);
    window_.ShowStatus(SavedStatus(p_.defs, path));
    return true;
}

void FileCommands::External(const std::string& folder) {
    const std::string path = WithTrailingSep(folder) + ExternalFileName;
    bool written =
        RunWithProgress("Vantrel", [&](ProfileContext& ctx) { p_.profiles.Save(ctx, path); });
    window_.SetInUse(true);
    if (!written) return;
    if (!p_.shell.OpenDocument(path))
        p_.messages.Inform("No text viewer could be started for the profile. It was written to\n" +
                               path,
                           "Vantrel", MsgIcon::Information);
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
    return SameSide(currentSide, "ARM") || SameSide(currentSide, "CORE");
}

std::string FolderPart(const std::string& path) {
    const std::size_t last = path.find_last_of("\\/");
    return last == std::string::npos ? std::string() : path.substr(0, last + 1);
}

std::string ProposedFileName(const std::string& aiName) {
    const std::string ext = ProfileExtension;
    if (aiName.size() >= ext.size() &&
        EqualsNoCase(std::string_view(aiName).substr(aiName.size() - ext.size()), ext))
        return aiName;
    return aiName + ext;
}

std::string DisplayFileName(const std::string& path) {
    std::string name = path;
    if (auto inArchive = SplitArchivePath(path)) name = inArchive->inner;
    return StripPath(name);
}

std::string SavedStatus(const Definitions& defs, const std::string& path) {
    int excluded = 0;
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        if (!defs.Units[i].Include) ++excluded;
    return "Saved " + path + " (" + std::to_string(defs.Units.UBound()) + " units, " +
           std::to_string(excluded) + " excluded)";
}

bool LooksLikeAIProfile(std::string_view text) {
    if (text.find("Name:") != std::string_view::npos ||
        text.find("Auth:") != std::string_view::npos)
        return true;
    // An entry starts a line: "Weight Armcom 1.5", "Limit Armcom 2" or a Tessaly "Weight=1.5".
    for (std::size_t pos = 0; pos < text.size();) {
        std::size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        while (!line.empty() && (line.front() == ' ' || line.front() == '\t'))
            line.remove_prefix(1);
        for (std::string_view keyword : {std::string_view("WEIGHT"), std::string_view("LIMIT")}) {
            if (line.size() > keyword.size() &&
                EqualsNoCase(line.substr(0, keyword.size()), keyword)) {
                const char next = line[keyword.size()];
                if (next == ' ' || next == '\t' || next == '=') return true;
            }
        }
        pos = end + 1;
    }
    return false;
}

} // namespace vantrel
