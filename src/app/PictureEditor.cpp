#include "app/PictureEditor.h"

#include <QCache>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QSet>
#include <QThreadPool>
#include <QVBoxLayout>
#include <cmath>

#include "effects/CameraEffect.h"
#include "model/Slide.h"
#include "model/SlideShow.h"

namespace quillet::app {

namespace {

// Edges of a rectangle a press caught.
enum Grip { None = 0, Left = 1, Top = 2, Right = 4, Bottom = 8, Inside = 16 };

// Where the camera stands: the slide's top-left on the stage and its scale.
struct Camera {
    double x = 0, y = 0, scale = 1;
};

// The camera before move `index` (after it with `after`): the slide starts
// where it is placed at scale 1; every pan/zoom adds its pan and sets its zoom.
Camera CameraAt(const Slide& s, int index, bool after) {
    Camera c{double(s.image.x), double(s.image.y), 1};
    for (int i = 0; i < index + (after ? 1 : 0); ++i) {
        const CameraEffect* m = s.cameraMoveAt(i);
        if (!m || m->name() != "pan_zoom") continue;
        c.x += m->options().Value(0) / 20.0;
        c.y += m->options().Value(1) / 20.0;
        c.scale = m->options().Value(2);
    }
    return c;
}

// The part of the shown picture the slide displays (its crop, or all of it).
QRectF Visible(const Slide& s) {
    if (s.image.crop && s.image.cropRect.width() > 0 && s.image.cropRect.height() > 0) {
        const CropRect& r = s.image.cropRect;
        return QRectF(r.left, r.top, r.width(), r.height());
    }
    return QRectF(0, 0, displayedWidth(s.image), displayedHeight(s.image));
}

}  // namespace

class PictureCanvas : public QWidget {
public:
    explicit PictureCanvas(PictureEditor* owner) : QWidget(owner), owner_(owner) {
        setMinimumSize(220, 160);
        setMouseTracking(true);
    }
    QSize sizeHint() const override { return {320, 240}; }

    void setSlide(const Slide* slide) {
        slide_ = slide;
        shown_ = slide ? PictureEditor::Shown(*slide, 640, false) : QImage();
        drag_ = None;
        update();
    }
    void setMove(int index) {
        move_ = index;
        update();
    }

    // The shown picture's pixel size and where it is drawn.
    QSizeF pictureSize() const {
        return slide_ ? QSizeF(displayedWidth(slide_->image), displayedHeight(slide_->image)) : QSizeF();
    }
    double factor() const {
        const QSizeF p = pictureSize();
        if (p.isEmpty()) return 1;
        return std::min((width() - 16) / p.width(), (height() - 16) / p.height());
    }
    QPointF origin() const {
        const QSizeF p = pictureSize() * factor();
        return {(width() - p.width()) / 2, (height() - p.height()) / 2};
    }
    QPointF toCanvas(QPointF p) const { return origin() + p * factor(); }
    QPointF toPicture(QPointF c) const { return (c - origin()) / factor(); }
    QRectF toCanvas(const QRectF& r) const { return {toCanvas(r.topLeft()), toCanvas(r.bottomRight())}; }

    QRectF crop() const {
        if (drag_ && !camera_) return dragged_;
        return slide_ ? Visible(*slide_) : QRectF();
    }
    bool hasMove() const {
        const CameraEffect* m = slide_ ? slide_->cameraMoveAt(move_) : nullptr;
        return m && m->name() == "pan_zoom" && slide_->image.width > 0 && slide_->image.height > 0;
    }
    // The stage's view of the picture for a camera position.
    QRectF frame(const Camera& c) const {
        const SlideShow* show = slide_->show();
        const double w = show ? show->width() : 320, h = show ? show->height() : 240;
        const QRectF v = Visible(*slide_);
        const double kx = v.width() / slide_->image.width, ky = v.height() / slide_->image.height;
        return {v.left() - c.x / c.scale * kx, v.top() - c.y / c.scale * ky, w / c.scale * kx, h / c.scale * ky};
    }
    QRectF cameraFrame(bool end) const {
        if (!hasMove()) return {};
        if (drag_ && camera_ && end == (target_ == move_)) return dragged_;
        return frame(CameraAt(*slide_, move_, end));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), QColor(60, 60, 60));
        if (!slide_ || pictureSize().isEmpty()) return;
        const QRectF all = toCanvas(QRectF(QPointF(0, 0), pictureSize()));
        if (shown_.isNull()) p.fillRect(all, Qt::darkGray);
        else p.drawImage(all, shown_);
        const QRectF c = toCanvas(crop());
        if (c != all) {  // the cut-away part dimmed
            QPainterPath outside;
            outside.addRect(all);
            outside.addRect(c);
            p.fillPath(outside, QColor(0, 0, 0, 150));
        }
        drawFrame(p, c, Qt::white, Qt::DashLine, QString());
        if (hasMove()) {
            p.setClipRect(rect().adjusted(2, 2, -2, -2));
            drawFrame(p, toCanvas(cameraFrame(false)), QColor(80, 160, 255), Qt::SolidLine, "Start");
            drawFrame(p, toCanvas(cameraFrame(true)), QColor(255, 150, 40), Qt::SolidLine, "End");
        }
    }

    void mousePressEvent(QMouseEvent* e) override {
        if (!slide_ || e->button() != Qt::LeftButton || pictureSize().isEmpty()) return;
        press_ = e->position();
        // The end frame sets this move; the start frame is where an earlier
        // pan/zoom ends, so dragging it sets that one.
        const int earlier = hasMove() ? Earlier() : -1;
        target_ = move_;
        camera_ = hasMove() && (grip_ = Hit(toCanvas(cameraFrame(true)), press_)) != None;
        if (!camera_ && earlier >= 0 && (grip_ = Hit(toCanvas(cameraFrame(false)), press_)) != None) {
            camera_ = true;
            target_ = earlier;
        }
        if (camera_) {
            start_ = dragged_ = cameraFrame(target_ == move_);
        } else {
            start_ = dragged_ = crop();
            grip_ = Hit(toCanvas(start_), press_);
            // Without a crop a press inside the picture starts a new rectangle there.
            if (grip_ == None || (grip_ == Inside && !slide_->image.crop)) {
                start_ = QRectF(toPicture(press_), QSizeF(0, 0));
                grip_ = Right | Bottom;
            }
        }
        drag_ = grip_;
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        if (!drag_) {
            int over = None;
            if (slide_ && hasMove()) over = Hit(toCanvas(cameraFrame(true)), e->position());
            if (slide_ && !over) over = Hit(toCanvas(crop()), e->position());
            setCursor(over == Inside ? Qt::SizeAllCursor
                      : (over & (Left | Right)) && (over & (Top | Bottom))
                          ? ((over == (Left | Top) || over == (Right | Bottom)) ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor)
                      : over & (Left | Right) ? Qt::SizeHorCursor
                      : over & (Top | Bottom) ? Qt::SizeVerCursor
                                              : Qt::CrossCursor);
            return;
        }
        const QPointF d = (e->position() - press_) / factor();
        QRectF r = start_;
        if (drag_ == Inside) {
            r.translate(d);
            if (!camera_) {  // a moved crop stays on the picture
                const QSizeF size = pictureSize();
                r.moveLeft(std::clamp(r.left(), 0.0, size.width() - r.width()));
                r.moveTop(std::clamp(r.top(), 0.0, size.height() - r.height()));
            }
        } else {
            if (drag_ & Left) r.setLeft(r.left() + d.x());
            if (drag_ & Right) r.setRight(r.right() + d.x());
            if (drag_ & Top) r.setTop(r.top() + d.y());
            if (drag_ & Bottom) r.setBottom(r.bottom() + d.y());
            if (camera_) {  // the frame keeps the stage's proportions
                const QRectF s = start_;
                const double ratio = s.height() / s.width();
                double w = std::max(4.0, (drag_ & (Left | Right)) ? r.width() : r.height() / ratio);
                const double h = w * ratio;
                r = QRectF((drag_ & Left) ? s.right() - w : s.left(), (drag_ & Top) ? s.bottom() - h : s.top(), w, h);
            }
        }
        dragged_ = r;
        update();
    }
    void mouseReleaseEvent(QMouseEvent* e) override {
        if (!drag_ || e->button() != Qt::LeftButton) return;
        drag_ = None;
        const QRectF r = dragged_.normalized();
        if (camera_) commitCamera(r);
        else if (r.width() >= 1 && r.height() >= 1) commitCrop(r);
        update();
    }

private:
    // The last pan/zoom before the selected move; -1 when there is none.
    int Earlier() const {
        for (int i = move_ - 1; i >= 0; --i)
            if (const CameraEffect* m = slide_->cameraMoveAt(i); m && m->name() == "pan_zoom") return i;
        return -1;
    }
    // Grips within a few pixels of an edge; corners catch two edges.
    static int Hit(const QRectF& r, QPointF p) {
        constexpr double kNear = 6;
        if (!r.adjusted(-kNear, -kNear, kNear, kNear).contains(p)) return None;
        int grip = 0;
        if (std::abs(p.x() - r.left()) <= kNear) grip |= Left;
        else if (std::abs(p.x() - r.right()) <= kNear) grip |= Right;
        if (std::abs(p.y() - r.top()) <= kNear) grip |= Top;
        else if (std::abs(p.y() - r.bottom()) <= kNear) grip |= Bottom;
        if (grip) return grip;
        return r.contains(p) ? Inside : None;
    }
    void drawFrame(QPainter& p, const QRectF& r, QColor colour, Qt::PenStyle style, const QString& label) {
        p.setPen(QPen(colour, 2, style));
        p.setBrush(Qt::NoBrush);
        p.drawRect(r);
        p.setPen(Qt::NoPen);
        p.setBrush(colour);
        for (QPointF c : {r.topLeft(), r.topRight(), r.bottomLeft(), r.bottomRight()})
            p.drawRect(QRectF(c - QPointF(3, 3), QSizeF(6, 6)));
        if (!label.isEmpty()) {  // on a dark tab, readable over any picture
            const QRectF tab(r.topLeft() + QPointF(4, 4), QSizeF(p.fontMetrics().horizontalAdvance(label) + 8, p.fontMetrics().height() + 2));
            p.fillRect(tab, QColor(0, 0, 0, 170));
            p.setPen(colour);
            p.drawText(tab, Qt::AlignCenter, label);
        }
    }
    void commitCrop(const QRectF& r) {
        const CropRect rect{int(std::lround(r.left())), int(std::lround(r.top())), int(std::lround(r.right())),
                            int(std::lround(r.bottom()))};
        owner_->edit_("Crop", [rect](Slide& s) {
            s.image.crop = true;
            SetCropRect(s.image, rect, s.show() ? s.show()->width() : 320, s.show() ? s.show()->height() : 240);
        });
    }
    // The end frame back into the move: the zoom that makes the frame fill
    // the stage, and the pan that brings its corner to the stage's corner.
    void commitCamera(const QRectF& r) {
        const QRectF v = Visible(*slide_);
        const double kx = v.width() / slide_->image.width, ky = v.height() / slide_->image.height;
        const double stageW = slide_->show() ? slide_->show()->width() : 320;
        const double zoom = std::clamp(stageW / (r.width() / kx), 0.01, 100.0);
        const Camera from = CameraAt(*slide_, target_, false);
        const double x = -(r.left() - v.left()) / kx * zoom, y = -(r.top() - v.top()) / ky * zoom;
        const double panX = std::round((x - from.x) * 20), panY = std::round((y - from.y) * 20);
        const double z = std::round(zoom * 1000) / 1000;
        owner_->edit_("Camera Move", [at = target_, panX, panY, z](Slide& s) {
            CameraEffect* m = s.cameraMoveAt(at);
            if (!m || m->name() != "pan_zoom") return;
            m->options().SetValue(0, panX);
            m->options().SetValue(1, panY);
            m->options().SetValue(2, z);
        });
    }

    PictureEditor* owner_;
    const Slide* slide_ = nullptr;
    QImage shown_;
    int move_ = -1;
    int drag_ = None, grip_ = None;
    bool camera_ = false;
    int target_ = -1;  // the move a camera drag sets
    QPointF press_;
    QRectF start_, dragged_;
};

PictureEditor::PictureEditor(Edit edit, QWidget* parent) : QGroupBox("Crop, turn and camera", parent), edit_(std::move(edit)) {
    setObjectName("PictureEditor");
    auto* box = new QVBoxLayout(this);
    canvas_ = new PictureCanvas(this);
    box->addWidget(canvas_, 1);
    buttons_ = new QWidget(this);
    auto* row = new QHBoxLayout(buttons_);
    row->setContentsMargins(0, 0, 0, 0);
    const std::pair<const char*, std::function<void()>> actions[] = {
        {"Rotate Left", [this] { rotate(-90); }},       {"Rotate Right", [this] { rotate(90); }},
        {"Flip Horizontal", [this] { flip(true); }},    {"Flip Vertical", [this] { flip(false); }},
        {"No Crop", [this] { clearCrop(); }}};
    for (const auto& [text, action] : actions) {
        auto* button = new QPushButton(text, buttons_);
        connect(button, &QPushButton::clicked, this, action);
        row->addWidget(button);
    }
    box->addWidget(buttons_);
    note_ = new QLabel(this);
    note_->setWordWrap(true);
    box->addWidget(note_);
    setSlide(nullptr);
}

void PictureEditor::setSlide(const Slide* slide, const QString& why) {
    const bool picture = slide && slide->type == SlideType::Image;
    canvas_->setSlide(picture ? slide : nullptr);
    canvas_->setEnabled(picture);
    buttons_->setEnabled(picture);
    note_->setText(picture ? QString("Drag on the picture to crop it; with a pan/zoom move selected, drag or "
                                     "resize its end frame (orange).")
                           : why.isEmpty() ? QString("Select one picture slide to crop it.") : why);
}

void PictureEditor::setMove(int index) { canvas_->setMove(index); }
QWidget* PictureEditor::canvas() const { return canvas_; }
QPoint PictureEditor::canvasPoint(QPointF picture) const { return canvas_->toCanvas(picture).toPoint(); }
QRectF PictureEditor::cameraFrame(bool end) const { return canvas_->cameraFrame(end); }

void PictureEditor::rotate(int delta) {
    edit_(delta < 0 ? "Rotate Left" : "Rotate Right", [delta](Slide& s) { s.rotate(delta); });
}
void PictureEditor::flip(bool horizontal) {
    edit_(horizontal ? "Flip Horizontal" : "Flip Vertical", [horizontal](Slide& s) {
        if (horizontal) s.setFlipHorizontal(!s.image.flipHorizontal);
        else s.setFlipVertical(!s.image.flipVertical);
    });
}
void PictureEditor::clearCrop() {
    edit_("No Crop", [](Slide& s) { s.image.crop = false; });
}

DecodedPictures& DecodedPictures::instance() {
    static DecodedPictures decodes;
    return decodes;
}

namespace {

// Pictures up to this many pixels decode on the spot in a few milliseconds;
// a large one (a 24-megapixel progressive JPEG takes half a second) goes to a
// worker so that choosing its slide does not hold up the window.
constexpr qint64 kDecodeOnTheSpot = 4'000'000;

QImage Decode(const QString& path, int longest) {
    QImageReader reader(path);
    const QSize natural = reader.size();
    if (natural.isValid() && std::max(natural.width(), natural.height()) > longest)
        reader.setScaledSize(natural.scaled(longest, longest, Qt::KeepAspectRatio));
    return reader.read();
}

}  // namespace

QImage PictureEditor::Picture(const QString& path, int longest, bool wait) {
    // Decoded once per file, size and change time: the panel refreshes after
    // every edit. Used on the window's thread only.
    static QCache<QString, QImage> cache(24);
    static QSet<QString> decoding;
    const QFileInfo info(path);
    const QString key = QString("%1|%2|%3").arg(path).arg(longest).arg(info.lastModified().toMSecsSinceEpoch());
    if (QImage* hit = cache.object(key)) return *hit;
    if (!wait) {
        const QSize natural = QImageReader(path).size();
        if (natural.isValid() && qint64(natural.width()) * natural.height() > kDecodeOnTheSpot) {
            if (!decoding.contains(key)) {
                decoding.insert(key);
                QThreadPool::globalInstance()->start([path, longest, key] {
                    QImage image = Decode(path, longest);
                    QMetaObject::invokeMethod(&DecodedPictures::instance(), [path, key, image = std::move(image)] {
                        decoding.remove(key);
                        cache.insert(key, new QImage(image));
                        emit DecodedPictures::instance().decoded(path);
                    }, Qt::QueuedConnection);
                });
            }
            return {};
        }
    }
    QImage image = Decode(path, longest);
    cache.insert(key, new QImage(image));
    return image;
}

QImage PictureEditor::Shown(const Slide& slide, int longest, bool wait) {
    QImage image = Picture(QString::fromStdString(slide.image.src), longest, wait);
    if (image.isNull()) return image;
    // As the movie stores it: the turn and mirrors the corner record gives,
    // mirrors first.
    SlideImage oriented = slide.image;
    NormaliseOrientation(oriented);
    image = image.mirrored(oriented.flipHorizontal, oriented.flipVertical);
    if (oriented.rotation % 360) image = image.transformed(QTransform().rotate(oriented.rotation));
    return image;
}

}  // namespace quillet::app
