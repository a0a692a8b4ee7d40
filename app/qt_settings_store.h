// The per-user settings store: QSettings, application "vantrel", group "Options".
// Values are read and written as UTF-8, so a folder with any letters typed
// into the settings file is found as it stands. A settings file that is not a
// regular file (a FIFO, a folder) is never opened: the store then keeps
// nothing, and Problem() says why.
#pragma once

#include "base/ports.h"

#include <memory>
#include <string>

class QSettings;

namespace vantrel {

class QtSettingsStore : public SettingsStore {
  public:
    QtSettingsStore();
    // A store kept in the INI file `file` (tests).
    explicit QtSettingsStore(const std::string& file);
    ~QtSettingsStore() override;
    std::string Get(const std::string& key, const std::string& fallback) override;
    // A value that cannot be written to the file is not kept in memory either,
    // so reading it back tells whether it was stored.
    void Set(const std::string& key, const std::string& value) override;
    std::string Location() override;
    // Why the settings file is ignored ("" when it is used).
    const std::string& Problem() const { return problem_; }

  private:
    void Use(const std::string& file);

    std::unique_ptr<QSettings> settings_; // null while the file is ignored
    std::string file_;
    std::string problem_;
};

} // namespace vantrel
