#include "app/CaptionStage.h"

#include <QMouseEvent>
#include <QPainter>

#include "app/PictureEditor.h"
#include "effects/FontFace.h"
#include "model/Slide.h"
#include "model/SlideShow.h"

namespace quillet::app {

CaptionStage::CaptionStage(Edit edit, QWidget* parent) : QWidget(parent), edit_(std::move(edit)) {
    setObjectName("CaptionStage");
    setMinimumSize(200, 150);
}

CaptionStage::~CaptionStage() = default;

void CaptionStage::setSlide(const Slide* slide, int current) {
    picture_ = slide && slide->type == SlideType::Image ? PictureEditor::Shown(*slide, 640, false) : QImage();
    slide_ = slide;
    current_ = current;
    dragging_ = false;
    update();
}

QSizeF CaptionStage::stage() const {
    const SlideShow* show = slide_ ? slide_->show() : nullptr;
    return show ? QSizeF(show->width(), show->height()) : QSizeF(320, 240);
}
double CaptionStage::factor() const {
    const QSizeF s = stage();
    return std::min((width() - 8) / s.width(), (height() - 8) / s.height());
}
QPointF CaptionStage::origin() const {
    const QSizeF s = stage() * factor();
    return {(width() - s.width()) / 2, (height() - s.height()) / 2};
}
QPoint CaptionStage::widgetPoint(QPointF p) const { return (origin() + p * factor()).toPoint(); }

// The face is found as the movie finds it (a missing family gives the
// fallback face) and the text laid out on a stage of the show's size.
const CaptionStage::Laid& CaptionStage::laid(int index) const {
    const Caption& c = slide_->captions.items[size_t(index)];
    const QSize size = stage().toSize();
    if (laid_.size() < slide_->captions.items.size()) laid_.resize(slide_->captions.items.size());
    Laid& l = laid_[size_t(index)];
    if (l.face && l.caption == c && l.stage == size) return l;
    if (!fonts_) fonts_ = std::make_unique<FontCatalog>();
    l.caption = c;
    l.stage = size;
    l.face = fonts_->Find(c.fontName, c.bold, c.italic);
    l.layout = l.face ? LayOutCaption(c, DrawnCaptionText(c), *l.face, size.width() * 20, size.height() * 20) : CaptionLayout();
    return l;
}

// The glyph's outline in em units (1024 to the em, y down, baseline at 0).
const QPainterPath& CaptionStage::glyphPath(FontFace& face, char32_t code) const {
    auto [it, added] = glyphs_.try_emplace({&face, code});
    if (!added) return it->second;
    QPainterPath& path = it->second;
    path.setFillRule(Qt::WindingFill);
    QPointF at;
    for (const SwfShapeRecord& r : face.Glyph(code).shape.records) {
        switch (r.kind) {
            case SwfShapeRecord::Kind::StyleChange:
                if (r.hasMove) path.moveTo(at = QPointF(r.moveX, r.moveY));
                break;
            case SwfShapeRecord::Kind::StraightEdge:
                path.lineTo(at += QPointF(r.dx, r.dy));
                break;
            case SwfShapeRecord::Kind::CurvedEdge: {
                const QPointF control = at + QPointF(r.dx, r.dy);
                path.quadTo(control, at = control + QPointF(r.anchorDx, r.anchorDy));
                break;
            }
        }
    }
    return path;
}

// Placed as the movie places the text: at the layout's corner, as large as
// its block.
QRectF CaptionStage::captionBlock(int index) const {
    if (!slide_ || index < 0 || index >= int(slide_->captions.items.size())) return {};
    const CaptionLayout& layout = laid(index).layout;
    QRectF block(layout.left / 20.0, layout.top / 20.0, layout.width / 20.0, layout.height / 20.0);
    if (dragging_ && index == current_) block.translate(offset_);
    return block;
}

void CaptionStage::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(rect(), QColor(60, 60, 60));
    const double k = factor();
    const QSizeF s = stage();
    p.translate(origin());
    p.setClipRect(QRectF(QPointF(0, 0), s * k));
    const QColor bg = slide_ && slide_->show() ? QColor::fromRgb(slide_->show()->bgColor) : Qt::black;
    p.fillRect(QRectF(QPointF(0, 0), s * k), bg);
    if (slide_ && !picture_.isNull()) {
        const SlideImage& im = slide_->image;
        QRectF from(0, 0, picture_.width(), picture_.height());
        if (im.crop && im.cropRect.width() > 0 && im.cropRect.height() > 0) {
            const double sx = picture_.width() / double(std::max(1, displayedWidth(im)));
            const double sy = picture_.height() / double(std::max(1, displayedHeight(im)));
            from = QRectF(im.cropRect.left * sx, im.cropRect.top * sy, im.cropRect.width() * sx, im.cropRect.height() * sy);
        }
        p.drawImage(QRectF(im.x * k, im.y * k, im.width * k, im.height * k), picture_, from);
    }
    if (!slide_) return;
    for (int i = 0; i < int(slide_->captions.items.size()); ++i) {
        const Caption& c = slide_->captions.items[size_t(i)];
        const Laid& l = laid(i);
        const QRectF block = captionBlock(i);
        const QRectF shown(block.topLeft() * k, block.size() * k);
        // The movie writes nothing for a caption without outlines (blanks only).
        if (l.face && l.layout.HasInk()) {
            QColor colour(c.color & 0xFF, (c.color >> 8) & 0xFF, (c.color >> 16) & 0xFF);
            colour.setAlphaF(std::clamp(c.alpha, 0, 100) / 100.0);
            // Glyphs in twips from the block's corner, as the text records put them.
            const double em = l.layout.textHeight / 1024.0;
            QTransform toBlock;
            toBlock.translate(shown.left(), shown.top());
            toBlock.scale(k / 20, k / 20);
            QPainterPath text;
            text.setFillRule(Qt::WindingFill);
            for (const CaptionLine& line : l.layout.lines)
                for (const CaptionPlacedChar& placed : line.chars) {
                    const QPainterPath& glyph = glyphPath(*l.face, placed.code);
                    if (!glyph.isEmpty()) text.addPath(QTransform(em, 0, 0, em, placed.x, line.baseline).map(glyph));
                }
            p.fillPath(toBlock.map(text), colour);
        }
        if (i == current_) {
            p.setPen(QPen(QColor(255, 150, 40), 1, Qt::DashLine));
            p.setBrush(Qt::NoBrush);
            p.drawRect(shown.adjusted(-2, -2, 2, 2));
        }
    }
}

void CaptionStage::mousePressEvent(QMouseEvent* e) {
    const QRectF block = captionBlock(current_);
    const QPointF at = (e->position() - origin()) / factor();
    if (e->button() != Qt::LeftButton || !block.adjusted(-3, -3, 3, 3).contains(at)) return;
    dragging_ = true;
    press_ = e->position();
    offset_ = {};
}
void CaptionStage::mouseMoveEvent(QMouseEvent* e) {
    if (!dragging_) {
        const QPointF at = (e->position() - origin()) / factor();
        setCursor(captionBlock(current_).contains(at) ? Qt::SizeAllCursor : Qt::ArrowCursor);
        return;
    }
    offset_ = (e->position() - press_) / factor();
    update();
}
void CaptionStage::mouseReleaseEvent(QMouseEvent* e) {
    if (!dragging_ || e->button() != Qt::LeftButton) return;
    dragging_ = false;
    const int dx = int(std::lround(offset_.x())), dy = int(std::lround(offset_.y()));
    update();
    if (dx || dy) edit_(current_, [dx, dy](Caption& c) {
        c.x += dx;
        c.y += dy;
    });
}

}  // namespace quillet::app
