#include "app/ShowPanel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "app/CaptionEditor.h"
#include "app/Document.h"
#include "app/SoundEditor.h"
#include "movie/ControlSets.h"
#include "movie/MovieImport.h"
#include "model/SlideShow.h"

namespace quillet::app {

namespace {

// The show keeps colours as 0x00RRGGBB, the option form as 0x00BBGGRR.
double SwapRedBlue(uint32_t c) { return double(((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF)); }

constexpr OptionSpec Whole(const char* label, double lo, double hi, double def, const char* unit = "") {
    return {.kind = OptionKind::Integer, .label = label, .defaultValue = def, .minValue = lo, .maxValue = hi,
            .trailingLabel = unit};
}
constexpr OptionSpec Box(const char* label) { return {.kind = OptionKind::Bool, .label = label}; }
constexpr OptionSpec Choice(const char* label, NameList items) {
    return {.kind = OptionKind::List, .label = label, .items = items};
}
constexpr OptionSpec Colour(const char* label) { return {.kind = OptionKind::Color, .label = label}; }

#define FIELD(type, expr) \
    {[](const SlideShow& s) { return double(s.expr); }, [](SlideShow& s, double v) { s.expr = type(v); }}
#define FLAG(expr) {[](const SlideShow& s) { return double(s.expr); }, [](SlideShow& s, double v) { s.expr = v != 0; }}
#define COLOUR(expr) \
    {[](const SlideShow& s) { return SwapRedBlue(s.expr); }, [](SlideShow& s, double v) { s.expr = uint32_t(SwapRedBlue(uint32_t(v))); }}

// Set through the stage command (a new size refits the slides).
constinit const OptionSpec kStageRows[] = {
    Whole("Width:", 1, SlideShow::kMaxStageSize, 320, "pixels"), Whole("Height:", 1, SlideShow::kMaxStageSize, 240, "pixels"),
    {.kind = OptionKind::Real, .label = "Frame rate:", .defaultValue = 12, .minValue = 1, .maxValue = 120, .decimals = 1,
     .trailingLabel = "frames per second"},
    Colour("Background colour:")};
constinit const ShowBinding kStageBind[] = {
    {[](const SlideShow& s) { return double(s.width()); }, nullptr},
    {[](const SlideShow& s) { return double(s.height()); }, nullptr},
    {[](const SlideShow& s) { return double(s.fps); }, nullptr},
    {[](const SlideShow& s) { return SwapRedBlue(s.bgColor); }, nullptr}};

constexpr const char* kStartActions[] = {"Play automatically", "Play after a pause", "Stop on the first frame"};
constexpr const char* kLoops[] = {"Play once", "Repeat a number of times", "Repeat forever"};
constinit const OptionSpec kStartRows[] = {
    Choice("When the show starts:", kStartActions),
    {.kind = OptionKind::Real, .label = "Pause:", .defaultValue = 2, .minValue = 0, .maxValue = 3600, .decimals = 2,
     .trailingLabel = "seconds"},
    Choice("Loop:", kLoops), Whole("Repeat:", 1, 100000, 1, "times")};
constinit const ShowBinding kStartBind[] = {
    FIELD(SwfData::StartAction, swfData.movieStartAction),
    {[](const SlideShow& s) { return s.swfData.pauseTime / 1000.0; },
     [](SlideShow& s, double v) { s.swfData.pauseTime = int(v * 1000 + 0.5); }},
    FIELD(SwfData::Loop, swfData.loop), FIELD(int, swfData.loopCount)};

constexpr const char* kAligns[] = {"Custom position", "Top left",    "Top center",  "Top right",
                                   "Bottom left",     "Bottom center", "Bottom right"};
constinit const OptionSpec kControlRows[] = {Box("Show the playback controls"), Choice("Position:", kAligns),
                                             Whole("Left:", -10000, 10000, 0, "pixels"),
                                             Whole("Top:", -10000, 10000, 0, "pixels")};
constinit const ShowBinding kControlBind[] = {FLAG(controls.enabled), FIELD(ControlPlacement::Align, controls.align),
                                              FIELD(int, controls.x), FIELD(int, controls.y)};
constinit const OptionSpec kMuteRows[] = {Box("Show the mute button"), Choice("Position:", kAligns),
                                          Whole("Left:", -10000, 10000, 0, "pixels"),
                                          Whole("Top:", -10000, 10000, 0, "pixels")};
constinit const ShowBinding kMuteBind[] = {FLAG(muteControl.enabled), FIELD(ControlPlacement::Align, muteControl.align),
                                           FIELD(int, muteControl.x), FIELD(int, muteControl.y)};

constexpr const char* kClickActions[] = {"Go to URL", "Load Movie"};
constexpr const char* kEndActions[] = {"Go to URL", "Load Movie", "Unload Movie"};
constinit const OptionSpec kClickRows[] = {Box("Clicking the movie runs an action"), Choice("Action:", kClickActions)};
constinit const ShowBinding kClickBind[] = {FLAG(swfData.mouseClickAction.enable),
                                            FIELD(int, swfData.mouseClickAction.action)};
constinit const OptionSpec kEndRows[] = {Box("Run an action when the show ends"), Choice("Action:", kEndActions)};
constinit const ShowBinding kEndBind[] = {FLAG(swfData.movieEndAction.enable), FIELD(int, swfData.movieEndAction.action)};

constexpr const char* kPreloadTypes[] = {"Simple", "Smart"};
constinit const OptionSpec kPreloaderRows[] = {Box("Show a preloader while the movie loads"),
                                               Choice("Type:", kPreloadTypes), Whole("Start after:", 0, 100, 100, "percent loaded"),
                                               Colour("Text colour:")};
constinit const ShowBinding kPreloaderBind[] = {FLAG(swfData.preload), FIELD(SwfData::PreloadType, swfData.preloadType),
                                                FIELD(int, swfData.preloadAmount), COLOUR(swfData.preloadTextColor)};

constinit const OptionSpec kBackgroundRows[] = {Box("Show a background image"), Box("Scale to fit the stage"),
                                                Box("Tile"), Whole("JPEG quality:", 1, 100, 80)};
constinit const ShowBinding kBackgroundBind[] = {FLAG(useBgImage), FLAG(bgImageScaleToFit), FLAG(bgImageTile),
                                                 FIELD(int, bgImageQuality)};

// In the order of the frame values.
constexpr const char* kFrames[] = {"None", "Flat colour", "Colour", "Colour with highlight", "Metal", "Pattern",
                                   "Own pattern"};
constinit const OptionSpec kFrameRows[] = {Choice("Frame:", kFrames),          Whole("Left:", 0, 10000, 10, "pixels"),
                                           Whole("Top:", 0, 10000, 10, "pixels"), Whole("Right:", 0, 10000, 10, "pixels"),
                                           Whole("Bottom:", 0, 10000, 10, "pixels"), Colour("Colour:")};
constinit const ShowBinding kFrameBind[] = {FIELD(SlideShow::Frame, bgFrame), FIELD(int, bgFrameLeft),
                                            FIELD(int, bgFrameTop),           FIELD(int, bgFrameRight),
                                            FIELD(int, bgFrameBottom),        COLOUR(bgFrameColor)};

constinit const OptionSpec kMovieRows[] = {Box("Compress the movie"), Box("Prevent printing")};
constinit const ShowBinding kMovieBind[] = {FLAG(useCompression), FLAG(disablePrint)};

#undef FIELD
#undef FLAG
#undef COLOUR

}  // namespace

ShowPanel::ShowPanel(Document& doc, QWidget* parent) : QDockWidget("Slide Show Properties", parent), doc_(doc) {
    setObjectName("ShowPanel");
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* page = new QWidget(scroll);
    auto* column = new QVBoxLayout(page);
    setWidget(scroll);

    column->addWidget(addSection("stage", "Stage", kStageRows, kStageBind, page));
    column->addWidget(addSection("start", "Start and loop", kStartRows, kStartBind, page));
    QWidget* controls = addSection("controls", "Playback controls", kControlRows, kControlBind, page);
    controlSet_ = addSetChooser(controls, false);
    column->addWidget(controls);
    QWidget* mute = addSection("mute", "Mute button", kMuteRows, kMuteBind, page);
    muteSet_ = addSetChooser(mute, true);
    column->addWidget(mute);
    QWidget* click = addSection("click", "Click on the movie", kClickRows, kClickBind, page);
    addText(click, "Click URL", "URL:", [](SlideShow& s) -> std::string& { return s.swfData.mouseClickAction.url; });
    addText(click, "Click target", "Target:", [](SlideShow& s) -> std::string& { return s.swfData.mouseClickAction.target; });
    column->addWidget(click);
    QWidget* end = addSection("end", "End of the show", kEndRows, kEndBind, page);
    addText(end, "End URL", "URL:", [](SlideShow& s) -> std::string& { return s.swfData.movieEndAction.url; });
    addText(end, "End target", "Target:", [](SlideShow& s) -> std::string& { return s.swfData.movieEndAction.target; });
    column->addWidget(end);
    QWidget* preloader = addSection("preloader", "Preloader", kPreloaderRows, kPreloaderBind, page);
    addText(preloader, "Preloader text", "Text:", [](SlideShow& s) -> std::string& { return s.swfData.preloadText; });
    addText(preloader, "Preloader movie", "Imported preloader:",
            [](SlideShow& s) -> std::string& { return s.swfData.preloadImportSrc; });
    column->addWidget(preloader);
    QWidget* background = addSection("background", "Background image", kBackgroundRows, kBackgroundBind, page);
    addText(background, "Background image", "Image file:", [](SlideShow& s) -> std::string& { return s.bgImage; });
    column->addWidget(background);
    QWidget* frame = addSection("frame", "Frame", kFrameRows, kFrameBind, page);
    addText(frame, "Frame pattern", "Pattern:", [](SlideShow& s) -> std::string& { return s.bgFramePattern; });
    addText(frame, "Frame pattern file", "Own pattern file:",
            [](SlideShow& s) -> std::string& { return s.bgFrameCustomPattern; });
    column->addWidget(frame);
    column->addWidget(addSection("movie", "Movie", kMovieRows, kMovieBind, page));
    captions_ = new CaptionEditor("Show captions", true, [this](const QString& what, const std::function<void(CaptionList&)>& change) {
        doc_.editShow("Slide Show Properties: " + what, [&change](SlideShow& s) { change(s.captions); });
    }, page);
    column->addWidget(captions_);
    music_ = new SoundEditor("Music", [this](const QString& what, const std::function<void(SlideSound&)>& change) {
        doc_.editShow("Slide Show Properties: " + what, [&change](SlideShow& s) { change(s.sound); });
    }, page);
    column->addWidget(music_);
    column->addStretch();
    scroll->setWidget(page);
    refresh();
    scroll->setMinimumWidth(page->sizeHint().width() + scroll->verticalScrollBar()->sizeHint().width() + 4);
}

QWidget* ShowPanel::addSection(const QString& name, const QString& title, OptionTable table,
                               std::span<const ShowBinding> bind, QWidget* parent) {
    auto* group = new QGroupBox(title, parent);
    auto* box = new QVBoxLayout(group);
    auto* form = new OptionForm(group);
    form->setTable(table);
    box->addWidget(form);
    sections_.push_back({name, {form, bind}});
    connect(form, &OptionForm::valueEdited, this, [this, table, bind](int index, double value) {
        const ShowBinding b = bind[size_t(index)];
        if (!b.set) {  // the stage: its own command refits the slides
            ShowSettings stage = doc_.showSettings();
            if (index == 0) stage.width = int(value);
            if (index == 1) stage.height = int(value);
            if (index == 2) stage.fps = float(value);
            if (index == 3) stage.bgColor = uint32_t(SwapRedBlue(uint32_t(value)));
            doc_.setShowSettings(stage);
            return;
        }
        doc_.editShow("Slide Show Properties: " + QString(table[size_t(index)].label).remove(':'),
                      [b, value](SlideShow& s) { b.set(s, value); });
    });
    return group;
}

void ShowPanel::addText(QWidget* section, const QString& name, const QString& label, std::string& (*field)(SlideShow&)) {
    auto* line = new QLineEdit(section);
    auto* row = new QFormLayout;
    row->addRow(label, line);
    static_cast<QVBoxLayout*>(section->layout())->addLayout(row);
    texts_.push_back({name, {line, field}});
    connect(line, &QLineEdit::editingFinished, this, [this, line, field, name] {
        if (updating_) return;
        const std::string text = line->text().toStdString();
        doc_.editShow("Slide Show Properties: " + name, [field, text](SlideShow& s) { field(s) = text; });
    });
}

QComboBox* ShowPanel::addSetChooser(QWidget* section, bool mute) {
    auto* chooser = new QComboBox(section);
    const ControlKind kind = mute ? ControlKind::Mute : ControlKind::Playback;
    for (const std::string& set : ListControlSets(kind)) chooser->addItem(QString::fromStdString(set));
    chooser->setPlaceholderText(chooser->count() ? QString("(none chosen)") : QString("(no sets installed)"));
    auto* row = new QFormLayout;
    row->addRow("Set:", chooser);
    static_cast<QVBoxLayout*>(section->layout())->insertLayout(1, row);
    connect(chooser, &QComboBox::currentIndexChanged, this, [this, chooser, kind, mute](int index) {
        if (updating_ || index < 0) return;
        const std::string name = chooser->itemText(index).toStdString();
        // The set's own size places it on the stage.
        ImportedMovie set;
        std::string why;
        const bool loaded = LoadControlSet(kind, name, set, &why);
        doc_.editShow("Slide Show Properties: Control Set", [&](SlideShow& s) {
            ControlPlacement& p = mute ? s.muteControl : s.controls;
            p.controlSet = name;
            if (loaded) {
                p.width = set.WidthPixels();
                p.height = set.HeightPixels();
            }
        });
    });
    return chooser;
}

OptionForm* ShowPanel::form(const QString& name) const {
    for (const auto& [n, section] : sections_)
        if (n == name) return section.form;
    return nullptr;
}

QStringList ShowPanel::formNames() const {
    QStringList out;
    for (const auto& [n, section] : sections_) out << n;
    return out;
}

QLineEdit* ShowPanel::textField(const QString& name) const {
    for (const auto& [n, text] : texts_)
        if (n == name) return text.edit;
    return nullptr;
}

void ShowPanel::refresh() {
    const SlideShow& show = doc_.show();
    updating_ = true;
    for (const auto& [name, section] : sections_) {
        std::vector<std::optional<double>> values;
        for (const ShowBinding& b : section.bind) values.push_back(b.get(show));
        section.form->setValues(values);
    }
    for (const auto& [name, text] : texts_)
        text.edit->setText(QString::fromStdString(text.field(const_cast<SlideShow&>(show))));
    controlSet_->setCurrentIndex(controlSet_->findText(QString::fromStdString(show.controls.controlSet)));
    muteSet_->setCurrentIndex(muteSet_->findText(QString::fromStdString(show.muteControl.controlSet)));
    updating_ = false;
    captions_->setCaptions(&show.captions);
    music_->setSound(&show.sound);
}

}  // namespace quillet::app
