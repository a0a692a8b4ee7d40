#include "catalogue/units_folder.h"

#include "base/paths.h"
#include "base/text.h"

namespace vantrel {

UnitsFolder::UnitsFolder(std::string dir) : dir_(std::move(dir)) {
    // ListFiles sorts in listing order, so emplace keeps the first spelling.
    for (std::string& name : ListFiles(dir_, "*"))
        names_.emplace(UCase(name), std::move(name));
}

std::string UnitsFolder::Find(std::string_view name) const {
    auto it = names_.find(UCase(name));
    return it == names_.end() ? std::string() : JoinPath(dir_, it->second);
}

std::string UnitsFolder::PathFor(std::string_view name) const {
    std::string path = Find(name);
    return path.empty() ? JoinPath(dir_, std::string(name)) : path;
}

void UnitsFolder::Add(std::string_view name) {
    names_.emplace(UCase(name), std::string(name));
}

std::vector<std::string> UnitsFolder::Names(std::string_view pattern) const {
    std::vector<std::string> out;
    for (const auto& [upper, name] : names_)
        if (WildcardMatch(pattern, name)) out.push_back(name);
    return out;
}

} // namespace vantrel
