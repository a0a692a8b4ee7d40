// A fresh folder under the system's temporary folder, removed with its
// content when the object goes away.
#pragma once

#include <string>
#include <vector>

namespace vantrel::testing {

class ScratchFolder {
  public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

// Every name in `dir` (files and folders, hidden ones too), sorted.
std::vector<std::string> FolderContent(const std::string& dir);

} // namespace vantrel::testing
