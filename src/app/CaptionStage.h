// A small stage: the slide at stage scale with its captions drawn where the
// movie puts them. Captions are laid out as the movie lays them out (the same
// faces, layout and glyph outlines), so their boxes match the exported text.
// The current caption is framed and dragged to a new place; the drop is one
// edit of its x and y.
#pragma once

#include <QImage>
#include <QPainterPath>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "effects/Caption.h"
#include "effects/CaptionLayout.h"

namespace quillet {
class Slide;
class FontCatalog;
class FontFace;
}  // namespace quillet

namespace quillet::app {

class CaptionStage : public QWidget {
    Q_OBJECT
public:
    // Runs `change` on the caption at `index` as one undo step.
    using Edit = std::function<void(int index, const std::function<void(Caption&)>& change)>;
    explicit CaptionStage(Edit edit, QWidget* parent = nullptr);
    ~CaptionStage() override;
    QSize sizeHint() const override { return {320, 240}; }

    // Shows `slide` (null: an empty stage) with caption `current` framed.
    void setSlide(const Slide* slide, int current);
    // Where a stage point lies in the widget.
    QPoint widgetPoint(QPointF stage) const;
    // The caption's text block on the stage, in stage pixels.
    QRectF captionBlock(int index) const;

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;

private:
    // A caption's layout, kept while the caption and the stage stay as they were.
    struct Laid {
        Caption caption;
        QSize stage;
        FontFace* face = nullptr;  // null: no font could be loaded
        CaptionLayout layout;
    };
    const Laid& laid(int index) const;
    const QPainterPath& glyphPath(FontFace& face, char32_t code) const;
    QSizeF stage() const;
    double factor() const;
    QPointF origin() const;

    Edit edit_;
    const Slide* slide_ = nullptr;
    QImage picture_;
    int current_ = -1;
    bool dragging_ = false;
    QPointF press_, offset_;
    // Faces are opened once, on first use; layouts and outlines are kept.
    mutable std::unique_ptr<FontCatalog> fonts_;
    mutable std::vector<Laid> laid_;
    mutable std::map<std::pair<FontFace*, char32_t>, QPainterPath> glyphs_;
};

}  // namespace quillet::app
