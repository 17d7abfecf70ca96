#include "app/Document.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QUndoCommand>
#include <memory>
#include <algorithm>
#include <numeric>

#include "effects/CameraEffect.h"
#include "effects/OverlayEffect.h"
#include "effects/Transition.h"
#include "io/OutputFile.h"
#include "media/ImageFilter.h"
#include "model/ProjectFile.h"
#include "model/Slide.h"
#include "settings/AppSettings.h"

namespace quillet::app {

namespace {

// New slides at `index`; undo takes them out again and keeps them.
class InsertCommand : public QUndoCommand {
public:
    InsertCommand(Document& doc, int index, std::vector<std::unique_ptr<Slide>> slides, const QString& text)
        : QUndoCommand(text), doc_(doc), index_(index), count_(int(slides.size())), held_(std::move(slides)) {}
    void redo() override {
        QList<int> rows;
        for (int i = 0; i < count_; ++i) {
            doc_.show().insert(std::move(held_[size_t(i)]), index_ + i);
            rows << index_ + i;
        }
        held_.clear();
        doc_.notifyChanged(rows);
    }
    void undo() override {
        for (int i = 0; i < count_; ++i) held_.push_back(doc_.show().take(index_));
        doc_.notifyChanged({std::min(index_, doc_.show().count() - 1)});
    }

private:
    Document& doc_;
    int index_, count_;
    std::vector<std::unique_ptr<Slide>> held_;
};

class RemoveCommand : public QUndoCommand {
public:
    RemoveCommand(Document& doc, QList<int> rows) : QUndoCommand("Delete Slide(s)"), doc_(doc), rows_(std::move(rows)) {}
    void redo() override {
        for (auto it = rows_.rbegin(); it != rows_.rend(); ++it) held_.push_back(doc_.show().take(*it));
        std::reverse(held_.begin(), held_.end());
        doc_.notifyChanged({std::min(rows_.first(), doc_.show().count() - 1)});
    }
    void undo() override {
        for (int i = 0; i < rows_.size(); ++i) doc_.show().insert(std::move(held_[size_t(i)]), rows_[i]);
        held_.clear();
        doc_.notifyChanged(rows_);
    }

private:
    Document& doc_;
    QList<int> rows_;  // ascending
    std::vector<std::unique_ptr<Slide>> held_;
};

// A new play order: position k holds the slide that was at order[k].
class ReorderCommand : public QUndoCommand {
public:
    ReorderCommand(Document& doc, std::vector<int> order, QList<int> selectAfter)
        : QUndoCommand("Move Slides"), doc_(doc), order_(std::move(order)), select_(std::move(selectAfter)) {}
    void redo() override { apply(order_, select_); }
    void undo() override {
        std::vector<int> inverse(order_.size());
        QList<int> rows;
        for (size_t k = 0; k < order_.size(); ++k) inverse[size_t(order_[k])] = int(k);
        for (int row : select_) rows << order_[size_t(row)];
        apply(inverse, rows);
    }

private:
    void apply(const std::vector<int>& order, const QList<int>& select) {
        SlideShow& show = doc_.show();
        std::vector<std::unique_ptr<Slide>> all(size_t(show.count()));
        for (int i = show.count() - 1; i >= 0; --i) all[size_t(i)] = show.take(i);
        for (int from : order) show.append(std::move(all[size_t(from)]));
        doc_.notifyChanged(select);
    }
    Document& doc_;
    std::vector<int> order_;
    QList<int> select_;
};

// Every slide's transition exchanged with the one held (both ways the same).
class TransitionsCommand : public QUndoCommand {
public:
    TransitionsCommand(Document& doc, std::vector<std::unique_ptr<Transition>> transitions)
        : QUndoCommand("Randomise Transitions"), doc_(doc), held_(std::move(transitions)) {}
    void redo() override { swap(); }
    void undo() override { swap(); }

private:
    void swap() {
        for (size_t i = 0; i < held_.size(); ++i) {
            Slide* slide = doc_.show().slideAt(int(i));
            auto mine = slide->transitionIn().Clone();
            slide->setTransitionIn(std::move(held_[i]));
            held_[i] = std::move(mine);
        }
        doc_.notifyChanged({});
    }
    Document& doc_;
    std::vector<std::unique_ptr<Transition>> held_;
};

class DurationCommand : public QUndoCommand {
public:
    DurationCommand(Document& doc, QList<int> rows, uint32_t ms) : QUndoCommand("Slide Duration"), doc_(doc), rows_(rows) {
        for (int row : rows_) {
            before_.push_back(doc.show().slideAt(row)->duration);
            after_.push_back(ms);
        }
    }
    void redo() override { apply(after_); }
    void undo() override { apply(before_); }

private:
    void apply(const std::vector<uint32_t>& values) {
        for (int i = 0; i < rows_.size(); ++i) doc_.show().slideAt(rows_[i])->duration = values[size_t(i)];
        doc_.notifyChanged(rows_);
    }
    Document& doc_;
    QList<int> rows_;
    std::vector<uint32_t> before_, after_;
};

// The slide fields the property panel edits, kept for undo.
struct SlideFields {
    uint32_t duration = 0;
    SlideImage image;
    ClickAction click;
    PopupWindow popup;
    std::unique_ptr<Transition> transition;
    std::string overlay;
    std::vector<std::unique_ptr<ImageFilter>> filters;
    std::vector<std::unique_ptr<CameraEffect>> moves;
    CaptionList captions;
    SlideSound sound;

    explicit SlideFields(const Slide& s)
        : duration(s.duration), image(s.image), click(s.clickAction), popup(s.popup),
          transition(s.transitionIn().Clone()), overlay(s.overlayEffect().name()), captions(s.captions),
          sound(s.sound) {
        for (const auto& f : s.imageFilters()) filters.push_back(f->Clone());
        for (const auto& m : s.cameraEffects()) moves.push_back(m->Clone());
    }
    void applyTo(Slide& s) const {
        s.duration = duration;
        s.image = image;
        s.clickAction = click;
        s.popup = popup;
        s.captions = captions;
        s.sound = sound;
        s.setTransitionIn(transition->Clone());
        if (s.overlayEffect().name() != overlay) s.setOverlayEffect(MakeOverlayEffect(overlay));
        if (!SameFilters(s.imageFilters(), filters)) {
            while (s.removeFilter(0)) {}
            for (const auto& f : filters) s.addFilter(f->Clone());
            s.dropCachedBitmap();  // the prepared picture had the other filters
        }
        if (!SameMoves(s.cameraEffects(), moves)) {
            while (s.removeCameraEffect(0)) {}
            for (const auto& m : moves) s.addCameraEffect(m->Clone());
        }
    }
    static bool SameFilters(const std::vector<std::unique_ptr<ImageFilter>>& a,
                            const std::vector<std::unique_ptr<ImageFilter>>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
            return x->name() == y->name() && x->options() == y->options();
        });
    }
    static bool SameMoves(const std::vector<std::unique_ptr<CameraEffect>>& a,
                          const std::vector<std::unique_ptr<CameraEffect>>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
            return x->name() == y->name() && x->duration == y->duration && x->options() == y->options();
        });
    }
    bool operator==(const SlideFields& o) const {
        return duration == o.duration && image == o.image && click == o.click && popup == o.popup &&
               transition->name() == o.transition->name() && transition->duration() == o.transition->duration() &&
               transition->options() == o.transition->options() && overlay == o.overlay &&
               SameFilters(filters, o.filters) && SameMoves(moves, o.moves) && captions == o.captions &&
               sound == o.sound;
    }
};

// The edit is made once to learn the result; redo and undo then put back
// the fields as they were after and before it.
class SlideEditCommand : public QUndoCommand {
public:
    SlideEditCommand(Document& doc, QList<int> rows, const QString& text, const std::function<void(Slide&)>& edit)
        : QUndoCommand(text), doc_(doc), rows_(std::move(rows)) {
        for (int row : rows_) {
            Slide& slide = *doc.show().slideAt(row);
            before_.emplace_back(slide);
            edit(slide);
            slide.fitToShow();
            after_.emplace_back(slide);
        }
    }
    bool changed() const { return before_ != after_; }
    void redo() override { apply(after_); }
    void undo() override { apply(before_); }

private:
    void apply(const std::vector<SlideFields>& fields) {
        for (int i = 0; i < rows_.size(); ++i) fields[size_t(i)].applyTo(*doc_.show().slideAt(rows_[i]));
        doc_.notifyChanged(rows_);
    }
    Document& doc_;
    QList<int> rows_;
    std::vector<SlideFields> before_, after_;
};

// The show-wide fields the show panel edits, kept for undo.
struct ShowFields {
    SwfData swfData;
    ControlPlacement controls, muteControl;
    std::string bgImage;
    int bgImageQuality = 0;
    bool useBgImage = false, bgImageScaleToFit = false, bgImageTile = false;
    SlideShow::Frame bgFrame = SlideShow::Frame::None;
    int bgFrameLeft = 0, bgFrameTop = 0, bgFrameRight = 0, bgFrameBottom = 0;
    uint32_t bgFrameColor = 0;
    std::string bgFramePattern, bgFrameCustomPattern;
    bool useCompression = false, disablePrint = false;
    int showBoundsLeft = 0, showBoundsTop = 0, showBoundsRight = 0, showBoundsBottom = 0;
    CaptionList captions;
    SlideSound sound;

    explicit ShowFields(const SlideShow& s)
        : swfData(s.swfData), controls(s.controls), muteControl(s.muteControl), bgImage(s.bgImage),
          bgImageQuality(s.bgImageQuality), useBgImage(s.useBgImage), bgImageScaleToFit(s.bgImageScaleToFit),
          bgImageTile(s.bgImageTile), bgFrame(s.bgFrame), bgFrameLeft(s.bgFrameLeft), bgFrameTop(s.bgFrameTop),
          bgFrameRight(s.bgFrameRight), bgFrameBottom(s.bgFrameBottom), bgFrameColor(s.bgFrameColor),
          bgFramePattern(s.bgFramePattern), bgFrameCustomPattern(s.bgFrameCustomPattern),
          useCompression(s.useCompression), disablePrint(s.disablePrint), showBoundsLeft(s.showBoundsLeft),
          showBoundsTop(s.showBoundsTop), showBoundsRight(s.showBoundsRight), showBoundsBottom(s.showBoundsBottom),
          captions(s.captions), sound(s.sound) {}
    void applyTo(SlideShow& s) const {
        s.swfData = swfData;
        s.controls = controls;
        s.muteControl = muteControl;
        s.bgImage = bgImage;
        s.bgImageQuality = bgImageQuality;
        s.useBgImage = useBgImage;
        s.bgImageScaleToFit = bgImageScaleToFit;
        s.bgImageTile = bgImageTile;
        s.bgFrame = bgFrame;
        s.bgFrameLeft = bgFrameLeft;
        s.bgFrameTop = bgFrameTop;
        s.bgFrameRight = bgFrameRight;
        s.bgFrameBottom = bgFrameBottom;
        s.bgFrameColor = bgFrameColor;
        s.bgFramePattern = bgFramePattern;
        s.bgFrameCustomPattern = bgFrameCustomPattern;
        s.useCompression = useCompression;
        s.disablePrint = disablePrint;
        s.showBoundsLeft = showBoundsLeft;
        s.showBoundsTop = showBoundsTop;
        s.showBoundsRight = showBoundsRight;
        s.showBoundsBottom = showBoundsBottom;
        s.captions = captions;
        s.sound = sound;
    }
    bool operator==(const ShowFields&) const = default;
};

class ShowEditCommand : public QUndoCommand {
public:
    ShowEditCommand(Document& doc, const QString& text, const std::function<void(SlideShow&)>& edit)
        : QUndoCommand(text), doc_(doc), before_(doc.show()), after_((edit(doc.show()), doc.show())) {}
    bool changed() const { return !(before_ == after_); }
    void redo() override { apply(after_); }
    void undo() override { apply(before_); }

private:
    void apply(const ShowFields& fields) {
        fields.applyTo(doc_.show());
        doc_.notifyChanged({});
    }
    Document& doc_;
    ShowFields before_, after_;
};

// Publish settings are saved with the project, so they are undone like the rest.
class PublishEditCommand : public QUndoCommand {
public:
    PublishEditCommand(Document& doc, const QString& text, const PublishSettings& after)
        : QUndoCommand(text), doc_(doc), before_(doc.publish()), after_(after) {}
    void redo() override { apply(after_); }
    void undo() override { apply(before_); }

private:
    void apply(const PublishSettings& settings) {
        doc_.publish() = settings;
        doc_.notifyChanged({});
    }
    Document& doc_;
    PublishSettings before_, after_;
};

class ShowSettingsCommand : public QUndoCommand {
public:
    ShowSettingsCommand(Document& doc, const ShowSettings& after)
        : QUndoCommand("Slide Show Properties"), doc_(doc), before_(doc.showSettings()), after_(after) {}
    void redo() override { doc_.applyShowSettings(after_); }
    void undo() override { doc_.applyShowSettings(before_); }

private:
    Document& doc_;
    ShowSettings before_, after_;
};

QList<int> sortedUnique(QList<int> rows, int count) {
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    rows.removeIf([count](int r) { return r < 0 || r >= count; });
    return rows;
}

QString recoveryNamePath() { return Document::recoveryPath() + ".path"; }

}  // namespace

Document::Document(QObject* parent) : QObject(parent) {
    connect(&undo_, &QUndoStack::cleanChanged, this, &Document::stateChanged);
}

Document::~Document() = default;

QString Document::name() const { return path_.isEmpty() ? QString("Untitled") : QFileInfo(path_).fileName(); }

bool Document::modified() const { return !undo_.isClean() || show_.changeCount() != 0; }

void Document::notifyChanged(const QList<int>& rows) { emit changed(rows); }

void Document::reset() {
    undo_.clear();
    show_.reset();
    show_.clearChanged();
    publish_.reset();
    path_.clear();
    emit pathChanged();
    emit changed({});
}

bool Document::open(const QString& path, MissingPictureHandler* handler, QString* error) {
    if (!QFileInfo::exists(path)) {
        if (error) *error = kProjectNotFound;
        return false;
    }
    LoadOptions options;
    options.handler = handler;
    std::string why;
    if (!LoadProject(path.toStdString(), show_, publish_, &why, options)) {
        if (error) *error = path + ": " + QString::fromStdString(why);
        return false;
    }
    undo_.clear();
    show_.clearChanged();
    path_ = QFileInfo(path).absoluteFilePath();
    emit pathChanged();
    emit changed({0});
    return true;
}

bool Document::save(const QString& path, QString* error) {
    std::string why;
    if (!SaveProject(path.toStdString(), show_, publish_, &why)) {
        if (error) *error = path + ": " + QString::fromStdString(why);
        return false;
    }
    path_ = QFileInfo(path).absoluteFilePath();
    undo_.setClean();
    show_.clearChanged();
    removeRecovery();
    emit pathChanged();
    emit stateChanged();
    return true;
}

void Document::insertSlides(int index, std::vector<std::unique_ptr<Slide>> slides, const QString& text) {
    if (slides.empty()) return;
    index = std::clamp(index, 0, show_.count());
    undo_.push(new InsertCommand(*this, index, std::move(slides), text));
}

void Document::removeSlides(QList<int> rows) {
    rows = sortedUnique(std::move(rows), show_.count());
    if (!rows.isEmpty()) undo_.push(new RemoveCommand(*this, rows));
}

void Document::duplicateSlides(QList<int> rows) {
    rows = sortedUnique(std::move(rows), show_.count());
    if (rows.isEmpty()) return;
    std::vector<std::unique_ptr<Slide>> copies;
    for (int row : rows) {
        auto copy = show_.createSlide(show_.slideAt(row)->type);
        copy->copyFrom(*show_.slideAt(row));
        copies.push_back(std::move(copy));
    }
    undo_.push(new InsertCommand(*this, rows.last() + 1, std::move(copies), "Duplicate Slide(s)"));
}

void Document::editPublish(const QString& text, const PublishSettings& settings) {
    if (!(settings == publish_)) undo_.push(new PublishEditCommand(*this, text, settings));
}

void Document::editSlides(QList<int> rows, const QString& text, const std::function<void(Slide&)>& edit) {
    rows = sortedUnique(std::move(rows), show_.count());
    if (rows.isEmpty()) return;
    auto command = std::make_unique<SlideEditCommand>(*this, rows, text, edit);
    if (command->changed()) undo_.push(command.release());
    else command->undo();
}

void Document::editShow(const QString& text, const std::function<void(SlideShow&)>& edit) {
    auto command = std::make_unique<ShowEditCommand>(*this, text, edit);
    if (command->changed()) undo_.push(command.release());
    else command->undo();
}

void Document::moveSlides(QList<int> rows, int target) {
    const int n = show_.count();
    rows = sortedUnique(std::move(rows), n);
    if (rows.isEmpty()) return;
    std::vector<int> rest;
    for (int i = 0; i < n; ++i)
        if (!rows.contains(i)) rest.push_back(i);
    const auto at = std::count_if(rest.begin(), rest.end(), [target](int i) { return i < target; });
    std::vector<int> order(rest.begin(), rest.begin() + at);
    order.insert(order.end(), rows.begin(), rows.end());
    order.insert(order.end(), rest.begin() + at, rest.end());
    std::vector<int> identity(static_cast<size_t>(n));
    std::iota(identity.begin(), identity.end(), 0);
    if (order == identity) return;
    QList<int> select;
    for (int k = 0; k < rows.size(); ++k) select << int(at) + k;
    undo_.push(new ReorderCommand(*this, std::move(order), select));
}

void Document::randomiseTransitions() {
    if (show_.empty()) return;
    std::vector<std::unique_ptr<Transition>> drawn;
    for (int i = 0; i < show_.count(); ++i) {
        drawn.push_back(TransitionRegistry::instance().Random()->CreateInstance());
    }
    undo_.push(new TransitionsCommand(*this, std::move(drawn)));
}

void Document::setDuration(QList<int> rows, uint32_t ms) {
    rows = sortedUnique(std::move(rows), show_.count());
    if (!rows.isEmpty()) undo_.push(new DurationCommand(*this, rows, ms));
}

ShowSettings Document::showSettings() const { return {show_.width(), show_.height(), show_.fps, show_.bgColor}; }

void Document::setShowSettings(const ShowSettings& settings) {
    if (settings != showSettings()) undo_.push(new ShowSettingsCommand(*this, settings));
}

void Document::applyShowSettings(const ShowSettings& s) {
    const bool whole = show_.showBoundsLeft == 0 && show_.showBoundsTop == 0 &&
                       show_.showBoundsRight == show_.width() && show_.showBoundsBottom == show_.height();
    const bool resized = s.width != show_.width() || s.height != show_.height();
    show_.setSize(s.width, s.height);
    if (whole) {
        show_.showBoundsRight = show_.width();
        show_.showBoundsBottom = show_.height();
    }
    show_.fps = s.fps;
    show_.bgColor = s.bgColor;
    if (resized) show_.refitAll();
    emit changed({});
}

namespace {

// Each running copy of the program keeps its own recovery file: the first
// of a few numbered slots whose lock it can take. A slot's lock left by a
// copy that died is free again, so the next start finds its file.
struct RecoverySlot {
    QString folder;
    QString name = "recovery";
    std::unique_ptr<QLockFile> lock;
};
constexpr int kRecoverySlots = 8;

const RecoverySlot& ClaimRecoverySlot(const QString& folder) {
    static RecoverySlot slot;
    if (slot.folder == folder) return slot;
    slot = RecoverySlot{folder};
    QDir().mkpath(folder);
    auto name = [](int n) { return n == 0 ? QString("recovery") : QString("recovery-%1").arg(n); };
    auto take = [&folder](const QString& slotName) {
        auto lock = std::make_unique<QLockFile>(folder + "/" + slotName + ".lock");
        lock->setStaleLockTime(0);  // only a lock whose program is gone is stale
        return lock->tryLock(0) ? std::move(lock) : nullptr;
    };
    for (int n = 0; n < kRecoverySlots && !slot.lock; ++n)
        if ((slot.lock = take(name(n)))) slot.name = name(n);
    // A file left in another free slot (its copy of the program died) is
    // taken over, so one start finds it.
    const QString own = folder + "/" + slot.name + ".qpj";
    for (int n = 0; n < kRecoverySlots && slot.lock && !QFileInfo::exists(own); ++n) {
        const QString other = folder + "/" + name(n) + ".qpj";
        if (name(n) == slot.name || !QFileInfo::exists(other) || !take(name(n))) continue;
        QFile::remove(own + ".path");
        QFile::rename(other + ".path", own + ".path");
        QFile::rename(other, own);
    }
    return slot;
}

}  // namespace

QString Document::recoveryPath() {
    const QString folder = QFileInfo(QString::fromStdString(settingsFilePath())).dir().path();
    return folder + "/" + ClaimRecoverySlot(folder).name + ".qpj";
}

bool Document::writeRecovery(QString* error) const {
    QDir().mkpath(QFileInfo(recoveryPath()).path());
    std::string why;
    if (!SaveProject(recoveryPath().toStdString(), show_, publish_, &why) ||
        !WriteFileAtomically(recoveryNamePath().toStdString(), path_.toStdString(), &why)) {
        if (error) *error = QString::fromStdString(why);
        return false;
    }
    return true;
}

void Document::removeRecovery() {
    QFile::remove(recoveryPath());
    QFile::remove(recoveryNamePath());
}

bool Document::restoreRecovery(QString* error) {
    QFile name(recoveryNamePath());
    QString original;
    if (name.open(QIODevice::ReadOnly)) original = QString::fromUtf8(name.readAll());
    std::string why;
    if (!LoadProject(recoveryPath().toStdString(), show_, publish_, &why)) {
        if (error) *error = recoveryPath() + ": " + QString::fromStdString(why);
        return false;
    }
    undo_.clear();
    path_ = original;
    show_.markChanged();  // the restored changes are still unsaved
    emit pathChanged();
    emit changed({0});
    return true;
}

}  // namespace quillet::app
