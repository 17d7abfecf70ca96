#include "app/CaptionStage.h"

#include <QMouseEvent>
#include <QPainter>

#include "app/PictureEditor.h"
#include "model/Slide.h"
#include "model/SlideShow.h"

namespace quillet::app {

namespace {

// The caption's face at stage scale: a P-point caption has an em of P * 4/3 pixels.
QFont CaptionFont(const Caption& c, double scale) {
    QFont font(QString::fromStdString(c.fontName));
    font.setPixelSize(std::max(1, int(std::lround(std::abs(c.fontSize) * 4.0 / 3.0 * scale))));
    font.setBold(c.bold);
    font.setItalic(c.italic);
    font.setLetterSpacing(QFont::AbsoluteSpacing, c.tracking * scale);
    return font;
}

QStringList Lines(const Caption& c) {
    return QString::fromStdString(c.text).replace("\r\n", "\n").replace('\r', '\n').split('\n');
}

}  // namespace

CaptionStage::CaptionStage(Edit edit, QWidget* parent) : QWidget(parent), edit_(std::move(edit)) {
    setObjectName("CaptionStage");
    setMinimumSize(200, 150);
}

void CaptionStage::setSlide(const Slide* slide, int current) {
    picture_ = slide && slide->type == SlideType::Image ? PictureEditor::Shown(*slide) : QImage();  // decoded once, cached
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

// Placed as the movie places the block: aligned to the stage and moved by
// (x, y), or with its aligned edge at (x, y).
QRectF CaptionStage::captionBlock(int index) const {
    if (!slide_ || index < 0 || index >= int(slide_->captions.items.size())) return {};
    const Caption& c = slide_->captions.items[size_t(index)];
    const QFontMetricsF m(CaptionFont(c, 1));
    double w = 0;
    const QStringList lines = Lines(c);
    for (const QString& line : lines) w = std::max(w, m.horizontalAdvance(line));
    const double h = lines.size() * (m.height() + c.leading) - c.leading;
    auto place = [](int align, double size, double whole, double pos, bool toStage) {
        return toStage ? (align == 2 ? whole - size : align == 1 ? (whole - size) / 2 : 0) + pos
                       : (align == 2 ? pos - size : align == 1 ? pos - size / 2 : pos);
    };
    const QSizeF s = stage();
    QRectF block(place(c.hAlign, w, s.width(), c.x, c.alignToDoc), place(c.vAlign, h, s.height(), c.y, c.alignToDoc), w, h);
    if (dragging_ && index == current_) block.translate(offset_);
    return block;
}

void CaptionStage::paintEvent(QPaintEvent*) {
    QPainter p(this);
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
        const QRectF block = captionBlock(i);
        const QRectF shown(block.topLeft() * k, block.size() * k);
        QColor colour(c.color & 0xFF, (c.color >> 8) & 0xFF, (c.color >> 16) & 0xFF);
        colour.setAlphaF(std::clamp(c.alpha, 0, 100) / 100.0);
        p.setFont(CaptionFont(c, k));
        p.setPen(colour);
        const int align = c.hAlign == Caption::Right ? Qt::AlignRight : c.hAlign == Caption::HCenter ? Qt::AlignHCenter : Qt::AlignLeft;
        p.drawText(shown, align | Qt::AlignTop, Lines(c).join('\n'));
        if (i == current_) {
            p.setPen(QPen(QColor(255, 150, 40), 1, Qt::DashLine));
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
