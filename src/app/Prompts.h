// Every question and message the desktop program puts to the user goes
// through one Prompts object. The default shows Qt dialogs; the tests install
// one that answers from a script, so no test ever waits on a modal dialog.
#pragma once

#include <QString>
#include <QStringList>

#include "model/ProjectFile.h"
#include "publish/Publisher.h"

class QProgressDialog;
class QWidget;

namespace quillet::app {

// The texts the user reads, used exactly.
inline constexpr const char* kSaveChangesCaption = "Save changes";
inline constexpr const char* kSaveChangesText = "Save changes before closing?";
inline constexpr const char* kImageNotFound = "The image could not be added because the file was not found.";
inline constexpr const char* kNotAnImage =
    "Unable to add the slide. The file may not be a valid image file or may not be supported. Please read the "
    "help file for all supported file formats.";
inline constexpr const char* kExportFailed = "An error occurred while trying to export the slide show.";
inline constexpr const char* kPreviewFailed = "An error occurred while trying to launch the preview.";
inline constexpr const char* kExportingText = "Exporting SWF...";
inline constexpr const char* kPreviewTitle = "Quillet Preview";
inline constexpr const char* kCantFindCaption = "Can't find the image.";
inline constexpr const char* kNotRelocated = "The image was not relocated and will not be added to the slide show.";
inline constexpr const char* kChooseImage = "Choose an image";
inline constexpr const char* kPictureFilter =
    "Images (*.jpg *.jpeg *.jpe *.png *.gif *.bmp *.tif *.tiff *.webp *.tga *.pcx *.ppm *.pgm);;All files (*)";
inline constexpr const char* kRestoreCaption = "Recover";
inline constexpr const char* kRestoreText =
    "Quillet was not closed properly last time. Restore the unsaved changes of that show?";

class Prompts {
public:
    enum class Answer { Yes, No, Cancel };
    virtual ~Prompts() = default;

    // A question under `caption`; Cancel is offered only when asked for.
    virtual Answer ask(QWidget* parent, const QString& caption, const QString& text, bool withCancel);
    // A message with an OK button; `details` (the file and the reason) can be unfolded.
    virtual void tell(QWidget* parent, const QString& caption, const QString& text, const QString& details = {});
    // Open/save dialogs; empty when dismissed.
    virtual QStringList chooseImages(QWidget* parent);
    virtual QString chooseImage(QWidget* parent);
    virtual QString chooseOpenPath(QWidget* parent, const QString& title, const QString& filter);
    virtual QString chooseSavePath(QWidget* parent, const QString& title, const QString& proposed,
                                   const QString& filter);
    // The relocate dialog and its folder browser (OK only while the folder
    // holds `fileName`).
    virtual MissingPictureHandler::Choice askRelocate(QWidget* parent, const QString& missingPath);
    virtual QString chooseFolder(QWidget* parent, const QString& fileName);
    // "The item ... already exists. Replace it?" with Replace, Don't Replace,
    // Stop and Apply To All.
    virtual ReplaceReply askReplace(QWidget* parent, const QString& question);
    // The folder the publish run writes into; empty when dismissed.
    virtual QString chooseOutputFolder(QWidget* parent, const QString& proposed);
    // Called once a progress dialog is up (tests cancel through it).
    virtual void progressShown(QProgressDialog* dialog) {}
};

// The Prompts of the program: the default unless one was installed.
Prompts& prompts();
// Installs `p` (not owned); null puts the default back.
void setPrompts(Prompts* p);

// Bridges the project loader's questions to the prompts.
class RelocateHandler : public MissingPictureHandler {
public:
    explicit RelocateHandler(QWidget* parent) : parent_(parent) {}
    Choice ask(const std::string& missingPath) override;
    std::optional<std::string> chooseImage(const std::string& missingPath) override;
    std::optional<std::string> chooseFolder(const std::string& fileName) override;
    void notRelocated(const std::string& missingPath) override;
    // Some picture was missing: the show differs from its file.
    bool asked() const { return asked_; }

private:
    QWidget* parent_;
    bool asked_ = false;
};

}  // namespace quillet::app
