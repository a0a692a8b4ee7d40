#include "mainwindow/qt_edit_history.h"

#include "forms/qt_text.h"

#include <QUndoCommand>

#include <algorithm>

namespace vantrel {

// One step: the old and new values of the units it touched, and of the
// header when it changed.
class ValuesCommand : public QUndoCommand {
  public:
    ValuesCommand(EditHistory& history, const std::string& name, UnitChanges changes,
                  HeaderTexts headerBefore = {}, HeaderTexts headerAfter = {})
        : QUndoCommand(QtText(name).replace('&', "&&")), // shown in menus as typed
          history_(history), changes_(std::move(changes)), headerBefore_(std::move(headerBefore)),
          headerAfter_(std::move(headerAfter)) {
        if (changes_.empty()) return;
        auto [low, high] = std::minmax_element(
            changes_.begin(), changes_.end(),
            [](const UnitChange& a, const UnitChange& b) { return a.Unit < b.Unit; });
        first_ = low->Unit;
        last_ = high->Unit;
    }
    // A step of a gesture on one value of one unit.
    ValuesCommand(EditHistory& history, const std::string& name, UnitChange change,
                  UnitField field, int gesture, double at)
        : ValuesCommand(history, name, UnitChanges{change}) {
        field_ = field;
        gesture_ = gesture;
        at_ = at;
    }
    void undo() override { Apply(true); }
    void redo() override { Apply(false); }
    int id() const override { return gesture_ == 0 ? -1 : 1; }
    bool mergeWith(const QUndoCommand* other) override {
        const auto* next = static_cast<const ValuesCommand*>(other);
        // The clock counts from midnight: a step that seems earlier is not near.
        const double gap = next->at_ - at_;
        if (next->gesture_ != gesture_ || next->field_ != field_ ||
            next->changes_.front().Unit != changes_.front().Unit || gap < 0 ||
            gap > EditHistory::MergeSeconds)
            return false;
        changes_.front().After = next->changes_.front().After;
        at_ = next->at_;
        // Stepped away and back: the step changes nothing and goes.
        setObsolete(changes_.front().After == changes_.front().Before);
        return true;
    }

  private:
    void Apply(bool undo) {
        if (headerBefore_ != headerAfter_) history_.SetHeader(undo ? headerBefore_ : headerAfter_);
        if (changes_.empty()) return;
        ApplyChanges(history_.defs_, changes_, undo);
        emit history_.valuesChanged(first_, last_);
    }
    EditHistory& history_;
    UnitChanges changes_;
    HeaderTexts headerBefore_, headerAfter_;
    int first_ = 0;
    int last_ = 0;
    UnitField field_ = UnitField::Weight;
    int gesture_ = 0;
    double at_ = 0;
};

EditHistory::EditHistory(Definitions& defs, Clock& clock, QObject* parent)
    : QObject(parent), defs_(defs), clock_(clock) {
    stack_.setUndoLimit(UndoLimit);
    connect(&stack_, &QUndoStack::indexChanged, this,
            [this] { defs_.Profile.Changed = !stack_.isClean(); });
}

void EditHistory::Record(const std::string& name, UnitChanges changes) {
    if (!AnyDifference(changes)) return;
    // The first redo writes the values the units already have.
    stack_.push(new ValuesCommand(*this, name, std::move(changes)));
}

HeaderTexts EditHistory::Header() const {
    if (!fields_) return {"", "", "", defs_.Profile.ParentAIs};
    return {fields_->AIName(), fields_->Author(), fields_->Banner(), defs_.Profile.ParentAIs};
}

void EditHistory::SetHeader(const HeaderTexts& header) {
    defs_.Profile.ParentAIs = header.ParentAIs;
    if (!fields_) return;
    fields_->SetAIName(header.Name);
    fields_->SetAuthor(header.Author);
    fields_->SetBanner(header.Banner);
}

void EditHistory::Record(const std::string& name, UnitChanges changes,
                         const HeaderTexts& headerBefore) {
    HeaderTexts headerAfter = Header();
    if (headerAfter == headerBefore) return Record(name, std::move(changes));
    if (!AnyDifference(changes)) changes.clear();
    stack_.push(
        new ValuesCommand(*this, name, std::move(changes), headerBefore, std::move(headerAfter)));
}

void EditHistory::RecordEdit(int unit, UnitField field, double before, int gesture) {
    UnitChange change{unit, ValuesOf(defs_.Units[unit]), ValuesOf(defs_.Units[unit])};
    switch (field) {
    case UnitField::Weight:
        change.Before.Weight = static_cast<float>(before);
        break;
    case UnitField::Limit:
        change.Before.Limit = static_cast<float>(before);
        break;
    case UnitField::Include:
        change.Before.Include = before != 0;
        break;
    }
    if (change.Before == change.After) return;
    stack_.push(new ValuesCommand(*this, EditName(defs_, field, change.After.Include, {unit}),
                                  change, field, gesture, clock_.SecondsSinceMidnight()));
}

void EditHistory::Set(const std::vector<int>& units, UnitField field, double value) {
    if (units.empty()) return;
    UnitChanges changes = SetUnitValues(defs_, units, field, value);
    Record(EditName(defs_, field, value != 0, units), std::move(changes));
}

void EditHistory::Reset() {
    const bool changed = defs_.Profile.Changed; // New and Open keep their own rule for the flag
    stack_.clear();
    defs_.Profile.Changed = changed;
    // New and Open wrote every unit outside the history: the views show them anew.
    emit valuesChanged(1, defs_.Units.UBound());
}

} // namespace vantrel
