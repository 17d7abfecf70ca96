#include "app/FilterPreview.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <cmath>
#include <cstring>

#include "app/PictureEditor.h"
#include "media/Bitmap.h"
#include "model/Slide.h"

namespace quillet::app {

namespace {

bool StoredAsItIs(ImageType type) { return type == ImageType::JpegImportData || type == ImageType::JpegExternal; }

Bitmap ToBitmap(const QImage& image) {
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    Bitmap out;
    out.Create(uint32_t(rgb.width()), uint32_t(rgb.height()), 24);
    for (int y = 0; y < rgb.height(); ++y) std::memcpy(out.row(uint32_t(y)), rgb.constScanLine(y), out.rowBytes());
    return out;
}

QImage ToImage(const Bitmap& bitmap) {
    QImage out(int(bitmap.width()), int(bitmap.height()), QImage::Format_RGB888);
    for (int y = 0; y < out.height(); ++y) std::memcpy(out.scanLine(y), bitmap.row(uint32_t(y)), bitmap.rowBytes());
    return out;
}

// Everything the picture depends on, to skip requests that change nothing.
QString Key(const Slide& s) {
    const SlideImage& i = s.image;
    QString key = QString("%1|%2|%3x%4|%5x%6|%7:%8,%9,%10,%11|%12%13|%14|%15%16%17%18|%19")
                      .arg(QString::fromStdString(i.src)).arg(int(i.imageType))
                      .arg(i.sourceWidth).arg(i.sourceHeight).arg(i.width).arg(i.height)
                      .arg(i.crop).arg(i.cropRect.left).arg(i.cropRect.top).arg(i.cropRect.right).arg(i.cropRect.bottom)
                      .arg(i.flipVertical).arg(i.flipHorizontal).arg(i.rotation)
                      .arg(i.cornerOrder[0]).arg(i.cornerOrder[1]).arg(i.cornerOrder[2]).arg(i.cornerOrder[3])
                      .arg(PictureEditor::Picture(QString::fromStdString(i.src), 640, false).cacheKey());
    for (const auto& f : s.imageFilters()) {
        key += "|" + QString::fromStdString(f->name());
        for (size_t o = 0; o < f->Options().size(); ++o) key += QString(",%1").arg(f->OptionValue(o), 0, 'g', 17);
    }
    return key;
}

class PreviewCanvas : public QWidget {
public:
    PreviewCanvas(const QImage& picture, QWidget* parent) : QWidget(parent), picture_(picture) {
        setMinimumSize(160, 120);
    }
    QSize sizeHint() const override { return {320, 200}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), QColor(60, 60, 60));
        if (picture_.isNull()) return;
        const QSizeF fit = QSizeF(picture_.size()).scaled(QSizeF(size()) - QSizeF(8, 8), Qt::KeepAspectRatio);
        const QRectF at(QPointF((width() - fit.width()) / 2, (height() - fit.height()) / 2), fit);
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawImage(at, picture_);
    }

private:
    const QImage& picture_;
};

}  // namespace

FilterPreview::FilterPreview(QWidget* parent) : QWidget(parent) {
    pool_.setMaxThreadCount(1);
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->addWidget(new QLabel("Filtered picture:", this));
    box->addWidget(new PreviewCanvas(picture_, this), 1);
    note_ = new QLabel(this);
    note_->setWordWrap(true);
    note_->hide();
    box->addWidget(note_);
}

FilterPreview::~FilterPreview() {
    // No worker may outlive the widget it reports to.
    pool_.clear();
    pool_.waitForDone();
}

void FilterPreview::setSlide(const Slide* slide) {
    const QString key = slide ? Key(*slide) : QString();
    if (key == key_) return;
    key_ = key;
    const quint64 generation = ++asked_;
    const bool asIs = slide && StoredAsItIs(slide->image.imageType);
    note_->setText("This image type keeps the picture file as it is: no crop, turn or filter reaches the movie.");
    note_->setVisible(asIs);
    if (!slide) {
        done_ = generation;
        picture_ = QImage();
        findChild<PreviewCanvas*>()->update();
        return;
    }
    // The decoded picture is the picture editor's (cached); the worker gets
    // its own copies of everything it reads.
    const QImage source = PictureEditor::Picture(QString::fromStdString(slide->image.src), 640, false);
    auto filters = std::make_shared<std::vector<std::unique_ptr<ImageFilter>>>();
    for (const auto& f : slide->imageFilters()) filters->push_back(f->Clone());
    const SlideImage image = slide->image;
    pool_.clear();  // a request still waiting is out of date
    pool_.start([this, generation, source, image, filters] {
        QImage result = Render(source, image, *filters);
        QMetaObject::invokeMethod(this, [this, generation, result = std::move(result)] {
            if (generation != asked_) return;  // overtaken by a newer edit
            picture_ = result;
            done_ = generation;
            findChild<PreviewCanvas*>()->update();
        }, Qt::QueuedConnection);
    });
}

QImage FilterPreview::Render(const QImage& picture, const SlideImage& settings,
                             const std::vector<std::unique_ptr<ImageFilter>>& filters, int longest) {
    if (picture.isNull()) return {};
    SlideImage image = settings;
    NormaliseOrientation(image);
    // Crop rectangles are in the file's own pixels; the decoded copy may be smaller.
    if (image.sourceWidth <= 0 || image.sourceHeight <= 0) {
        image.sourceWidth = picture.width();
        image.sourceHeight = picture.height();
    }
    const double sx = double(picture.width()) / image.sourceWidth, sy = double(picture.height()) / image.sourceHeight;
    const bool asIs = StoredAsItIs(image.imageType);
    QRect part = picture.rect();
    if (!asIs && image.crop && image.cropRect.width() > 0 && image.cropRect.height() > 0) {
        const CropRect c = CropToSourceRect(image);
        part = QRect(QPoint(int(std::lround(c.left * sx)), int(std::lround(c.top * sy))),
                     QPoint(int(std::lround(c.right * sx)) - 1, int(std::lround(c.bottom * sy)) - 1))
                   .intersected(picture.rect());
        if (part.isEmpty()) part = picture.rect();
    }
    // The slide's displayed size, unturned: the exporter renders at it
    // before filtering, so the filters see the slide's proportions.
    const bool quarter = !asIs && (image.rotation == 90 || image.rotation == 270);
    double w = image.width > 0 && !asIs ? image.width : part.width() / sx;
    double h = image.height > 0 && !asIs ? image.height : part.height() / sy;
    if (quarter) std::swap(w, h);
    const double k = std::min(1.0, longest / std::max(w, h));
    Bitmap bitmap = ToBitmap(picture.copy(part));
    bitmap.Resize(uint32_t(std::max(1.0, std::round(w * k))), uint32_t(std::max(1.0, std::round(h * k))));
    if (asIs) return ToImage(bitmap);
    for (const auto& f : filters)
        if (f) f->Apply(bitmap);
    if (image.flipVertical) bitmap.FlipVertical();
    if (image.flipHorizontal) bitmap.FlipHorizontal();
    bitmap.Rotate(image.rotation);
    return ToImage(bitmap);
}

}  // namespace quillet::app
