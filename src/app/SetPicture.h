// Pictures of control sets: the first frame of a small movie drawn with
// QPainter straight from its tags, for the set choosers of the show panel.
//
// Drawn: DefineShape 1-3 (solid fills with alpha, line styles, straight and
// curved edges; each fill's outline is joined from the edges that carry it on
// either side and filled odd-even, as the player does), the up state of
// buttons, the first frame of sprites, PlaceObject/PlaceObject2 with their
// matrix and colour transform. Gradients show as the mean of their colours,
// bitmap fills as neutral grey; masks, text and anything else are left out.
#pragma once

#include <QImage>
#include <QString>

#include "movie/ControlSets.h"

namespace quillet::app {

// The first frame of the movie in `path`, `scale` image pixels per stage
// pixel, on a transparent ground (premultiplied ARGB). A null image when the
// file is no readable movie, with `error` naming the file and the problem.
QImage DrawFirstFrame(const QString& path, double scale, QString* error = nullptr);

// The picture of an installed set at twice its size, drawn once per file
// (again when the file changes). Null when the set cannot be read; `error`
// then says why.
QImage ControlSetPicture(ControlKind kind, const QString& name, QString* error = nullptr);

}  // namespace quillet::app
