#include "app/PreferencesDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>
#include <tuple>

#include "app/Prompts.h"

namespace quillet::app {

namespace {

using namespace rows;

constexpr const char* kHAligns[] = {"Left", "Center", "Right"};
constexpr const char* kVAligns[] = {"Top", "Center", "Bottom"};

constinit const OptionSpec kRows[] = {
    Whole("JPEG quality of new slides:", 1, 100), Box("New slides scale to fit the stage"),
    Box("New slides keep their aspect ratio"), Box("New slides align automatically"),
    {.kind = OptionKind::List, .label = "Horizontal alignment:", .items = kHAligns},
    {.kind = OptionKind::List, .label = "Vertical alignment:", .items = kVAligns},
    Box("Adjust the bitmap shift (every slide, at export)"), Box("Read the Exif data of added pictures"),
    Whole("Recent projects listed:", 0, int(RecentList::kMaxCapacity)),
    Whole("Recent pictures listed:", 0, int(RecentList::kMaxCapacity)), Box("Show file paths in full")};
struct Binding {
    double (*get)(const AppSettings&);
    void (*set)(AppSettings&, double);
};
#define INT_FIELD(f) {[](const AppSettings& s) { return double(s.f); }, [](AppSettings& s, double v) { s.f = int(v); }}
#define BOOL_FIELD(f) {[](const AppSettings& s) { return double(s.f); }, [](AppSettings& s, double v) { s.f = v != 0; }}
#define RECENT(f) \
    {[](const AppSettings& s) { return double(s.f.capacity()); }, [](AppSettings& s, double v) { s.f.setCapacity(size_t(v)); }}
constinit const Binding kBind[] = {INT_FIELD(defaultImageQuality), BOOL_FIELD(defaultImageScaleToFit),
                                   BOOL_FIELD(defaultImageKeepAspectRatio), BOOL_FIELD(defaultImageAlign),
                                   INT_FIELD(defaultImageHAlign), INT_FIELD(defaultImageVAlign),
                                   BOOL_FIELD(defaultImageAdjustBitmapShift), BOOL_FIELD(readExifData),
                                   RECENT(recentProjects), RECENT(recentImages), BOOL_FIELD(displayFullSettingsPath)};
#undef INT_FIELD
#undef BOOL_FIELD
#undef RECENT
static_assert(std::size(kRows) == std::size(kBind));

}  // namespace

PreferencesDialog::PreferencesDialog(QWidget* parent) : QDialog(parent), settings_(AppSettings::current()) {
    setWindowTitle("Preferences");
    auto* column = new QVBoxLayout(this);
    auto* general = new QGroupBox("New slides and lists", this);
    form_ = new OptionForm(general);
    form_->setTable(kRows);
    (new QVBoxLayout(general))->addWidget(form_);
    column->addWidget(general);
    std::vector<std::optional<double>> values;
    for (const Binding& b : kBind) values.push_back(b.get(settings_));
    form_->setValues(values);
    connect(form_, &OptionForm::valueEdited, this, [this](int index, double value) { kBind[size_t(index)].set(settings_, value); });

    auto* publish = new QGroupBox("Publishing", this);
    auto* rows = new QFormLayout(publish);
    const std::pair<const char*, std::string AppSettings::*> fields[] = {
        {"Publish folder", &AppSettings::defaultPublishPath},
        {"Player download", &AppSettings::publishPlayerDownloadUrl},
        {"Plug-in page", &AppSettings::publishPluginPageUrl}};
    for (const auto& [label, field] : fields) {
        auto* line = new QLineEdit(QString::fromStdString(settings_.*field), publish);
        line->setMinimumWidth(360);
        rows->addRow(QString(label) + ":", line);
        texts_.push_back({label, line});
        connect(line, &QLineEdit::textEdited, this, [this, field = field](const QString& text) {
            settings_.*field = text.trimmed().toStdString();
        });
    }
    column->addWidget(publish);

    // The face, weight and slant new captions start with; their size is
    // chosen per caption.
    auto* fonts = new QGroupBox("Caption fonts", this);
    auto* fontRows = new QFormLayout(fonts);
    const std::tuple<const char*, std::string AppSettings::*, FontRecord AppSettings::*> fontFields[] = {
        {"Show captions", &AppSettings::defaultShowFontName, &AppSettings::defaultShowFont},
        {"Slide captions", &AppSettings::defaultSlideFontName, &AppSettings::defaultSlideFont}};
    const QStringList families = QFontDatabase::families();
    for (const auto& [label, name, record] : fontFields) {
        auto* row = new QHBoxLayout;
        auto* family = new QComboBox(fonts);
        family->setObjectName(QString(label) + " font");
        family->addItems(families);
        const QString current = QString::fromStdString(settings_.*name);
        if (family->findText(current) < 0) family->addItem(current);  // not installed here: kept as it is
        family->setCurrentIndex(family->findText(current));
        auto* bold = new QCheckBox("Bold", fonts);
        bold->setObjectName(QString(label) + " bold");
        bold->setChecked((settings_.*record).weight >= 700);
        auto* italic = new QCheckBox("Italic", fonts);
        italic->setObjectName(QString(label) + " italic");
        italic->setChecked((settings_.*record).italic != 0);
        row->addWidget(family, 1);
        row->addWidget(bold);
        row->addWidget(italic);
        fontRows->addRow(QString(label) + ":", row);
        connect(family, &QComboBox::currentTextChanged, this,
                [this, name = name](const QString& text) { settings_.*name = text.toStdString(); });
        connect(bold, &QCheckBox::toggled, this, [this, record = record](bool on) { (settings_.*record).weight = on ? 700 : 400; });
        connect(italic, &QCheckBox::toggled, this, [this, record = record](bool on) { (settings_.*record).italic = on ? 1 : 0; });
    }
    column->addWidget(fonts);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &PreferencesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PreferencesDialog::reject);
    column->addWidget(buttons);
}

QLineEdit* PreferencesDialog::textField(const QString& name) const {
    for (const auto& [n, line] : texts_)
        if (n == name) return line;
    return nullptr;
}

bool PreferencesDialog::apply() {
    // An emptied address means the usual one again.
    if (settings_.publishPlayerDownloadUrl.empty()) settings_.publishPlayerDownloadUrl = AppSettings::kDefaultPlayerDownloadUrl;
    if (settings_.publishPluginPageUrl.empty()) settings_.publishPluginPageUrl = AppSettings::kDefaultPluginPageUrl;
    AppSettings::current() = settings_;
    std::string why;
    if (settings_.save(&why)) return true;
    prompts().tell(this, "Preferences", "The preferences could not be saved.", QString::fromStdString(why));
    return false;
}

void PreferencesDialog::accept() {
    if (apply()) QDialog::accept();
}

}  // namespace quillet::app
