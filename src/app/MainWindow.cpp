#include "app/MainWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QColorDialog>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDockWidget>
#include <QDir>
#include <QFileInfo>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QUrl>

#include "app/ExportRunner.h"
#include "app/PreviewWindow.h"
#include "app/PreferencesDialog.h"
#include "app/Prompts.h"
#include "app/PublishDialog.h"
#include "app/SlideListModel.h"
#include "app/ShowPanel.h"
#include "app/SlidePanel.h"
#include "io/DiskCache.h"
#include "io/TempFolder.h"
#include "media/Exif.h"
#include "model/ProjectFile.h"
#include "model/Slide.h"
#include "publish/RufflePage.h"
#include "settings/AppSettings.h"

namespace quillet::app {

namespace {

constexpr const char* kCaption = "Quillet";
constexpr const char* kProjectFilter = "Quillet Project (*.qpj)";
constexpr int kRecoveryIntervalMs = 60 * 1000;

QString absolute(const QString& path) { return QFileInfo(path).absoluteFilePath(); }

}  // namespace

MainWindow::MainWindow(bool batch, QWidget* parent) : QMainWindow(parent), batch_(batch) {
    setAcceptDrops(true);
    model_ = new SlideListModel(doc_.show(), this);
    list_ = new QListView(this);
    list_->setModel(model_);
    list_->setItemDelegate(new SlideRowDelegate(list_));
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setDragDropMode(QAbstractItemView::DragDrop);
    list_->setDefaultDropAction(Qt::CopyAction);
    list_->setDropIndicatorShown(true);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setCentralWidget(list_);
    slidePanel_ = new SlidePanel(doc_, this);
    showPanel_ = new ShowPanel(doc_, this);
    addDockWidget(Qt::RightDockWidgetArea, showPanel_);
    addDockWidget(Qt::RightDockWidgetArea, slidePanel_);
    tabifyDockWidget(showPanel_, slidePanel_);  // the slide panel's tab in front
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { slidePanel_->setRows(selectedRows()); });
    status_ = new QLabel(this);
    statusBar()->addWidget(status_, 1);

    connect(&doc_, &Document::changed, this, &MainWindow::documentChanged);
    connect(&doc_, &Document::pathChanged, this, &MainWindow::refreshTitle);
    connect(&doc_, &Document::stateChanged, this, &MainWindow::refreshTitle);
    connect(model_, &SlideListModel::moveRequested, this,
            [this](const QList<int>& rows, int target) { doc_.moveSlides(rows, target); });
    connect(model_, &SlideListModel::insertRequested, this,
            [this](const QStringList& paths, int target) { insertPictures(paths, target); });
    connect(model_, &SlideListModel::openRequested, this, [this](const QString& path) {
        if (maybeSave()) openFile(path);
    });
    buildActions();

    const AppSettings& s = AppSettings::current();
    move(s.mainWindowX, s.mainWindowY);
    resize(s.mainWindowWidth, s.mainWindowHeight);
    // The panels open as they were left; one pulled out of the window goes
    // back to where it last floated.
    showPanel_->setVisible(s.showPropertiesWindowVisible);
    slidePanel_->setVisible(s.slidePropertiesWindowVisible);
    connect(showPanel_, &QDockWidget::topLevelChanged, this, [this](bool floating) {
        const AppSettings& now = AppSettings::current();
        if (floating) showPanel_->move(now.showPropertiesWindowX, now.showPropertiesWindowY);
    });
    connect(slidePanel_, &QDockWidget::topLevelChanged, this, [this](bool floating) {
        const AppSettings& now = AppSettings::current();
        if (floating) slidePanel_->move(now.slidePropertiesWindowX, now.slidePropertiesWindowY);
    });

    connect(&recoveryTimer_, &QTimer::timeout, this, &MainWindow::writeRecoveryNow);
    recoveryTimer_.start(kRecoveryIntervalMs);
    documentChanged({});
    refreshTitle();
}

MainWindow::~MainWindow() = default;

void MainWindow::buildActions() {
    auto make = [this](const QString& text, const QString& tip, QStyle::StandardPixmap icon, QKeySequence key,
                       auto slot) {
        auto* a = new QAction(style()->standardIcon(icon), text, this);
        a->setToolTip(tip);
        if (!key.isEmpty()) a->setShortcut(key);
        connect(a, &QAction::triggered, this, slot);
        return a;
    };
    QAction* newA = make("&New", "New Project", QStyle::SP_FileIcon, QKeySequence::New, [this] { newProject(); });
    QAction* openA = make("&Open...", "Open Project", QStyle::SP_DialogOpenButton, QKeySequence::Open,
                          [this] { openProject(); });
    QAction* saveA = make("&Save", "Save Project", QStyle::SP_DialogSaveButton, QKeySequence::Save, [this] { save(); });
    QAction* saveAsA = make("Save &As...", "Save Project As", QStyle::SP_DialogSaveButton,
                            QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), [this] { saveAs(); });
    QAction* showPropsA = make("Slide Show &Properties...", "Slide Show Properties", QStyle::SP_FileDialogDetailedView,
                               {}, [this] { showProperties(); });
    QAction* slidePropsA = make("Slide P&roperties...", "Slide Properties", QStyle::SP_FileDialogInfoView,
                                QKeySequence(Qt::ALT | Qt::Key_Return), [this] { slideProperties(); });
    QAction* insertA = make("&Insert Slide...", "Insert Slide", QStyle::SP_DirOpenIcon, QKeySequence(Qt::CTRL | Qt::Key_I),
                            [this] { insertImages(); });
    QAction* blankA = make("Insert &Blank Slide", "Insert Blank Slide", QStyle::SP_FileIcon,
                           QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_I), [this] { insertBlank(); });
    QAction* deleteA = make("&Delete Slide(s)", "Delete Slide(s)", QStyle::SP_TrashIcon, QKeySequence::Delete,
                            [this] { deleteSelected(); });
    QAction* previewA = make("&Preview Slide Show", "Preview Slide Show", QStyle::SP_MediaPlay, QKeySequence(Qt::Key_F5),
                             [this] { previewFrom(0); });
    QAction* previewFromA = make("Preview from &This Slide", "Preview from this slide", QStyle::SP_MediaSeekForward,
                                 QKeySequence(Qt::SHIFT | Qt::Key_F5), [this] {
                                     const QList<int> rows = selectedRows();
                                     previewFrom(rows.isEmpty() ? 0 : rows.first());
                                 });
    QAction* exportA = make("&Export Slide Show...", "Export Slide Show", QStyle::SP_ArrowDown,
                            QKeySequence(Qt::CTRL | Qt::Key_E), [this] { exportShow(); });
    QAction* publishA = make("P&ublish...", "Publish the show's targets into a folder", QStyle::SP_DriveNetIcon,
                             QKeySequence(Qt::CTRL | Qt::Key_P), [this] { publishShow(); });
    QAction* publishSetA = make("Publish Se&ttings...", "Publish settings", QStyle::SP_FileDialogDetailedView,
                                QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P), [this] { PublishDialog(doc_, this).exec(); });
    QAction* prefsA = make("Pre&ferences...", "Preferences", QStyle::SP_FileDialogListView, QKeySequence::Preferences,
                           [this] { PreferencesDialog(this).exec(); });
    QAction* helpA = make("&Help", "Help", QStyle::SP_MessageBoxQuestion, QKeySequence(Qt::Key_F1), [this] { help(); });
    QAction* quitA = make("&Quit", "Quit", QStyle::SP_DialogCloseButton, QKeySequence::Quit, [this] { close(); });
    QAction* undoA = doc_.undoStack().createUndoAction(this, "&Undo");
    undoA->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z));
    QAction* redoA = doc_.undoStack().createRedoAction(this, "&Redo");
    redoA->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    QAction* dupA = make("D&uplicate Slide(s)", "Duplicate Slide(s)", QStyle::SP_FileDialogContentsView,
                         QKeySequence(Qt::CTRL | Qt::Key_D), [this] { duplicateSelected(); });
    QAction* upA = make("Move &Up", "Move the slides up", QStyle::SP_ArrowUp, QKeySequence(Qt::CTRL | Qt::Key_Up),
                        [this] { moveSelected(-1); });
    QAction* downA = make("Move Do&wn", "Move the slides down", QStyle::SP_ArrowDown,
                          QKeySequence(Qt::CTRL | Qt::Key_Down), [this] { moveSelected(1); });
    QAction* randomA = make("&Randomise Transitions", "Randomise Transitions", QStyle::SP_BrowserReload, {},
                            [this] { doc_.randomiseTransitions(); });

    QMenu* file = menuBar()->addMenu("&File");
    file->addActions({newA, openA});
    recentMenu_ = file->addMenu("Open &Recent");
    file->addActions({saveA, saveAsA});
    file->addSeparator();
    file->addActions({exportA, publishSetA, publishA});
    file->addSeparator();
    file->addAction(quitA);
    QMenu* edit = menuBar()->addMenu("&Edit");
    edit->addActions({undoA, redoA});
    edit->addSeparator();
    edit->addActions({insertA, blankA, dupA, deleteA});
    edit->addSeparator();
    edit->addActions({upA, downA, randomA});
    edit->addSeparator();
    edit->addAction(prefsA);
    QMenu* show = menuBar()->addMenu("&Show");
    show->addActions({showPropsA, slidePropsA});
    show->addSeparator();
    show->addActions({previewA, previewFromA});
    QMenu* helpM = menuBar()->addMenu("&Help");
    helpM->addAction(helpA);

    QToolBar* bar = addToolBar("Commands");
    bar->setObjectName("commands");
    bar->addActions({newA, openA, saveA, showPropsA, slidePropsA, insertA, blankA, deleteA, previewA, exportA, helpA});
    // The list's context menu; its shortcuts work while the list has the focus.
    list_->setContextMenuPolicy(Qt::ActionsContextMenu);
    list_->addActions({slidePropsA, previewFromA, dupA, deleteA, upA, downA});
    refreshRecent();
}

QString MainWindow::statusText() const { return status_->text(); }

void MainWindow::refreshTitle() {
    setWindowTitle("Quillet: " + doc_.name() + "[*]");
    setWindowModified(doc_.modified());
}

void MainWindow::refreshRecent() {
    recentMenu_->clear();
    for (const std::string& entry : AppSettings::current().recentProjects.entries()) {
        const QString path = QString::fromStdString(entry);
        recentMenu_->addAction(path, this, [this, path] {
            if (maybeSave()) openFile(path);
        });
    }
    recentMenu_->setEnabled(!recentMenu_->isEmpty());
}

void MainWindow::documentChanged(const QList<int>& rows) {
    const QList<int> keep = rows.isEmpty() ? selectedRows() : rows;
    model_->refresh();
    selectRows(keep);
    slidePanel_->setRows(selectedRows());
    showPanel_->refresh();
    status_->setText(QString::fromStdString(doc_.show().statusText()));
    refreshTitle();
}

QList<int> MainWindow::selectedRows() const {
    QList<int> rows;
    for (const QModelIndex& i : list_->selectionModel()->selectedIndexes()) rows << i.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void MainWindow::selectRows(const QList<int>& rows) {
    QItemSelection selection;
    for (int r : rows)
        if (r >= 0 && r < model_->rowCount()) selection.select(model_->index(r), model_->index(r));
    list_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!rows.isEmpty() && rows.first() >= 0 && rows.first() < model_->rowCount()) {
        list_->selectionModel()->setCurrentIndex(model_->index(rows.first()), QItemSelectionModel::NoUpdate);
        list_->scrollTo(model_->index(rows.first()));
    }
}

int MainWindow::insertionRow() const {
    const QList<int> rows = selectedRows();
    return rows.isEmpty() ? doc_.show().count() : rows.last() + 1;
}

bool MainWindow::maybeSave() {
    if (!doc_.modified()) return true;
    switch (prompts().ask(this, kSaveChangesCaption, kSaveChangesText, true)) {
        case Prompts::Answer::Yes: return save();
        case Prompts::Answer::No: return true;
        case Prompts::Answer::Cancel: return false;
    }
    return false;
}

void MainWindow::newProject() {
    if (!maybeSave()) return;
    doc_.reset();
    Document::removeRecovery();
}

void MainWindow::openProject() {
    if (!maybeSave()) return;
    const QString path = prompts().chooseOpenPath(this, "Open Project", kProjectFilter);
    if (!path.isEmpty()) openFile(path);
}

bool MainWindow::openFile(const QString& path) {
    RelocateHandler handler(this);
    QString error;
    if (!doc_.open(absolute(path), batch_ ? nullptr : &handler, &error)) {
        if (error == kProjectNotFound) prompts().tell(this, kCaption, error);
        else prompts().tell(this, kCaption, "The project could not be opened.", error);
        return false;
    }
    // Relocated or dropped pictures are changes the user has to save.
    if (handler.asked()) {
        doc_.show().markChanged();
        refreshTitle();
    }
    Document::removeRecovery();
    AppSettings::current().recentProjects.add(doc_.path().toStdString());
    refreshRecent();
    return true;
}

bool MainWindow::save() { return doc_.path().isEmpty() ? saveAs() : saveTo(doc_.path()); }

bool MainWindow::saveAs() {
    const QString proposed = doc_.path().isEmpty()
                                 ? QDir(QString::fromStdString(defaultPublishFolder())).filePath("Untitled.qpj")
                                 : doc_.path();
    QString path = prompts().chooseSavePath(this, "Save Project", proposed, kProjectFilter);
    if (path.isEmpty()) return false;
    if (QFileInfo(path).suffix().isEmpty()) path += ".qpj";
    return saveTo(path);
}

bool MainWindow::saveTo(const QString& path) {
    QString error;
    if (!doc_.save(absolute(path), &error)) {
        prompts().tell(this, kCaption, "The project could not be saved.", error);
        return false;
    }
    AppSettings::current().recentProjects.add(doc_.path().toStdString());
    refreshRecent();
    return true;
}

void MainWindow::insertImages() {
    const QStringList paths = prompts().chooseImages(this);
    if (!paths.isEmpty()) insertPictures(paths, insertionRow());
}

int MainWindow::insertPictures(const QStringList& paths, int index) {
    AppSettings& settings = AppSettings::current();
    AssignOptions assign;
    assign.stageWidth = doc_.show().width();
    assign.stageHeight = doc_.show().height();
    assign.applyExif = settings.readExifData;
    std::vector<std::unique_ptr<Slide>> slides;
    for (const QString& picture : paths) {
        const std::string path = absolute(picture).toStdString();
        auto slide = doc_.show().createSlide(SlideType::Image);
        std::string why;
        const AssignFailure failure = AssignPicture(slide->image, path, assign, &why);
        if (failure == AssignFailure::NotFound) {
            prompts().tell(this, kCaption, kImageNotFound, QString::fromStdString(path));
            continue;
        }
        if (failure != AssignFailure::None) {
            prompts().tell(this, kCaption, kNotAnImage, QString::fromStdString(path + ": " + why));
            continue;
        }
        settings.recentImages.add(path);
        slides.push_back(std::move(slide));
    }
    const int added = int(slides.size());
    doc_.insertSlides(index, std::move(slides), added == 1 ? "Insert Slide" : "Insert Slides");
    return added;
}

void MainWindow::insertBlank() {
    std::vector<std::unique_ptr<Slide>> slides;
    slides.push_back(doc_.show().createSlide(SlideType::Blank));
    doc_.insertSlides(insertionRow(), std::move(slides), "Insert Blank Slide");
}

void MainWindow::deleteSelected() { doc_.removeSlides(selectedRows()); }
void MainWindow::duplicateSelected() { doc_.duplicateSlides(selectedRows()); }

void MainWindow::moveSelected(int delta) {
    const QList<int> rows = selectedRows();
    if (rows.isEmpty()) return;
    if (delta < 0 && rows.first() > 0) doc_.moveSlides(rows, rows.first() - 1);
    if (delta > 0 && rows.last() + 1 < doc_.show().count()) doc_.moveSlides(rows, rows.last() + 2);
}

void MainWindow::slideProperties() {
    slidePanel_->setRows(selectedRows());
    slidePanel_->show();
    slidePanel_->raise();
}

void MainWindow::showProperties() {
    showPanel_->refresh();
    showPanel_->show();
    showPanel_->raise();
}

void MainWindow::exportShow() {
    const QString base = doc_.path().isEmpty() ? QString("Untitled") : QFileInfo(doc_.path()).completeBaseName();
    const QString folder = doc_.path().isEmpty() ? QString::fromStdString(defaultPublishFolder())
                                                 : QFileInfo(doc_.path()).path();
    QString path = prompts().chooseSavePath(this, "Export Slide Show", QDir(folder).filePath(base + ".swf"),
                                            "Flash movie (*.swf)");
    if (path.isEmpty()) return;
    if (QFileInfo(path).suffix().isEmpty()) path += ".swf";
    exportTo(path);
}

ExportResult MainWindow::exportTo(const QString& path) {
    busy_ = true;
    ExportResult result = RunExport(this, doc_.show(), absolute(path), DesktopExportOptions());
    busy_ = false;
    if (!result.ok && !result.cancelled) {
        prompts().tell(this, kCaption, kExportFailed, QString::fromStdString(result.error));
        return result;
    }
    for (const std::string& warning : result.warnings) {
        if (warning == kFrameLimitWarning) prompts().tell(this, kCaption, kFrameLimitWarning);
        else statusBar()->showMessage(QString::fromStdString(warning), 10000);
    }
    if (result.cancelled)
        statusBar()->showMessage(QString("Export cancelled; the movie holds the first %1 slide(s).")
                                     .arg(result.slidesWritten), 10000);
    return result;
}

void MainWindow::publishShow() {
    const std::string& output = doc_.publish().output;
    const QString proposed = QString::fromStdString(output.empty() ? defaultPublishFolder() : output);
    const QString folder = prompts().chooseOutputFolder(this, proposed);
    if (!folder.isEmpty()) publishTo(folder);
}

PublishResult MainWindow::publishTo(const QString& folder) {
    // The run points the page at the movie it writes; the document keeps
    // its own settings.
    PublishSettings settings = doc_.publish();
    settings.output = absolute(folder).toStdString();
    const AppSettings& s = AppSettings::current();
    PublishOptions options;
    options.addresses = {s.publishPlayerDownloadUrl, s.publishPluginPageUrl};
    options.playersFolder = s.publishPlayersPath;
    options.rufflePlayer = FindRufflePlayer();
    options.exportOptions = DesktopExportOptions();
    busy_ = true;
    PublishResult result = RunPublish(this, settings, doc_.show(), options);
    busy_ = false;
    for (const PublishMessage& m : result.messages)
        prompts().tell(this, QString::fromStdString(m.caption), QString::fromStdString(m.text),
                       QString::fromStdString(m.detail));
    QString summary = QString("Published %1 file(s) into %2").arg(result.written.size()).arg(folder);
    if (!result.skipped.empty()) summary += QString("; kept %1 existing").arg(result.skipped.size());
    statusBar()->showMessage(summary, 10000);
    return result;
}

bool MainWindow::previewFrom(int from) {
    std::string why;
    const QString movie = QString::fromStdString(PrivateTempFile("preview.swf", &why));
    // A preview from a later slide plays a copy of the show without the
    // slides before it.
    SlideShow tail;
    PublishSettings publish;
    const SlideShow* show = &doc_.show();
    if (from > 0 && from < doc_.show().count()) {
        const std::string folder = doc_.path().isEmpty() ? std::string() : QFileInfo(doc_.path()).path().toStdString();
        if (!LoadProjectText(ProjectText(doc_.show(), doc_.publish()), folder, tail, publish, &why)) {
            prompts().tell(this, kCaption, kPreviewFailed, QString::fromStdString(why));
            return false;
        }
        for (int i = 0; i < from; ++i) tail.remove(0);
        show = &tail;
    }
    if (movie.isEmpty() || show->empty()) {
        prompts().tell(this, kCaption, kPreviewFailed, QString::fromStdString(why.empty() ? "no slides" : why));
        return false;
    }
    busy_ = true;
    const ExportResult result = RunExport(this, *show, movie, DesktopExportOptions());
    busy_ = false;
    if (result.cancelled) return false;
    if (!result.ok) {
        prompts().tell(this, kCaption, kPreviewFailed, QString::fromStdString(result.error));
        return false;
    }
    if (!preview_) {
        preview_ = new PreviewWindow(this);
        const AppSettings& s = AppSettings::current();
        preview_->move(s.swfPreviewWindowX, s.swfPreviewWindowY);
    }
    QString error;
    if (!preview_->play(movie, show->width(), show->height(), show->bgColor, &error)) {
        prompts().tell(this, kCaption, kPreviewFailed, error);
        return false;
    }
    return true;
}

void MainWindow::help() {
    // The help pages are installed beside the program's share folder, or
    // found in the source tree when running from a build folder.
    const QDir exe(QCoreApplication::applicationDirPath());
    QStringList candidates = {exe.filePath("../share/doc/quillet/help/index.html"),
                              exe.filePath("../share/quillet/help/index.html")};
    for (QDir up = exe; !up.isRoot(); up.cdUp()) candidates << up.filePath("docs/help/index.html");
    for (const QString& c : candidates) {
        if (QFileInfo::exists(c)) {
            QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(c).absoluteFilePath()));
            return;
        }
    }
    prompts().tell(this, kCaption, "The help pages were not found. Please make sure the program was installed properly.");
}

void MainWindow::writeRecoveryNow() {
    if (!doc_.modified()) {  // saved, or undone back to the saved state
        Document::removeRecovery();
        return;
    }
    QString error;
    if (!doc_.writeRecovery(&error)) statusBar()->showMessage("Recovery file not written: " + error, 10000);
}

bool MainWindow::offerRecovery() {
    if (!QFileInfo::exists(Document::recoveryPath())) return false;
    if (prompts().ask(this, kRestoreCaption, kRestoreText, false) != Prompts::Answer::Yes) {
        Document::removeRecovery();
        return false;
    }
    QString error;
    if (!doc_.restoreRecovery(&error)) {
        prompts().tell(this, kCaption, "The recovery file could not be read.", error);
        return false;
    }
    return true;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // The worker is reading the show; Cancel in the progress dialog ends it.
    if (busy_ || !maybeSave()) {
        event->ignore();
        return;
    }
    AppSettings& s = AppSettings::current();
    s.mainWindowX = pos().x();
    s.mainWindowY = pos().y();
    s.mainWindowWidth = width();
    s.mainWindowHeight = height();
    s.swfPreviewWindowVisible = preview_ && preview_->isVisible();
    s.showPropertiesWindowVisible = showPanel_->toggleViewAction()->isChecked();
    s.slidePropertiesWindowVisible = slidePanel_->toggleViewAction()->isChecked();  // a panel behind another tab counts as open
    if (showPanel_->isFloating()) {
        s.showPropertiesWindowX = showPanel_->pos().x();
        s.showPropertiesWindowY = showPanel_->pos().y();
    }
    if (slidePanel_->isFloating()) {
        s.slidePropertiesWindowX = slidePanel_->pos().x();
        s.slidePropertiesWindowY = slidePanel_->pos().y();
    }
    for (int i = 0; i < int(s.customColors.size()); ++i) {
        const QColor c = QColorDialog::customColor(i);
        s.customColors[i] = uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16;
    }
    if (preview_) {
        s.swfPreviewWindowX = preview_->pos().x();
        s.swfPreviewWindowY = preview_->pos().y();
        preview_->close();
    }
    s.save();
    Document::removeRecovery();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    QStringList pictures;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (!url.isLocalFile()) continue;
        const QString path = url.toLocalFile();
        if (path.endsWith(".qpj", Qt::CaseInsensitive)) {
            event->acceptProposedAction();
            if (maybeSave()) openFile(path);
            return;
        }
        pictures << path;
    }
    if (pictures.isEmpty()) return;
    event->acceptProposedAction();
    insertPictures(pictures, doc_.show().count());
}

}  // namespace quillet::app
