// The unit card: one unit's name, picture, build priority and number
// produced, with two sliders and two entry fields. The card holds only the
// unit's index; every value it shows is read from, and every edit written
// to, the unit record in Definitions.
#pragma once

#include "catalogue/definitions.h"
#include "forms/unit_card_rules.h"
#include "forms/unit_edits.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QFrame;
class QLabel;
class QLineEdit;
class QSlider;
class QWheelEvent;

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
    // Shows a unit as it is: name, picture, tooltip, values, the excluded
    // notice of an excluded unit, inactive look. Never writes the unit; a
    // value above the slider's maximum shows with the slider at its end.
    struct View {
        bool selfHidden = false; // the card hid itself (its name was never filled)
    };
    void Show(int unitIndex, const QPixmap& picture, View view);
    void Show(int unitIndex, const QPixmap& picture) { Show(unitIndex, picture, View()); }
    View CurrentView() const { return view_; }

    void Activate();
    void Deactivate();
    bool IsActive() const { return active_; }
    bool Contains(const QWidget* w) const;

    // The player's edits (slider drag, wheel and keys, entry fields, manual
    // edit) end here: the one place the card writes each value of its unit.
    // Weight from a priority position in hundredths, Limit from a whole number.
    void EditWeight(int position);
    void EditLimit(int limit);

    // Ctrl+Down, Ctrl+Up, Ctrl+Home, Ctrl+End anywhere on the card (set by the board).
    std::function<void(CardStep)> Navigate;
    // Where the wheel goes that a slider may not take (set by the board).
    std::function<void(QWheelEvent*)> PassWheel;

    static QColor ActiveCaptionColor();
    static QColor ActiveTitleColor();
    static QColor InactiveCaptionColor();
    static QColor ButtonFaceColor();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    // An edit of one value runs from BeginEdit to EndEdit, however many
    // slider notifications it takes.
    void BeginEdit(UnitField field);
    void EndEdit(UnitField field);
    bool SliderKey(QSlider* slider, int keyCode);
    bool EntryKey(QLineEdit* field, QKeyEvent* key);
    bool NavigationKey(const QKeyEvent* key);
    void CommitWeight(bool enter);
    void CommitLimit(bool enter);
    void ManualEdit();
    void OnFocusChanged(QWidget* old, QWidget* now);
    void SetLook(bool active);
    void SetValuesBold(bool bold);
    void SetIncludedView(bool included);
    void SetSliders(const SliderSettings& priority, const SliderSettings& numbers);
    // The unit's values on the labels, fields and sliders (no notification).
    void ShowWeight();
    void ShowLimit();
    void ShowValue(QSlider* slider, QLabel* label, QLineEdit* field, float value, int position);
    vtUnit& Unit();

    void SetValueCaption(QLabel* label, const std::string& text);

    Definitions& defs_;
    CardLayout layout_;
    bool active_ = false;
    int wheelTurn_ = 0; // wheel turn short of a whole notch (1/8 degrees)
    View view_;
    std::optional<double> editBefore_[2]; // Weight, Limit: value when the edit began
    bool changedBefore_ = false;          // the unsaved-changes flag then
};

} // namespace vantrel
