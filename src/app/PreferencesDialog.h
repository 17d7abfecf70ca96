// The preferences (Edit > Preferences...): the defaults new slides take,
// reading the Exif data of added pictures, the length of the recent lists,
// the default publish folder, the fonts new captions start with, and the addresses published pages send a
// browser without the player to. They belong to this computer, not to the
// show: OK saves them to the settings file at once, with no undo step.
#pragma once

#include <QDialog>

#include "app/OptionForm.h"
#include "settings/AppSettings.h"

class QLabel;
class QLineEdit;

namespace quillet::app {

class PreferencesDialog : public QDialog {
    Q_OBJECT
public:
    explicit PreferencesDialog(QWidget* parent = nullptr);

    OptionForm* form() const { return form_; }
    // "Publish folder", "Player download", "Plug-in page".
    QLineEdit* textField(const QString& name) const;
    const AppSettings& settings() const { return settings_; }

    // Makes the values the settings of this run and saves them; a file that
    // cannot be written is told and false returned.
    bool apply();
    void accept() override;

private:
    AppSettings settings_;
    OptionForm* form_ = nullptr;
    std::vector<std::pair<QString, QLineEdit*>> texts_;
};

}  // namespace quillet::app
