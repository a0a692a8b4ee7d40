// Zip packages and scratch folders made by the tests themselves.
#pragma once

#include "support/scratch_folder.h"

#include <string>
#include <vector>

namespace vantrel::testing {

using Files = std::vector<std::string>;

struct ZipItem {
    std::string name;
    std::string data;
    bool folder = false;  // a folder entry ("units/")
    bool encrypt = false; // encrypted with the password "secret"
    bool store = false;   // stored instead of deflated
};

// Writes a zip package with libzip. False when libzip refused any part.
bool WriteZip(const std::string& path, const std::vector<ZipItem>& items);
// True when this libzip can write encrypted entries.
bool CanEncryptZipEntries();

// Writes `data` to `path` (creating or truncating it).
inline void WriteBytes(const std::string& path, const std::string& data) {
    test::WriteText(path, data);
}
// Every regular file below `root`, as paths relative to it, sorted.
Files FilesBelow(const std::string& root);

} // namespace vantrel::testing
