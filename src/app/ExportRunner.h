// Runs the movie export on a worker thread while a window-modal progress
// dialog shows "Processing %d of %d"; the window keeps repainting, and
// Cancel stops the export after the slide being written.
#pragma once

#include <QString>
#include <functional>

#include "media/Progress.h"
#include "movie/MovieExporter.h"
#include "publish/Publisher.h"

class QWidget;

namespace quillet::app {

// Runs `work` on a worker thread under the progress dialog and returns when
// it is done. The show must not change until then (the dialog is modal).
void RunWithProgress(QWidget* parent, const std::function<void(ProgressSink&)>& work);

// The options of the program's exports and previews: the bitmap-shift
// preference, and the prepared-picture cache, so that exporting or
// previewing again after a small change only prepares what changed.
ExportOptions DesktopExportOptions();
ExportResult RunExport(QWidget* parent, const SlideShow& show, const QString& path, const ExportOptions& options);
// A publish run; its replace questions are asked on the window's thread.
PublishResult RunPublish(QWidget* parent, PublishSettings& settings, const SlideShow& show, PublishOptions options);

}  // namespace quillet::app
