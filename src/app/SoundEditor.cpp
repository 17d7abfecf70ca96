#include "app/SoundEditor.h"

#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "app/ListEditorParts.h"
#include "app/Prompts.h"
#include "media/SoundPresets.h"

namespace quillet::app {

namespace {

using namespace rows;


constinit const OptionSpec kSwitchRows[] = {Box("Play sound"), Box("Play until the next sound")};

constexpr size_t kQualityRow = 6;

struct Binding {
    double (*get)(const SoundClip&);
    void (*set)(SoundClip&, double);
};

// The preset whose rate and bit rate the sound has; "Custom" when none.
int PresetOf(const SoundClip& c) {
    const auto presets = SoundPresets();
    for (size_t i = 0; i < presets.size(); ++i)
        if (presets[i].isPreset && presets[i].sampleRate == c.sampleRate && presets[i].bitRate == c.bitRate) return int(i);
    return 0;
}

// The clip rows: their list items come from the preset and rate tables.
OptionTable ClipRows() {
    static const std::vector<const char*> presets = [] {
        std::vector<const char*> out;
        for (const SoundPreset& p : SoundPresets()) out.push_back(p.label);
        return out;
    }();
    static const std::vector<std::string> rateTexts = [] {
        std::vector<std::string> out;
        for (int r : SoundSampleRates()) out.push_back(std::to_string(r) + " Hz");
        return out;
    }();
    static const std::vector<const char*> rates = [] {
        std::vector<const char*> out;
        for (const std::string& t : rateTexts) out.push_back(t.c_str());
        return out;
    }();
    static const OptionSpec rows[] = {
        SecondsRow("Start:", 36000),
        SecondsRow("Duration:", 36000),
        Box("Play the entire sound"),
        Box("Loop"),
        Box("Sync"),
        Box("Stereo"),
        {.kind = OptionKind::List, .label = "Quality:", .items = presets},
        {.kind = OptionKind::List, .label = "Sample rate:", .items = rates},
        {.kind = OptionKind::Integer, .label = "Bit rate:", .defaultValue = 128, .minValue = 8, .maxValue = 320,
         .trailingLabel = "kbit/s"}};
    return rows;
}

#define BOOL_FIELD(f) {[](const SoundClip& c) { return double(c.f); }, [](SoundClip& c, double v) { c.f = v != 0; }}
#define MS_FIELD(f) \
    {[](const SoundClip& c) { return c.f / 1000.0; }, [](SoundClip& c, double v) { c.f = uint32_t(v * 1000 + 0.5); }}
constinit const Binding kClipBind[] = {
    MS_FIELD(startTime), MS_FIELD(duration), BOOL_FIELD(playEntireSound), BOOL_FIELD(loop), BOOL_FIELD(sync),
    BOOL_FIELD(stereo),
    // Choosing a preset sets the rate and the bit rate; "Custom" leaves them.
    {[](const SoundClip& c) { return double(PresetOf(c)); },
     [](SoundClip& c, double v) {
         const auto presets = SoundPresets();
         const size_t i = size_t(std::clamp(int(v), 0, int(presets.size()) - 1));
         if (!presets[i].isPreset) return;
         c.sampleRate = presets[i].sampleRate;
         c.bitRate = presets[i].bitRate;
     }},
    {[](const SoundClip& c) {
         const auto rates = SoundSampleRates();
         const auto at = std::find(rates.begin(), rates.end(), c.sampleRate);
         return double(at == rates.end() ? 0 : at - rates.begin());
     },
     [](SoundClip& c, double v) {
         const auto rates = SoundSampleRates();
         c.sampleRate = rates[size_t(std::clamp(int(v), 0, int(rates.size()) - 1))];
     }},
    {[](const SoundClip& c) { return double(c.bitRate); }, [](SoundClip& c, double v) { c.bitRate = int32_t(v); }}};
#undef BOOL_FIELD
#undef MS_FIELD

}  // namespace

QString SoundFilterText() {
    QStringList parts;
    for (const quillet::SoundFileFilter& f : SoundFileFilters()) {
        const QString patterns = QString(f.patterns).replace(';', ' ');
        const QString label = f.label;
        // Qt reads the patterns from the parentheses; a label that shows them already keeps its text.
        parts << (label.contains('(') ? label : QString("%1 (%2)").arg(label, patterns));
    }
    return parts.join(";;");
}

SoundEditor::SoundEditor(const QString& title, Edit edit, QWidget* parent)
    : QGroupBox(title, parent), edit_(std::move(edit)) {
    auto* box = new QVBoxLayout(this);
    switches_ = new OptionForm(this);
    switches_->setTable(kSwitchRows);
    box->addWidget(switches_);
    const ListEditorButton actions[] = {{"Add...", [this] { addSound(); }}, {"Remove", [this] { removeSound(); }}};
    const ListEditorParts parts = AddListEditorParts(this, box, 70, actions);
    list_ = parts.list;
    note_ = parts.note;
    fields_ = parts.fields;
    QVBoxLayout* fields = parts.fieldsLayout;
    auto* fileRow = new QHBoxLayout;
    file_ = new QLineEdit(fields_);
    file_->setObjectName("soundFile");
    auto* browse = new QPushButton("Browse...", fields_);
    fileRow->addWidget(new QLabel("File:", fields_));
    fileRow->addWidget(file_, 1);
    fileRow->addWidget(browse);
    fields->addLayout(fileRow);
    clip_ = new OptionForm(fields_);
    clip_->setTable(ClipRows());
    fields->addWidget(clip_);

    connect(switches_, &OptionForm::valueEdited, this, [this](int index, double value) {
        edit_(index == 0 ? "Play Sound" : "Play Until Next Sound", [index, value](SlideSound& s) {
            (index == 0 ? s.include : s.playUntilNextSound) = value != 0;
        });
    });
    connect(clip_, &OptionForm::valueEdited, this, [this](int index, double value) {
        const Binding b = kClipBind[size_t(index)];
        change("Sound " + QString(ClipRows()[size_t(index)].label).remove(':'), [b, value](SoundClip& c) { b.set(c, value); });
    });
    connect(file_, &QLineEdit::editingFinished, this, [this] {
        if (updating_ || file_->text().isEmpty()) return;
        const std::string path = file_->text().toStdString();
        change("Sound File", [path](SoundClip& c) { c.src = path; });
    });
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString path = prompts().chooseOpenPath(this, "Choose a sound", SoundFilterText());
        if (path.isEmpty()) return;
        const std::string chosen = path.toStdString();
        change("Sound File", [chosen](SoundClip& c) { c.src = chosen; });
    });
    connect(list_, &QListWidget::currentRowChanged, this, [this] {
        if (!updating_) setSound(&shown_);
    });
    setSound(nullptr);
}

void SoundEditor::change(const QString& what, const std::function<void(SoundClip&)>& edit) {
    const int at = list_->currentRow();
    if (at < 0 || at >= int(shown_.sounds.size())) return;
    edit_(what, [at, edit](SlideSound& s) {
        if (at < int(s.sounds.size())) edit(s.sounds[size_t(at)]);
    });
}

void SoundEditor::addSound() {
    if (!isEnabled()) return;
    const QString path = prompts().chooseOpenPath(this, "Choose a sound", SoundFilterText());
    if (!path.isEmpty()) addSound(path);
}

void SoundEditor::addSound(const QString& path) {
    const int at = list_->currentRow() + 1;
    const std::string src = path.toStdString();
    list_->setCurrentRow(-1);
    // Adding a sound switches sound on.
    edit_("Add Sound", [at, src](SlideSound& s) {
        SoundClip clip;
        clip.src = src;
        s.sounds.insert(s.sounds.begin() + std::clamp(at, 0, int(s.sounds.size())), clip);
        s.include = true;
    });
    list_->setCurrentRow(at);
}

void SoundEditor::removeSound() {
    const int at = list_->currentRow();
    if (!isEnabled() || at < 0) return;
    edit_("Remove Sound", [at](SlideSound& s) {
        if (at < int(s.sounds.size())) s.sounds.erase(s.sounds.begin() + at);
    });
}

void SoundEditor::setSound(const SlideSound* sound, const QString& why) {
    updating_ = true;
    if (sound != &shown_) shown_ = sound ? *sound : SlideSound{};
    const int keep = list_->currentRow();
    list_->clear();
    for (const SoundClip& c : shown_.sounds) list_->addItem(QFileInfo(QString::fromStdString(c.src)).fileName());
    list_->setCurrentRow(std::min(keep < 0 ? 0 : keep, list_->count() - 1));
    setEnabled(sound != nullptr);
    note_->setText(why);
    note_->setVisible(!why.isEmpty());
    switches_->setValues({double(shown_.include), double(shown_.playUntilNextSound)});
    const int at = list_->currentRow();
    fields_->setVisible(at >= 0);
    if (at >= 0) {
        const SoundClip& c = shown_.sounds[size_t(at)];
        file_->setText(QString::fromStdString(c.src));
        std::vector<std::optional<double>> values;
        for (const Binding& b : kClipBind) values.push_back(b.get(c));
        // Presets with the same values ("Very High", "Near-CD Quality"): the one chosen stays shown.
        const auto* quality = qobject_cast<QComboBox*>(clip_->control(kQualityRow));
        const int shown = quality ? quality->currentIndex() : -1;
        const auto presets = SoundPresets();
        if (shown > 0 && size_t(shown) < presets.size() && presets[size_t(shown)].sampleRate == c.sampleRate &&
            presets[size_t(shown)].bitRate == c.bitRate)
            values[kQualityRow] = shown;
        clip_->setValues(values);
    }
    updating_ = false;
}

}  // namespace quillet::app
