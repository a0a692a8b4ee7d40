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

void InstallIntoGame(FileCommands& files, Messages& messages, const std::string& gameDir) {
    const char* title = "Install";
    if (!IsDirectory(gameDir)) {
        messages.Inform("The game's folder was not found, so there is nowhere to install to.",
                        title, MsgIcon::Exclamation);
        return;
    }
    if (files.SavedPath().empty() || files.HasUnsavedChanges()) {
        MsgAnswer save =
            messages.Show("The profile must be saved before it can be installed. Save it now?",
                          title, MsgButtons::YesNo, MsgIcon::Question);
        if (save != MsgAnswer::Yes || !files.Save()) return;
    }
    const std::string& saved = files.SavedPath();
    InstallPlan plan;
    try {
        plan = PlanInstall(saved, gameDir);
        if (plan.replaces &&
            messages.Show("'" + plan.destination + "' already exists. Replace it?", title,
                          MsgButtons::YesNo, MsgIcon::Question) != MsgAnswer::Yes)
            return;
        InstallProfile(saved, plan);
    } catch (const ProfileError& e) {
        messages.Inform(e.what(), title, MsgIcon::Exclamation);
        return;
    }
    messages.Inform("Installed '" + saved + "' as '" + plan.destination + "'.", title,
                    MsgIcon::Information);
}

} // namespace vantrel
