// A fresh folder under the system's temporary folder, removed with its
// content when the object goes away.
#pragma once

#include "support/test_support.h"

#include <string>
#include <vector>

namespace vantrel::testing {

using ScratchFolder = vantrel::test::TempDir;

// Every name in `dir` (files and folders, hidden ones too), sorted.
inline std::vector<std::string> FolderContent(const std::string& dir) {
    return test::FolderEntries(dir);
}

} // namespace vantrel::testing
