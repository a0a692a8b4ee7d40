// The per-user settings store: QSettings, application "vantrel", group "Options".
#pragma once

#include "base/ports.h"

#include <memory>

class QSettings;

namespace vantrel {

class QtSettingsStore : public SettingsStore {
  public:
    QtSettingsStore();
    ~QtSettingsStore() override;
    std::string Get(const std::string& key, const std::string& fallback) override;
    void Set(const std::string& key, const std::string& value) override;

  private:
    std::unique_ptr<QSettings> settings_;
};

} // namespace vantrel
