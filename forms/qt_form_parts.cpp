#include "forms/qt_form_parts.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>

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

void NewOkCancel(QWidget* parent, QPushButton*& ok, QPushButton*& cancel) {
    ok = new QPushButton("&OK", parent);
    ok->setObjectName("cmdOK");
    ok->setDefault(true);
    cancel = new QPushButton("&Cancel", parent);
    cancel->setObjectName("cmdCancel");
    cancel->setAutoDefault(false);
}

QHBoxLayout* ButtonRow(QPushButton* ok, QPushButton* cancel) {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

} // namespace vantrel
