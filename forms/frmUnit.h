// The unit card: one unit's name, picture, build priority and number
// produced, with two sliders and two entry fields. The card holds only the
// unit's index; every value it shows is read from, and every edit written
// to, the unit record in Definitions.
#pragma once

#include "catalogue/definitions.h"
#include "forms/unit_card_rules.h"
#include "mainwindow/unit_edits.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QFrame;
class QLabel;
class QLineEdit;
class QSlider;

namespace vantrel {

class frmUnit : public QWidget {
    Q_OBJECT
  public:
    explicit frmUnit(Definitions& defs, QWidget* parent = nullptr);

    int UnitIndex = 0;

    QFrame* Frame1 = nullptr;
    QLineEdit* txtWeight = nullptr;
    QLineEdit* txtLimit = nullptr;
    QLabel* lblExclude = nullptr;
    QLabel* lblPriority = nullptr;
    QLabel* lblLimit = nullptr;
    QLabel* lblWeight = nullptr;
    QLabel* lblUnitName = nullptr;
    QLabel* lblNumbers = nullptr;
    QLabel* imgUnit = nullptr;
    QFrame* Line1 = nullptr;
    QSlider* sldPriority = nullptr;
    QSlider* sldNumbers = nullptr;

    // The manual edit's input box: title and prompt in, the answer out
    // (nullopt when cancelled). Without it the double-click does nothing.
    std::function<std::optional<std::string>(const std::string& title, const std::string& prompt)>
        InputBox;

    // Called once for every value the player commits (a slider released, a
    // key, a wheel step, a typed value) with the value before the edit.
    std::function<void(int unitIndex, UnitField field, double before)> OnValueCommitted;
    // Shows the unit's present values after a change made elsewhere (the unit
    // table, undo); writes nothing.
    void ShowValues();

    // The Load handler: left edge 0, entry fields hidden, value labels from
    // the unit at UnitIndex.
    void Load();
    // The board's fill of a new card: unit index, name, picture and tooltip,
    // slider values (their notifications write the unit), labels not bold.
    void Fill(int unitIndex, const QPixmap& picture);
    // Shows a unit whose values the board has already brought into step
    // (no notification runs): used when a card is reused for another row.
    struct View {
        bool excluded = false;   // the last activation showed the excluded notice
        bool selfHidden = false; // the card hid itself (its name was never filled)
    };
    void Show(int unitIndex, const QPixmap& picture, View view);
    View CurrentView() const { return view_; }

    void Activate();
    void Deactivate();
    bool IsActive() const { return active_; }
    bool Contains(const QWidget* w) const;

    static QColor ActiveCaptionColor();
    static QColor InactiveCaptionColor();
    static QColor ButtonFaceColor();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void OnPriorityChanged(int value);
    void OnNumbersChanged(int value);
    // An edit of one value runs from BeginEdit to EndEdit, however many
    // slider notifications it takes.
    void BeginEdit(UnitField field);
    void EndEdit(UnitField field);
    bool SliderKey(QSlider* slider, int keyCode);
    bool EntryKey(QLineEdit* field, QKeyEvent* key);
    void CommitWeight(bool enter);
    void CommitLimit(bool enter);
    void ManualEdit();
    void OnFocusChanged(QWidget* old, QWidget* now);
    void SetLook(bool active);
    void SetValuesBold(bool bold);
    void SetIncludedView(bool included);
    void SetSliders(const SliderSettings& priority, const SliderSettings& numbers);
    void ShowUnitValues();
    vtUnit& Unit();

    void SetValueCaption(QLabel* label, const std::string& text);

    Definitions& defs_;
    CardLayout layout_;
    bool active_ = false;
    View view_;
    std::optional<double> editBefore_[2]; // Weight, Limit: value when the edit began
    bool keying_ = false;
};

} // namespace vantrel
