// The desktop program driven through its real widgets. Most cases run on the
// offscreen platform; the preview and the screenshots need a display (Xvfb).
#include <unistd.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPainter>
#include <QProgressDialog>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QSignalSpy>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <numeric>

#include "app/CaptionEditor.h"
#include "app/CaptionStage.h"
#include "app/PictureEditor.h"
#include "app/MainWindow.h"
#include "app/PreferencesDialog.h"
#include "app/PublishDialog.h"
#include "app/PreviewWindow.h"
#include "app/SetPicture.h"
#include "swf/SwfWriter.h"
#include "app/Prompts.h"
#include "app/SlideListModel.h"
#include "app/ShowPanel.h"
#include "app/SlidePanel.h"
#include "app/SoundEditor.h"
#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "media/ImageFilter.h"
#include "media/SlidePicture.h"
#include "model/ProjectFile.h"
#include "model/Slide.h"
#include "model/SlideShow.h"
#include "movie/MovieExporter.h"
#include "settings/AppSettings.h"
#include "swf/SwfReader.h"
#include "swf/SwfTags.h"

using namespace quillet;
using namespace quillet::app;
using Choice = MissingPictureHandler::Choice;

namespace {

// Answers every question from a script and records what the user was told.
class ScriptedPrompts : public Prompts {
public:
    QList<Answer> answers;
    QStringList asked, told;
    QList<Choice> relocate;
    QString image, folder, savePath;
    QList<ReplaceReply> replies;
    std::function<void(QProgressDialog*)> onProgress;

    Answer ask(QWidget*, const QString& caption, const QString& text, bool) override {
        asked << caption + "|" + text;
        return answers.isEmpty() ? Answer::Cancel : answers.takeFirst();
    }
    void tell(QWidget*, const QString&, const QString& text, const QString&) override { told << text; }
    QStringList chooseImages(QWidget*) override { return {}; }
    QString chooseImage(QWidget*) override { return image; }
    QString chooseOpenPath(QWidget*, const QString&, const QString&) override { return {}; }
    QString chooseSavePath(QWidget*, const QString&, const QString&, const QString&) override { return savePath; }
    Choice askRelocate(QWidget*, const QString&) override {
        return relocate.isEmpty() ? Choice::Cancel : relocate.takeFirst();
    }
    QString chooseFolder(QWidget*, const QString&) override { return folder; }
    ReplaceReply askReplace(QWidget*, const QString& question) override {
        asked << question;
        return replies.isEmpty() ? ReplaceReply{ReplaceAnswer::Stop, false} : replies.takeFirst();
    }
    void progressShown(QProgressDialog* dialog) override {
        if (onProgress) onProgress(dialog);
    }
};

// A picture of one colour with some noise (so it does not compress to nothing).
QString makePicture(const QString& path, QColor colour, QSize size = {320, 240}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QPainter p(&image);
    auto* rng = QRandomGenerator::global();
    for (int i = 0; i < size.width() * size.height() / 50; ++i)
        p.fillRect(int(rng->bounded(size.width())), int(rng->bounded(size.height())), 3, 3,
                   QColor::fromRgb(rng->generate()));
    p.end();
    image.save(path, "JPEG", 85);
    return path;
}

QString text(MainWindow& w) { return QString::fromStdString(ProjectText(w.document().show(), w.document().publish())); }

QStringList sources(MainWindow& w) {
    QStringList out;
    for (const auto& s : w.document().show().slides()) out << QFileInfo(QString::fromStdString(s->image.src)).fileName();
    return out;
}

// Types into a field and presses Enter, as a user does.
void typeInto(QWidget* field, const QString& text) {
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(field)) spin->selectAll();
    if (auto* line = qobject_cast<QLineEdit*>(field)) line->selectAll();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Return);
}

// Sets an option form's field to `value` through its control.
void enter(const OptionForm& form, size_t index, double value) {
    QWidget* control = form.control(index);
    const OptionSpec& row = form.table()[index];
    if (auto* box = qobject_cast<QComboBox*>(control)) box->setCurrentIndex(int(value));
    else if (auto* check = qobject_cast<QCheckBox*>(control)) {
        if (check->checkState() != (value != 0 ? Qt::Checked : Qt::Unchecked)) check->click();
    } else if (row.kind == OptionKind::Color) typeInto(control, ColorText(uint32_t(value)));
    else typeInto(control, control->locale().toString(value, 'f', row.decimals));
}

// Presses at `from`, moves through the middle to `to` and lets go.
void drag(QWidget* on, QPoint from, QPoint to) {
    QTest::mousePress(on, Qt::LeftButton, {}, from);
    QTest::mouseMove(on, (from + to) / 2);
    QTest::mouseMove(on, to);
    QTest::mouseRelease(on, Qt::LeftButton, {}, to);
}

QByteArray contents(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

// The project as saved to `path` (empty if it could not be saved).
QString savedText(MainWindow& w, const QString& path) {
    return w.saveTo(path) ? QString::fromUtf8(contents(path)) : QString();
}

// The window shown with the pictures inserted and the panel of `rows` open;
// null if a picture was refused.
SlidePanel* openSlides(MainWindow& w, const QStringList& pictures, const QList<int>& rows = {0}, int height = 900) {
    w.resize(900, height);
    w.show();
    if (w.insertPictures(pictures, 0) != pictures.size()) return nullptr;
    w.selectRows(rows);
    w.slideProperties();
    return w.slidePanel();
}

ShowPanel* openShow(MainWindow& w, const QStringList& pictures) {
    w.resize(900, 1000);
    w.show();
    if (w.insertPictures(pictures, 0) != pictures.size()) return nullptr;
    w.showProperties();
    return w.showPanel();
}

// `set` is one undo step that changes the project text, and undo gives the
// text back exactly; the step is redone after.
void oneStep(MainWindow& w, const QString& what, const std::function<void()>& set) {
    QUndoStack& undo = w.document().undoStack();
    const QString before = text(w);
    const int steps = undo.count();
    set();
    QVERIFY2(undo.count() == steps + 1 && text(w) != before, qPrintable(what));
    undo.undo();
    QVERIFY2(text(w) == before, qPrintable(what));
    undo.redo();
}

// Every field of an option form changed through its control, each by oneStep;
// a number field shows the value entered.
void walkForm(MainWindow& w, const OptionForm& form, const QString& what = {}) {
    for (size_t i = 0; i < form.table().size(); ++i) {
        const OptionSpec& row = form.table()[i];
        QWidget* control = form.control(i);
        const double now = control->property("value").toDouble();
        const double v = row.kind == OptionKind::List    ? std::fmod(qobject_cast<QComboBox*>(control)->currentIndex() + 1, double(row.items.size()))
                         : row.kind == OptionKind::Bool  ? !qobject_cast<QCheckBox*>(control)->isChecked()
                         : row.kind == OptionKind::Color ? 0x123456
                         : row.maxValue != now           ? row.maxValue
                                                         : row.minValue;
        oneStep(w, what + " " + row.label, [&] { enter(form, i, v); });
        if (row.kind == OptionKind::Integer) QCOMPARE(control->property("value").toDouble(), v);
    }
}

// The panel's whole page (past the scrolled view) as a screenshot artefact.
bool savePanel(QWidget* panel, const QString& name) {
    QTest::qWait(50);  // the layouts settle
    QWidget* page = panel->findChild<QScrollArea*>()->widget();
    return page->grab().save(QString(QUILLET_ARTEFACTS_DIR) + "/" + name);
}

bool offscreen() { return QGuiApplication::platformName() == "offscreen"; }

}  // namespace

class AppTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir_;
    ScriptedPrompts prompts_;
    QString red_, green_, blue_;

    QString file(const QString& name) const { return dir_.filePath(name); }

private slots:
    void initTestCase() {
        qputenv("QUILLET_CONFIG_DIR", file("config").toUtf8());
        qputenv("XDG_CACHE_HOME", file("cache").toUtf8());
        AppSettings::current().resetToDefaults();
        red_ = makePicture(file("red.jpg"), Qt::red);
        green_ = makePicture(file("green.jpg"), Qt::green);
        blue_ = makePicture(file("blue.jpg"), Qt::blue);
        setPrompts(&prompts_);
        QDir().mkpath(QUILLET_ARTEFACTS_DIR);
    }
    void init() { prompts_ = ScriptedPrompts(); }
    void cleanupTestCase() { setPrompts(nullptr); }

    // Each edit is one undo step: undoing them all walks back through the
    // exact project texts, redoing walks forward again; then the saved file
    // reopens to the same show and saves to the same bytes.
    void editsUndoRedoSaveReopen() {
        MainWindow w;
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QVERIFY(writeFile(file("not-a-picture.jpg"), "plain text"));
        const QList<std::pair<const char*, std::function<void()>>> steps = {
            {"insert three", [&] { QCOMPARE(w.insertPictures({red_, green_, blue_}, 0), 3); }},
            {"insert missing and broken", [&] {
                 QCOMPARE(w.insertPictures({file("gone.jpg"), file("not-a-picture.jpg"), red_}, 1), 1);
                 QCOMPARE(prompts_.told, QStringList({kImageNotFound, kNotAnImage}));
             }},
            {"blank after the second", [&] { w.selectRows({1}); w.insertBlank(); }},
            {"move two down by keyboard", [&] {
                 w.selectRows({0, 1});
                 QTest::keyClick(w.slideList(), Qt::Key_Down, Qt::ControlModifier);
             }},
            {"drag the last to the front", [&] {
                 SlideListModel* m = w.slideModel();
                 std::unique_ptr<QMimeData> data(m->mimeData({m->index(4)}));
                 QVERIFY(m->dropMimeData(data.get(), Qt::CopyAction, 0, 0, {}));
                 QCoreApplication::processEvents();
             }},
            {"drop a picture from outside on the second row", [&] {
                 QMimeData data;
                 data.setUrls({QUrl::fromLocalFile(green_)});
                 QVERIFY(w.slideModel()->dropMimeData(&data, Qt::CopyAction, -1, 0, w.slideModel()->index(1)));
                 QCoreApplication::processEvents();
                 QCOMPARE(sources(w).at(1), QString("green.jpg"));
             }},
            {"duplicate", [&] { w.selectRows({3}); w.duplicateSelected(); }},
            {"delete two", [&] { w.selectRows({0, 2}); QTest::keyClick(w.slideList(), Qt::Key_Delete); }},
            {"randomise transitions", [&] { w.document().randomiseTransitions(); }},
            {"stage size", [&] { w.document().setShowSettings({800, 600, 25.0f, 0x336699}); }},
        };
        QStringList texts{text(w)};
        for (const auto& [name, step] : steps) {
            step();
            if (QTest::currentTestFailed()) return;
            texts << text(w);
            QVERIFY2(texts.last() != texts[texts.size() - 2], name);
        }
        QCOMPARE(sources(w), QStringList({"green.jpg", "red.jpg", "red.jpg", "red.jpg", "green.jpg"}));
        QVERIFY(w.windowTitle().startsWith("Quillet: Untitled"));
        QUndoStack& undo = w.document().undoStack();
        for (int i = texts.size() - 2; i >= 0; --i) {
            undo.undo();
            QCOMPARE(text(w), texts[i]);
        }
        for (int i = 1; i < texts.size(); ++i) {
            undo.redo();
            QCOMPARE(text(w), texts[i]);
        }
        QVERIFY(w.document().modified());
        QVERIFY(w.saveTo(file("edits.qpj")));
        QVERIFY(!w.document().modified());
        QCOMPARE(w.windowTitle(), QString("Quillet: edits.qpj[*]"));
        MainWindow again;
        QVERIFY(again.openFile(file("edits.qpj")));
        QCOMPARE(text(again), texts.last());
        QVERIFY(again.saveTo(file("resaved.qpj")));
        QCOMPARE(contents(file("resaved.qpj")), contents(file("edits.qpj")));
    }

    void savePrompt_data() {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("proceeds");
        QTest::addColumn<bool>("saved");
        QTest::newRow("yes saves") << int(Prompts::Answer::Yes) << true << true;
        QTest::newRow("no discards") << int(Prompts::Answer::No) << true << false;
        QTest::newRow("cancel stays") << int(Prompts::Answer::Cancel) << false << false;
    }
    void savePrompt() {
        QFETCH(int, answer);
        QFETCH(bool, proceeds);
        QFETCH(bool, saved);
        MainWindow w;
        QVERIFY(w.maybeSave());  // nothing to save: no question
        QVERIFY(prompts_.asked.isEmpty());
        w.insertPictures({red_}, 0);
        const QString target = file(QString("prompt-%1.qpj").arg(answer));
        prompts_.savePath = target;
        prompts_.answers = {Prompts::Answer(answer)};
        QCOMPARE(w.maybeSave(), proceeds);
        QCOMPARE(prompts_.asked, QStringList({"Save changes|Save changes before closing?"}));
        QCOMPARE(QFileInfo::exists(target), saved);
        QCOMPARE(w.document().modified(), !saved);
        // Closing asks the same question; a cancelled close keeps the window.
        prompts_.answers = {Prompts::Answer::Cancel};
        w.show();
        QCOMPARE(w.close(), saved);
    }

    void missingPicture_data() {
        QTest::addColumn<int>("choice");
        QTest::addColumn<bool>("opens");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("don't relocate") << int(Choice::DontRelocate) << true << QStringList{"red.jpg"};
        QTest::newRow("cancel") << int(Choice::Cancel) << false << QStringList{};
        QTest::newRow("replace") << int(Choice::Replace) << true << QStringList{"red.jpg", "blue.jpg"};
        QTest::newRow("relocate") << int(Choice::Relocate) << true << QStringList{"red.jpg", "moved.jpg"};
    }
    void missingPicture() {
        QFETCH(int, choice);
        QFETCH(bool, opens);
        QFETCH(QStringList, expected);
        QDir().mkpath(file("elsewhere"));
        const QString moved = makePicture(file("elsewhere/moved.jpg"), Qt::yellow);
        {
            MainWindow w;
            w.insertPictures({red_, moved}, 0);
            QVERIFY(w.saveTo(file("missing.qpj")));
        }
        QFile::remove(moved);
        QDir().mkpath(file("found"));
        makePicture(file("found/moved.jpg"), Qt::yellow);
        prompts_.relocate = {Choice(choice)};
        prompts_.image = blue_;
        prompts_.folder = file("found");
        MainWindow w;
        QCOMPARE(w.openFile(file("missing.qpj")), opens);
        QCOMPARE(sources(w), expected);
        QCOMPARE(w.document().modified(), opens);  // the show is not what the file says
        if (choice == int(Choice::Relocate))
            QCOMPARE(QString::fromStdString(w.document().show().slideAt(1)->image.src), file("found/moved.jpg"));
        // A run without dialogs refuses the project instead of asking.
        MainWindow batch(true);
        QVERIFY(!batch.openFile(file("missing.qpj")));
        QVERIFY(!batch.openFile(file("no-such.qpj")));
        QCOMPARE(prompts_.told.last(), QString(kProjectNotFound));
    }

    // The export runs on a worker thread; Cancel stops it within a slide or
    // two and leaves a valid movie of the slides done.
    void exportAndCancel() {
        MainWindow w;
        QStringList pictures;
        for (int i = 0; i < 40; ++i)
            pictures << makePicture(file(QString("big%1.jpg").arg(i)), QColor::fromHsv(i * 9, 200, 200), {1600, 1200});
        QCOMPARE(w.insertPictures(pictures, 0), 40);
        QElapsedTimer clock;
        qint64 cancelledAt = -1;
        prompts_.onProgress = [&](QProgressDialog* dialog) {
            QCOMPARE(dialog->windowTitle(), QString(kExportingText));
            // Cancelled once the first slides are done (an idle machine writes all 40 in a quarter second).
            auto* watch = new QTimer(dialog);
            QObject::connect(watch, &QTimer::timeout, dialog, [&, dialog, watch] {
                if (dialog->value() <= dialog->minimum()) return;
                watch->stop();
                cancelledAt = clock.elapsed();
                dialog->cancel();
            });
            watch->start(5);
        };
        clock.start();
        ExportResult cancelled = w.exportTo(file("cancelled.swf"));
        QVERIFY2(cancelled.cancelled, qPrintable(QString("%1 ms, %2 slides").arg(clock.elapsed()).arg(cancelled.slidesWritten)));
        QVERIFY2(clock.elapsed() - cancelledAt < 3000, qPrintable(QString::number(clock.elapsed() - cancelledAt)));
        QVERIFY(cancelled.slidesWritten < 40);
        prompts_.onProgress = nullptr;
        QList<int> rest(37);
        std::iota(rest.begin(), rest.end(), 3);
        w.document().removeSlides(rest);
        ExportResult done = w.exportTo(file("done.swf"));
        QVERIFY2(done.ok, done.error.c_str());
        QCOMPARE(done.slidesWritten, 3);
        const QByteArray head = contents(file("done.swf")).left(3);
        QVERIFY(head == "FWS" || head == "CWS");
        QVERIFY(prompts_.told.isEmpty());
        // Publishing runs on the worker too; its replace question is asked on
        // the window's thread, once with Apply To All.
        QDir().mkpath(file("site"));
        QVERIFY(!w.publishTo(file("site")).written.empty());
        prompts_.replies = {{ReplaceAnswer::DontReplace, true}};
        const PublishResult again = w.publishTo(file("site"));
        QCOMPARE(prompts_.asked.size(), 1);
        QVERIFY(again.written.empty());
        QVERIFY(QFileInfo::exists(file("site/Untitled.swf")));
        prompts_.told.clear();
        // A folder that does not exist fails with the export message.
        QVERIFY(!w.exportTo(file("no/such/folder/x.swf")).ok);
        QCOMPARE(prompts_.told, QStringList({kExportFailed}));
        // A movie past the player's frame limit is written, with the warning.
        prompts_.told.clear();
        w.document().setDuration({0}, 1400 * 1000);
        QVERIFY(w.exportTo(file("long.swf")).ok);
        QCOMPARE(prompts_.told, QStringList({kFrameLimitWarning}));
    }

    // Unsaved changes are written to the recovery file; after a run that
    // ended without closing, the next start offers them back.
    void recoveryAfterCrash() {
        QString before;
        {
            MainWindow w;
            QVERIFY(w.openFile(file("edits.qpj")));
            w.insertPictures({green_}, 0);
            w.writeRecoveryNow();
            before = text(w);
        }  // destroyed without closing, as by a crash
        QVERIFY(QFileInfo::exists(Document::recoveryPath()));
        prompts_.answers = {Prompts::Answer::Yes};
        MainWindow next;
        QVERIFY(next.offerRecovery());
        QCOMPARE(text(next), before);
        QVERIFY(next.document().modified());
        QCOMPARE(next.document().name(), QString("edits.qpj"));
        QVERIFY(next.saveTo(next.document().path()));
        QVERIFY(!QFileInfo::exists(Document::recoveryPath()));
    }

    // A long show opens to a usable window at once; thumbnails follow.
    void thousandSlides() {
        SlideShow show;
        const QString pics[] = {red_, green_, blue_};
        for (int i = 0; i < 1000; ++i) {
            auto slide = show.createSlide(SlideType::Image);
            slide->image.src = pics[i % 3].toStdString();
            show.append(std::move(slide));
        }
        QVERIFY(SaveProject(file("thousand.qpj").toStdString(), show, PublishSettings()));
        QElapsedTimer clock;
        clock.start();
        MainWindow w;
        w.resize(600, 800);
        w.show();
        QVERIFY(w.openFile(file("thousand.qpj")));
        w.slideList()->scrollToBottom();
        w.slideList()->repaint();
        QCoreApplication::processEvents();
        const qint64 ms = clock.elapsed();
        qInfo("1000 slides: usable window after %lld ms", ms);
        QVERIFY2(ms < 2000, qPrintable(QString::number(ms)));
        QCOMPARE(w.statusText(), QString("1000 Slides; Total Time: 33:20.00"));
        w.slideModel()->thumbnails().waitForDone();
        QCoreApplication::processEvents();
        QVERIFY(!w.slideModel()->data(w.slideModel()->index(999), Qt::DecorationRole).value<QImage>().isNull());
    }

    // Every option table of the slide panel (each transition, camera move and
    // filter): the effect is chosen, each field is set as a user sets it
    // (numbers at the top of their range, after one past it was refused),
    // each edit is one undo step, and the saved file reads back with every value.
    void effectOptionsReachTheFile_data() {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("name");
        auto add = [](const char* family, const auto& registry) {
            for (const auto& prototype : registry)
                if (!prototype->Options().empty())
                    QTest::addRow("%s %s", family, prototype->name().c_str())
                        << family << QString::fromStdString(prototype->name());
        };
        add("transition", TransitionRegistry::instance());
        add("camera_fx", CameraEffectRegistry::instance());
        add("filter", ImageFilterRegistry::instance());
    }
    void effectOptionsReachTheFile() {
        QFETCH(QString, family);
        QFETCH(QString, name);
        MainWindow w;
        SlidePanel* panel = openSlides(w, {red_, green_}, {1});
        QVERIFY(panel && panel->isVisible());
        QUndoStack& undo = w.document().undoStack();
        const OptionForm* form = panel->transitionOptions();
        if (family == "transition") {
            panel->transitionChooser()->setCurrentIndex(panel->transitionChooser()->findText(name));
        } else {
            const QString list = family == "filter" ? "filters" : "camera";
            panel->effectChooser(list)->setCurrentIndex(panel->effectChooser(list)->findText(name));
            panel->addEffect(list);
            QCOMPARE(panel->effectList(list)->count(), 1);
            form = panel->effectOptions(list);
        }
        const OptionTable table = form->table();
        QVERIFY(!table.empty());
        std::vector<double> want;
        int steps = undo.count();
        for (size_t i = 0; i < table.size(); ++i) {
            const OptionSpec& row = table[i];
            const double v = !form->control(i) ? row.defaultValue  // set elsewhere (a move is drawn on the picture)
                             : row.kind == OptionKind::List  ? std::fmod(row.defaultValue + 1, double(row.items.size()))
                             : row.kind == OptionKind::Bool  ? double(row.defaultValue == 0)
                             : row.kind == OptionKind::Color ? 0x123456
                             : row.maxValue < 1e6            ? row.maxValue
                                                             : row.defaultValue + 3;
            want.push_back(v);
            if (v == row.defaultValue) continue;
            const bool number = row.kind == OptionKind::Integer || row.kind == OptionKind::Real;
            if (number && row.maxValue < 1e6) {
                typeInto(form->control(i), QString::number(row.maxValue + 1));
                QVERIFY2(form->message().contains(QString::number(row.maxValue, 'f', row.kind == OptionKind::Real ? row.decimals : 0)),
                         qPrintable(row.label + (": " + form->message())));
                QCOMPARE(undo.count(), steps);
            }
            enter(*form, i, v);
            QVERIFY2(undo.count() == ++steps, row.label);
        }
        if (name == "Slide In From") QVERIFY(savePanel(panel, "slide-panel-slide-in-from.png"));
        if (name == "Push") { QTest::qWait(50); QVERIFY(w.grab().save(QString(QUILLET_ARTEFACTS_DIR) + "/main-window-slide-panel.png")); }
        const QString project = savedText(w, file("options.qpj"));
        const qsizetype at = project.indexOf("<" + family + " name=\"" + name.toHtmlEscaped() + "\"");
        QVERIFY(at >= 0);
        const QString line = project.mid(at, project.indexOf('\n', at) - at);
        MainWindow again;
        QVERIFY(again.openFile(file("options.qpj")));
        const Slide& first = *again.document().show().slideAt(0);
        QVERIFY(first.transitionIn().name() == "None" && !first.hasCameraMoves() && first.imageFilters().empty());
        const Slide& read = *again.document().show().slideAt(1);
        const OptionSet& values = family == "transition" ? read.transitionIn().options()
                                  : family == "filter"   ? read.imageFilters().at(0)->options()
                                                         : read.cameraMoveAt(0)->options();
        for (size_t i = 0; i < table.size(); ++i) {
            if (!table[i].attribute) continue;
            QVERIFY2(line.contains(QString(" %1=\"").arg(table[i].attribute)), qPrintable(line));
            QVERIFY2(std::abs(values.Value(i) - want[i]) <= 1e-4 * std::max(1.0, std::abs(want[i])), table[i].attribute);
        }
    }

    // Several slides at once: a field whose values differ shows as mixed and
    // stays as it was; an edited field goes to every slide as one undo step,
    // and the slide rows and the status line follow.
    void multiSlideEdit() {
        MainWindow w;
        SlidePanel* panel = openSlides(w, {red_, green_, blue_}, {0}, 1000);
        QVERIFY(panel);
        w.document().setDuration({0}, 3000);
        w.document().setDuration({1}, 5000);
        w.selectRows({0, 1, 2});  // an edit selects the slides it changed
        auto* duration = qobject_cast<QAbstractSpinBox*>(panel->form("slide")->control(0));
        QVERIFY(duration);
        QCOMPARE(duration->text(), QString("(mixed)"));
        QVERIFY(savePanel(panel, "slide-panel-three-slides.png"));
        QUndoStack& undo = w.document().undoStack();
        const int before = undo.count();
        typeInto(panel->form("popup")->control(0), "640");
        panel->transitionChooser()->setCurrentIndex(panel->transitionChooser()->findText("Push"));
        typeInto(panel->textField("URL"), "http://example.org/");
        QCOMPARE(undo.count(), before + 3);
        const SlideShow& show = w.document().show();
        for (int i = 0; i < 3; ++i) {
            const Slide& s = *show.slideAt(i);
            QCOMPARE(s.duration, std::vector<uint32_t>({3000, 5000, 2000})[size_t(i)]);
            QCOMPARE(s.popup.width, 640);
            QCOMPARE(s.transitionIn().name(), std::string("Push"));
            QCOMPARE(s.clickAction.url, std::string("http://example.org/"));
        }
        QCOMPARE(duration->text(), QString("(mixed)"));
        undo.undo();
        undo.undo();
        QCOMPARE(show.slideAt(2)->transitionIn().name(), std::string("None"));
        QCOMPARE(show.slideAt(2)->popup.width, 640);
        undo.undo();
        for (int i = 0; i < 3; ++i) QCOMPARE(show.slideAt(i)->popup.width, 100);
        QCOMPARE(panel->form("popup")->control(0)->property("value").toInt(), 100);
        // The duration typed once for all three: the rows show it.
        typeInto(duration, "4.5");
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(show.slideAt(i)->duration, 4500u);
            QVERIFY(w.slideModel()->index(i).data().toString().endsWith("(4.50 sec)"));
        }
        QCOMPARE(w.statusText(), QString::fromStdString(show.statusText()));
    }

    // Gestures on the picture and the stage preview of a 320x240 photo on a
    // 320x240 stage: each is one undo step, the saved file holds the result,
    // and undoing every step gives back the project text before them.
    void pictureAndCaptionDrags_data() {
        QTest::addColumn<QStringList>("gestures");
        QTest::addColumn<QStringList>("expected");
        QTest::addRow("crop moved, kept on the picture") << QStringList{"drag 40 30 200 150", "drag 100 100 300 60"}
            << QStringList{R"(crop_left="160")", R"(crop_top="0")", R"(crop_right="320")", R"(crop_bottom="120")"};
        QTest::addRow("crop corner dragged past the edge") << QStringList{"drag 40 30 200 150", "drag 200 150 400 300"}
            << QStringList{R"(crop_left="40")", R"(crop_top="30")", R"(crop_right="320")", R"(crop_bottom="240")"};
        QTest::addRow("crop turned right") << QStringList{"drag 40 30 200 150", "rotate 90"}
            << QStringList{R"(rotate="90")", R"(crop_left="90")", R"(crop_top="40")", R"(crop_right="210")", R"(crop_bottom="200")"};
        QTest::addRow("crop drawn, flipped") << QStringList{"drag 40 30 200 150", "flip"}
            << QStringList{R"(flip_horizontal="true")", R"(crop="true")", R"(crop_left="40")", R"(crop_top="30")",
                           R"(crop_right="200")", R"(crop_bottom="150")"};
        QTest::addRow("pan and zoom") << QStringList{"move", "drag 320 240 160 120", "drag 80 60 180 140"}
            << QStringList{R"(pan_x="-4000")", R"(pan_y="-3200")", R"(zoom="2")"};
        QTest::addRow("second move's start frame sets the first move") << QStringList{"move", "move", "drag 80 60 180 140", "drag 0 0 160 120"}
            << QStringList{R"(pan_x="-6400" pan_y="-4800" zoom="2")", R"(pan_x="-2000" pan_y="-1600" zoom="1")"};
        QTest::addRow("caption to the bottom right") << QStringList{"caption", "text Bottom right", "cdrag 100 -4"}
            << QStringList{R"(txt="Bottom right")", R"(x="100")", R"(y="-4")"};
    }
    void pictureAndCaptionDrags() {
        QFETCH(QStringList, gestures);
        QFETCH(QStringList, expected);
        MainWindow w;
        SlidePanel* panel = openSlides(w, {red_});
        QVERIFY(panel);
        PictureEditor* picture = panel->pictureEditor();
        CaptionStage* stage = panel->captionStage();
        picture->canvas()->setFixedSize(336, 256);  // one canvas pixel per picture pixel
        stage->setFixedSize(328, 248);              // one widget pixel per stage pixel
        QUndoStack& undo = w.document().undoStack();
        const int before = undo.count();
        const QString original = text(w);
        for (const QString& gesture : gestures) {
            const QStringList g = gesture.split(' ');
            if (g[0] == "drag")
                drag(picture->canvas(), picture->canvasPoint({g[1].toDouble(), g[2].toDouble()}),
                     picture->canvasPoint({g[3].toDouble(), g[4].toDouble()}));
            else if (g[0] == "rotate") picture->rotate(g[1].toInt());
            else if (g[0] == "flip") picture->flip(true);
            else if (g[0] == "move") {
                panel->effectChooser("camera")->setCurrentIndex(panel->effectChooser("camera")->findText("pan_zoom"));
                panel->addEffect("camera");
                QCOMPARE(picture->cameraFrame(true), QRectF(0, 0, 320, 240));
            } else if (g[0] == "caption") {
                panel->captionEditor()->addCaption();
            } else if (g[0] == "text") {
                const std::string typed = gesture.mid(5).toStdString();
                w.document().editSlides({0}, "Caption Text", [&typed](Slide& s) { s.captions.items.at(0).text = typed; });
            } else if (g[0] == "cdrag") {
                const QPointF from = stage->captionBlock(0).center();
                drag(stage, stage->widgetPoint(from), stage->widgetPoint(from + QPointF(g[1].toDouble(), g[2].toDouble())));
            }
        }
        QCOMPARE(undo.count(), before + gestures.size());
        const QString shot = QMap<QString, QString>{{"pan and zoom", "picture-pan-zoom"}, {"crop turned right", "picture-crop"},
                                                    {"caption to the bottom right", "caption-stage"}}.value(QTest::currentDataTag());
        if (!shot.isEmpty()) QVERIFY(savePanel(panel, "slide-panel-" + shot + ".png"));
        const QString project = savedText(w, file("drags.qpj"));
        for (const QString& want : expected) QVERIFY2(project.contains(" " + want), qPrintable(want));
        while (undo.index() > before) undo.undo();
        QCOMPARE(text(w), original);
    }

    // A user's editing run over five photos through the panels: a crop, a
    // pan/zoom drawn on the picture, "Push" to the left, a caption dragged to
    // the bottom right, a filter, music. The saved project goes to the path in
    // QUILLET_EDITING_RUN, which tests/e2e exports and plays in Ruffle.
    void editingRun() {
        const QString out = qEnvironmentVariable("QUILLET_EDITING_RUN");
        if (out.isEmpty()) QSKIP("played by the e2e editing-run script");
        // The photos stay beside the project for the export.
        auto paint = [folder = QFileInfo(out).absolutePath()](const QString& name, const std::function<void(QPainter&)>& draw) {
            QImage image(320, 240, QImage::Format_RGB32);
            QPainter p(&image);
            draw(p);
            p.end();
            image.save(folder + "/" + name, "PNG");
            return folder + "/" + name;
        };
        const QStringList photos = {
            paint("halves.png", [](QPainter& p) { p.fillRect(0, 0, 160, 240, Qt::red); p.fillRect(160, 0, 160, 240, Qt::green); }),
            paint("bands.png", [](QPainter& p) { p.fillRect(0, 0, 320, 240, Qt::blue); p.fillRect(0, 0, 180, 240, Qt::red); p.fillRect(0, 0, 320, 140, Qt::green); }),
            paint("blue.png", [](QPainter& p) { p.fillRect(0, 0, 320, 240, Qt::blue); }),
            paint("grey.png", [](QPainter& p) { p.fillRect(0, 0, 320, 240, QColor(40, 40, 40)); }),
            paint("yellow.png", [](QPainter& p) { p.fillRect(0, 0, 320, 240, Qt::yellow); })};
        MainWindow w;
        SlidePanel* panel = openSlides(w, photos);
        QVERIFY(panel);
        w.document().setDuration({0, 1, 2, 3, 4}, 2000);
        w.selectRows({0});
        PictureEditor* picture = panel->pictureEditor();
        auto dragPicture = [&](QPointF from, QPointF to) {
            drag(picture->canvas(), picture->canvasPoint(from), picture->canvasPoint(to));
        };
        picture->canvas()->setFixedSize(336, 256);
        panel->captionStage()->setFixedSize(328, 248);
        dragPicture({10, 10}, {150, 230});  // the red half only
        w.selectRows({1});
        panel->effectChooser("camera")->setCurrentIndex(panel->effectChooser("camera")->findText("pan_zoom"));
        panel->addEffect("camera");
        dragPicture({320, 240}, {160, 120});  // twice as close
        dragPicture({80, 60}, {180, 140});    // on the corner where the three colours meet
        w.selectRows({2});
        panel->transitionChooser()->setCurrentIndex(panel->transitionChooser()->findText("Push"));
        enter(*panel->transitionOptions(), 0, 3);  // "Left"
        w.selectRows({3});
        panel->captionEditor()->addCaption();
        w.document().editSlides({3}, "Caption Text", [](Slide& s) { s.captions.items.at(0).text = "Bottom right"; });
        const QPointF from = panel->captionStage()->captionBlock(0).center();
        drag(panel->captionStage(), panel->captionStage()->widgetPoint(from), panel->captionStage()->widgetPoint(from + QPointF(60, -4)));
        w.selectRows({4});
        panel->effectChooser("filters")->setCurrentIndex(1);
        panel->addEffect("filters");
        // Music: the script leaves a tone beside the project.
        w.showPanel()->musicEditor()->addSound(QFileInfo(out).absolutePath() + "/music.wav");
        QVERIFY(w.document().show().sound.include);
        QVERIFY(savePanel(panel, "editing-run-slide-5.png"));
        QVERIFY(w.saveTo(out));
        const QString project = text(w);
        for (const char* want : {R"(crop="true" crop_left="10" crop_top="10" crop_right="150" crop_bottom="230")",
                                 R"(pan_x="-4000" pan_y="-3200" zoom="2")", R"(direction="left")", R"(x="60" y="-4")"})
            QVERIFY2(project.contains(want), want);
        // Each edit is one undo step: the pictures, their durations, the crop, the move and its two
        // frames, the transition and its direction, the caption, its text and its place, the filter
        // and the music. Undone to the start and redone, the project is the same text.
        QUndoStack& undo = w.document().undoStack();
        QCOMPARE(undo.count(), 13);
        undo.setIndex(0);
        QCOMPARE(w.document().show().count(), 0);
        undo.setIndex(undo.count());
        QCOMPARE(text(w), project);
    }

    // Every field of the show panel reaches the project text as one undo
    // step, the panel shows the new value, and undo restores the text exactly.
    void showPanelFields() {
        MainWindow w;
        ShowPanel* panel = openShow(w, {red_});
        QVERIFY(panel && panel->isVisible());
        panel->controlSetChooser(false)->setCurrentIndex(panel->controlSetChooser(false)->findText("Dark Bar"));
        panel->controlSetChooser(true)->setCurrentIndex(0);
        QVERIFY(savePanel(panel, "show-panel-set-pictures.png"));
        for (const QString& name : panel->formNames()) walkForm(w, *panel->form(name), name);
        for (const char* name : {"Click URL", "End target", "Preloader text", "Background image", "Frame pattern"})
            oneStep(w, name, [&] { typeInto(panel->textField(name), "x"); });
        // A control set brings its own size, which places it on the stage.
        QComboBox* sets = panel->controlSetChooser(false);
        QVERIFY2(sets->count() > 0, "no control sets drawn in the build");
        oneStep(w, "control set", [&] { sets->setCurrentIndex(sets->count() - 1); });
        const ControlPlacement& placed = w.document().show().controls;
        QCOMPARE(QString::fromStdString(placed.controlSet), sets->currentText());
        QVERIFY(placed.width > 1 && placed.height > 1);
        QVERIFY(savePanel(panel, "show-panel.png"));
    }

    // The show bounds and the preloader's font go through the panel into the
    // saved project; an entry that leaves nothing of the stage shown is
    // refused with what is allowed and changes nothing; a new stage width
    // takes bounds covering the whole stage with it.
    void showBoundsAndPreloaderFont_data() {
        QTest::addColumn<QString>("section");  // "bounds", "stage", a form name, or "font" for the family list
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("saved");    // in the saved file; empty: refused
        QTest::addColumn<QString>("refusal");
        auto font = [](const std::function<void(FontRecord&)>& change) {
            FontRecord f;
            change(f);
            return QString("preload_font=\"%1\"").arg(f.toHex().c_str());
        };
        QTest::newRow("left") << "bounds" << 0 << "12" << "show_bounds_left=\"12\"" << "";
        QTest::newRow("bottom") << "bounds" << 3 << "200" << "show_bounds_bottom=\"200\"" << "";
        QTest::newRow("right on left") << "bounds" << 2 << "0" << "" << "from 1 to 10000";
        QTest::newRow("top below bottom") << "bounds" << 1 << "241" << "" << "from 0 to 239";
        QTest::newRow("stage width") << "stage" << 0 << "400" << "show_bounds_right=\"400\"" << "";
        QTest::newRow("text size") << "preloaderFont" << 0 << "20" << font([](FontRecord& f) { f.height = -20; }) << "";
        QTest::newRow("bold") << "preloaderFont" << 1 << "1" << font([](FontRecord& f) { f.weight = 700; }) << "";
        QTest::newRow("italic") << "preloaderFont" << 2 << "1" << font([](FontRecord& f) { f.italic = 1; }) << "";
        QTest::newRow("family") << "font" << 0 << "" << "preload_font_name=" << "";
    }
    void showBoundsAndPreloaderFont() {
        QFETCH(QString, section);
        QFETCH(int, row);
        QFETCH(QString, typed);
        QFETCH(QString, saved);
        QFETCH(QString, refusal);
        MainWindow w;
        ShowPanel* panel = openShow(w, {red_});
        QVERIFY(panel);
        QUndoStack& undo = w.document().undoStack();
        const QString before = text(w);
        const int steps = undo.count();
        QComboBox* fonts = panel->preloaderFontChooser();
        QVERIFY2(fonts->count() > 1, "no installed fonts listed");
        const OptionForm* form = section == "font" ? nullptr : section == "bounds" ? panel->boundsForm() : panel->form(section);
        QVERIFY(form || section == "font");
        auto set = [&] {
            if (form) enter(*form, size_t(row), typed.toDouble());
            else fonts->setCurrentIndex(fonts->currentIndex() == 0 ? 1 : 0);
        };
        if (saved.isEmpty()) {
            set();
            QVERIFY2(panel->boundsMessage().contains(refusal), qPrintable(panel->boundsMessage()));
            QCOMPARE(undo.count(), steps);
            QCOMPARE(text(w), before);
            // The field shows the value kept again.
            const int kept = row == 1 ? w.document().show().showBoundsTop : w.document().show().showBoundsRight;
            QCOMPARE(panel->boundsForm()->control(size_t(row))->property("value").toInt(), kept);
            return;
        }
        oneStep(w, section, set);
        QVERIFY(panel->boundsMessage().isEmpty());
        if (section == "stage") QCOMPARE(panel->boundsForm()->control(2)->property("value").toInt(), 400);
        if (!form) saved += "\"" + fonts->currentText().toHtmlEscaped() + "\"";
        QVERIFY2(savedText(w, file("bounds-font.qpj")).contains(saved), qPrintable(saved));
    }

    // The sets are drawn from their movies: "Dark Bar" shows its translucent
    // dark panel below the buttons and light icons at rest (neither the
    // pointer's colour nor the black hit areas); a file that is no movie,
    // or a cut one, gives no picture but a reason naming it, in the panel too.
    void controlSetPictures() {
        QString why;
        const QImage bar = ControlSetPicture(ControlKind::Playback, "Dark Bar", &why)
                               .convertToFormat(QImage::Format_ARGB32);
        QVERIFY2(!bar.isNull(), qPrintable(why));
        QCOMPARE(bar.size(), QSize(200, 80));  // a 100 x 40 set at twice its size
        auto near = [](QRgb c, int r, int g, int b, int a) {
            return std::abs(qRed(c) - r) <= 3 && std::abs(qGreen(c) - g) <= 3 && std::abs(qBlue(c) - b) <= 3 &&
                   std::abs(qAlpha(c) - a) <= 3;
        };
        QVERIFY(near(bar.pixel(100, 76), 24, 24, 28, 210));  // below the play button
        QVERIFY(near(bar.pixel(14, 40), 24, 24, 28, 210));   // in a button's hit area, beside its icon
        int light = 0, hover = 0;
        for (int y = 0; y < bar.height(); ++y)
            for (int x = 0; x < bar.width(); ++x) {
                light += near(bar.pixel(x, y), 240, 240, 240, 255);
                hover += near(bar.pixel(x, y), 255, 190, 60, 255);
            }
        QVERIFY2(light > 200 && hover == 0, qPrintable(QString("%1 light, %2 hover pixels").arg(light).arg(hover)));

        // What the sets do not use yet: a square filled on its fill-0 side with
        // an outline, and a curved edge, placed lower with green halved.
        {
            SwfShapeBuilder square;
            square.SetFill0(square.AddFillStyle(SwfFillStyle::MakeSolid({255, 0, 0})));
            square.SetLine(square.AddLineStyle({40, SwfColor(0, 0, 255)}));
            square.Polygon({{200, 200}, {200, 800}, {800, 800}, {800, 200}});  // anticlockwise: inside on the left
            SwfShapeBuilder bulge;
            bulge.SetFill1(bulge.AddFillStyle(SwfFillStyle::MakeSolid({0, 255, 0})));
            bulge.MoveTo(1200, 200);
            bulge.LineTo(1200, 1000);
            bulge.CurveTo(2000, 600, 1200, 200);  // reaches x = 80 px at y = 30 px
            SwfWriter movie;
            movie.Setup(2000, 2000, 12.0f, 8);
            QVERIFY(movie.Open(file("drawn.swf").toStdString(), true));
            movie.AddTag(std::make_unique<DefineShape3Tag>(1, square.Bounds(), square.Build()));
            movie.AddTag(std::make_unique<DefineShape3Tag>(2, bulge.Bounds(), bulge.Build()));
            movie.AddTag(PlaceObject2Tag::Place(1, 1));
            SwfColorTransformAlpha halfGreen;
            halfGreen.hasMultTerms = true;
            halfGreen.greenMult = 128;
            movie.AddTag(PlaceObject2Tag::Place(2, 2, SwfMatrix::Translate(0, 800), halfGreen));
            movie.AddTag(std::make_unique<ShowFrameTag>());
            movie.AddTag(std::make_unique<EndTag>());
            movie.Close();
            QVERIFY(movie.Good());
            const QImage drawn = DrawFirstFrame(file("drawn.swf"), 1.0, &why).convertToFormat(QImage::Format_ARGB32);
            QVERIFY2(!drawn.isNull(), qPrintable(why));
            const std::tuple<QPoint, QRgb, const char*> probes[] = {
                {{25, 25}, qRgba(255, 0, 0, 255), "fill 0 inside the square"},
                {{5, 25}, qRgba(0, 0, 0, 0), "left of the square"},
                {{25, 10}, qRgba(0, 0, 255, 255), "the outline"},
                {{75, 70}, qRgba(0, 128, 0, 255), "inside the curve, moved and tinted"},
                {{88, 70}, qRgba(0, 0, 0, 0), "outside the curve"},
                {{75, 30}, qRgba(0, 0, 0, 0), "where the curve was before the move"}};
            for (const auto& [at, want, what] : probes)
                QVERIFY2(near(drawn.pixel(at), qRed(want), qGreen(want), qBlue(want), qAlpha(want)), what);
        }

        // Broken sets beside a good one, in a folder of their own.
        QTemporaryDir sets;
        QDir(sets.path()).mkpath("Controls");
        const QString folder = sets.filePath("Controls/");
        const QByteArray whole = contents(QString::fromStdString(FindControlsFolder(ControlKind::Playback)) + "/Dark Bar.swf");
        QVERIFY(writeFile(folder + "Dark Bar.swf", whole));
        const std::pair<const char*, QByteArray> broken[] = {
            {"Cut", whole.left(whole.size() / 2)}, {"Noise", QByteArray(300, '\x5a')}, {"Empty", QByteArray()}};
        for (const auto& [name, bytes] : broken) QVERIFY(writeFile(folder + name + ".swf", bytes));
        const QByteArray oldFolder = qgetenv("QUILLET_CONTROLS_DIR");
        qputenv("QUILLET_CONTROLS_DIR", sets.path().toUtf8());
        {
            MainWindow w;
            QVERIFY(openShow(w, {}));
            QComboBox* chooser = w.showPanel()->controlSetChooser(false);
            QCOMPARE(chooser->count(), 4);
            for (const auto& [name, bytes] : broken) {
                QVERIFY(ControlSetPicture(ControlKind::Playback, name, &why).isNull());
                QVERIFY2(why.contains(QString(name) + ".swf"), qPrintable(why));
                chooser->setCurrentIndex(chooser->findText(name));
                QCOMPARE(w.showPanel()->setPicture(false)->text(), why);
            }
            chooser->setCurrentIndex(chooser->findText("Dark Bar"));
            QVERIFY(!w.showPanel()->setPicture(false)->pixmap().isNull());
        }
        qputenv("QUILLET_CONTROLS_DIR", oldFolder);

    }

    // Captions and sounds, of one slide and of the whole show: every field is
    // one undo step that changes the project text and undo restores it; a
    // quality preset sets the rate and bit rate, and a rate typed by hand
    // shows "Custom"; what was set comes back from the saved file.
    void captionAndSoundFields_data() {
        QTest::addColumn<bool>("ofShow");
        QTest::newRow("slide") << false;
        QTest::newRow("show") << true;
    }
    void captionAndSoundFields() {
        QFETCH(bool, ofShow);
        MainWindow w;
        QVERIFY(ofShow ? openShow(w, {red_}) != nullptr : openSlides(w, {red_}, {0}, 1000) != nullptr);
        CaptionEditor* captions = ofShow ? w.showPanel()->captionEditor() : w.slidePanel()->captionEditor();
        SoundEditor* sound = ofShow ? w.showPanel()->musicEditor() : w.slidePanel()->soundEditor();
        const SlideShow& show = w.document().show();
        const Slide& slide = *show.slideAt(0);
        const CaptionList& captionList = ofShow ? show.captions : slide.captions;
        const SlideSound& soundData = ofShow ? show.sound : slide.sound;
        // A new caption takes the default font of its kind.
        AppSettings& settings = AppSettings::current();
        (ofShow ? settings.defaultShowFontName : settings.defaultSlideFontName) = "DejaVu Serif";
        (ofShow ? settings.defaultShowFont : settings.defaultSlideFont).weight = 700;
        oneStep(w, "add caption", [&] { captions->addCaption(); });
        settings.resetToDefaults();
        QCOMPARE(captions->list()->currentRow(), 0);
        QCOMPARE(captionList.items.at(0).fontName, std::string("DejaVu Serif"));
        QVERIFY(captionList.items.at(0).bold);
        walkForm(w, *captions->form());
        oneStep(w, "caption text", [&] {
            captions->textField()->setFocus();
            captions->textField()->setPlainText("Evening & morning");
            QFocusEvent out(QEvent::FocusOut);
            QApplication::sendEvent(captions->textField(), &out);
        });
        QComboBox* fonts = captions->fontChooser();
        QVERIFY2(fonts->count() > 1, "no installed fonts listed");
        oneStep(w, "caption font", [&] { fonts->setCurrentIndex(fonts->currentIndex() == 0 ? 1 : 0); });
        oneStep(w, "second caption", [&] { captions->addCaption(); });
        oneStep(w, "caption order", [&] {
            captions->list()->setCurrentRow(1);
            captions->moveCaption(-1);
        });
        QCOMPARE(captionList.items.at(1).text, std::string("Evening & morning"));

        oneStep(w, "add sound", [&] { sound->addSound(file("tone.wav")); });
        QVERIFY(soundData.include);
        walkForm(w, *sound->form("switches"));
        const OptionForm& clip = *sound->form("clip");
        walkForm(w, clip);
        auto* quality = qobject_cast<QComboBox*>(clip.control(6));
        QVERIFY(quality);
        oneStep(w, "preset", [&] { quality->setCurrentIndex(quality->findText("Speech/Voice")); });
        QVERIFY(text(w).contains("sample_rate=\"11025\" bit_rate=\"32\""));
        // Two presets with the same values: the one chosen stays shown.
        quality->setCurrentIndex(quality->findText("Near-CD Quality"));
        QCOMPARE(quality->currentText(), QString("Near-CD Quality"));
        oneStep(w, "bit rate", [&] { typeInto(clip.control(8), "40"); });
        QCOMPARE(quality->currentText(), QString("Custom"));
        if (!ofShow) QVERIFY(savePanel(w.slidePanel(), "slide-panel-captions-sound.png"));
        else QVERIFY(savePanel(w.showPanel(), "show-panel-captions-music.png"));

        QVERIFY(w.saveTo(file("captions.qpj")));
        MainWindow again;
        QVERIFY(again.openFile(file("captions.qpj")));
        const SlideShow& read = again.document().show();
        QVERIFY((ofShow ? read.captions : read.slideAt(0)->captions) == captionList);
        QVERIFY((ofShow ? read.sound : read.slideAt(0)->sound) == soundData);
    }

    // A chosen target whose name is no file name is refused with its message
    // and nothing reaches the document; a target left off is not checked.
    void publishFileNames_data() {
        QTest::addColumn<int>("target");
        QTest::addColumn<bool>("chosen");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::newRow("movie empty") << 0 << true << "" << "Please enter a valid filename for the SWF.";
        QTest::newRow("page with a folder") << 2 << true << "pages/show.html" << "Please enter a valid filename for the HTML.";
        QTest::newRow("mac projector blank") << 3 << true << "   " << "Please enter a valid filename for the Macintosh Projector.";
        QTest::newRow("quicktime colon") << 5 << true << "a:b.mov" << "Please enter a valid name for the QuickTime movie.";
        QTest::newRow("screen saver star") << 6 << true << "*.scr" << "Please enter a valid filename for the Screen Saver";
        QTest::newRow("installer") << 7 << true << "..\\x.exe" << "Please enter a valid filename for the Screen Saver Installer.";
        QTest::newRow("left off") << 4 << false << "" << "";
        QTest::newRow("good name") << 4 << true << "My show (2).exe" << "";
    }
    void publishFileNames() {
        QFETCH(int, target);
        QFETCH(bool, chosen);
        QFETCH(QString, name);
        QFETCH(QString, message);
        MainWindow w;
        PublishDialog dialog(w.document());
        dialog.useBaseName()->setChecked(false);
        if (dialog.targetBox(target)->isChecked() != chosen) dialog.targetBox(target)->click();
        typeInto(dialog.targetName(target), name);
        if (name.isEmpty()) QTest::keyClick(dialog.targetName(target), Qt::Key_Backspace);
        const QString before = text(w);
        QCOMPARE(dialog.apply(), message.isEmpty());
        QCOMPARE(dialog.message(), message);
        QCOMPARE(prompts_.told.isEmpty() ? QString() : prompts_.told.last(), message);
        if (!message.isEmpty()) QCOMPARE(text(w), before);
    }

    // The publish settings reach the project as one undo step; file names
    // follow the base name, "Match movie" takes the stage size. The
    // preferences go to the settings file and never to the undo history.
    void publishSettingsAndPreferences() {
        MainWindow w;
        w.document().setShowSettings({640, 480, 12.0f, 0});
        QUndoStack& undo = w.document().undoStack();
        PublishDialog dialog(w.document());
        typeInto(dialog.baseName(), "Holiday");
        QCOMPARE(dialog.targetName(2)->text(), QString("Holiday.html"));
        QVERIFY(!dialog.targetName(2)->isEnabled());
        OptionForm& page = *dialog.form("page");
        enter(page, 0, HtmlSettings::Pixels);
        enter(page, 1, 500);
        QCOMPARE(dialog.settings().htmlSettings.width, 500);
        enter(page, 0, HtmlSettings::MatchMovie);
        QCOMPARE(std::pair(dialog.settings().htmlSettings.width, dialog.settings().htmlSettings.height), std::pair(640, 480));
        enter(*dialog.form("projectors"), 3, 1);
        typeInto(dialog.playersFolder(), file("players"));
        dialog.resize(dialog.sizeHint());
        QVERIFY(dialog.grab().save(QString(QUILLET_ARTEFACTS_DIR) + "/publish-settings.png"));
        oneStep(w, "publish settings", [&] { QVERIFY(dialog.apply()); });
        const int steps = undo.count();
        for (const char* part : {"default_base_filename=\"Holiday\"", "filename=\"Holiday.html\"", "orig_width=\"640\"",
                                 "fullscreen=\"true\""})
            QVERIFY2(text(w).contains(part), part);
        QCOMPARE(QString::fromStdString(AppSettings::current().publishPlayersPath), file("players"));

        PreferencesDialog prefs;
        enter(*prefs.form(), 0, 55);
        enter(*prefs.form(), 7, 1);
        enter(*prefs.form(), 8, 3);
        typeInto(prefs.textField("Player download"), "https://example.org/player");
        QVERIFY(prefs.grab().save(QString(QUILLET_ARTEFACTS_DIR) + "/preferences.png"));
        QVERIFY(prefs.apply());
        QCOMPARE(undo.count(), steps);
        AppSettings saved;
        QVERIFY(saved.load());
        QCOMPARE(saved.defaultImageQuality, 55);
        QVERIFY(saved.readExifData);
        QCOMPARE(saved.recentProjects.capacity(), size_t(3));
        QCOMPARE(saved.publishPlayerDownloadUrl, std::string("https://example.org/player"));
        QCOMPARE(saved.publishPlayersPath, file("players").toStdString());
        AppSettings::current().resetToDefaults();
    }

    // The picture's image type list offers seven types: each reaches the
    // file as its keyword, also picked over a type the list does not offer
    // (undo shows that one again); such a type shows by name and survives
    // another edit. The JPEG quality counts only for the JPEG-encoded types.
    void imageTypeList_data() {
        QTest::addColumn<QString>("label");  // picked in the list; empty: the type is only in the project
        QTest::addColumn<QString>("keyword");
        QTest::addColumn<bool>("quality");
        const std::tuple<const char*, const char*, bool> rows[] = {
            {"Jpeg", "jpeg", true},
            {"Jpeg w/ Alpha Channel", "jpeg_transparent", true},
            {"Jpeg Import Data", "jpeg_import_data", false},
            {"Lossless 24 bit", "rgb_24", false},
            {"Lossless 24 bit w/ Alpha Channel", "rgb_24_transparent", false},
            {"Lossless 15 bit", "rgb_15", false},
            {"Lossless 8 bit", "rgb_8", false},
            {"", "jpeg_external", false},
            {"", "rgb_8_transparent", false}};
        for (const auto& [label, keyword, quality] : rows) QTest::addRow("%s", keyword) << label << keyword << quality;
    }
    void imageTypeList() {
        QFETCH(QString, label);
        QFETCH(QString, keyword);
        QFETCH(bool, quality);
        MainWindow w;
        SlidePanel* panel = openSlides(w, {red_});
        QVERIFY(panel);
        auto* types = qobject_cast<QComboBox*>(panel->form("picture")->control(0));
        QVERIFY(types);
        QCOMPARE(types->count(), 7);
        ImageType start;
        QVERIFY(imageTypeFromKeyword(label.isEmpty() ? keyword.toStdString() : "jpeg_external", start));
        w.document().editSlides({0}, "Type", [start](Slide& s) { s.image.imageType = start; });
        QCOMPARE(types->currentIndex(), -1);
        const QString kept = types->placeholderText();
        QVERIFY2(!kept.isEmpty() && kept != "(mixed)", qPrintable(kept));
        QUndoStack& undo = w.document().undoStack();
        if (label.isEmpty()) {
            typeInto(panel->form("slide")->control(0), "4");
            QCOMPARE(w.document().show().slideAt(0)->duration, 4000u);
            QCOMPARE(types->currentIndex(), -1);
        } else {
            QVERIFY(types->findText(label) >= 0);
            types->setCurrentIndex(types->findText(label));
            undo.undo();
            QCOMPARE(types->currentIndex(), -1);
            QCOMPARE(types->placeholderText(), kept);
            undo.redo();
            QCOMPARE(types->currentText(), label);
        }
        QCOMPARE(panel->form("picture")->control(1)->isEnabled(), quality);
        QVERIFY(savedText(w, file("types.qpj")).contains(QString(R"(image_type="%1")").arg(keyword)));
    }

    // The filtered picture follows every filter and picture edit and its undo,
    // filters in list order before the flip and the turn, as the exporter
    // prepares it: a 400x200 picture, light on the left half, dark blue-grey
    // on the right, shown at its size on the 320x240 stage.
    void filteredPicture() {
        QImage halves(400, 200, QImage::Format_RGB32);
        halves.fill(QColor(200, 200, 200));
        QPainter(&halves).fillRect(200, 0, 200, 200, QColor(30, 60, 90));
        QVERIFY(halves.save(file("halves.png")));
        MainWindow w;
        SlidePanel* panel = openSlides(w, {file("halves.png")});
        QVERIFY(panel);
        FilterPreview* preview = panel->filterPreview();
        QComboBox* chooser = panel->effectChooser("filters");
        auto add = [&](const char* name) {
            QVERIFY(chooser->findText(name) >= 0);
            chooser->setCurrentIndex(chooser->findText(name));
            panel->addEffect("filters");
        };
        auto* types = qobject_cast<QComboBox*>(panel->form("picture")->control(0));
        QUndoStack& undo = w.document().undoStack();
        // Solarize inverts channels above 50; Grayscale is (3R + 4G + 2B) / 9.
        const QList<std::tuple<const char*, std::function<void()>, QSize, QColor>> steps = {
            {"unfiltered", [] {}, {320, 160}, QColor(200, 200, 200)},
            {"flipped", [&] { panel->pictureEditor()->flip(true); }, {320, 160}, QColor(30, 60, 90)},
            {"Solarize", [&] { add("Solarize"); }, {320, 160}, QColor(30, 195, 165)},
            {"then Grayscale", [&] { add("Grayscale"); }, {320, 160}, QColor(133, 133, 133)},
            {"Grayscale first", [&] {
                 panel->moveEffect("filters", -1);
                 QCOMPARE(panel->effectList("filters")->currentRow(), 0);
             }, {320, 160}, QColor(199, 199, 199)},
            {"move undone", [&] { undo.undo(); }, {320, 160}, QColor(133, 133, 133)},
            {"and redone", [&] { undo.redo(); }, {320, 160}, QColor(199, 199, 199)},
            {"turned right", [&] { panel->pictureEditor()->rotate(90); }, {120, 240}, QColor(199, 199, 199)},
            {"file as it is", [&] { types->setCurrentIndex(types->findText("Jpeg Import Data")); }, {320, 160},
             QColor(200, 200, 200)},
            {"Solarize removed", [&] {
                 types->setCurrentIndex(types->findText("Jpeg"));
                 panel->effectList("filters")->setCurrentRow(1);
                 panel->removeEffect("filters");
             }, {120, 240}, QColor(56, 56, 56)},
            {"removal undone", [&] { undo.undo(); }, {120, 240}, QColor(199, 199, 199)}};
        for (const auto& [name, step, size, colour] : steps) {
            step();
            QVERIFY2(QTest::qWaitFor([&] { return !preview->busy(); }, 5000), name);
            const QImage shown = preview->picture();
            QVERIFY2(shown.size() == size, name);
            // A quarter of the way along the longer side, mid-way across.
            const QColor at = shown.pixelColor(size.width() > size.height() ? QPoint(size.width() / 4, size.height() / 2)
                                                                             : QPoint(size.width() / 2, size.height() / 4));
            QVERIFY2(std::abs(at.red() - colour.red()) <= 2 && std::abs(at.green() - colour.green()) <= 2 &&
                         std::abs(at.blue() - colour.blue()) <= 2, qPrintable(name + (": " + at.name())));
        }
        QCOMPARE(panel->effectList("filters")->count(), 2);
        QVERIFY(savePanel(panel, "slide-panel-filters.png"));
        // A real photo, for the eye: artefacts/slide-panel-filtered-picture.png.
        const QString photo = "/usr/share/backgrounds/mate/nature/LadyBird.jpg";
        if (!QFileInfo::exists(photo)) return;
        QCOMPARE(w.insertPictures({photo}, 1), 1);
        w.selectRows({1});
        add("Sepia");
        add("Raise Borders");
        // (The photo has over 4 megapixels: it is decoded on a worker first.)
        QVERIFY(QTest::qWaitFor([&] { return !preview->busy() && !preview->picture().isNull(); }, 10000));
        QVERIFY(preview->parentWidget()->grab().save(QString(QUILLET_ARTEFACTS_DIR) + "/slide-panel-filtered-picture.png"));
    }

    // A large picture is decoded away from the window's thread: choosing its
    // slide returns at once, and the panel draws it when it is there.
    void largePictureDecodedOnAWorker() {
        QImage large(2600, 2000, QImage::Format_RGB32);
        large.fill(QColor(10, 120, 200));
        QVERIFY(large.save(file("large.png")));
        MainWindow w;
        w.show();
        QSignalSpy decoded(&DecodedPictures::instance(), &DecodedPictures::decoded);
        QCOMPARE(w.insertPictures({file("large.png")}, 0), 1);
        w.selectRows({0});
        w.slideProperties();
        auto announced = [&] {
            return std::any_of(decoded.begin(), decoded.end(), [&](const QList<QVariant>& a) { return a.first() == file("large.png"); });
        };
        QVERIFY(PictureEditor::Picture(file("large.png"), 640, false).isNull() || announced());
        QVERIFY(QTest::qWaitFor(announced, 10000));
        QCOMPARE(PictureEditor::Picture(file("large.png"), 640, false).size(), QSize(640, 492));
        const QImage drawn = w.slidePanel()->pictureEditor()->canvas()->grab().toImage();
        QCOMPARE(drawn.pixelColor(drawn.rect().center()), QColor(10, 120, 200));
    }

    // The picture editor shows the picture turned and mirrored as the movie
    // stores it, whatever the order of the commands.
    void pictureEditorOrientation() {
        QImage quad(80, 60, QImage::Format_RGB32);
        const QColor colours[4] = {Qt::red, Qt::green, Qt::blue, Qt::yellow};  // TL, TR, BL, BR
        for (int q = 0; q < 4; ++q) QPainter(&quad).fillRect((q % 2) * 40, (q / 2) * 30, 40, 30, colours[q]);
        QVERIFY(quad.save(file("quad.png")));
        MainWindow w;
        QVERIFY(openSlides(w, {file("quad.png")}));
        PictureEditor* editor = w.slidePanel()->pictureEditor();
        QUndoStack& undo = w.document().undoStack();
        // Turns by degrees; "h" and "v" mirror across and up and down.
        for (const QString sequence : {"90", "90 h", "h 90", "v -90", "180 v h"}) {
            const int upright = undo.index();
            for (const QString& c : sequence.split(' ')) c == "h" || c == "v" ? editor->flip(c == "h") : editor->rotate(c.toInt());
            const Slide& slide = *w.document().show().slideAt(0);
            SlideImage stored = slide.image;
            stored.imageType = ImageType::Rgb24;
            const PreparedPicture movie = PrepareSlideImage(stored, {});
            QVERIFY2(movie.ok, movie.error.c_str());
            const QImage shown = PictureEditor::Shown(slide).scaled(int(movie.width), int(movie.height));
            for (int q = 0; q < 4; ++q) {
                const int x = int(movie.width) * (1 + 2 * (q % 2)) / 4, y = int(movie.height) * (1 + 2 * (q / 2)) / 4;
                const uint8_t* p = movie.pixels.row(uint32_t(y)) + x * 3;
                QVERIFY2(shown.pixelColor(x, y) == QColor(p[0], p[1], p[2]), qPrintable(QString("%1, quarter %2").arg(sequence).arg(q)));
            }
            // A crop drawn over the shown picture's top-left quarter stores that quarter.
            const QColor topLeft = shown.pixelColor(int(movie.width) / 4, int(movie.height) / 4);
            stored.crop = true;
            const QSize natural = PictureEditor::Shown(slide).size();  // crop rectangles are in its pixels
            SetCropRect(stored, {0, 0, natural.width() / 2, natural.height() / 2}, 320, 240);
            const PreparedPicture quarter = PrepareSlideImage(stored, {});
            QVERIFY2(quarter.ok, quarter.error.c_str());
            for (uint32_t y : {0u, quarter.height - 1})
                for (uint32_t x : {0u, quarter.width - 1}) {
                    const uint8_t* p = quarter.pixels.row(y) + x * 3;
                    QVERIFY2(QColor(p[0], p[1], p[2]) == topLeft, qPrintable(sequence + ": cropped corner"));
                }
            undo.setIndex(upright);
        }
    }

    // Needs a display: the demo show in the main window and its preview.
    void demoWindowAndPreview() {
        if (offscreen()) QSKIP("the web view needs a display (run under Xvfb)");
        const QString artefacts = QUILLET_ARTEFACTS_DIR;
        MainWindow w;
        w.resize(720, 560);
        w.show();
        QVERIFY(w.openFile(QUILLET_SOURCE_DIR "/demo/demo.qpj"));
        w.grab();  // painting asks for the thumbnails
        w.slideModel()->thumbnails().waitForDone();
        QCoreApplication::processEvents();
        QVERIFY(w.grab().save(artefacts + "/main-window.png"));

        QVERIFY(w.previewFrom(0));
        PreviewWindow* preview = w.previewWindow();
        QVERIFY(preview && preview->isVisible());
        QCOMPARE(preview->windowTitle(), QString(kPreviewTitle));
        QTRY_VERIFY_WITH_TIMEOUT(preview->loaded(), 20000);
        // Of a fresh shot of `view` (null: the last shot), the pixels looked at
        // (every 8th across and down) that are `is`: how many, or what share in per cent.
        QImage shot;
        auto count = [&shot](QWidget* view, const std::function<bool(QColor)>& is, bool percent) {
            if (view) shot = view->screen()->grabWindow(view->winId()).toImage();
            int n = 0, total = 0;
            for (int y = 0; y < shot.height(); y += 8)
                for (int x = 0; x < shot.width(); x += 8, ++total) n += is(shot.pixelColor(x, y));
            return percent ? n * 100 / std::max(total, 1) : n;
        };
        const auto green = [](QColor c) { return c.green() > c.red() + 20 && c.green() > c.blue() + 20; };
        const auto red = [](QColor c) { return c.red() > 180 && c.blue() < 80; };
        const auto blue = [](QColor c) { return c.blue() > 180 && c.red() < 80; };
        // Slide 1 (a green meadow) has faded in after a second; wait for the
        // picture's greens to cover much of the view.
        QTRY_VERIFY_WITH_TIMEOUT(count(preview, green, true) > 30, 20000);
        QTest::qWait(1500);  // the fade and the caption are done
        QVERIFY(count(preview, green, true) > 30);
        QVERIFY(shot.save(artefacts + "/preview.png"));
        // Again from the third slide: the prepared pictures come from the cache.
        QElapsedTimer clock;
        clock.start();
        QVERIFY(w.previewFrom(2));
        qInfo("preview from slide 3 of %d, pictures cached: movie written after %lld ms",
              w.document().show().count(), clock.elapsed());

        // The transition preview: red, then blue pushed in; some frame shows both.
        MainWindow two;
        SlidePanel* panel = openSlides(two, {red_, blue_}, {1});
        QVERIFY(panel);
        panel->transitionChooser()->setCurrentIndex(panel->transitionChooser()->findText("Push"));
        QVERIFY(panel->previewTransition());
        PreviewWindow* small = panel->transitionPreview();
        QTRY_VERIFY_WITH_TIMEOUT(small->loaded(), 20000);
        QTRY_VERIFY_WITH_TIMEOUT(count(small, red, false) > 10 && count(nullptr, blue, false) > 10, 20000);
        QVERIFY(shot.save(artefacts + "/transition-preview.png"));
        // It plays on: blue alone (the hold), then red again for the next pass
        // (about a sixth of each picture is random dots).
        QTRY_VERIFY_WITH_TIMEOUT(count(small, blue, true) > 60, 20000);
        QTRY_VERIFY_WITH_TIMEOUT(count(small, red, true) > 60, 20000);
    }

    // The caption stage lays captions out as the movie does: each box stands
    // where the exported text is placed (so its size counts too, for centred,
    // right and bottom alignment), and what the stage draws spans the outlines
    // the movie's text spans.
    void captionStageMatchesTheMovie() {
        SlideShow show;
        show.bgColor = 0;
        std::unique_ptr<Slide> blank = show.createSlide(SlideType::Blank);
        Slide* slide = blank.get();
        QVERIFY(show.append(std::move(blank)));
        // Red: centred, bold, tracked; green: two italic lines with leading,
        // right and bottom at a point; blue: a font that is not installed.
        Caption red, green, blue;
        std::tie(red.text, red.fontName, red.fontSize, red.bold, red.tracking, red.color, red.hAlign, red.vAlign, red.x, red.y) =
            std::tuple("Centred, bold", "DejaVu Sans", 20, true, 3, 0x0000FF, Caption::HCenter, Caption::VCenter, 10, -40);
        std::tie(green.text, green.fontName, green.fontSize, green.italic, green.leading, green.color, green.hAlign,
                 green.vAlign, green.x, green.y, green.alignToDoc) =
            std::tuple("Two lines\nright, italic", "DejaVu Serif", 15, true, 6, 0x00FF00, Caption::Right, Caption::Bottom, 300, 225, false);
        std::tie(blue.text, blue.fontName, blue.fontSize, blue.tracking, blue.color, blue.hAlign, blue.vAlign, blue.x, blue.y) =
            std::tuple("Fallback", "Nowhere Sans", 14, -1, 0xFF0000, Caption::Left, Caption::Top, 12, 8);
        slide->captions.items = {red, green, blue};
        const QString movie = file("stage-captions.swf");
        const ExportResult exported = MovieExporter(show).ExportMovie(movie.toStdString());
        QVERIFY2(exported.ok, exported.error.c_str());
        SwfReader reader;
        QVERIFY2(reader.ReadFile(movie.toStdString()), reader.Error().c_str());
        // Each caption: its text's bounds and where its sprite is placed.
        std::map<uint16_t, SwfRect> textBounds, spriteBounds;
        QList<QRectF> ink;
        QList<QPoint> placed;
        for (const auto& tag : reader.Tags()) {
            if (auto* t = dynamic_cast<const DefineText2Tag*>(tag.get())) textBounds[t->GetId()] = t->bounds;
            else if (auto* sprite = dynamic_cast<const DefineSpriteTag*>(tag.get())) {
                for (const auto& inner : sprite->Tags())
                    if (auto* p = dynamic_cast<const PlaceObject2Tag*>(inner.get()); p && p->characterId && textBounds.count(*p->characterId))
                        spriteBounds[sprite->GetId()] = textBounds[*p->characterId];
            } else if (auto* p = dynamic_cast<const PlaceObject2Tag*>(tag.get()); p && p->characterId && spriteBounds.count(*p->characterId)) {
                const SwfRect r = spriteBounds[*p->characterId];
                const int tx = p->matrix ? p->matrix->translateX : 0, ty = p->matrix ? p->matrix->translateY : 0;
                placed << QPoint(tx, ty);
                ink << QRectF((tx + r.xMin) / 20.0, (ty + r.yMin) / 20.0, r.Width() / 20.0, r.Height() / 20.0);
            }
        }
        QCOMPARE(placed.size(), 3);

        CaptionStage stage({});
        stage.setFixedSize(show.width() + 8, show.height() + 8);  // one widget pixel per stage pixel, 4 px margin
        stage.setSlide(slide, -1);
        const QImage shot = stage.grab().toImage();
        for (int i = 0; i < 3; ++i) {
            const QRectF block = stage.captionBlock(i);
            QCOMPARE(QPoint(qRound(block.left() * 20), qRound(block.top() * 20)), placed[i]);
            // The painted pixels of the caption's colour, in stage pixels.
            QRect drawn;
            for (int y = 0; y < shot.height(); ++y)
                for (int x = 0; x < shot.width(); ++x) {
                    const QColor c = shot.pixelColor(x, y);
                    const int mine = i == 0 ? c.red() : i == 1 ? c.green() : c.blue();
                    if (mine > 60 && c.red() + c.green() + c.blue() - mine < 40) drawn |= QRect(x - 4, y - 4, 1, 1);
                }
            const QRectF want = ink[i];
            QString why;
            QDebug(&why) << "caption" << i << "drawn" << drawn << "the movie's outlines" << want;
            QVERIFY2(std::abs(drawn.left() - want.left()) < 1 && std::abs(drawn.right() + 1 - want.right()) < 1 &&
                     std::abs(drawn.top() - want.top()) < 1 && std::abs(drawn.bottom() + 1 - want.bottom()) < 1, qPrintable(why));
        }
    }
};

int main(int argc, char** argv) {
    if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    AppTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_app.moc"
