#include "app/SlidePanel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "app/CaptionEditor.h"
#include "app/CaptionStage.h"
#include "app/Document.h"
#include "app/FilterPreview.h"
#include "app/PictureEditor.h"
#include "app/Prompts.h"
#include "app/TransitionPreview.h"
#include "app/SoundEditor.h"
#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "model/Slide.h"

namespace quillet::app {

namespace {

using namespace rows;

double Seconds(uint32_t ms) { return ms / 1000.0; }
uint32_t Milliseconds(double seconds) { return uint32_t(seconds * 1000 + 0.5); }


constinit const OptionSpec kSlideRows[] = {SecondsRow("Duration:", 3600, 2)};
constinit const SlideBinding kSlideBind[] = {
    {[](const Slide& s) { return Seconds(s.duration); }, [](Slide& s, double v) { s.duration = Milliseconds(v); }}};

constinit const OptionSpec kTransitionRows[] = {SecondsRow("Duration:", 3600, 2)};
constinit const SlideBinding kTransitionBind[] = {
    {[](const Slide& s) { return Seconds(s.transitionIn().duration()); },
     [](Slide& s, double v) { s.transitionIn().SetDuration(Milliseconds(v)); }}};

// In the order of the click action's type values.
constexpr const char* kClickTypes[] = {"Go to URL",     "Load Movie",  "Next Slide", "Previous Slide",
                                       "Jump to Slide", "First Slide", "Last Slide", "Print"};
constinit const OptionSpec kClickRows[] = {
    Box("Clicking the slide runs an action"), Choice("Action:", kClickTypes),
    Whole("Jump to slide:", 1, 100000, 1), Box("Open the URL in the popup window"),
    Box("Pause the show after the action"), Box("Load a URL when the slide is shown")};
constinit const SlideBinding kClickBind[] = {
    {[](const Slide& s) { return double(s.clickAction.enable); }, [](Slide& s, double v) { s.clickAction.enable = v != 0; }},
    {[](const Slide& s) { return double(s.clickAction.type); },
     [](Slide& s, double v) { s.clickAction.type = ClickAction::Type(int(v)); }},
    {[](const Slide& s) { return double(s.clickAction.jumpTo); }, [](Slide& s, double v) { s.clickAction.jumpTo = int(v); }},
    {[](const Slide& s) { return double(s.clickAction.popup); }, [](Slide& s, double v) { s.clickAction.popup = v != 0; }},
    {[](const Slide& s) { return double(s.clickAction.pauseAfter); },
     [](Slide& s, double v) { s.clickAction.pauseAfter = v != 0; }},
    {[](const Slide& s) { return double(s.clickAction.loadUrlOnDisplay); },
     [](Slide& s, double v) { s.clickAction.loadUrlOnDisplay = v != 0; }}};

constinit const OptionSpec kPopupRows[] = {
    Whole("Width:", 0, 10000, 100, "pixels"), Whole("Height:", 0, 10000, 100, "pixels"),
    Whole("Left:", -10000, 10000, 0, "pixels"), Whole("Top:", -10000, 10000, 0, "pixels"),
    Box("Resizable"), Box("Toolbar"), Box("Scroll bars"), Box("Directory buttons"), Box("Status bar"),
    Box("Location bar"), Box("Menu bar")};
#define POPUP_INT(f) {[](const Slide& s) { return double(s.popup.f); }, [](Slide& s, double v) { s.popup.f = int(v); }}
#define POPUP_BOOL(f) {[](const Slide& s) { return double(s.popup.f); }, [](Slide& s, double v) { s.popup.f = v != 0; }}
constinit const SlideBinding kPopupBind[] = {POPUP_INT(width),      POPUP_INT(height),     POPUP_INT(x),
                                             POPUP_INT(y),          POPUP_BOOL(resizable), POPUP_BOOL(toolbar),
                                             POPUP_BOOL(scrollbar), POPUP_BOOL(directory), POPUP_BOOL(status),
                                             POPUP_BOOL(location),  POPUP_BOOL(menubar)};
#undef POPUP_INT
#undef POPUP_BOOL

// The image types the panel offers, in its order. The other two
// ("jpeg_external", "rgb_8_transparent") are kept when a project has them
// but cannot be chosen.
constexpr std::pair<ImageType, const char*> kOfferedTypes[] = {
    {ImageType::Jpeg, "Jpeg"},
    {ImageType::JpegTransparent, "Jpeg w/ Alpha Channel"},
    {ImageType::JpegImportData, "Jpeg Import Data"},
    {ImageType::Rgb24, "Lossless 24 bit"},
    {ImageType::Rgb24Transparent, "Lossless 24 bit w/ Alpha Channel"},
    {ImageType::Rgb15, "Lossless 15 bit"},
    {ImageType::Rgb8, "Lossless 8 bit"}};
constexpr auto kImageTypes = [] {
    std::array<const char*, std::size(kOfferedTypes)> out{};
    for (size_t i = 0; i < out.size(); ++i) out[i] = kOfferedTypes[i].second;
    return out;
}();
// What a type the list does not offer is called where the list shows it.
const char* UnofferedTypeName(ImageType type) {
    return type == ImageType::JpegExternal ? "Jpeg External File" : "Lossless 8 bit w/ Alpha Channel";
}
// The list position of a type; -1 (no entry) for one not offered.
double ImageTypePosition(ImageType type) {
    for (size_t i = 0; i < std::size(kOfferedTypes); ++i)
        if (kOfferedTypes[i].first == type) return double(i);
    return -1;
}
constexpr const char* kHAligns[] = {"Left", "Center", "Right"};
constexpr const char* kVAligns[] = {"Top", "Center", "Bottom"};
constinit const OptionSpec kPictureRows[] = {
    Choice("Image type:", kImageTypes), Whole("JPEG quality:", 1, 100, 80), Box("Scale to fit the stage"),
    Box("Keep aspect ratio"),           Box("Align automatically"),        Choice("Horizontal:", kHAligns),
    Choice("Vertical:", kVAligns),      Whole("Width:", 0, 10000, 0, "pixels"),
    Whole("Height:", 0, 10000, 0, "pixels"), Whole("Left:", -1073741823, 1073741823, 0, "pixels"),
    Whole("Top:", -1073741823, 1073741823, 0, "pixels")};
constinit const SlideBinding kPictureBind[] = {
    {[](const Slide& s) { return ImageTypePosition(s.image.imageType); },
     [](Slide& s, double v) {
         if (v >= 0 && v < double(std::size(kOfferedTypes))) s.image.imageType = kOfferedTypes[size_t(v)].first;
     }},
    {[](const Slide& s) { return double(s.image.quality); }, [](Slide& s, double v) { s.image.quality = int(v); }},
    {[](const Slide& s) { return double(s.image.scaleToFit); }, [](Slide& s, double v) { s.image.scaleToFit = v != 0; }},
    {[](const Slide& s) { return double(s.image.keepAspectRatio); },
     [](Slide& s, double v) { s.image.keepAspectRatio = v != 0; }},
    {[](const Slide& s) { return double(s.image.autoAlign); }, [](Slide& s, double v) { s.image.autoAlign = v != 0; }},
    {[](const Slide& s) { return double(s.image.hAlign); }, [](Slide& s, double v) { s.image.hAlign = HAlign(int(v)); }},
    {[](const Slide& s) { return double(s.image.vAlign); }, [](Slide& s, double v) { s.image.vAlign = VAlign(int(v)); }},
    // Size and place count while fitting and aligning are off.
    {[](const Slide& s) { return double(s.image.width); }, [](Slide& s, double v) { s.setWidth(int(v)); }},
    {[](const Slide& s) { return double(s.image.height); }, [](Slide& s, double v) { s.setHeight(int(v)); }},
    {[](const Slide& s) { return double(s.image.x); }, [](Slide& s, double v) { s.image.x = int(v); }},
    {[](const Slide& s) { return double(s.image.y); }, [](Slide& s, double v) { s.image.y = int(v); }}};

constinit const OptionSpec kMoveRows[] = {SecondsRow("Duration:", 3600, 2)};

}  // namespace

// How the panel reaches one kind of effect list on a slide.
struct EffectOps {
    QStringList (*names)();  // what the chooser offers
    int (*count)(const Slide&);
    QString (*text)(const Slide&, int);
    OptionTable (*table)(const Slide&, int);
    double (*value)(const Slide&, int, size_t);
    void (*setValue)(Slide&, int, size_t, double);
    void (*insert)(Slide&, int at, const std::string& name);
    void (*remove)(Slide&, int);
    void (*move)(Slide&, int from, int to);
};

namespace {

template <class R>
QStringList Names(const R& registry) {
    QStringList out;
    for (const auto& p : registry) out << QString::fromStdString(p->name());
    return out;
}

// Filters have no insertion: the list is rebuilt in the new order.
void RebuildFilters(Slide& s, std::vector<std::unique_ptr<ImageFilter>> order) {
    while (s.removeFilter(0)) {}
    for (auto& f : order) s.addFilter(std::move(f));
    s.dropCachedBitmap();  // the prepared picture had the other filters
}
std::vector<std::unique_ptr<ImageFilter>> FilterCopies(const Slide& s) {
    std::vector<std::unique_ptr<ImageFilter>> out;
    for (const auto& f : s.imageFilters()) out.push_back(f->Clone());
    return out;
}

constinit const EffectOps kCameraOps = {
    [] { return Names(CameraEffectRegistry::instance()); },
    [](const Slide& s) { return int(s.cameraEffectCount()); },
    [](const Slide& s, int i) {
        const CameraEffect& m = *s.cameraMoveAt(i);
        const std::string what = m.Describe();
        return QString("%1 (%2 sec)%3").arg(QString::fromStdString(m.name())).arg(m.duration / 1000.0, 0, 'f', 2)
            .arg(what.empty() ? QString() : ": " + QString::fromStdString(what));
    },
    [](const Slide& s, int i) { return s.cameraMoveAt(i)->Options(); },
    [](const Slide& s, int i, size_t o) { return s.cameraMoveAt(i)->options().Value(o); },
    [](Slide& s, int i, size_t o, double v) { s.cameraMoveAt(i)->options().SetValue(o, v); },
    [](Slide& s, int at, const std::string& name) {
        if (const CameraEffect* p = CameraEffectRegistry::instance().Find(name)) s.addCameraEffect(p->Clone(), at);
    },
    [](Slide& s, int i) { s.removeCameraEffect(i); },
    [](Slide& s, int from, int to) {
        auto move = s.cameraMoveAt(from)->Clone();
        s.removeCameraEffect(from);
        s.addCameraEffect(std::move(move), to);
    }};

constinit const EffectOps kFilterOps = {
    [] { return Names(ImageFilterRegistry::instance()); },
    [](const Slide& s) { return int(s.imageFilters().size()); },
    [](const Slide& s, int i) { return QString::fromStdString(s.imageFilters()[size_t(i)]->name()); },
    [](const Slide& s, int i) { return s.imageFilters()[size_t(i)]->Options(); },
    [](const Slide& s, int i, size_t o) { return s.imageFilters()[size_t(i)]->OptionValue(o); },
    [](Slide& s, int i, size_t o, double v) {
        s.imageFilters()[size_t(i)]->SetOptionValue(o, v);
        s.dropCachedBitmap();
    },
    [](Slide& s, int at, const std::string& name) {
        auto order = FilterCopies(s);
        if (auto f = ImageFilterRegistry::instance().Create(name))
            order.insert(order.begin() + std::clamp<ptrdiff_t>(at, 0, ptrdiff_t(order.size())), std::move(f));
        RebuildFilters(s, std::move(order));
    },
    [](Slide& s, int i) {
        s.removeFilter(i);
        s.dropCachedBitmap();
    },
    [](Slide& s, int from, int to) {
        auto order = FilterCopies(s);
        auto moved = std::move(order[size_t(from)]);
        order.erase(order.begin() + from);
        order.insert(order.begin() + to, std::move(moved));
        RebuildFilters(s, std::move(order));
    }};

QString ShownOverlayName(const Slide& s) {
    const std::string& name = s.overlayEffect().name();
    return name.empty() ? QString("None") : QString::fromStdString(name);  // a new slide's effect is unnamed
}

}  // namespace

SlidePanel::SlidePanel(Document& doc, QWidget* parent) : QDockWidget("Slide Properties", parent), doc_(doc) {
    // A large picture is decoded on a worker; the picture, the filtered
    // picture and the caption stage are drawn again once it is there.
    connect(&DecodedPictures::instance(), &DecodedPictures::decoded, this, [this](const QString& path) {
        if (rows_.size() != 1) return;
        const Slide* one = doc_.show().slideAt(rows_.front());
        if (!one || QString::fromStdString(one->image.src) != path) return;
        picture_->setSlide(one);
        filterPreview_->setSlide(one);
        stage_->setSlide(one, captions_->list()->currentRow());
    });
    setObjectName("SlidePanel");
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    auto* page = new QWidget(scroll);
    auto* column = new QVBoxLayout(page);
    heading_ = new QLabel(page);
    heading_->setStyleSheet("font-weight: bold");
    column->addWidget(heading_);
    body_ = new QWidget(page);
    auto* sections = new QVBoxLayout(body_);
    sections->setContentsMargins(0, 0, 0, 0);
    column->addWidget(body_);
    column->addStretch();
    setWidget(scroll);

    sections->addWidget(addSection("slide", "Slide", kSlideRows, kSlideBind, body_));

    QWidget* transition = addSection("transition", "Transition", kTransitionRows, kTransitionBind, body_);
    transitionChooser_ = new QComboBox(transition);
    for (const auto& prototype : TransitionRegistry::instance())
        transitionChooser_->addItem(QString::fromStdString(prototype->name()));
    auto* chooserRow = new QFormLayout;
    auto* chooserLine = new QHBoxLayout;
    chooserLine->addWidget(transitionChooser_, 1);
    auto* previewButton = new QPushButton("Preview", transition);
    connect(previewButton, &QPushButton::clicked, this, &SlidePanel::previewTransition);
    chooserLine->addWidget(previewButton);
    chooserRow->addRow("Transition:", chooserLine);
    auto* box = static_cast<QVBoxLayout*>(transition->layout());
    box->insertLayout(0, chooserRow);
    transitionOptions_ = new OptionForm(transition);
    box->addWidget(transitionOptions_);
    transitionNote_ = new QLabel("The selected slides have different transitions.", transition);
    box->addWidget(transitionNote_);
    sections->addWidget(transition);
    connect(transitionChooser_, &QComboBox::currentIndexChanged, this, [this](int index) {
        const Transition* prototype = TransitionRegistry::instance().At(index);
        if (updating_ || !prototype) return;
        edit("Transition", [prototype](Slide& s) {
            if (s.transitionIn().name() == prototype->name()) return;
            auto chosen = prototype->CreateInstance();
            chosen->SetDuration(s.transitionIn().duration());  // the slide keeps its timing
            s.setTransitionIn(std::move(chosen));
        });
    });
    connect(transitionOptions_, &OptionForm::valueEdited, this, [this](int index, double value) {
        edit("Transition Options", [index, value](Slide& s) { s.transitionIn().SetOptionValue(size_t(index), value); });
    });

    auto* overlay = new QGroupBox("Overlay effect", body_);
    auto* overlayRow = new QFormLayout(overlay);
    overlayChooser_ = new QComboBox(overlay);
    for (const auto& prototype : OverlayEffectRegistry::instance())
        overlayChooser_->addItem(QString::fromStdString(prototype->name()));
    overlayRow->addRow("Effect:", overlayChooser_);
    sections->addWidget(overlay);
    connect(overlayChooser_, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (updating_ || index < 0) return;
        const std::string name = overlayChooser_->itemText(index).toStdString();
        edit("Overlay Effect", [name](Slide& s) {
            if (s.overlayEffect().name() != name) s.setOverlayEffect(MakeOverlayEffect(name));
        });
    });

    sections->addWidget(addEffectList("camera", "Camera moves", kCameraOps, body_));
    sections->addWidget(addEffectList("filters", "Filters", kFilterOps, body_));

    QWidget* click = addSection("click", "Click action", kClickRows, kClickBind, body_);
    auto* clickTexts = new QFormLayout;
    static_cast<QVBoxLayout*>(click->layout())->addLayout(clickTexts);
    const std::pair<const char*, std::string& (*)(Slide&)> fields[] = {
        {"URL:", [](Slide& s) -> std::string& { return s.clickAction.url; }},
        {"Target:", [](Slide& s) -> std::string& { return s.clickAction.target; }},
        {"URL on display:", [](Slide& s) -> std::string& { return s.clickAction.onDisplayLoadUrl; }},
        {"Target on display:", [](Slide& s) -> std::string& { return s.clickAction.onDisplayLoadTarget; }}};
    for (const auto& [label, field] : fields) {
        auto* line = new QLineEdit(click);
        clickTexts->addRow(label, line);
        texts_.push_back({QString(label).remove(':'), {line, field}});
        connect(line, &QLineEdit::editingFinished, this, [this, line, field = field, label = QString(label)] {
            if (updating_ || (line->text().isEmpty() && !line->placeholderText().isEmpty())) return;
            const std::string text = line->text().toStdString();
            edit(QString(label).remove(':'), [field, text](Slide& s) { field(s) = text; });
        });
    }
    sections->addWidget(click);
    sections->addWidget(addSection("popup", "Popup window", kPopupRows, kPopupBind, body_));
    QWidget* picture = addSection("picture", "Picture", kPictureRows, kPictureBind, body_);
    picture_ = new PictureEditor([this](const QString& what, const std::function<void(Slide&)>& change) {
        edit(what, change);
    }, picture);
    static_cast<QVBoxLayout*>(picture->layout())->addWidget(picture_);
    sections->addWidget(picture);
    captions_ = new CaptionEditor("Captions", false, [this](const QString& what, const std::function<void(CaptionList&)>& change) {
        edit(what, [&change](Slide& s) { change(s.captions); });
    }, body_);
    sections->addWidget(captions_);
    stage_ = new CaptionStage([this](int index, const std::function<void(Caption&)>& change) {
        edit("Caption Position", [index, &change](Slide& s) {
            if (index >= 0 && index < int(s.captions.items.size())) change(s.captions.items[size_t(index)]);
        });
    }, captions_);
    captions_->layout()->addWidget(stage_);
    connect(captions_->list(), &QListWidget::currentRowChanged, this, [this](int row) {
        const std::vector<const Slide*> all = slides();
        stage_->setSlide(all.size() == 1 ? all.front() : nullptr, row);
    });
    sound_ = new SoundEditor("Sound", [this](const QString& what, const std::function<void(SlideSound&)>& change) {
        edit(what, [&change](Slide& s) { change(s.sound); });
    }, body_);
    sections->addWidget(sound_);
    scroll->setWidget(page);
    refresh();
    // Wide enough for the fields; long panels scroll down, never sideways.
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(page->sizeHint().width() + scroll->verticalScrollBar()->sizeHint().width() + 4);
}

QWidget* SlidePanel::addSection(const QString& name, const QString& title, OptionTable table,
                                std::span<const SlideBinding> bind, QWidget* parent) {
    auto* group = new QGroupBox(title, parent);
    auto* box = new QVBoxLayout(group);
    auto* form = new OptionForm(group);
    form->setTable(table);
    box->addWidget(form);
    sections_.push_back({name, {form, bind}});
    connect(form, &OptionForm::valueEdited, this, [this, table, bind](int index, double value) {
        const SlideBinding b = bind[size_t(index)];
        edit(QString(table[size_t(index)].label).remove(':'), [b, value](Slide& s) { b.set(s, value); });
    });
    return group;
}

QWidget* SlidePanel::addEffectList(const QString& name, const QString& title, const EffectOps& ops, QWidget* parent) {
    auto* group = new QGroupBox(title, parent);
    auto* box = new QVBoxLayout(group);
    auto* list = new QListWidget(group);
    list->setMaximumHeight(90);
    box->addWidget(list);
    auto* buttons = new QHBoxLayout;
    auto* chooser = new QComboBox(group);
    chooser->addItems(ops.names());
    buttons->addWidget(chooser, 1);
    const std::pair<const char*, std::function<void()>> actions[] = {
        {"Add", [this, name] { addEffect(name); }},
        {"Remove", [this, name] { removeEffect(name); }},
        {"Up", [this, name] { moveEffect(name, -1); }},
        {"Down", [this, name] { moveEffect(name, +1); }}};
    for (const auto& [text, action] : actions) {
        auto* button = new QPushButton(text, group);
        connect(button, &QPushButton::clicked, this, action);
        buttons->addWidget(button);
    }
    box->addLayout(buttons);
    auto* note = new QLabel(QString("Select one slide to edit its %1.").arg(title.toLower()), group);
    box->addWidget(note);
    if (&ops == &kCameraOps) {
        cameraDuration_ = new OptionForm(group);
        cameraDuration_->setTable(kMoveRows);
        box->addWidget(cameraDuration_);
        connect(cameraDuration_, &OptionForm::valueEdited, this, [this, list](int, double value) {
            const int at = list->currentRow();
            edit("Camera Move Duration", [at, value](Slide& s) {
                if (CameraEffect* m = s.cameraMoveAt(at)) m->duration = Milliseconds(value);
            });
        });
    }
    auto* form = new OptionForm(group);
    box->addWidget(form);
    if (&ops == &kFilterOps) {
        filterPreview_ = new FilterPreview(group);
        box->addWidget(filterPreview_);
    }
    effects_.push_back({name, {&ops, group, list, chooser, form, note}});
    connect(form, &OptionForm::valueEdited, this, [this, list, &ops, title](int index, double value) {
        const int at = list->currentRow();
        edit(title + " Options", [&ops, at, index, value](Slide& s) {
            if (at >= 0 && at < ops.count(s)) ops.setValue(s, at, size_t(index), value);
        });
    });
    connect(list, &QListWidget::currentRowChanged, this, [this, name] {
        if (!updating_) refreshEffects(*effects(name));
    });
    return group;
}

SlidePanel::EffectList* SlidePanel::effects(const QString& name) {
    for (auto& [n, e] : effects_)
        if (n == name) return &e;
    return nullptr;
}

QListWidget* SlidePanel::effectList(const QString& name) const {
    return const_cast<SlidePanel*>(this)->effects(name)->list;
}
QComboBox* SlidePanel::effectChooser(const QString& name) const {
    return const_cast<SlidePanel*>(this)->effects(name)->chooser;
}
OptionForm* SlidePanel::effectOptions(const QString& name) const {
    return const_cast<SlidePanel*>(this)->effects(name)->form;
}

void SlidePanel::addEffect(const QString& name) {
    EffectList& e = *effects(name);
    if (rows_.size() != 1) return;
    const int at = e.list->currentRow() + 1;
    const std::string chosen = e.chooser->currentText().toStdString();
    e.list->setCurrentRow(-1);
    edit("Add " + e.chooser->currentText(), [&e, at, chosen](Slide& s) { e.ops->insert(s, at, chosen); });
    e.list->setCurrentRow(at);
}

void SlidePanel::removeEffect(const QString& name) {
    EffectList& e = *effects(name);
    const int at = e.list->currentRow();
    if (rows_.size() != 1 || at < 0) return;
    edit("Remove " + e.list->currentItem()->text(), [&e, at](Slide& s) { e.ops->remove(s, at); });
}

void SlidePanel::moveEffect(const QString& name, int delta) {
    EffectList& e = *effects(name);
    const int from = e.list->currentRow(), to = from + delta;
    if (rows_.size() != 1 || from < 0 || to < 0 || to >= e.list->count()) return;
    edit("Move " + e.list->currentItem()->text(), [&e, from, to](Slide& s) { e.ops->move(s, from, to); });
    e.list->setCurrentRow(to);
}

void SlidePanel::refreshEffects(EffectList& e) {
    const std::vector<const Slide*> all = slides();
    const Slide* slide = all.size() == 1 ? all.front() : nullptr;
    const bool wasUpdating = std::exchange(updating_, true);
    const int keep = e.list->currentRow();
    e.list->clear();
    if (slide)
        for (int i = 0; i < e.ops->count(*slide); ++i) e.list->addItem(QString("%1. %2").arg(i + 1).arg(e.ops->text(*slide, i)));
    e.list->setCurrentRow(std::min(keep, e.list->count() - 1));
    updating_ = wasUpdating;
    e.note->setVisible(!slide);
    for (QWidget* w : e.group->findChildren<QWidget*>())
        if (w != e.note) w->setEnabled(slide != nullptr);
    const int at = e.list->currentRow();
    const bool current = slide && at >= 0;
    const OptionTable table = current ? e.ops->table(*slide, at) : OptionTable{};
    if (table.data() != e.form->table().data() || table.size() != e.form->table().size()) e.form->setTable(table);
    std::vector<std::optional<double>> values;
    for (size_t i = 0; i < table.size(); ++i) values.push_back(e.ops->value(*slide, at, i));
    e.form->setValues(values);
    if (e.ops == &kCameraOps) {
        picture_->setMove(current ? at : -1);
        cameraDuration_->setVisible(current);
        if (current) cameraDuration_->setValues({slide->cameraMoveAt(at)->duration / 1000.0});
    }
}

bool SlidePanel::previewTransition() {
    if (rows_.isEmpty()) return false;
    QString error;
    if (PreviewTransition(this, doc_, rows_.first(), transitionPreview_, &error)) return true;
    prompts().tell(this, "Quillet", "The transition cannot be previewed.", error);
    return false;
}

OptionForm* SlidePanel::form(const QString& name) const {
    for (const auto& [n, section] : sections_)
        if (n == name) return section.form;
    return nullptr;
}

QLineEdit* SlidePanel::textField(const QString& name) const {
    for (const auto& [n, text] : texts_)
        if (n == name) return text.edit;
    return nullptr;
}

void SlidePanel::edit(const QString& what, const std::function<void(Slide&)>& change) {
    doc_.editSlides(rows_, "Slide Properties: " + what, change);
}

std::vector<const Slide*> SlidePanel::slides() const {
    std::vector<const Slide*> out;
    for (int row : rows_)
        if (const Slide* s = doc_.show().slideAt(row)) out.push_back(s);
    return out;
}

void SlidePanel::setRows(const QList<int>& rows) {
    rows_ = rows;
    refresh();
}

void SlidePanel::refresh() {
    const std::vector<const Slide*> all = slides();
    updating_ = true;
    heading_->setText(all.empty() ? QString("No slide selected")
                      : all.size() == 1 ? QString("Slide %1").arg(rows_.first() + 1)
                                        : QString("%1 slides selected").arg(all.size()));
    body_->setEnabled(!all.empty());
    // One value when every slide has it, else mixed.
    auto common = [&all](auto get) -> std::optional<decltype(get(*all.front()))> {
        if (all.empty()) return std::nullopt;
        const auto first = get(*all.front());
        for (const Slide* s : all)
            if (!(get(*s) == first)) return std::nullopt;
        return first;
    };
    for (const auto& [name, section] : sections_) {
        std::vector<std::optional<double>> values;
        for (const SlideBinding& b : section.bind) values.push_back(common(b.get));
        section.form->setValues(values);
    }
    // A type the list does not offer shows by name over the empty list.
    OptionForm* picture = form("picture");
    const auto type = common([](const Slide& s) { return s.image.imageType; });
    if (auto* types = qobject_cast<QComboBox*>(picture->control(0)); types && types->currentIndex() < 0 && !all.empty())
        types->setPlaceholderText(!type ? QString("(mixed)") : QString("%1 (kept)").arg(UnofferedTypeName(*type)));
    // Only the types encoded here as JPEG use the quality.
    const bool jpeg = std::any_of(all.begin(), all.end(), [](const Slide* s) {
        return s->image.imageType == ImageType::Jpeg || s->image.imageType == ImageType::JpegTransparent;
    });
    QWidget* quality = picture->control(1);
    quality->setEnabled(jpeg || all.empty());
    for (QLabel* label : picture->findChildren<QLabel*>())
        if (label->buddy() == quality) label->setEnabled(quality->isEnabled());
    for (const auto& [name, text] : texts_) {
        const auto value = common([f = text.field](const Slide& s) { return f(const_cast<Slide&>(s)); });
        text.edit->setText(value ? QString::fromStdString(*value) : QString());
        text.edit->setPlaceholderText(value ? QString() : QString("(mixed)"));
    }

    const auto transition = common([](const Slide& s) { return s.transitionIn().name(); });
    const Transition* prototype = transition ? TransitionRegistry::instance().Find(*transition) : nullptr;
    transitionChooser_->setPlaceholderText(transition ? QString() : QString("(mixed)"));
    transitionChooser_->setCurrentIndex(
        transition ? transitionChooser_->findText(QString::fromStdString(*transition)) : -1);
    const OptionTable table = prototype ? prototype->Options() : OptionTable{};
    if (table.data() != transitionOptions_->table().data() || table.size() != transitionOptions_->table().size())
        transitionOptions_->setTable(table);
    std::vector<std::optional<double>> options;
    for (size_t i = 0; i < table.size(); ++i)
        options.push_back(common([i](const Slide& s) { return s.transitionIn().OptionValue(i); }));
    transitionOptions_->setValues(options);
    transitionNote_->setVisible(!all.empty() && !transition);

    const auto overlay = common(ShownOverlayName);
    overlayChooser_->setPlaceholderText(overlay ? QString() : QString("(mixed)"));
    overlayChooser_->setCurrentIndex(overlay ? overlayChooser_->findText(*overlay) : -1);
    updating_ = false;
    const Slide* one = all.size() == 1 ? all.front() : nullptr;
    const bool several = all.size() > 1;
    picture_->setSlide(one, several ? "Select one slide to crop its picture." : "");
    filterPreview_->setSlide(one);
    for (auto& [name, e] : effects_) refreshEffects(e);
    captions_->setCaptions(one ? &one->captions : nullptr, several ? "Select one slide to edit its captions." : "");
    sound_->setSound(one ? &one->sound : nullptr, several ? "Select one slide to edit its sounds." : "");
    stage_->setSlide(one, captions_->list()->currentRow());
}

}  // namespace quillet::app
