// Pieces the dialogs share: text conversion between the program's
// single-byte strings and Qt, the check-box list, the game folder row and
// the OK/Cancel buttons.
#pragma once

#include <QSize>
#include <QString>

#include <string>

class QDialog;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QWidget;

namespace vantrel {

inline QString ToLatin1Text(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}
inline std::string FromLatin1Text(const QString& s) {
    return s.toLatin1().toStdString();
}

// The list "lstMain" with a check box on every row and its tooltip.
QListWidget* NewCheckList(QWidget* parent);
// Appends a row with a check box set to `checked`.
QListWidgetItem* AddCheckRow(QListWidget* list, const std::string& text, bool checked);

// A push button named `name`; the default one answers Enter, the others
// only their own click or key.
QPushButton* NewButton(QWidget* parent, const char* name, const QString& caption,
                       bool isDefault = false);
// The row of the game folder in Options and in the no-units window: the
// label "lblGameDir" (buddy of the field), the field "txtGameDir" and
// "cmdBrowse", laid out side by side.
struct GameFolderRow {
    QLabel* label = nullptr;
    QLineEdit* field = nullptr;
    QPushButton* browse = nullptr;
    QHBoxLayout* layout = nullptr;
};
GameFolderRow NewGameFolderRow(QWidget* parent, const QString& caption);
// "cmdOK" (the default button, Enter) and "cmdCancel".
void NewOkCancel(QWidget* parent, QPushButton*& ok, QPushButton*& cancel);
// OK and Cancel side by side at the right.
QHBoxLayout* ButtonRow(QPushButton* ok, QPushButton* cancel);

// A dialog that cannot be resized or maximised: `size` when given, else the
// size its layout asks for. Every time it is shown it is centred on the
// window of its parent (on the screen when it has none).
void FixedAndCentred(QDialog* dialog, QSize size = {});
// Moves a top-level widget so that its centre is the centre of its parent's window.
void CentreOnParent(QWidget* widget);

} // namespace vantrel
