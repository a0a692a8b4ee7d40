// Files that extraction could not write, each with its reason, so that a run
// into a full disk or a read-only Units folder is reported instead of passing
// for a good one.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace vantrel {

struct ExtractionFailures {
    std::vector<std::string> files; // "NAME: reason", in the order they failed

    static std::string Line(const std::string& name, const std::string& reason) {
        return name + ": " + (reason.empty() ? "not written" : reason);
    }
    void Add(const std::string& name, const std::string& reason) {
        files.push_back(Line(name, reason));
    }
    // Adds the failure unless it is already listed (an archive refused by
    // each pass over it).
    void AddOnce(const std::string& name, const std::string& reason) {
        std::string line = Line(name, reason);
        if (std::find(files.begin(), files.end(), line) == files.end())
            files.push_back(std::move(line));
    }
    void Add(const ExtractionFailures& more) {
        files.insert(files.end(), more.files.begin(), more.files.end());
    }
    bool Any() const { return !files.empty(); }
    // "3 files could not be written (ARMCOM.FBI: No space left on device)"
    std::string Summary() const {
        const std::size_t n = files.size();
        return std::to_string(n) + (n == 1 ? " file" : " files") + " could not be written (" +
               (n ? files.front() : std::string()) + ")";
    }
};

} // namespace vantrel
