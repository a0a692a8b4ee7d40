#include "app/qt_settings_store.h"

#include <QSettings>

namespace vantrel {

QtSettingsStore::QtSettingsStore()
    : settings_(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                            "vantrel", "vantrel")) {}

QtSettingsStore::~QtSettingsStore() = default;

std::string QtSettingsStore::Get(const std::string& key, const std::string& fallback) {
    QVariant v = settings_->value("Options/" + QString::fromLatin1(key.c_str()));
    if (!v.isValid()) return fallback;
    return v.toString().toLatin1().toStdString();
}

void QtSettingsStore::Set(const std::string& key, const std::string& value) {
    settings_->setValue("Options/" + QString::fromLatin1(key.c_str()),
                        QString::fromLatin1(value.data(), static_cast<qsizetype>(value.size())));
    settings_->sync();
}

} // namespace vantrel
