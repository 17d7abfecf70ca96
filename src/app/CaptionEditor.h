// The captions of one slide or of the whole show: the list in writing order
// (add, remove, reorder) and the current caption's fields. The editor owns
// no captions; it shows a list it is given and hands every change to its
// owner as one edit, so the owner's undo step covers it.
#pragma once

#include <QGroupBox>
#include <functional>

#include "app/OptionForm.h"
#include "effects/Caption.h"

class QComboBox;
class QLabel;
class QListWidget;
class QPlainTextEdit;

namespace quillet::app {

class CaptionEditor : public QGroupBox {
    Q_OBJECT
public:
    // Runs `change` on the edited list as one undo step named `what`.
    using Edit = std::function<void(const QString& what, const std::function<void(CaptionList&)>& change)>;
    // New captions take the default font of show captions or of slide captions.
    CaptionEditor(const QString& title, bool ofShow, Edit edit, QWidget* parent = nullptr);

    // Shows `captions`; null disables the editor with `why` as its note.
    void setCaptions(const CaptionList* captions, const QString& why = {});

    QListWidget* list() const { return list_; }
    OptionForm* form() const { return form_; }
    QPlainTextEdit* textField() const { return text_; }
    // The font families installed on this system.
    QComboBox* fontChooser() const { return font_; }
    // The buttons: a new caption after the current one, remove the current
    // one, move it up (-1) or down (+1).
    void addCaption();
    void removeCaption();
    void moveCaption(int delta);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void change(const QString& what, const std::function<void(Caption&)>& edit);

    Edit edit_;
    bool ofShow_ = false;
    QListWidget* list_ = nullptr;
    QPlainTextEdit* text_ = nullptr;
    QComboBox* font_ = nullptr;
    OptionForm* form_ = nullptr;
    QLabel* note_ = nullptr;
    QWidget* fields_ = nullptr;
    CaptionList shown_;
    bool updating_ = false;
};

}  // namespace quillet::app
