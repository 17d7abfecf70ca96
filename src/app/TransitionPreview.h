// The transition of one slide played on its own: a short movie of the slide
// before it (or the empty stage) followed by the slide coming in, exported
// by the core and played over and over in a small player window.
#pragma once

#include <QString>

class QWidget;

namespace quillet::app {

class Document;
class PreviewWindow;

// Plays the transition into the slide at `row`; `window` is created on first
// use (a child window of `parent`). False with `error` when the movie cannot
// be made or played.
bool PreviewTransition(QWidget* parent, const Document& doc, int row, PreviewWindow*& window, QString* error);

}  // namespace quillet::app
