#include "app/qt_settings_store.h"

#include <QSettings>
#include <QStandardPaths>

#include <sys/stat.h>

namespace vantrel {

namespace {
QString Key(const std::string& key) {
    return "Options/" + QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}
} // namespace

// The file QSettings keeps the user's settings of organisation and
// application "vantrel" in (on Linux its native format is the INI format).
// It is named here rather than asked of a QSettings, which would read it.
QtSettingsStore::QtSettingsStore() {
    Use((QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         "/vantrel/vantrel.conf")
            .toStdString());
}

QtSettingsStore::QtSettingsStore(const std::string& file) {
    Use(file);
}

void QtSettingsStore::Use(const std::string& file) {
    file_ = file;
    // Reading a FIFO would wait for a writer for ever; a folder has nothing to read.
    struct stat st {};
    if (::stat(file.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
        problem_ = "The settings file '" + file_ + "' is not a regular file (" +
                   (S_ISDIR(st.st_mode) ? "it is a folder" : "it is a FIFO, socket or device") +
                   "): it is ignored, and settings are neither read nor stored.";
        return;
    }
    settings_ = std::make_unique<QSettings>(QString::fromStdString(file), QSettings::IniFormat);
}

QtSettingsStore::~QtSettingsStore() = default;

std::string QtSettingsStore::Get(const std::string& key, const std::string& fallback) {
    if (!settings_) return fallback;
    QVariant v = settings_->value(Key(key));
    if (!v.isValid()) return fallback;
    return v.toString().toStdString();
}

void QtSettingsStore::Set(const std::string& key, const std::string& value) {
    if (!settings_) return;
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
    return file_;
}

} // namespace vantrel
