// Runs the movie export on a worker thread while a window-modal progress
// dialog shows "Processing %d of %d"; the window keeps repainting, and
// Cancel stops the export after the slide being written.
#pragma once

#include <QString>

#include "movie/MovieExporter.h"

class QWidget;

namespace quillet::app {

// The show must not change until this returns (the dialog is modal).
ExportResult RunExport(QWidget* parent, const SlideShow& show, const QString& path, const ExportOptions& options);

}  // namespace quillet::app
