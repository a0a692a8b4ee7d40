#include "mainwindow/game_commands.h"

#include "base/paths.h"
#include "startup/game_profiles.h"

namespace vantrel {

void GameProfileIO::Read(ProfileContext& ctx, const std::string& path, bool merge) {
    if (auto inArchive = SplitArchivePath(path))
        ReadAI(ctx, ReadArchivedProfile(*inArchive), merge);
    else
        ProfileIO::Read(ctx, path, merge);
}

void GameProfileIO::ReadTessaly(ProfileContext& ctx, const std::string& path, bool merge) {
    if (auto inArchive = SplitArchivePath(path))
        ReadTessalyAI(ctx, ReadArchivedProfile(*inArchive), merge);
    else
        ProfileIO::ReadTessaly(ctx, path, merge);
}

std::optional<std::string> InstallIntoGame(FileCommands& files, Messages& messages,
                                           const std::string& gameDir) {
    const char* title = "Install";
    if (!IsDirectory(gameDir)) {
        messages.Inform("The game's folder was not found, so there is nowhere to install to.",
                        title, MsgIcon::Exclamation);
        return std::nullopt;
    }
    if (!files.CanSaveQuietly()) {
        MsgAnswer save =
            messages.Show("The profile must be saved before it can be installed. Save it now?",
                          title, MsgButtons::YesNo, MsgIcon::Question);
        if (save != MsgAnswer::Yes || !files.SaveAs()) return std::nullopt;
    } else if (files.HasUnsavedChanges() && !files.Save()) {
        return std::nullopt;
    }
    const std::string& saved = files.CurrentFile();
    InstallPlan plan = PlanInstall(saved, gameDir);
    if (plan.replaces &&
        messages.Show("'" + plan.destination + "' already exists. Replace it?", title,
                      MsgButtons::YesNo, MsgIcon::Question) != MsgAnswer::Yes)
        return std::nullopt;
    try {
        InstallProfile(saved, plan);
    } catch (const ProfileError& e) {
        messages.Inform(e.what(), title, MsgIcon::Exclamation);
        return std::nullopt;
    }
    return plan.destination;
}

} // namespace vantrel
