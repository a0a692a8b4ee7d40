// The main window's commands for the game's own profiles: reading profiles
// that lie inside the game's archives, and File, Install into Game...
#pragma once

#include "mainwindow/file_commands.h"

#include <optional>
#include <string>
#include <vector>

namespace vantrel {

// The readers as the file commands call them, for paths that may also name
// a profile inside an archive ("ARCHIVE#path/inside").
class GameProfileIO : public ProfileIO {
  public:
    void Read(ProfileContext& ctx, const std::string& path, bool merge) override;
    void ReadTessaly(ProfileContext& ctx, const std::string& path, bool merge) override;
};

// File, Install into Game...: copies the current file into the game's "ai"
// folder under its own name. Unsaved changes are saved to the current file
// first; a profile with no file of its own is saved as, after asking. An
// existing file of the same name is replaced only after asking. Returns the
// installed file, nothing when the command stopped (any message was shown).
std::optional<std::string> InstallIntoGame(FileCommands& files, Messages& messages,
                                           const std::string& gameDir);

// "Use Current Profile" of the Maps window: installs the current profile when
// the game's "ai" folder lacks this very copy of it (as Install into Game
// does), then points `maps` at it. Returns what was written for the status
// bar, or "" when nothing was (after saying why).
std::string UseCurrentProfileOnMaps(FileCommands& files, Messages& messages,
                                    const std::string& gameDir,
                                    const std::vector<std::string>& maps);

} // namespace vantrel
