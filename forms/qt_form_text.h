// Small pieces the dialogs share: text conversion between the program's
// single-byte strings and Qt, the list tooltip and the OK/Cancel row.
#pragma once

#include <QString>

#include <string>

class QHBoxLayout;
class QPushButton;

namespace vantrel {

inline constexpr const char* ListToolTip = "Check off units you do not want to include in your AI";

inline QString ToLatin1Text(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}
inline std::string FromLatin1Text(const QString& s) { return s.toLatin1().toStdString(); }

// OK and Cancel side by side at the right.
QHBoxLayout* ButtonRow(QPushButton* ok, QPushButton* cancel);

} // namespace vantrel
