#include "app/PublishDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

#include "app/Document.h"
#include "app/Prompts.h"
#include "settings/AppSettings.h"

namespace quillet::app {

namespace {

using namespace rows;

struct TargetInfo {
    const char* label;
    PublishTarget PublishSettings::*target;  // null: the screensaver installer
    const char* badName;                     // told when the chosen target's name is not a file name
};
constexpr TargetInfo kTargets[] = {
    {"Movie", &PublishSettings::swf, "Please enter a valid filename for the SWF."},
    {"FLV", &PublishSettings::flv, "Please enter a valid filename for the FLV."},
    {"HTML page", &PublishSettings::html, "Please enter a valid filename for the HTML."},
    {"Mac projector", &PublishSettings::macProjector, "Please enter a valid filename for the Macintosh Projector."},
    {"Windows projector", &PublishSettings::winProjector, "Please enter a valid filename for the Windows Projector."},
    {"QuickTime movie", &PublishSettings::quicktime, "Please enter a valid name for the QuickTime movie."},
    {"Screen saver", &PublishSettings::screensaver, "Please enter a valid filename for the Screen Saver"},
    {"Screen saver installer", nullptr, "Please enter a valid filename for the Screen Saver Installer."},
    {"Ruffle page", &PublishSettings::rufflePage, "Please enter a valid filename for the Ruffle page."}};

bool& Chosen(PublishSettings& s, const TargetInfo& t) { return t.target ? (s.*t.target).publish : s.publishInstaller; }
std::string& FileName(PublishSettings& s, const TargetInfo& t) {
    return t.target ? (s.*t.target).filename : s.installerFilename;
}

// A name the output folder can hold: not empty, no folder part, nothing a
// file system refuses.
bool ValidFileName(const QString& name) {
    const QString t = name.trimmed();
    return !t.isEmpty() && t != "." && t != ".." && !t.contains(QRegularExpression(R"([/\\:*?"<>|\x00-\x1f])"));
}

constexpr const char* kDimensions[] = {"Match movie", "Pixels", "Percent"};
constexpr const char* kQualities[] = {"Low", "Auto low", "Auto high", "Medium", "High", "Best"};
constexpr const char* kWindowModes[] = {"Window", "Opaque windowless", "Transparent windowless"};
constexpr const char* kHtmlAligns[] = {"Default", "Left", "Right", "Top", "Bottom"};
constexpr const char* kScales[] = {"Show all", "No border", "Exact fit"};
constexpr const char* kFlashAligns[] = {"Default", "Left",     "Right",       "Top",         "Bottom",
                                        "Top left", "Top right", "Bottom left", "Bottom right"};
constexpr OptionSpec Size(const char* label) {
    return {.kind = OptionKind::Integer, .label = label, .minValue = 1, .maxValue = 10000};
}

constinit const OptionSpec kPageRows[] = {
    Choice("Dimensions:", kDimensions), Size("Width:"), Size("Height:"), Choice("Quality:", kQualities),
    Choice("Window mode:", kWindowModes), Choice("HTML alignment:", kHtmlAligns), Choice("Scale:", kScales),
    Choice("Movie alignment:", kFlashAligns), {.kind = OptionKind::Color, .label = "Background:"},
    Box("Play at once"), Box("Loop"), Box("Display the menu"), Box("Device fonts"), Box("Popup window function")};
struct Binding {
    double (*get)(const PublishSettings&);
    void (*set)(PublishSettings&, double);
};
#define INT_FIELD(f) \
    {[](const PublishSettings& s) { return double(s.htmlSettings.f); }, [](PublishSettings& s, double v) { s.htmlSettings.f = int(v); }}
#define BOOL_FIELD(f) \
    {[](const PublishSettings& s) { return double(s.htmlSettings.f); }, [](PublishSettings& s, double v) { s.htmlSettings.f = v != 0; }}
constinit const Binding kPageBind[] = {
    INT_FIELD(dimensionType), INT_FIELD(width), INT_FIELD(height), INT_FIELD(quality), INT_FIELD(windowMode),
    INT_FIELD(htmlAlign), INT_FIELD(scale), INT_FIELD(flashAlign),
    {[](const PublishSettings& s) { return double(s.htmlSettings.bgcolor); },
     [](PublishSettings& s, double v) { s.htmlSettings.bgcolor = uint32_t(v); }},
    BOOL_FIELD(autoPlay), BOOL_FIELD(loop), BOOL_FIELD(displayMenu), BOOL_FIELD(deviceFont), BOOL_FIELD(popupFunction)};
#undef INT_FIELD
#undef BOOL_FIELD
static_assert(std::size(kPageRows) == std::size(kPageBind));

constinit const OptionSpec kProjectorRows[] = {Box("Mac: full screen"),    Box("Mac: allow scaling"),
                                               Box("Mac: show the menu"),  Box("Windows: full screen"),
                                               Box("Windows: allow scaling"), Box("Windows: show the menu")};
#define PROJ(p, f) \
    {[](const PublishSettings& s) { return double(s.p.f); }, [](PublishSettings& s, double v) { s.p.f = v != 0; }}
constinit const Binding kProjectorBind[] = {PROJ(macProjectorSettings, fullscreen), PROJ(macProjectorSettings, allowscale),
                                            PROJ(macProjectorSettings, showmenu),   PROJ(winProjectorSettings, fullscreen),
                                            PROJ(winProjectorSettings, allowscale), PROJ(winProjectorSettings, showmenu)};
#undef PROJ

}  // namespace

PublishDialog::PublishDialog(Document& doc, QWidget* parent)
    : QDialog(parent), doc_(doc), settings_(doc.publish()) {
    setWindowTitle("Publish Settings");
    stageWidth_ = doc.showSettings().width;
    stageHeight_ = doc.showSettings().height;
    auto* column = new QVBoxLayout(this);

    auto* files = new QGroupBox("Files", this);
    auto* top = new QFormLayout;
    base_ = new QLineEdit(files);
    useBase_ = new QCheckBox("Name every file after the base name", files);
    output_ = new QLineEdit(files);
    auto* browse = new QPushButton("Browse...", files);
    auto* outputRow = new QHBoxLayout;
    outputRow->addWidget(output_, 1);
    outputRow->addWidget(browse);
    top->addRow("Base name:", base_);
    top->addRow(useBase_);
    top->addRow("Output folder:", outputRow);
    auto* grid = new QGridLayout;
    for (size_t i = 0; i < std::size(kTargets); ++i) {
        Target t{new QCheckBox(kTargets[i].label, files), new QLineEdit(files)};
        grid->addWidget(t.box, int(i), 0);
        grid->addWidget(t.name, int(i), 1);
        targets_.push_back(t);
        connect(t.box, &QCheckBox::toggled, this, [this, i](bool on) {
            if (!updating_) Chosen(settings_, kTargets[i]) = on;
        });
        connect(t.name, &QLineEdit::textEdited, this, [this, i](const QString& text) {
            FileName(settings_, kTargets[i]) = text.toStdString();
        });
    }
    auto* filesBox = new QVBoxLayout(files);
    filesBox->addLayout(top);
    filesBox->addLayout(grid);
    column->addWidget(files);

    auto* options = new QHBoxLayout;
    auto* page = new QGroupBox("HTML page", this);
    page_ = new OptionForm(page);
    page_->setTable(kPageRows);
    (new QVBoxLayout(page))->addWidget(page_);
    options->addWidget(page);
    auto* projectors = new QGroupBox("Projectors", this);
    auto* projectorBox = new QVBoxLayout(projectors);
    projectors_ = new OptionForm(projectors);
    projectors_->setTable(kProjectorRows);
    projectorBox->addWidget(projectors_);
    auto* playersRow = new QFormLayout;
    players_ = new QLineEdit(QString::fromStdString(AppSettings::current().publishPlayersPath), projectors);
    players_->setPlaceholderText("(the players beside the program)");
    playersRow->addRow("Players folder:", players_);
    projectorBox->addLayout(playersRow);
    projectorBox->addStretch();
    options->addWidget(projectors);
    column->addLayout(options);

    message_ = new QLabel(this);
    message_->setStyleSheet("color: #b00000");
    message_->hide();
    column->addWidget(message_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &PublishDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PublishDialog::reject);
    column->addWidget(buttons);

    connect(base_, &QLineEdit::textEdited, this, [this](const QString& text) {
        settings_.defaultBaseFilename = text.toStdString();
        if (settings_.useDefaultBaseFilename) settings_.setBaseFilename(settings_.defaultBaseFilename);
        refresh();
    });
    connect(useBase_, &QCheckBox::toggled, this, [this](bool on) {
        if (updating_) return;
        settings_.useDefaultBaseFilename = on;
        if (on) settings_.setBaseFilename(settings_.defaultBaseFilename);
        refresh();
    });
    connect(output_, &QLineEdit::textEdited, this, [this](const QString& text) { settings_.output = text.toStdString(); });
    connect(browse, &QPushButton::clicked, this, [this] {
        const QString folder = prompts().chooseOutputFolder(this, output_->text());
        if (folder.isEmpty()) return;
        settings_.output = folder.toStdString();
        refresh();
    });
    auto bind = [this](OptionForm* form, std::span<const Binding> bindings) {
        connect(form, &OptionForm::valueEdited, this, [this, bindings](int index, double value) {
            bindings[size_t(index)].set(settings_, value);
            refresh();
        });
    };
    bind(page_, kPageBind);
    bind(projectors_, kProjectorBind);
    refresh();
}

void PublishDialog::refresh() {
    updating_ = true;
    // The page always knows the stage; "Match movie" also takes its size.
    HtmlSettings& html = settings_.htmlSettings;
    html.origWidth = stageWidth_;
    html.origHeight = stageHeight_;
    if (html.dimensionType == HtmlSettings::MatchMovie) {
        html.width = stageWidth_;
        html.height = stageHeight_;
    }
    base_->setText(QString::fromStdString(settings_.defaultBaseFilename));
    useBase_->setChecked(settings_.useDefaultBaseFilename);
    output_->setText(QString::fromStdString(settings_.output));
    for (size_t i = 0; i < targets_.size(); ++i) {
        targets_[i].box->setChecked(Chosen(settings_, kTargets[i]));
        if (targets_[i].name->text().toStdString() != FileName(settings_, kTargets[i]))
            targets_[i].name->setText(QString::fromStdString(FileName(settings_, kTargets[i])));
        targets_[i].name->setEnabled(!settings_.useDefaultBaseFilename);
    }
    auto show = [this](OptionForm* form, std::span<const Binding> bindings) {
        std::vector<std::optional<double>> values;
        for (const Binding& b : bindings) values.push_back(b.get(settings_));
        form->setValues(values);
    };
    show(page_, kPageBind);
    show(projectors_, kProjectorBind);
    const bool pixels = html.dimensionType != HtmlSettings::MatchMovie;
    page_->control(1)->setEnabled(pixels);
    page_->control(2)->setEnabled(pixels);
    updating_ = false;
}

QString PublishDialog::message() const { return message_->isHidden() ? QString() : message_->text(); }

bool PublishDialog::apply() {
    for (const TargetInfo& t : kTargets) {
        if (!Chosen(settings_, t) || ValidFileName(QString::fromStdString(FileName(settings_, t)))) continue;
        message_->setText(t.badName);
        message_->show();
        prompts().tell(this, "Publish Error", t.badName);
        return false;
    }
    message_->hide();
    doc_.editPublish("Publish Settings", settings_);
    AppSettings::current().publishPlayersPath = players_->text().trimmed().toStdString();
    return true;
}

void PublishDialog::accept() {
    if (apply()) QDialog::accept();
}

}  // namespace quillet::app
