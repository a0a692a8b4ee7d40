// The zip steps of start-up over libzip: counting the entries of every zip
// package in the program's folder and unpacking them into the Units folder.
#pragma once

#include "startup/cUnzip.h"
#include "startup/main_sequence.h"

#include <memory>
#include <string>

namespace vantrel {

inline constexpr const char* ZipPattern = "*.zip";
inline constexpr const char* ProcessingUnitsText = "Processing units...";

// The progress form's handler of the unzip object's Progress event: an
// "inflating:" message names the file being unpacked from package `zipFile`.
void m_cUnzip_Progress(Progress& progress, const std::string& zipFile, int lCount,
                       const std::string& sMsg);

class LibzipSteps : public ZipSteps {
  public:
    void CreateUnzip(const Definitions& defs, Progress& progress) override;
    void CountZipFiles(const Definitions& defs, Progress& progress) override;
    void UnpackZips(Definitions& defs, Progress& progress) override;
    ExtractionFailures Failures() const override { return failures_; }

    // The unzip object kept for the progress form (null before CreateUnzip).
    cUnzip* Unzip() const { return m_cUnzip.get(); }

  private:
    cUnzip& Attach(Progress& progress);

    std::unique_ptr<cUnzip> m_cUnzip;
    std::string zipName_; // bare name of the package being read
    ExtractionFailures failures_;
};

} // namespace vantrel
