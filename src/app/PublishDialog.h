// The publish settings (File > Publish Settings...): the targets with their
// file names, the base name they derive from, the output folder, the page
// and projector options, and the folder of the player images. OK checks the
// file names and stores the settings in the document as one undo step; the
// players folder is a setting of this computer and goes to the settings file.
#pragma once

#include <QDialog>
#include <vector>

#include "app/OptionForm.h"
#include "model/PublishSettings.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace quillet::app {

class Document;

class PublishDialog : public QDialog {
    Q_OBJECT
public:
    explicit PublishDialog(Document& doc, QWidget* parent = nullptr);

    // The targets in their fixed order: "Movie", "FLV", "HTML page", "Mac projector",
    // "Windows projector", "QuickTime movie", "Screen saver", "Screen saver installer", "Ruffle page".
    QCheckBox* targetBox(int target) const { return targets_[size_t(target)].box; }
    QLineEdit* targetName(int target) const { return targets_[size_t(target)].name; }
    QLineEdit* baseName() const { return base_; }
    QCheckBox* useBaseName() const { return useBase_; }
    QLineEdit* outputFolder() const { return output_; }
    QLineEdit* playersFolder() const { return players_; }
    // "page" (the HTML page options) and "projectors".
    OptionForm* form(const QString& name) const { return name == "page" ? page_ : projectors_; }
    // The settings as the dialog holds them.
    const PublishSettings& settings() const { return settings_; }

    // Checks the file names of the chosen targets; on success stores the
    // settings (one undo step) and the players folder. The first problem is
    // told and stays in message().
    bool apply();
    QString message() const;
    void accept() override;

private:
    void refresh();

    Document& doc_;
    PublishSettings settings_;
    struct Target {
        QCheckBox* box;
        QLineEdit* name;
    };
    std::vector<Target> targets_;
    QLineEdit* base_ = nullptr;
    QCheckBox* useBase_ = nullptr;
    QLineEdit* output_ = nullptr;
    QLineEdit* players_ = nullptr;
    OptionForm* page_ = nullptr;
    OptionForm* projectors_ = nullptr;
    QLabel* message_ = nullptr;
    int stageWidth_ = 0, stageHeight_ = 0;
    bool updating_ = false;
};

}  // namespace quillet::app
