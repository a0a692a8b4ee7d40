#include "startup/zip_steps.h"

#include "base/paths.h"
#include "base/text.h"

namespace vantrel {

void m_cUnzip_Progress(Progress& progress, const std::string& zipFile, int /*lCount*/,
                       const std::string& sMsg) {
    if (sMsg.find("inflating:") == std::string::npos) return;
    std::string message = sMsg;
    const std::string name = ProperCase(TrimSpaces(StripPath(message)));
    progress.SetStatus("Unpacking '" + name + "' from '" + zipFile + "' ...");
    progress.AddValue(1);
    progress.Repaint();
}

void LibzipSteps::CreateUnzip(const Definitions&, Progress& progress) {
    Attach(progress);
}

cUnzip& LibzipSteps::Attach(Progress& progress) {
    if (!m_cUnzip) m_cUnzip = std::make_unique<cUnzip>();
    m_cUnzip->Progress = [this, &progress](int lCount, const std::string& sMsg) {
        m_cUnzip_Progress(progress, zipName_, lCount, sMsg);
    };
    return *m_cUnzip;
}

// A failing package or library never ends start-up: the step is left as it
// stands and start-up goes on.
void LibzipSteps::CountZipFiles(const Definitions& defs, Progress& progress) {
    try {
        cUnzip& unzip = Attach(progress);
        for (const std::string& zip : ListFiles(defs.AppDir, ZipPattern)) {
            progress.Repaint();
            zipName_ = zip;
            unzip.ZipFile(JoinPath(defs.AppDir, zip));
            unzip.Directory();
            progress.AddMaximum(unzip.FileCount());
            progress.ProcessEvents();
        }
    } catch (...) {
    }
}

void LibzipSteps::UnpackZips(Definitions& defs, Progress& progress) {
    failures_ = {};
    try {
        cUnzip& unzip = Attach(progress);
        progress.Show();
        progress.Repaint();
        for (const std::string& zip : ListFiles(defs.AppDir, ZipPattern)) {
            zipName_ = zip;
            unzip.UnzipFolder(UnitsDir(defs.AppDir));
            unzip.ExistingFiles(&defs.UnitFiles);
            unzip.UseFolderNames(false);
            unzip.ZipFile(JoinPath(defs.AppDir, zip)); // empties the list: every entry
            if (!unzip.Unzip()) failures_.Add(zip, "damaged zip package");
            for (const std::string& f : unzip.Failures().files)
                failures_.Add(zip, f);
        }
        progress.SetStatus(ProcessingUnitsText);
    } catch (...) {
    }
}

} // namespace vantrel
