#include "app/ExportRunner.h"

#include <QEventLoop>
#include <QMutex>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>
#include <atomic>

#include "app/Prompts.h"
#include "io/DiskCache.h"
#include "media/Progress.h"
#include "settings/AppSettings.h"

namespace quillet::app {

namespace {

// Written by the export thread, read by the dialog's timer.
class ThreadProgress : public ProgressSink {
public:
    void setRange(int low, int high) override {
        low_ = low;
        high_ = high;
    }
    void setMainText(const std::string& text) override {
        QMutexLocker lock(&mutex_);
        main_ = QString::fromStdString(text);
    }
    void step(int position) override { position_ = position; }
    bool cancelled() const override { return cancel_; }

    void cancel() { cancel_ = true; }
    QString mainText() const {
        QMutexLocker lock(&mutex_);
        return main_;
    }
    std::atomic<int> low_{0}, high_{0}, position_{0};

private:
    mutable QMutex mutex_;
    QString main_;
    std::atomic<bool> cancel_{false};
};

}  // namespace

void RunWithProgress(QWidget* parent, const std::function<void(ProgressSink&)>& work) {
    ThreadProgress progress;
    QProgressDialog dialog(parent);
    dialog.setWindowTitle(kExportingText);
    dialog.setLabelText(kExportingText);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setAutoClose(false);
    dialog.setAutoReset(false);
    dialog.setMinimumDuration(0);
    dialog.setMinimumWidth(320);
    QThread* worker = QThread::create([&] { work(progress); });
    QEventLoop loop;
    QObject::connect(worker, &QThread::finished, &loop, &QEventLoop::quit);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        // The button, Escape and closing all end in wasCanceled().
        if (dialog.wasCanceled() && !progress.cancelled()) {
            progress.cancel();
            dialog.setLabelText("Cancelling...");
        }
        if (progress.cancelled()) return;
        dialog.setRange(progress.low_, progress.high_);
        dialog.setValue(progress.position_);
        const QString text = progress.mainText();
        if (!text.isEmpty()) dialog.setLabelText(text);
    });
    poll.start(50);
    worker->start();
    dialog.show();
    prompts().progressShown(&dialog);
    if (worker->isRunning()) loop.exec();
    worker->wait();
    delete worker;
}

ExportOptions DesktopExportOptions() {
    ExportOptions options;
    options.bitmapShift = AppSettings::current().defaultImageAdjustBitmapShift;
    options.cacheFolder = DiskCache::DefaultFolder();
    return options;
}

ExportResult RunExport(QWidget* parent, const SlideShow& show, const QString& path, const ExportOptions& options) {
    ExportResult result;
    const std::string target = path.toStdString();
    RunWithProgress(parent, [&](ProgressSink& progress) {
        result = MovieExporter(show).ExportMovie(target, &progress, options);
    });
    return result;
}

namespace {

// Called on the publish thread; the question is asked on the window's.
class DialogPublishPrompts : public PublishPrompts {
public:
    explicit DialogPublishPrompts(QWidget* parent) : parent_(parent) {}
    ReplaceReply AskReplace(const std::string& question) override {
        ReplaceReply reply;
        QMetaObject::invokeMethod(
            parent_, [&] { reply = prompts().askReplace(parent_, QString::fromStdString(question)); },
            Qt::BlockingQueuedConnection);
        return reply;
    }

private:
    QWidget* parent_;
};

}  // namespace

PublishResult RunPublish(QWidget* parent, PublishSettings& settings, const SlideShow& show, PublishOptions options) {
    PublishResult result;
    DialogPublishPrompts ask(parent);
    options.prompts = &ask;
    RunWithProgress(parent, [&](ProgressSink& progress) {
        options.progress = &progress;
        result = Publish(settings, show, options);
    });
    return result;
}

}  // namespace quillet::app
