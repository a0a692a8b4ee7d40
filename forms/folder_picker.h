// Choosing a folder: the desktop shows its folder dialog; tests script the answer.
#pragma once

#include <optional>
#include <string>

namespace vantrel {

class FolderPicker {
  public:
    virtual ~FolderPicker() = default;
    // The chosen folder, or nullopt when the user cancelled. `start` is the
    // folder offered first (may be empty).
    virtual std::optional<std::string> PickFolder(const std::string& title,
                                                  const std::string& start) = 0;
};

} // namespace vantrel
