// The main window: one document, the slide list, the status line, the
// toolbar of the eleven commands and the menus. The public methods are the
// commands without their file dialogs, so the tests drive the same code.
#pragma once

#include <QList>
#include <QMainWindow>
#include <QTimer>

#include "app/Document.h"
#include "movie/MovieExporter.h"
#include "publish/Publisher.h"

class QLabel;
class QListView;
class QMenu;

namespace quillet::app {

class PreviewWindow;
class ShowPanel;
class SlidePanel;
class SlideListModel;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // `batch`: a run in which no dialog may be shown (a missing picture then
    // fails the load instead of asking).
    explicit MainWindow(bool batch = false, QWidget* parent = nullptr);
    ~MainWindow() override;

    Document& document() { return doc_; }
    QListView* slideList() const { return list_; }
    SlideListModel* slideModel() const { return model_; }
    PreviewWindow* previewWindow() const { return preview_; }
    SlidePanel* slidePanel() const { return slidePanel_; }
    ShowPanel* showPanel() const { return showPanel_; }
    QString statusText() const;

    bool openFile(const QString& path);
    bool saveTo(const QString& path);
    // Asks "Save changes before closing?" when there are unsaved changes;
    // false when the user cancelled.
    bool maybeSave();
    // Adds one image slide per picture before `index`; the number added.
    int insertPictures(const QStringList& paths, int index);
    void insertBlank();
    void deleteSelected();
    void duplicateSelected();
    void moveSelected(int delta);  // -1 up, +1 down
    // Shows the slide property panel for the selected slides.
    void slideProperties();
    // Shows the show property panel.
    void showProperties();
    QList<int> selectedRows() const;
    void selectRows(const QList<int>& rows);
    // Writes the movie; the result of the exporter (messages already shown).
    ExportResult exportTo(const QString& path);
    // Publishes the show's selected targets into `folder`; the result (its
    // messages already shown).
    PublishResult publishTo(const QString& folder);
    // Writes "preview.swf" from slide `from` on and shows it; false on failure.
    bool previewFrom(int from);
    // Restores a recovery file left by a run that ended abnormally, after
    // asking; false when there was none or the user declined.
    bool offerRecovery();
    void writeRecoveryNow();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildActions();
    void newProject();
    void openProject();
    bool save();
    bool saveAs();
    void insertImages();
    void exportShow();
    void publishShow();
    void help();
    void refreshTitle();
    void refreshRecent();
    void documentChanged(const QList<int>& rows);
    int insertionRow() const;

    Document doc_;
    bool batch_;
    SlideListModel* model_ = nullptr;
    QListView* list_ = nullptr;
    QLabel* status_ = nullptr;
    QMenu* recentMenu_ = nullptr;
    PreviewWindow* preview_ = nullptr;
    SlidePanel* slidePanel_ = nullptr;
    ShowPanel* showPanel_ = nullptr;
    QTimer recoveryTimer_;
    bool busy_ = false;  // an export or publish run is using the show
};

}  // namespace quillet::app
