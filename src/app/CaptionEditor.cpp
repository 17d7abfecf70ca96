#include "app/CaptionEditor.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "app/ListEditorParts.h"
#include "settings/AppSettings.h"

namespace quillet::app {

namespace {

using namespace rows;


constexpr const char* kHAligns[] = {"Left", "Center", "Right"};
constexpr const char* kVAligns[] = {"Top", "Center", "Bottom"};
// In the order of the effect kinds.
constexpr const char* kEffects[] = {"None", "Fade In", "Fly From Left", "Fly From Right", "Fly From Top", "Fly From Bottom"};

constinit const OptionSpec kRows[] = {
    Whole("Size:", 1, 500, 0, "points"), Box("Bold"), Box("Italic"),
    Colour("Colour:"), Whole("Alpha:", 0, 100, 0, "%"),
    Whole("X:", -10000, 10000, 0, "pixels"), Whole("Y:", -10000, 10000, 0, "pixels"),
    Choice("Horizontal:", kHAligns), Choice("Vertical:", kVAligns), Box("Align to the whole stage"),
    Whole("Tracking:", -100, 100, 0, "pixels"), Whole("Leading:", -100, 100, 0, "pixels"),
    SecondsRow("Start:"), SecondsRow("Duration:"), Box("Until the next slide"), Choice("Effect:", kEffects)};

struct Binding {
    double (*get)(const Caption&);
    void (*set)(Caption&, double);
};
#define INT_FIELD(f) {[](const Caption& c) { return double(c.f); }, [](Caption& c, double v) { c.f = int32_t(v); }}
#define BOOL_FIELD(f) {[](const Caption& c) { return double(c.f); }, [](Caption& c, double v) { c.f = v != 0; }}
#define MS_FIELD(f) \
    {[](const Caption& c) { return c.f / 1000.0; }, [](Caption& c, double v) { c.f = uint32_t(v * 1000 + 0.5); }}
constinit const Binding kBind[] = {
    INT_FIELD(fontSize), BOOL_FIELD(bold), BOOL_FIELD(italic),
    {[](const Caption& c) { return double(c.color); }, [](Caption& c, double v) { c.color = uint32_t(v); }},
    INT_FIELD(alpha), INT_FIELD(x), INT_FIELD(y), INT_FIELD(hAlign), INT_FIELD(vAlign), BOOL_FIELD(alignToDoc),
    INT_FIELD(tracking), INT_FIELD(leading), MS_FIELD(startTime), MS_FIELD(duration), BOOL_FIELD(showTillNext),
    {[](const Caption& c) { return double(c.EffectKind()); },
     [](Caption& c, double v) { c.effect = kEffects[std::clamp(int(v), 0, int(std::size(kEffects)) - 1)]; }}};
#undef INT_FIELD
#undef BOOL_FIELD
#undef MS_FIELD
static_assert(std::size(kRows) == std::size(kBind));

QString ListText(const Caption& c) {
    QString text = QString::fromStdString(c.text).simplified();
    if (text.isEmpty()) text = "(no text)";
    return QString("%1 (%2, %3 pt)").arg(text.left(40), QString::fromStdString(c.fontName)).arg(c.fontSize);
}

}  // namespace

CaptionEditor::CaptionEditor(const QString& title, bool ofShow, Edit edit, QWidget* parent)
    : QGroupBox(title, parent), edit_(std::move(edit)), ofShow_(ofShow) {
    auto* box = new QVBoxLayout(this);
    const ListEditorButton actions[] = {{"Add", [this] { addCaption(); }},
                                        {"Remove", [this] { removeCaption(); }},
                                        {"Up", [this] { moveCaption(-1); }},
                                        {"Down", [this] { moveCaption(+1); }}};
    const ListEditorParts parts = AddListEditorParts(this, box, 80, actions);
    list_ = parts.list;
    note_ = parts.note;
    fields_ = parts.fields;
    QVBoxLayout* fields = parts.fieldsLayout;
    auto* top = new QFormLayout;
    text_ = new QPlainTextEdit(fields_);
    text_->setMaximumHeight(60);
    text_->setObjectName("captionText");
    font_ = new QComboBox(fields_);
    font_->setObjectName("captionFont");
    // Qt's family list is fontconfig's on Linux: the fonts the movie can embed.
    font_->addItems(QFontDatabase::families());
    top->addRow("Text:", text_);
    top->addRow("Font:", font_);
    fields->addLayout(top);
    form_ = new OptionForm(fields_);
    form_->setTable(kRows);
    fields->addWidget(form_);

    // The text counts when the field is left, not at every key.
    text_->installEventFilter(this);
    connect(text_, &QPlainTextEdit::textChanged, this, [this] {
        if (!updating_) text_->setProperty("typed", true);
    });
    connect(font_, &QComboBox::currentIndexChanged, this, [this](int at) {
        if (updating_ || at < 0) return;
        const std::string name = font_->itemText(at).toStdString();
        change("Caption Font", [name](Caption& c) { c.fontName = name; });
    });
    connect(form_, &OptionForm::valueEdited, this, [this](int index, double value) {
        const Binding b = kBind[size_t(index)];
        change("Caption " + QString(kRows[size_t(index)].label).remove(':'), [b, value](Caption& c) { b.set(c, value); });
    });
    connect(list_, &QListWidget::currentRowChanged, this, [this] {
        if (!updating_) setCaptions(&shown_);
    });
    setCaptions(nullptr);
}

bool CaptionEditor::eventFilter(QObject* watched, QEvent* event) {
    if (watched == text_ && event->type() == QEvent::FocusOut && text_->property("typed").toBool()) {
        text_->setProperty("typed", false);
        const std::string text = text_->toPlainText().toStdString();
        change("Caption Text", [text](Caption& c) { c.text = text; });
    }
    return QGroupBox::eventFilter(watched, event);
}

void CaptionEditor::change(const QString& what, const std::function<void(Caption&)>& edit) {
    const int at = list_->currentRow();
    if (at < 0 || at >= int(shown_.items.size())) return;
    edit_(what, [at, edit](CaptionList& list) {
        if (at < int(list.items.size())) edit(list.items[size_t(at)]);
    });
}

void CaptionEditor::addCaption() {
    if (!isEnabled()) return;
    const int at = list_->currentRow() + 1;
    list_->setCurrentRow(-1);
    const AppSettings& settings = AppSettings::current();
    Caption c;
    c.text = "Caption";
    c.fontName = ofShow_ ? settings.defaultShowFontName : settings.defaultSlideFontName;
    const FontRecord& font = ofShow_ ? settings.defaultShowFont : settings.defaultSlideFont;
    c.bold = font.weight >= 700;
    c.italic = font.italic != 0;
    edit_("Add Caption", [at, c](CaptionList& list) {
        list.items.insert(list.items.begin() + std::clamp(at, 0, int(list.items.size())), c);
    });
    list_->setCurrentRow(at);
}

void CaptionEditor::removeCaption() {
    const int at = list_->currentRow();
    if (!isEnabled() || at < 0) return;
    edit_("Remove Caption", [at](CaptionList& list) {
        if (at < int(list.items.size())) list.items.erase(list.items.begin() + at);
    });
}

void CaptionEditor::moveCaption(int delta) {
    const int from = list_->currentRow(), to = from + delta;
    if (!isEnabled() || from < 0 || to < 0 || to >= list_->count()) return;
    edit_("Move Caption", [from, to](CaptionList& list) {
        if (std::max(from, to) < int(list.items.size())) std::swap(list.items[size_t(from)], list.items[size_t(to)]);
    });
    list_->setCurrentRow(to);
}

void CaptionEditor::setCaptions(const CaptionList* captions, const QString& why) {
    updating_ = true;
    if (captions != &shown_) shown_ = captions ? *captions : CaptionList{};
    const int keep = list_->currentRow();
    list_->clear();
    for (const Caption& c : shown_.items) list_->addItem(ListText(c));
    list_->setCurrentRow(std::min(keep < 0 ? 0 : keep, list_->count() - 1));
    setEnabled(captions != nullptr);
    note_->setText(why);
    note_->setVisible(!why.isEmpty());
    const int at = list_->currentRow();
    fields_->setVisible(at >= 0);
    if (at >= 0) {
        const Caption& c = shown_.items[size_t(at)];
        if (!text_->hasFocus() || !text_->property("typed").toBool()) text_->setPlainText(QString::fromStdString(c.text));
        text_->setProperty("typed", false);
        int font = font_->findText(QString::fromStdString(c.fontName));
        if (font < 0) {  // not installed here: shown as it is, the movie falls back
            font_->addItem(QString::fromStdString(c.fontName));
            font = font_->count() - 1;
        }
        font_->setCurrentIndex(font);
        std::vector<std::optional<double>> values;
        for (const Binding& b : kBind) values.push_back(b.get(c));
        form_->setValues(values);
    }
    updating_ = false;
}

}  // namespace quillet::app
