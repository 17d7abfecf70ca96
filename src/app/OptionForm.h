// A form for any option table (a transition's, a camera move's, a filter's):
// one row per option with a control, built from the table alone. Lists are
// combo boxes in index order, numbers spin boxes with the row's range,
// decimals and trailing label, booleans check boxes (a negated row is
// inverted in the file, not on the box), colours a "#RRGGBB" field with a chooser. A value typed outside
// what the row allows is refused with a message that says what is allowed.
#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "options/OptionTable.h"

class QFormLayout;
class QLabel;

// The rows the panels declare their own fields with.
namespace quillet::app::rows {

constexpr OptionSpec Whole(const char* label, double lo, double hi, double def = 0, const char* unit = "") {
    return {.kind = OptionKind::Integer, .label = label, .defaultValue = def, .minValue = lo, .maxValue = hi,
            .trailingLabel = unit};
}
constexpr OptionSpec Box(const char* label) { return {.kind = OptionKind::Bool, .label = label}; }
constexpr OptionSpec Choice(const char* label, NameList items) {
    return {.kind = OptionKind::List, .label = label, .items = items};
}
constexpr OptionSpec Colour(const char* label) { return {.kind = OptionKind::Color, .label = label}; }
constexpr OptionSpec SecondsRow(const char* label, double max = 3600, double def = 0) {
    return {.kind = OptionKind::Real, .label = label, .defaultValue = def, .minValue = 0, .maxValue = max,
            .decimals = 2, .trailingLabel = "seconds"};
}

}  // namespace quillet::app::rows

namespace quillet::app {

class OptionForm : public QWidget {
    Q_OBJECT
public:
    explicit OptionForm(QWidget* parent = nullptr);

    // Builds one row per option that has a label; the rest (kept in memory
    // only) get none. The values start at the defaults.
    void setTable(OptionTable table);
    OptionTable table() const { return table_; }
    // Shows the values in the units of the controls; an empty entry shows
    // the field as mixed (left alone until the user edits it).
    void setValues(const std::vector<std::optional<double>>& values);
    // The value control of option `index`; null when it has none. Controls
    // and labels carry the row's control ids as object names ("10003").
    QWidget* control(size_t index) const;
    // The last refusal ("" while the entries are acceptable).
    QString message() const;

signals:
    // The user set option `index` to `value` (already valid for its row).
    void valueEdited(int index, double value);

private:
    void edited(size_t index, double value);
    void refuse(const QString& text);

    OptionTable table_;
    QFormLayout* form_ = nullptr;
    QLabel* message_ = nullptr;
    std::vector<QWidget*> controls_;
    std::vector<std::optional<double>> shown_;
    bool updating_ = false;
};

// "#RRGGBB" for a colour kept as 0x00BBGGRR, and back; false for other text.
QString ColorText(uint32_t bgr);
bool ColorFromText(const QString& text, uint32_t& bgr);

}  // namespace quillet::app
