#include "forms/qt_form_parts.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLayout>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>

namespace vantrel {

QListWidget* NewCheckList(QWidget* parent) {
    auto* list = new QListWidget(parent);
    list->setObjectName("lstMain");
    list->setToolTip("Check off units you do not want to include in your AI");
    return list;
}

QListWidgetItem* AddCheckRow(QListWidget* list, const std::string& text, bool checked) {
    auto* item = new QListWidgetItem(ToLatin1Text(text), list);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    return item;
}

QPushButton* NewButton(QWidget* parent, const char* name, const QString& caption, bool isDefault) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setDefault(isDefault);
    button->setAutoDefault(isDefault);
    return button;
}

GameFolderRow NewGameFolderRow(QWidget* parent, const QString& caption) {
    GameFolderRow row;
    row.label = new QLabel(caption, parent);
    row.label->setObjectName("lblGameDir");
    row.field = new QLineEdit(parent);
    row.field->setObjectName("txtGameDir");
    row.label->setBuddy(row.field);
    row.browse = NewButton(parent, "cmdBrowse", "Browse...");
    row.layout = new QHBoxLayout;
    row.layout->addWidget(row.label);
    row.layout->addWidget(row.field, 1);
    row.layout->addWidget(row.browse);
    return row;
}

void NewOkCancel(QWidget* parent, QPushButton*& ok, QPushButton*& cancel) {
    ok = NewButton(parent, "cmdOK", "&OK", true);
    cancel = NewButton(parent, "cmdCancel", "&Cancel");
}

QHBoxLayout* ButtonRow(QPushButton* ok, QPushButton* cancel) {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

namespace {
// Centres its dialog whenever the dialog is shown.
class CentreOnShow : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show) CentreOnParent(static_cast<QWidget*>(watched));
        return false;
    }
};
} // namespace

void FixedAndCentred(QDialog* dialog, QSize size) {
    if (size.isValid())
        dialog->setFixedSize(size);
    else if (dialog->layout())
        dialog->layout()->setSizeConstraint(QLayout::SetFixedSize);
    dialog->setSizeGripEnabled(false);
    // A title and a close button only: window managers then offer neither
    // maximising nor resizing.
    dialog->setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint | Qt::MSWindowsFixedSizeDialogHint);
    dialog->installEventFilter(new CentreOnShow(dialog));
}

void CentreOnParent(QWidget* widget) {
    QRect area;
    if (QWidget* parent = widget->parentWidget())
        area = parent->window()->frameGeometry();
    else if (QScreen* screen = QGuiApplication::primaryScreen())
        area = screen->availableGeometry();
    if (!area.isValid()) return;
    widget->move(area.center() - QPoint(widget->width() / 2, widget->height() / 2));
}

} // namespace vantrel
