// The sounds of one slide or the show's music: sound on/off, playing on
// until the next sound, the list of sound files in play order and the
// current sound's timing and MP3 quality. Like the caption editor it hands
// every change to its owner as one edit.
#pragma once

#include <QGroupBox>
#include <functional>

#include "app/OptionForm.h"
#include "model/SlideSound.h"

class QLabel;
class QLineEdit;
class QListWidget;

namespace quillet::app {

// The open dialog's filter list of sound files.
QString SoundFilterText();

class SoundEditor : public QGroupBox {
    Q_OBJECT
public:
    using Edit = std::function<void(const QString& what, const std::function<void(SlideSound&)>& change)>;
    SoundEditor(const QString& title, Edit edit, QWidget* parent = nullptr);

    // Shows `sound`; null disables the editor with `why` as its note.
    void setSound(const SlideSound* sound, const QString& why = {});

    QListWidget* list() const { return list_; }
    // "switches" (sound on, until the next sound) and "clip" (the current sound's fields).
    OptionForm* form(const QString& name) const { return name == "clip" ? clip_ : switches_; }
    QLineEdit* fileField() const { return file_; }
    // Asks for a sound file and adds it after the current one; removes the current one.
    void addSound();
    void addSound(const QString& path);
    void removeSound();

private:
    void change(const QString& what, const std::function<void(SoundClip&)>& edit);

    Edit edit_;
    QListWidget* list_ = nullptr;
    OptionForm* switches_ = nullptr;
    OptionForm* clip_ = nullptr;
    QLineEdit* file_ = nullptr;
    QLabel* note_ = nullptr;
    QWidget* fields_ = nullptr;
    SlideSound shown_;
    bool updating_ = false;
};

}  // namespace quillet::app
