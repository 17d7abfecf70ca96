// The slide property panel: a dock beside the slide list that edits the
// selected slides. With several slides selected a field whose values differ
// shows as mixed and is left alone unless edited; an edit applies to all of
// them as one undo step.
#pragma once

#include <QDockWidget>
#include <QList>
#include <span>
#include <vector>

#include "app/FilterPreview.h"
#include "app/OptionForm.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;

namespace quillet {
class Slide;
}

namespace quillet::app {

class CaptionEditor;
class CaptionStage;
class PictureEditor;
class PreviewWindow;
class Document;
class SoundEditor;
struct EffectOps;

// How one row of a panel table reads and writes its slide field, in the
// units of the row's control.
struct SlideBinding {
    double (*get)(const Slide&);
    void (*set)(Slide&, double);
};

class SlidePanel : public QDockWidget {
    Q_OBJECT
public:
    explicit SlidePanel(Document& doc, QWidget* parent = nullptr);

    // The slides the panel edits (0-based rows); refreshes the fields.
    void setRows(const QList<int>& rows);
    QList<int> rows() const { return rows_; }
    // Shows the slides' values again (after an edit or an undo).
    void refresh();

    QComboBox* transitionChooser() const { return transitionChooser_; }
    QComboBox* overlayChooser() const { return overlayChooser_; }
    // The selected slides' transition options; empty while they differ in transition.
    OptionForm* transitionOptions() const { return transitionOptions_; }
    // The forms of the slide's own fields: "slide" (duration), "transition"
    // (its duration), "click", "popup", "picture".
    OptionForm* form(const QString& name) const;
    QLineEdit* textField(const QString& name) const;

    // The camera moves ("camera") and filters ("filters") of a single
    // selected slide: the list in play order, the chooser of the effect to
    // add, and the options of the current one (for camera moves the
    // duration comes first, in `effectDuration`).
    QListWidget* effectList(const QString& name) const;
    QComboBox* effectChooser(const QString& name) const;
    OptionForm* effectOptions(const QString& name) const;
    OptionForm* effectDuration() const { return cameraDuration_; }
    // The list's buttons: add the chosen effect after the current one,
    // remove the current one, move it up (-1) or down (+1).
    void addEffect(const QString& name);
    void removeEffect(const QString& name);
    void moveEffect(const QString& name, int delta);

    // The captions and sounds of a single selected slide.
    CaptionEditor* captionEditor() const { return captions_; }
    // Plays the transition into the first selected slide in a small window.
    bool previewTransition();
    PreviewWindow* transitionPreview() const { return transitionPreview_; }
    SoundEditor* soundEditor() const { return sound_; }
    // The picture of a single selected slide: crop, turn, camera frames.
    PictureEditor* pictureEditor() const { return picture_; }
    // The single selected slide's picture as exported, filters applied.
    FilterPreview* filterPreview() const { return filterPreview_; }
    // The slide at stage scale; the current caption is dragged on it.
    CaptionStage* captionStage() const { return stage_; }

private:
    struct Section {
        OptionForm* form;
        std::span<const SlideBinding> bind;
    };
    struct TextField {
        QLineEdit* edit;
        std::string& (*field)(Slide&);
    };
    QWidget* addSection(const QString& name, const QString& title, OptionTable table,
                        std::span<const SlideBinding> bind, QWidget* parent);
    void edit(const QString& what, const std::function<void(Slide&)>& change);
    std::vector<const Slide*> slides() const;

    Document& doc_;
    QList<int> rows_;
    QLabel* heading_ = nullptr;
    QWidget* body_ = nullptr;
    QComboBox* transitionChooser_ = nullptr;
    QComboBox* overlayChooser_ = nullptr;
    OptionForm* transitionOptions_ = nullptr;
    QLabel* transitionNote_ = nullptr;
    std::vector<std::pair<QString, Section>> sections_;
    std::vector<std::pair<QString, TextField>> texts_;
    struct EffectList {
        const EffectOps* ops;
        QWidget* group;
        QListWidget* list;
        QComboBox* chooser;
        OptionForm* form;
        QLabel* note;
    };
    QWidget* addEffectList(const QString& name, const QString& title, const EffectOps& ops, QWidget* parent);
    EffectList* effects(const QString& name);
    void refreshEffects(EffectList& effects);
    std::vector<std::pair<QString, EffectList>> effects_;
    OptionForm* cameraDuration_ = nullptr;
    CaptionEditor* captions_ = nullptr;
    SoundEditor* sound_ = nullptr;
    PictureEditor* picture_ = nullptr;
    CaptionStage* stage_ = nullptr;
    FilterPreview* filterPreview_ = nullptr;
    PreviewWindow* transitionPreview_ = nullptr;
    bool updating_ = false;
};

}  // namespace quillet::app
