// Text between the program's single-byte strings and Qt: Latin-1 both ways.
// File names go through the file system's own encoding instead (UTF-8 on
// Linux), so that every name on disk survives the trip.
#pragma once

#include <QFile>
#include <QString>

#include <string>

namespace vantrel {

inline QString QtText(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}
inline std::string StdText(const QString& s) {
    return s.toLatin1().toStdString();
}

inline QString QtPath(const std::string& path) {
    return QFile::decodeName(QByteArray(path.data(), static_cast<qsizetype>(path.size())));
}
inline std::string StdPath(const QString& path) {
    const QByteArray bytes = QFile::encodeName(path);
    return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

} // namespace vantrel
