// The open document: one show with its publish settings, the file it came
// from, and the undo history of every change made to it. Every change goes
// through an undo command; `changed` tells the views what to select after.
#pragma once

#include <QObject>
#include <QString>
#include <QUndoStack>
#include <functional>
#include <memory>
#include <vector>

#include "model/PublishSettings.h"
#include "model/SlideShow.h"

namespace quillet {
class MissingPictureHandler;
}

namespace quillet::app {

// The show-wide settings the properties dialog edits.
struct ShowSettings {
    int width = 320, height = 240;
    float fps = 12.0f;
    uint32_t bgColor = 0;  // 0x00RRGGBB
    bool operator==(const ShowSettings&) const = default;
};

class Document : public QObject {
    Q_OBJECT
public:
    explicit Document(QObject* parent = nullptr);
    ~Document() override;

    SlideShow& show() { return show_; }
    const SlideShow& show() const { return show_; }
    PublishSettings& publish() { return publish_; }
    QUndoStack& undoStack() { return undo_; }

    QString path() const { return path_; }
    // "Untitled" for a new document, else the file's name.
    QString name() const;
    bool modified() const;

    // An empty show, no file, no history.
    void reset();
    // Loads the project (all or nothing); `error` says why it failed.
    bool open(const QString& path, MissingPictureHandler* handler, QString* error);
    // Saves atomically and marks the document saved under `path`.
    bool save(const QString& path, QString* error);

    // The commands; each is one undo step. Rows are 0-based slide positions.
    void insertSlides(int index, std::vector<std::unique_ptr<Slide>> slides, const QString& text);
    void removeSlides(QList<int> rows);
    void duplicateSlides(QList<int> rows);
    // Moves the slides at `rows` (in their order) to stand before the slide
    // now at `target` (count() for the end).
    void moveSlides(QList<int> rows, int target);
    void randomiseTransitions();
    void setDuration(QList<int> rows, uint32_t ms);
    // One undo step over the slides at `rows`: `edit` runs on each, then the
    // slide is refitted to the stage. Undo puts back what the property panel
    // edits: duration, picture settings, transition, overlay effect, camera
    // moves, filters, click action and popup window, captions and sounds. Nothing is recorded when no slide changed.
    void editSlides(QList<int> rows, const QString& text, const std::function<void(Slide&)>& edit);
    // One undo step over the show-wide settings: `edit` runs on the show;
    // undo puts back the start, click, end and preloader behaviour, the
    // controls, the background image and frame, compression, printing, the
    // show bounds, the show's captions and its music.
    void editShow(const QString& text, const std::function<void(SlideShow&)>& edit);
    // One undo step that replaces the publish settings; none when they are the same.
    void editPublish(const QString& text, const PublishSettings& settings);
    ShowSettings showSettings() const;
    // A new stage size refits the slides; visible bounds that covered the
    // whole stage keep covering it.
    void setShowSettings(const ShowSettings& settings);
    void applyShowSettings(const ShowSettings& settings);  // for the command

    // Recovery: written beside the settings file while there are unsaved
    // changes, removed on save, on a clean close and on a new document. Each
    // running copy of the program has its own file (a locked slot).
    static QString recoveryPath();
    bool writeRecovery(QString* error = nullptr) const;
    static void removeRecovery();
    // Reads a recovery file left by a run that ended abnormally: the show
    // comes back unsaved, with the name it had.
    bool restoreRecovery(QString* error);

    // For the commands: the slides changed; select `rows` afterwards.
    void notifyChanged(const QList<int>& rows);

signals:
    void changed(const QList<int>& selectRows);
    void pathChanged();
    // Saved or modified state changed, the slides did not.
    void stateChanged();

private:
    SlideShow show_;
    PublishSettings publish_;
    QString path_;
    QUndoStack undo_;
};

}  // namespace quillet::app
