#include "app/Prompts.h"

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillet::app {

namespace {
Prompts defaultPrompts;
Prompts* installed = nullptr;
}  // namespace

Prompts& prompts() { return installed ? *installed : defaultPrompts; }
void setPrompts(Prompts* p) { installed = p; }

Prompts::Answer Prompts::ask(QWidget* parent, const QString& caption, const QString& text, bool withCancel) {
    auto buttons = QMessageBox::Yes | QMessageBox::No;
    if (withCancel) buttons |= QMessageBox::Cancel;
    switch (QMessageBox::question(parent, caption, text, buttons, QMessageBox::Yes)) {
        case QMessageBox::Yes: return Answer::Yes;
        case QMessageBox::No: return Answer::No;
        default: return withCancel ? Answer::Cancel : Answer::No;
    }
}

void Prompts::tell(QWidget* parent, const QString& caption, const QString& text, const QString& details) {
    QMessageBox box(QMessageBox::Warning, caption, text, QMessageBox::Ok, parent);
    if (!details.isEmpty()) box.setDetailedText(details);
    box.exec();
}

QStringList Prompts::chooseImages(QWidget* parent) {
    return QFileDialog::getOpenFileNames(parent, kChooseImage, QString(), kPictureFilter);
}

QString Prompts::chooseImage(QWidget* parent) {
    return QFileDialog::getOpenFileName(parent, kChooseImage, QString(), kPictureFilter);
}

QString Prompts::chooseOpenPath(QWidget* parent, const QString& title, const QString& filter) {
    return QFileDialog::getOpenFileName(parent, title, QString(), filter);
}

QString Prompts::chooseSavePath(QWidget* parent, const QString& title, const QString& proposed, const QString& filter) {
    return QFileDialog::getSaveFileName(parent, title, proposed, filter);
}

MissingPictureHandler::Choice Prompts::askRelocate(QWidget* parent, const QString& missingPath) {
    using Choice = MissingPictureHandler::Choice;
    QDialog dialog(parent);
    dialog.setWindowTitle(kCantFindCaption);
    dialog.resize(440, 140);
    auto* layout = new QVBoxLayout(&dialog);
    auto* label = new QLabel(
        QString("The image file %1 could not be found. Would you like to relocate it?").arg(missingPath), &dialog);
    label->setWordWrap(true);
    layout->addWidget(label, 1);
    auto* row = new QHBoxLayout;
    layout->addLayout(row);
    Choice choice = Choice::Cancel;
    const std::pair<const char*, Choice> buttons[] = {{"Don't Relocate", Choice::DontRelocate},
                                                      {"Cancel", Choice::Cancel},
                                                      {"Replace", Choice::Replace},
                                                      {"Relocate", Choice::Relocate}};
    for (const auto& [text, value] : buttons) {
        auto* button = new QPushButton(text, &dialog);
        row->addWidget(button);
        if (value == Choice::Relocate) button->setDefault(true);
        QObject::connect(button, &QPushButton::clicked, &dialog, [&dialog, &choice, v = value] {
            choice = v;
            dialog.accept();
        });
    }
    dialog.exec();
    return choice;
}

namespace {

// Accepts only a folder that holds the missing file's name.
class RelocateDialog : public QFileDialog {
public:
    RelocateDialog(QWidget* parent, const QString& fileName) : QFileDialog(parent, "Relocate File..."), name_(fileName) {}
    bool holds(const QString& folder) const { return QFileInfo::exists(QDir(folder).filePath(name_)); }
    void accept() override {
        const QStringList chosen = selectedFiles();
        if (!chosen.isEmpty() && holds(chosen.first())) QFileDialog::accept();
    }

private:
    QString name_;
};

}  // namespace

QString Prompts::chooseFolder(QWidget* parent, const QString& fileName) {
    RelocateDialog dialog(parent, fileName);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    dialog.setLabelText(QFileDialog::LookIn, "Please Relocate:");
    // OK only while the folder under the cursor holds a file of the same name.
    auto update = [&dialog](const QString& folder) {
        auto* box = dialog.findChild<QDialogButtonBox*>();
        if (!box) return;
        if (QPushButton* ok = box->button(QDialogButtonBox::Open)) ok->setEnabled(dialog.holds(folder));
    };
    QObject::connect(&dialog, &QFileDialog::currentChanged, &dialog, update);
    QObject::connect(&dialog, &QFileDialog::directoryEntered, &dialog, update);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return dialog.selectedFiles().first();
}

ReplaceReply Prompts::askReplace(QWidget* parent, const QString& question) {
    QMessageBox box(QMessageBox::Question, "Publish", question, QMessageBox::NoButton, parent);
    QPushButton* replace = box.addButton("Replace", QMessageBox::AcceptRole);
    QPushButton* keep = box.addButton("Don't Replace", QMessageBox::RejectRole);
    box.addButton("Stop", QMessageBox::DestructiveRole);
    box.setDefaultButton(keep);
    auto* all = new QCheckBox("Apply To All", &box);
    box.setCheckBox(all);
    box.exec();
    ReplaceReply reply;
    reply.applyToAll = all->isChecked();
    reply.answer = box.clickedButton() == replace ? ReplaceAnswer::Replace
                   : box.clickedButton() == keep  ? ReplaceAnswer::DontReplace
                                                  : ReplaceAnswer::Stop;
    return reply;
}

QString Prompts::chooseOutputFolder(QWidget* parent, const QString& proposed) {
    return QFileDialog::getExistingDirectory(parent, "Publish to folder", proposed);
}

MissingPictureHandler::Choice RelocateHandler::ask(const std::string& missingPath) {
    asked_ = true;
    return prompts().askRelocate(parent_, QString::fromStdString(missingPath));
}

std::optional<std::string> RelocateHandler::chooseImage(const std::string&) {
    QString path = prompts().chooseImage(parent_);
    if (path.isEmpty()) return std::nullopt;
    return path.toStdString();
}

std::optional<std::string> RelocateHandler::chooseFolder(const std::string& fileName) {
    QString folder = prompts().chooseFolder(parent_, QString::fromStdString(fileName));
    if (folder.isEmpty()) return std::nullopt;
    return folder.toStdString();
}

void RelocateHandler::notRelocated(const std::string&) { prompts().tell(parent_, kCantFindCaption, kNotRelocated); }

}  // namespace quillet::app
