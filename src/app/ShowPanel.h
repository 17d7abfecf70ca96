// The show property panel: a dock with the show-wide settings (stage and
// the part of it shown, start, loop, click and end actions, playback and
// mute controls with pictures of their sets, preloader and its font,
// background image and frame, compression and printing). Every edit is one
// undo step.
#pragma once

#include <QDockWidget>
#include <span>
#include <vector>

#include "app/OptionForm.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace quillet {
class SlideShow;
}

namespace quillet::app {

class CaptionEditor;
class Document;
class SoundEditor;

// How one row of a show table reads and writes its field, in the units of
// the row's control.
struct ShowBinding {
    double (*get)(const SlideShow&);
    void (*set)(SlideShow&, double);
};

class ShowPanel : public QDockWidget {
    Q_OBJECT
public:
    explicit ShowPanel(Document& doc, QWidget* parent = nullptr);

    // Shows the show's values again (after an edit or an undo).
    void refresh();

    // The forms by section: "stage", "start", "controls", "mute", "click",
    // "end", "preloader", "preloaderFont", "background", "frame", "movie".
    OptionForm* form(const QString& name) const;
    QStringList formNames() const;
    // Text fields by label without the colon ("Click URL", "Preloader text", ...).
    QLineEdit* textField(const QString& name) const;
    // The installed control sets of each kind.
    QComboBox* controlSetChooser(bool mute) const { return mute ? muteSet_ : controlSet_; }
    // The chosen set drawn over the stage colour (or why it cannot be).
    QLabel* setPicture(bool mute) const { return mute ? mutePicture_ : controlPicture_; }
    // Left, top, right, bottom of the part of the stage shown. Not among the
    // forms above: an entry is checked against the other side too, and one
    // that leaves nothing to show is refused with boundsMessage().
    OptionForm* boundsForm() const { return bounds_; }
    QString boundsMessage() const;
    // The preloader text's font family (installed fonts).
    QComboBox* preloaderFontChooser() const { return preloadFont_; }

    // The show's own captions and its music.
    CaptionEditor* captionEditor() const { return captions_; }
    SoundEditor* musicEditor() const { return music_; }

private:
    QWidget* addSection(const QString& name, const QString& title, OptionTable table,
                        std::span<const ShowBinding> bind, QWidget* parent);
    void addForm(QWidget* section, const QString& name, OptionTable table, std::span<const ShowBinding> bind);
    QWidget* addBounds(QWidget* parent);
    void editBounds(int index, int value);
    void addFontChooser(QWidget* section);
    void addText(QWidget* section, const QString& name, const QString& label, std::string& (*field)(SlideShow&));
    QComboBox* addSetChooser(QWidget* section, bool mute, QLabel*& picture);
    void showSetPicture(bool mute);

    Document& doc_;
    struct Section {
        OptionForm* form;
        std::span<const ShowBinding> bind;
    };
    struct TextField {
        QLineEdit* edit;
        std::string& (*field)(SlideShow&);
    };
    std::vector<std::pair<QString, Section>> sections_;
    std::vector<std::pair<QString, TextField>> texts_;
    QComboBox* controlSet_ = nullptr;
    QComboBox* muteSet_ = nullptr;
    QLabel* controlPicture_ = nullptr;
    QLabel* mutePicture_ = nullptr;
    OptionForm* bounds_ = nullptr;
    QLabel* boundsMessage_ = nullptr;
    QComboBox* preloadFont_ = nullptr;
    CaptionEditor* captions_ = nullptr;
    SoundEditor* music_ = nullptr;
    bool updating_ = false;
};

}  // namespace quillet::app
