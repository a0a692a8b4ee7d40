// Text between the program's single-byte strings and Qt: Latin-1 both ways.
#pragma once

#include <QString>

#include <string>

namespace vantrel {

inline QString QtText(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}
inline std::string StdText(const QString& s) {
    return s.toLatin1().toStdString();
}

} // namespace vantrel
