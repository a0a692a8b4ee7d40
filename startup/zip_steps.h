// The zip steps of start-up: counting the entries of every zip package in
// the program's folder and unpacking them into the Units folder.
#pragma once

#include "formats/zip_package.h"
#include "startup/main_sequence.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vantrel {

inline constexpr const char* ZipPattern = "*.zip";
inline constexpr const char* ProcessingUnitsText = "Processing units...";

// Each package is opened once per start: the counting step keeps it open for
// the unpacking step.
class LibzipSteps : public ZipSteps {
  public:
    void CountZipFiles(const Definitions& defs, Progress& progress) override;
    void UnpackZips(Definitions& defs, Progress& progress) override;
    ExtractionFailures Failures() const override { return failures_; }

  private:
    void OpenPackages(const Definitions& defs);

    struct Package {
        std::string name; // bare file name
        std::unique_ptr<ZipPackage> zip;
        std::string error; // why it could not be opened
    };
    std::vector<Package> packages_;
    bool opened_ = false;
    ExtractionFailures failures_;
};

} // namespace vantrel
