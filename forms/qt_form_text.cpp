#include "forms/qt_form_text.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace vantrel {

QHBoxLayout* ButtonRow(QPushButton* ok, QPushButton* cancel) {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

} // namespace vantrel
