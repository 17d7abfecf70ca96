// A small stage: the slide at stage scale with its captions drawn where the
// movie puts them. The current caption is framed and dragged to a new place;
// the drop is one edit of its x and y.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>

namespace quillet {
class Slide;
struct Caption;
}

namespace quillet::app {

class CaptionStage : public QWidget {
    Q_OBJECT
public:
    // Runs `change` on the caption at `index` as one undo step.
    using Edit = std::function<void(int index, const std::function<void(Caption&)>& change)>;
    explicit CaptionStage(Edit edit, QWidget* parent = nullptr);
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
    QSizeF stage() const;
    double factor() const;
    QPointF origin() const;

    Edit edit_;
    const Slide* slide_ = nullptr;
    QImage picture_;
    int current_ = -1;
    bool dragging_ = false;
    QPointF press_, offset_;
};

}  // namespace quillet::app
