#include "forms/frmOptions.h"

#include "forms/qt_folder_picker.h"
#include "forms/qt_form_parts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>

namespace vantrel {

namespace {
// The character a key press types, as the per-character filter sees it, or -1
// for keys that type nothing and act as usual: Delete, the arrows, Home, End,
// select all, copy, cut and undo, and Tab, Enter and Escape, which move the
// focus or belong to the dialog's default and cancel buttons. Backspace types
// character 8; paste types character 22 and is refused with the rest.
int TypedCharacter(const QKeyEvent& key) {
    if (key.matches(QKeySequence::SelectAll) || key.matches(QKeySequence::Copy) ||
        key.matches(QKeySequence::Cut) || key.matches(QKeySequence::Undo) ||
        key.matches(QKeySequence::Redo))
        return -1;
    switch (key.key()) {
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Delete:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return -1;
    default:
        break;
    }
    const QString text = key.text();
    return text.size() == 1 ? text.at(0).unicode() : -1;
}

QLabel* NewLabel(QWidget* parent, const char* name, const char* caption) {
    auto* label = new QLabel(caption, parent);
    label->setObjectName(name);
    return label;
}
} // namespace

frmOptions::frmOptions(Definitions& defs, SettingsStore& store, QWidget* parent)
    : QDialog(parent), defs_(defs), store_(store),
      desktopPicker_(std::make_unique<QtFolderPicker>(this)), picker_(desktopPicker_.get()) {
    setObjectName("frmOptions");
    setWindowTitle("Options");
    setModal(true);

    auto numberBox = [this](const char* name, QWidget* frame) {
        auto* box = new QLineEdit(frame);
        box->setObjectName(name);
        box->setMaxLength(OptionTextMaxLength);
        box->setMaximumWidth(48);
        box->installEventFilter(this);
        return box;
    };

    Frame1 = new QGroupBox("Difficulty Options", this);
    Frame1->setObjectName("Frame1");
    auto* grid1 = new QGridLayout(Frame1);
    const char* levels[3][2] = {{"Label1", "Easy"}, {"Label3", "Medium"}, {"Label5", "Hard"}};
    const char* boxes1[3] = {"txtEasy", "txtMedium", "txtHard"};
    QLineEdit** targets1[3] = {&txtEasy, &txtMedium, &txtHard};
    for (int r = 0; r < 3; ++r) {
        QLabel* caption = NewLabel(Frame1, levels[r][0], levels[r][1]);
        const std::string percentName = "Label" + std::to_string(2 * r + 2);
        QLabel* percent = NewLabel(Frame1, percentName.c_str(), "% of overall values");
        *targets1[r] = numberBox(boxes1[r], Frame1);
        Label[static_cast<std::size_t>(2 * r + 1)] = caption;
        Label[static_cast<std::size_t>(2 * r + 2)] = percent;
        grid1->addWidget(caption, r, 0);
        grid1->addWidget(*targets1[r], r, 1);
        grid1->addWidget(percent, r, 2);
    }

    Frame2 = new QGroupBox("Slider Options", this);
    Frame2->setObjectName("Frame2");
    auto* grid2 = new QGridLayout(Frame2);
    Label[7] = NewLabel(Frame2, "Label7", "Build Priority Maximum");
    Label[8] = NewLabel(Frame2, "Label8", "Unit Numbers Maximum");
    txtWeightMax = numberBox("txtWeightMax", Frame2);
    txtLimitMax = numberBox("txtLimitMax", Frame2);
    grid2->addWidget(Label[7], 0, 0);
    grid2->addWidget(txtWeightMax, 0, 1);
    grid2->addWidget(Label[8], 1, 0);
    grid2->addWidget(txtLimitMax, 1, 1);
    grid2->setColumnStretch(2, 1);

    Frame3 = new QGroupBox("During Startup...", this);
    Frame3->setObjectName("Frame3");
    auto* box3 = new QVBoxLayout(Frame3);
    chkLoad = new QCheckBox("Look for new units? ", Frame3);
    chkLoad->setObjectName("chkLoad");
    chkRandom = new QCheckBox("Randomize unit settings?", Frame3);
    chkRandom->setObjectName("chkRandom");
    const GameFolderRow gameRow = NewGameFolderRow(Frame3, "Game folder");
    lblGameDir = gameRow.label;
    txtGameDir = gameRow.field;
    txtGameDir->setToolTip("Where the game is installed; empty: search for it");
    cmdBrowse = gameRow.browse;
    box3->addWidget(chkLoad);
    box3->addWidget(chkRandom);
    box3->addLayout(gameRow.layout);

    NewOkCancel(this, cmdOK, cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Frame1);
    layout->addWidget(Frame2);
    layout->addWidget(Frame3);
    layout->addLayout(ButtonRow(cmdOK, cmdCancel));
    FixedAndCentred(this);

    QWidget* order[] = {txtEasy,   txtMedium, txtHard,   txtWeightMax, txtLimitMax, cmdOK,
                        cmdCancel, chkLoad,   chkRandom, txtGameDir,   cmdBrowse};
    for (std::size_t i = 0; i + 1 < std::size(order); ++i)
        QWidget::setTabOrder(order[i], order[i + 1]);

    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::OnOK);
    connect(cmdCancel, &QPushButton::clicked, this, &frmOptions::reject);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmOptions::OnBrowse);

    // Load: the current options, and the stored game folder (the folder found
    // at start-up is offered as a hint when none is stored).
    const OptionsInput input = LoadOptionsInput(defs_, store_);
    const auto boxes = NumberBoxes();
    for (std::size_t i = 0; i < boxes.size(); ++i)
        boxes[i]->setText(ToLatin1Text(input.Numbers[i]));
    chkLoad->setChecked(input.Load);
    chkRandom->setChecked(input.Random);
    txtGameDir->setText(QString::fromStdString(input.GameDir));
    txtGameDir->setPlaceholderText(QString::fromStdString(defs_.GameDir));
}

frmOptions::~frmOptions() = default;

std::array<QLineEdit*, 5> frmOptions::NumberBoxes() const {
    return {txtEasy, txtMedium, txtHard, txtWeightMax, txtLimitMax};
}

void frmOptions::SetFolderPicker(FolderPicker* picker) {
    picker_ = picker ? picker : desktopPicker_.get();
}

OptionsInput frmOptions::Input() const {
    OptionsInput input;
    const auto boxes = NumberBoxes();
    for (std::size_t i = 0; i < boxes.size(); ++i)
        input.Numbers[i] = FromLatin1Text(boxes[i]->text());
    input.Load = chkLoad->isChecked();
    input.Random = chkRandom->isChecked();
    input.GameDir = txtGameDir->text().toStdString();
    return input;
}

bool frmOptions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto boxes = NumberBoxes();
        if (std::find(boxes.begin(), boxes.end(), watched) != boxes.end()) {
            const int typed = TypedCharacter(*static_cast<QKeyEvent*>(event));
            if (typed >= 0 && !OptionKeyAccepted(typed)) return true; // refused
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmOptions::OnBrowse() {
    std::string start = txtGameDir->text().toStdString();
    if (start.empty()) start = defs_.GameDir;
    if (auto folder = picker_->PickFolder("Game folder", start))
        txtGameDir->setText(QString::fromStdString(*folder));
}

void frmOptions::OnOK() {
    AcceptOptions(defs_, Input(), store_);
    accept();
}

} // namespace vantrel
