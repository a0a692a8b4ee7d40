#include "app/qt_settings_store.h"

#include <QSettings>

namespace vantrel {

namespace {
QString Key(const std::string& key) {
    return "Options/" + QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}
} // namespace

QtSettingsStore::QtSettingsStore()
    : settings_(std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                            "vantrel", "vantrel")) {}

QtSettingsStore::QtSettingsStore(const std::string& file)
    : settings_(std::make_unique<QSettings>(QString::fromStdString(file), QSettings::IniFormat)) {}

QtSettingsStore::~QtSettingsStore() = default;

std::string QtSettingsStore::Get(const std::string& key, const std::string& fallback) {
    QVariant v = settings_->value(Key(key));
    if (!v.isValid()) return fallback;
    return v.toString().toStdString();
}

void QtSettingsStore::Set(const std::string& key, const std::string& value) {
    const QVariant before = settings_->value(Key(key));
    const QByteArray bytes(value.data(), static_cast<qsizetype>(value.size()));
    QString text = QString::fromUtf8(bytes);
    // Bytes that are not UTF-8 are kept letter for letter rather than lost.
    if (text.toUtf8() != bytes) text = QString::fromLatin1(bytes);
    settings_->setValue(Key(key), text);
    settings_->sync();
    if (settings_->status() == QSettings::NoError) return;
    if (before.isValid())
        settings_->setValue(Key(key), before);
    else
        settings_->remove(Key(key));
    // A QSettings keeps its error for good: a fresh one lets the next write
    // (once the file can be written again) go through.
    const QString file = settings_->fileName();
    const QSettings::Format format = settings_->format();
    settings_.reset();
    settings_ = std::make_unique<QSettings>(file, format);
}

std::string QtSettingsStore::Location() {
    return settings_->fileName().toStdString();
}

} // namespace vantrel
