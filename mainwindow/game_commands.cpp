#include "mainwindow/game_commands.h"

#include "base/paths.h"
#include "startup/game_maps.h"
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
    InstallPlan plan;
    try {
        plan = PlanInstall(saved, gameDir);
        if (plan.replaces &&
            messages.Show("'" + plan.destination + "' already exists. Replace it?", title,
                          MsgButtons::YesNo, MsgIcon::Question) != MsgAnswer::Yes)
            return std::nullopt;
        InstallProfile(saved, plan);
    } catch (const ProfileError& e) {
        messages.Inform(e.what(), title, MsgIcon::Exclamation);
        return std::nullopt;
    }
    return plan.destination;
}

std::string UseCurrentProfileOnMaps(FileCommands& files, Messages& messages,
                                    const std::string& gameDir,
                                    const std::vector<std::string>& maps) {
    const char* title = "Maps";
    if (maps.empty()) return {};
    // The game's own copy is used as it is when it holds what was last saved.
    const std::string& saved = files.CurrentFile();
    bool installed = files.CanSaveQuietly() && !files.HasUnsavedChanges();
    if (installed) {
        try {
            const InstallPlan plan = PlanInstall(saved, gameDir);
            installed = plan.replaces && ReadWholeFile(plan.destination, ProfileFileMax) ==
                                             ReadWholeFile(saved, ProfileFileMax);
        } catch (const ProfileError&) {
            installed = false; // Install into Game tries again and says why
        }
    }
    if (!installed && !InstallIntoGame(files, messages, gameDir)) return {};

    std::string name = files.CurrentFile();
    name = StripPath(name);
    if (!WildcardMatch("*.txt", name)) {
        messages.Inform("The game reads only profiles whose names end in \".txt\": save the "
                        "profile under such a name to use it on maps.",
                        title, MsgIcon::Exclamation);
        return {};
    }
    name.resize(name.size() - 4);
    try {
        const std::vector<std::string> written = UseProfileOnMaps(gameDir, name, maps);
        std::string names;
        for (const std::string& file : written)
            names += (names.empty() ? "" : ", ") + file.substr(file.find_last_of(PathSep) + 1);
        return std::to_string(written.size()) + (written.size() == 1 ? " map now uses" : " maps now use") +
               " the profile " + name + " (written: " + names + ").";
    } catch (const MapError& e) {
        messages.Inform(e.what(), title, MsgIcon::Exclamation);
        return {};
    }
}

} // namespace vantrel
