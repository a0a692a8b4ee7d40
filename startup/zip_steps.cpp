#include "startup/zip_steps.h"

#include "base/paths.h"
#include "base/text.h"

namespace vantrel {

void LibzipSteps::OpenPackages(const Definitions& defs) {
    if (opened_) return;
    opened_ = true;
    for (const std::string& name : ListFiles(defs.AppDir, ZipPattern)) {
        Package p{name, nullptr, {}};
        p.zip = ZipPackage::Open(JoinPath(defs.AppDir, name), &p.error);
        packages_.push_back(std::move(p));
    }
}

void LibzipSteps::CountZipFiles(const Definitions& defs, Progress& progress) {
    OpenPackages(defs);
    for (const Package& p : packages_) {
        progress.Repaint();
        if (p.zip) progress.AddMaximum(static_cast<int>(p.zip->EntryCount()));
        progress.ProcessEvents();
    }
}

void LibzipSteps::UnpackZips(Definitions& defs, Progress& progress) {
    failures_ = {};
    OpenPackages(defs);
    progress.Show();
    progress.Repaint();
    const std::string units = UnitsDir(defs.AppDir);
    // Start-up hands over its index of the folder; alone, the step reads it.
    UnitsFolder own;
    if (defs.UnitFiles.Dir() != units) own = UnitsFolder(units);
    UnitsFolder& index = defs.UnitFiles.Dir() == units ? defs.UnitFiles : own;
    for (const Package& p : packages_) {
        if (!p.zip) {
            failures_.Add(p.name, p.error);
            continue;
        }
        p.zip->UnpackTo(
            units, [&index](const std::string& bare) { return !index.Find(bare).empty(); },
            [&](const ZipEntryReport& r) {
                const std::string name(r.name);
                switch (r.result) {
                case ZipResult::Written:
                    index.Add(EntryBareName(name));
                    progress.SetStatus("Unpacking '" + ProperCase(std::string(EntryBareName(name))) +
                                       "' from '" + p.name + "' ...");
                    progress.AddValue(1);
                    progress.Repaint();
                    break;
                case ZipResult::TooLarge:
                    failures_.Add(p.name, name + ": too large");
                    break;
                case ZipResult::Failed:
                    failures_.Add(p.name, name + ": " + std::string(r.reason));
                    break;
                default: // kept, encrypted or unusable: left out, as intended
                    break;
                }
            });
    }
    packages_.clear();
    opened_ = false;
    progress.SetStatus(ProcessingUnitsText);
}

} // namespace vantrel
