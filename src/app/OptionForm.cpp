#include "app/OptionForm.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>
#include <cmath>
#include <functional>

namespace quillet::app {

namespace {

// A spin box that lets any number be typed, so that one outside the range
// can be refused with a message instead of being swallowed key by key.
template <class Base>
class CheckedSpin : public Base {
public:
    using Base::Base;
    std::function<void(const QString&)> refused;
    bool typed = false;              // edited by keyboard since the value was last shown
    mutable bool refusedNow = false;  // the entry just finished was refused

    QLineEdit* edit() const { return Base::lineEdit(); }
    QValidator::State validate(QString& input, int& pos) const override {
        const QValidator::State state = Base::validate(input, pos);
        bool number = false;
        Base::locale().toDouble(input.trimmed(), &number);
        return state == QValidator::Invalid && number ? QValidator::Intermediate : state;
    }
    void fixup(QString& input) const override {
        refusedNow = !input.trimmed().isEmpty();
        if (refusedNow && refused) refused(input.trimmed());
        Base::fixup(input);
    }
};
using IntSpin = CheckedSpin<QSpinBox>;
using RealSpin = CheckedSpin<QDoubleSpinBox>;

const QString kMixed = "(mixed)";

QString Number(double v, int decimals) { return QString::number(v, 'f', decimals); }

}  // namespace

QString ColorText(uint32_t bgr) {
    const uint32_t rgb = ((bgr & 0xFF) << 16) | (bgr & 0xFF00) | ((bgr >> 16) & 0xFF);
    return QString("#%1").arg(rgb, 6, 16, QChar('0')).toUpper();
}

bool ColorFromText(const QString& text, uint32_t& bgr) {
    const QString t = text.trimmed();
    if (t.size() != 7 || !t.startsWith('#')) return false;
    bool ok = false;
    const uint32_t rgb = t.mid(1).toUInt(&ok, 16);
    if (!ok) return false;
    bgr = ((rgb & 0xFF) << 16) | (rgb & 0xFF00) | ((rgb >> 16) & 0xFF);
    return true;
}

OptionForm::OptionForm(QWidget* parent) : QWidget(parent) {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    form_ = new QFormLayout;
    outer->addLayout(form_);
    message_ = new QLabel(this);
    message_->setStyleSheet("color: #b00000");
    message_->setWordWrap(true);
    message_->hide();
    outer->addWidget(message_);
}

QWidget* OptionForm::control(size_t index) const { return index < controls_.size() ? controls_[index] : nullptr; }

QString OptionForm::message() const { return message_->isVisible() ? message_->text() : QString(); }

void OptionForm::refuse(const QString& text) {
    message_->setText(text);
    message_->setVisible(!text.isEmpty());
}

void OptionForm::edited(size_t index, double value) {
    if (updating_ || index >= shown_.size()) return;
    if (shown_[index] && *shown_[index] == value) return;
    shown_[index] = value;
    refuse({});
    emit valueEdited(int(index), value);
}

void OptionForm::setTable(OptionTable table) {
    while (form_->rowCount() > 0) form_->removeRow(0);
    controls_.assign(table.size(), nullptr);
    table_ = table;
    refuse({});
    shown_.clear();
    updating_ = true;  // building the controls (a range that moves a value) is no edit
    for (size_t i = 0; i < table.size(); ++i) {
        const OptionSpec& row = table[i];
        if (!*row.label) continue;
        const QString label = QString::fromUtf8(row.label);
        QWidget* control = nullptr;
        QWidget* field = nullptr;
        switch (row.kind) {
            case OptionKind::List: {
                auto* box = new QComboBox(this);
                for (const char* item : row.items) box->addItem(QString::fromUtf8(item));
                connect(box, &QComboBox::currentIndexChanged, this, [this, i](int at) {
                    if (at >= 0) edited(i, at);
                });
                control = field = box;
                break;
            }
            case OptionKind::Integer:
            case OptionKind::Real: {
                const bool whole = row.kind == OptionKind::Integer;
                const QString allowed = QString(whole ? "Enter a whole number from %1 to %2." : "Enter a number from %1 to %2.")
                                            .arg(Number(row.minValue, whole ? 0 : row.decimals),
                                                 Number(row.maxValue, whole ? 0 : row.decimals));
                auto refused = [this, allowed](const QString& typed) { refuse("\"" + typed + "\": " + allowed); };
                // Typed entries count when Enter or leaving the field finishes
                // them (a same-value entry over "mixed" too); arrows at once.
                auto wire = [this, i, refused](auto* s, auto valueChanged) {
                    using Spin = std::remove_pointer_t<decltype(s)>;
                    s->refused = refused;
                    connect(s, valueChanged, this, [this, i](auto v) { edited(i, v); });
                    connect(s->edit(), &QLineEdit::textEdited, s, [s] { s->typed = true; });
                    connect(s, &Spin::editingFinished, this, [this, i, s] {
                        const bool typed = std::exchange(s->typed, false);
                        const bool refusedNow = std::exchange(s->refusedNow, false);
                        if (typed && !refusedNow) edited(i, s->value());
                    });
                    return s;
                };
                QAbstractSpinBox* spin;
                if (whole) {
                    auto* s = wire(new IntSpin(this), &QSpinBox::valueChanged);
                    s->setRange(int(std::max(row.minValue, -2147483648.0)), int(std::min(row.maxValue, 2147483647.0)));
                    spin = s;
                } else {
                    auto* s = wire(new RealSpin(this), &QDoubleSpinBox::valueChanged);
                    s->setDecimals(row.decimals);
                    s->setRange(row.minValue, row.maxValue);
                    spin = s;
                }
                spin->setKeyboardTracking(false);
                spin->setToolTip(allowed);
                control = spin;
                if (*row.trailingLabel) {
                    field = new QWidget(this);
                    auto* line = new QHBoxLayout(field);
                    line->setContentsMargins(0, 0, 0, 0);
                    line->addWidget(spin);
                    line->addWidget(new QLabel(QString::fromUtf8(row.trailingLabel), field));
                    line->addStretch();
                } else {
                    field = spin;
                }
                break;
            }
            case OptionKind::Bool: {
                auto* box = new QCheckBox(label, this);
                // The value is what the box shows; a negated row is inverted on saving.
                connect(box, &QCheckBox::stateChanged, this, [this, i, box](int state) {
                    if (state == Qt::PartiallyChecked) return;
                    box->setTristate(false);
                    edited(i, state == Qt::Checked ? 1 : 0);
                });
                control = field = box;
                break;
            }
            case OptionKind::Color: {
                field = new QWidget(this);
                auto* line = new QHBoxLayout(field);
                line->setContentsMargins(0, 0, 0, 0);
                auto* text = new QLineEdit(field);
                text->setPlaceholderText("#RRGGBB");
                text->setMaximumWidth(90);
                auto* swatch = new QToolButton(field);
                swatch->setText("...");
                line->addWidget(text);
                line->addWidget(swatch);
                line->addStretch();
                connect(text, &QLineEdit::editingFinished, this, [this, i, text] {
                    if (text->text().trimmed().isEmpty() && !shown_[i]) return;
                    uint32_t bgr = 0;
                    if (!ColorFromText(text->text(), bgr)) {
                        refuse("\"" + text->text() + "\": Enter a colour as #RRGGBB, for example #FF8000.");
                        text->setText(shown_[i] ? ColorText(uint32_t(*shown_[i])) : QString());
                        return;
                    }
                    text->setText(ColorText(bgr));
                    edited(i, bgr);
                });
                connect(swatch, &QToolButton::clicked, this, [this, i, text, label] {
                    uint32_t bgr = 0;
                    ColorFromText(text->text(), bgr);
                    const QColor start(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
                    const QColor chosen = QColorDialog::getColor(start, this, label);
                    if (!chosen.isValid()) return;
                    const uint32_t picked = uint32_t(chosen.red()) | uint32_t(chosen.green()) << 8 | uint32_t(chosen.blue()) << 16;
                    text->setText(ColorText(picked));
                    edited(i, picked);
                });
                control = text;
                break;
            }
        }
        controls_[i] = control;
        // The control ids of the row name the widgets, so they can be found as numbered.
        if (row.controlId) control->setObjectName(QString::number(row.controlId));
        if (row.kind == OptionKind::Bool) {
            form_->addRow(field);
        } else {
            auto* text = new QLabel(label, this);
            if (row.labelId) text->setObjectName(QString::number(row.labelId));
            text->setBuddy(control);
            form_->addRow(text, field);
        }
    }
    std::vector<std::optional<double>> defaults;
    for (const OptionSpec& row : table) defaults.push_back(row.defaultValue);
    setValues(defaults);
}

void OptionForm::setValues(const std::vector<std::optional<double>>& values) {
    updating_ = true;
    shown_.assign(table_.size(), std::nullopt);
    for (size_t i = 0; i < table_.size() && i < values.size(); ++i) {
        shown_[i] = values[i];
        QWidget* c = controls_[i];
        const std::optional<double> v = values[i];
        if (auto* box = qobject_cast<QComboBox*>(c)) {
            box->setPlaceholderText(v ? QString() : kMixed);
            box->setCurrentIndex(v ? int(*v) : -1);
        } else if (auto* s = dynamic_cast<IntSpin*>(c)) {
            // Mixed shows as the special text at the bottom of the range.
            s->typed = false;
            s->setSpecialValueText(v ? QString() : kMixed);
            s->setValue(v ? int(*v) : s->minimum());
        } else if (auto* r = dynamic_cast<RealSpin*>(c)) {
            r->typed = false;
            r->setSpecialValueText(v ? QString() : kMixed);
            r->setValue(v ? *v : r->minimum());
        } else if (auto* check = qobject_cast<QCheckBox*>(c)) {
            check->setTristate(!v);
            check->setCheckState(!v ? Qt::PartiallyChecked : (*v != 0 ? Qt::Checked : Qt::Unchecked));
        } else if (auto* text = qobject_cast<QLineEdit*>(c)) {
            text->setText(v ? ColorText(uint32_t(*v)) : QString());
            text->setPlaceholderText(v ? "#RRGGBB" : kMixed);
        }
    }
    updating_ = false;
}

}  // namespace quillet::app
