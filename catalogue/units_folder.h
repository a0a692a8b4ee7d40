// The Units folder as one name space without letter case: "ARMCOM.FBI" and
// "armcom.fbi" are the same file. Every look-up of a file in the folder by
// name goes through this index, made once when the folder is read and told
// about every file written to it afterwards.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

class UnitsFolder {
  public:
    UnitsFolder() = default;
    // Reads the names of the regular files directly in `dir`. Should the
    // folder already hold one name in two spellings, the first in listing
    // order (upper-case letters before lower-case) is the one that counts.
    explicit UnitsFolder(std::string dir);

    const std::string& Dir() const { return dir_; }

    // The path of the file whose name equals `name` without regard to ASCII
    // letter case; "" when there is none.
    std::string Find(std::string_view name) const;
    // Where a file of this name is written: over the file already there in
    // whatever spelling, else a new file under `name` itself.
    std::string PathFor(std::string_view name) const;
    // Notes a file just written under `name`. A name that is there in
    // another spelling keeps the spelling on disk (PathFor wrote over it).
    void Add(std::string_view name);

    // The names matching a wildcard pattern (any case), one per name, in
    // listing order.
    std::vector<std::string> Names(std::string_view pattern) const;

  private:
    std::string dir_;
    std::map<std::string, std::string> names_; // upper-cased name -> name on disk
};

} // namespace vantrel
