#include "app/ShowPanel.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <cstdlib>

#include "app/CaptionEditor.h"
#include "app/Document.h"
#include "app/SetPicture.h"
#include "app/SoundEditor.h"
#include "movie/ControlSets.h"
#include "movie/MovieImport.h"
#include "model/SlideShow.h"

namespace quillet::app {

namespace {

using namespace rows;

// The show keeps colours as 0x00RRGGBB, the option form as 0x00BBGGRR.
double SwapRedBlue(uint32_t c) { return double(((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF)); }


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
// The part of the stage shown; whether right > left and bottom > top is
// checked by the panel (editBounds).
constinit const OptionSpec kBoundsRows[] = {
    Whole("Left:", 0, SlideShow::kMaxStageSize, 0, "pixels"), Whole("Top:", 0, SlideShow::kMaxStageSize, 0, "pixels"),
    Whole("Right:", 0, SlideShow::kMaxStageSize, 320, "pixels"),
    Whole("Bottom:", 0, SlideShow::kMaxStageSize, 240, "pixels")};
constinit const ShowBinding kBoundsBind[] = {FIELD(int, showBoundsLeft), FIELD(int, showBoundsTop),
                                             FIELD(int, showBoundsRight), FIELD(int, showBoundsBottom)};

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

// The movie draws the text |height| pixels high (6 to 200); the record keeps
// a negative height, a character height.
constinit const OptionSpec kPreloaderFontRows[] = {Whole("Text size:", 6, 200, 13, "pixels"), Box("Bold"),
                                                   Box("Italic")};
constinit const ShowBinding kPreloaderFontBind[] = {
    {[](const SlideShow& s) { return double(s.swfData.preloadFont.height == 0 ? 13 : std::abs(s.swfData.preloadFont.height)); },
     [](SlideShow& s, double v) { s.swfData.preloadFont.height = -int(v); }},
    {[](const SlideShow& s) { return double(s.swfData.preloadFont.weight >= 700); },
     [](SlideShow& s, double v) { s.swfData.preloadFont.weight = v != 0 ? 700 : 400; }},
    {[](const SlideShow& s) { return double(s.swfData.preloadFont.italic != 0); },
     [](SlideShow& s, double v) { s.swfData.preloadFont.italic = v != 0 ? 1 : 0; }}};

// Set pictures: the combo's icons, and the chosen set at its own size with a
// margin of stage colour around it.
constexpr QSize kSetIconSize(56, 22);
constexpr int kPictureMargin = 6;

QIcon SetIcon(const QImage& picture, qreal dpr) {
    QPixmap icon(kSetIconSize * dpr);
    icon.fill(Qt::transparent);
    if (!picture.isNull()) {
        const QImage fitted = picture.scaled(icon.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
        QPainter p(&icon);
        p.drawImage((icon.width() - fitted.width()) / 2, (icon.height() - fitted.height()) / 2, fitted);
    }
    icon.setDevicePixelRatio(dpr);
    return QIcon(icon);
}

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
    column->addWidget(addBounds(page));
    column->addWidget(addSection("start", "Start and loop", kStartRows, kStartBind, page));
    QWidget* controls = addSection("controls", "Playback controls", kControlRows, kControlBind, page);
    controlSet_ = addSetChooser(controls, false, controlPicture_);
    column->addWidget(controls);
    QWidget* mute = addSection("mute", "Mute button", kMuteRows, kMuteBind, page);
    muteSet_ = addSetChooser(mute, true, mutePicture_);
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
    addFontChooser(preloader);
    addForm(preloader, "preloaderFont", kPreloaderFontRows, kPreloaderFontBind);
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
    new QVBoxLayout(group);
    addForm(group, name, table, bind);
    return group;
}

void ShowPanel::addForm(QWidget* section, const QString& name, OptionTable table, std::span<const ShowBinding> bind) {
    auto* form = new OptionForm(section);
    form->setTable(table);
    static_cast<QVBoxLayout*>(section->layout())->addWidget(form);
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
}

QWidget* ShowPanel::addBounds(QWidget* parent) {
    auto* group = new QGroupBox("Show bounds", parent);
    auto* box = new QVBoxLayout(group);
    bounds_ = new OptionForm(group);
    bounds_->setTable(kBoundsRows);
    box->addWidget(bounds_);
    boundsMessage_ = new QLabel(group);
    boundsMessage_->setStyleSheet("color: #b00000");  // as the forms' own refusals
    boundsMessage_->setWordWrap(true);
    boundsMessage_->hide();
    box->addWidget(boundsMessage_);
    connect(bounds_, &OptionForm::valueEdited, this, [this](int index, double value) { editBounds(index, int(value)); });
    return group;
}

QString ShowPanel::boundsMessage() const { return boundsMessage_->isVisible() ? boundsMessage_->text() : QString(); }

void ShowPanel::editBounds(int index, int value) {
    const SlideShow& show = doc_.show();
    int b[4] = {show.showBoundsLeft, show.showBoundsTop, show.showBoundsRight, show.showBoundsBottom};
    b[index] = value;
    // Only the pair edited is checked: a file may hold an empty span on the other axis.
    const bool across = index == 0 || index == 2;
    const int low = across ? b[0] : b[1], high = across ? b[2] : b[3];
    if (high <= low) {
        static constexpr const char* kSides[] = {"Left", "Top", "Right", "Bottom"};
        const char* other = kSides[(index + 2) % 4];
        const QString allowed =
            index < 2 ? QString("%1 must be less than %2: enter a whole number from 0 to %3.")
                            .arg(kSides[index], QString(other).toLower()).arg(high - 1)
                      : QString("%1 must be more than %2: enter a whole number from %3 to %4.")
                            .arg(kSides[index], QString(other).toLower()).arg(low + 1).arg(SlideShow::kMaxStageSize);
        boundsMessage_->setText(QString("\"%1\": %2").arg(value).arg(allowed));
        boundsMessage_->show();
        std::vector<std::optional<double>> shown;
        for (const ShowBinding& bind : kBoundsBind) shown.push_back(bind.get(show));
        bounds_->setValues(shown);  // the refused entry goes back
        return;
    }
    boundsMessage_->hide();
    doc_.editShow("Slide Show Properties: " + QString(kBoundsRows[index].label).remove(':') + " Bound",
                  [&b](SlideShow& s) {
                      s.showBoundsLeft = b[0], s.showBoundsTop = b[1], s.showBoundsRight = b[2], s.showBoundsBottom = b[3];
                  });
}

void ShowPanel::addFontChooser(QWidget* section) {
    preloadFont_ = new QComboBox(section);
    preloadFont_->setObjectName("preloaderFont");
    // Qt's family list is fontconfig's on Linux: the fonts the movie can embed.
    preloadFont_->addItems(QFontDatabase::families());
    auto* row = new QFormLayout;
    row->addRow("Text font:", preloadFont_);
    static_cast<QVBoxLayout*>(section->layout())->addLayout(row);
    connect(preloadFont_, &QComboBox::currentIndexChanged, this, [this](int at) {
        if (updating_ || at < 0) return;
        const std::string name = preloadFont_->itemText(at).toStdString();
        doc_.editShow("Slide Show Properties: Preloader Font", [name](SlideShow& s) { s.swfData.preloadFontName = name; });
    });
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

QComboBox* ShowPanel::addSetChooser(QWidget* section, bool mute, QLabel*& picture) {
    auto* chooser = new QComboBox(section);
    const ControlKind kind = mute ? ControlKind::Mute : ControlKind::Playback;
    chooser->setIconSize(kSetIconSize);
    for (const std::string& set : ListControlSets(kind)) {
        const QString name = QString::fromStdString(set);
        chooser->addItem(SetIcon(ControlSetPicture(kind, name), devicePixelRatioF()), name);
    }
    chooser->setPlaceholderText(chooser->count() ? QString("(none chosen)") : QString("(no sets installed)"));
    picture = new QLabel(section);
    picture->setObjectName(mute ? "muteSetPicture" : "controlSetPicture");
    picture->setWordWrap(true);
    auto* row = new QFormLayout;
    row->addRow("Set:", chooser);
    row->addRow(QString(), picture);
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

void ShowPanel::showSetPicture(bool mute) {
    QComboBox* chooser = controlSetChooser(mute);
    QLabel* label = setPicture(mute);
    if (chooser->currentIndex() < 0) {
        label->clear();
        return;
    }
    QString why;
    const QImage set = ControlSetPicture(mute ? ControlKind::Mute : ControlKind::Playback, chooser->currentText(), &why);
    if (set.isNull()) {
        label->setPixmap({});
        label->setText(why);
        return;
    }
    // Drawn at twice the set's size: shown at its own size on the stage colour.
    const qreal dpr = devicePixelRatioF();
    const QSize own = set.size() / 2 + QSize(2 * kPictureMargin, 2 * kPictureMargin);
    QPixmap shown(own * dpr);
    const uint32_t bg = doc_.show().bgColor;
    shown.fill(QColor(int(bg >> 16 & 0xFF), int(bg >> 8 & 0xFF), int(bg & 0xFF)));
    {
        QPainter p(&shown);
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawImage(QRectF(kPictureMargin * dpr, kPictureMargin * dpr, set.width() / 2 * dpr, set.height() / 2 * dpr), set);
    }
    shown.setDevicePixelRatio(dpr);
    label->setPixmap(shown);
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
    showSetPicture(false);
    showSetPicture(true);
    std::vector<std::optional<double>> bounds;
    for (const ShowBinding& b : kBoundsBind) bounds.push_back(b.get(show));
    bounds_->setValues(bounds);
    int font = preloadFont_->findText(QString::fromStdString(show.swfData.preloadFontName));
    if (font < 0) {  // not installed here: shown as it is, the movie falls back
        preloadFont_->addItem(QString::fromStdString(show.swfData.preloadFontName));
        font = preloadFont_->count() - 1;
    }
    preloadFont_->setCurrentIndex(font);
    updating_ = false;
    captions_->setCaptions(&show.captions);
    music_->setSound(&show.sound);
}

}  // namespace quillet::app
