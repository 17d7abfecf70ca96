#include "app/SlideListModel.h"

#include <QDataStream>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QTimer>
#include <QTransform>
#include <QUrl>

#include "model/Slide.h"
#include "model/SlideList.h"
#include "model/SlideShow.h"

namespace quillet::app {

ThumbnailLoader::ThumbnailLoader(QObject* parent) : QObject(parent) { pool_.setMaxThreadCount(2); }

ThumbnailLoader::~ThumbnailLoader() {
    pool_.clear();
    pool_.waitForDone();
}

QImage ThumbnailLoader::thumbnail(const QString& path) {
    if (auto it = done_.constFind(path); it != done_.constEnd()) return *it;
    if (path.isEmpty() || pending_.contains(path)) return {};
    pending_.insert(path);
    // The newest request first: after a scroll the rows in view come before
    // those that were passed on the way.
    pool_.start(QRunnable::create([this, path] {
        QImageReader reader(path);
        // The slide's own rotation is applied when drawn (Exif orientation
        // reaches the slide only when the settings ask for it).
        reader.setAutoTransform(false);
        const QSize size = reader.size();
        if (size.isValid()) reader.setScaledSize(size.scaled(kWidth, kHeight, Qt::KeepAspectRatio));
        QImage image = reader.read();
        if (!image.isNull() && (image.width() > kWidth || image.height() > kHeight))
            image = image.scaled(kWidth, kHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        // The loader outlives its pool's tasks (its destructor waits for them).
        QMetaObject::invokeMethod(this, "deliver", Qt::QueuedConnection, Q_ARG(QString, path), Q_ARG(QImage, image));
    }), ++requests_);
    return {};
}

void ThumbnailLoader::deliver(const QString& path, const QImage& image) {
    pending_.remove(path);
    // A picture that cannot be read gets an empty image, so it is not tried again.
    done_.insert(path, image.isNull() ? QImage(1, 1, QImage::Format_ARGB32) : image);
    emit ready(path);
}

SlideListModel::SlideListModel(SlideShow& show, QObject* parent) : QAbstractListModel(parent), show_(show) {
    connect(&loader_, &ThumbnailLoader::ready, this, [this] {
        if (rowCount() > 0) emit dataChanged(index(0), index(rowCount() - 1), {Qt::DecorationRole});
    });
}

void SlideListModel::refresh() {
    beginResetModel();
    endResetModel();
}

int SlideListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : show_.count(); }

QVariant SlideListModel::data(const QModelIndex& index, int role) const {
    const Slide* slide = show_.slideAt(index.row());
    if (!slide) return {};
    switch (role) {
        case Qt::DisplayRole: return QString::fromStdString(slideRowText(*slide, index.row() + 1).title);
        case PathRole: return QString::fromStdString(slideRowText(*slide, index.row() + 1).path);
        case ExtrasRole: return QString::fromStdString(slideRowText(*slide, index.row() + 1).extras);
        case TransitionRole: return QString::fromStdString(transitionRowText(*slide));
        case Qt::ToolTipRole: return QString::fromStdString(slide->image.src);
        case Qt::DecorationRole: {
            if (slide->type != SlideType::Image) return QColor(QRgb(show_.bgColor));  // the empty stage
            QImage image = loader_.thumbnail(QString::fromStdString(slide->image.src));
            // The picture as the slide shows it: flipped, then turned.
            const SlideImage& s = slide->image;
            if (image.width() > 1 && (s.flipHorizontal || s.flipVertical || s.rotation != 0)) {
                image = image.mirrored(s.flipHorizontal, s.flipVertical);
                if (s.rotation != 0) image = image.transformed(QTransform().rotate(s.rotation));
            }
            return image;
        }
        default: return {};
    }
}

Qt::ItemFlags SlideListModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags f = QAbstractListModel::flags(index) | Qt::ItemIsDropEnabled;
    if (index.isValid()) f |= Qt::ItemIsDragEnabled;
    return f;
}

QStringList SlideListModel::mimeTypes() const { return {kSlidesMime, "text/uri-list"}; }

QMimeData* SlideListModel::mimeData(const QModelIndexList& indexes) const {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    for (const QModelIndex& i : indexes) out << i.row();
    auto* data = new QMimeData;
    data->setData(kSlidesMime, bytes);
    return data;
}

bool SlideListModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int, int, const QModelIndex&) const {
    return data->hasFormat(kSlidesMime) || data->hasUrls();
}

bool SlideListModel::dropMimeData(const QMimeData* data, Qt::DropAction, int row, int, const QModelIndex& parent) {
    const int target = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
    if (data->hasFormat(kSlidesMime)) {
        QList<int> rows;
        QDataStream in(data->data(kSlidesMime));
        while (!in.atEnd()) {
            int r;
            in >> r;
            rows << r;
        }
        QTimer::singleShot(0, this, [this, rows, target] { emit moveRequested(rows, target); });
        return true;
    }
    QStringList pictures;
    for (const QUrl& url : data->urls()) {
        if (!url.isLocalFile()) continue;
        const QString path = url.toLocalFile();
        if (path.endsWith(".qpj", Qt::CaseInsensitive)) {
            QTimer::singleShot(0, this, [this, path] { emit openRequested(path); });
            return true;
        }
        pictures << path;
    }
    if (pictures.isEmpty()) return false;
    QTimer::singleShot(0, this, [this, pictures, target] { emit insertRequested(pictures, target); });
    return true;
}

void SlideRowDelegate::paint(QPainter* p, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    p->save();
    QRect r = option.rect;
    if (index.row() > 0) {
        const QRect band(r.left(), r.top(), r.width(), kBand);
        p->fillRect(band, option.palette.alternateBase());
        p->setPen(option.palette.color(QPalette::Text));
        p->drawText(band.adjusted(24, 0, -4, 0), Qt::AlignVCenter | Qt::AlignLeft,
                    index.data(SlideListModel::TransitionRole).toString());
        p->drawText(QRect(band.left() + 6, band.top(), 16, kBand), Qt::AlignCenter, QString::fromUtf8("\u2193"));
        r.setTop(r.top() + kBand);
    }
    const bool selected = option.state & QStyle::State_Selected;
    p->fillRect(r, selected ? option.palette.highlight() : option.palette.base());
    const QRect thumb(r.left() + 4, r.top() + 2, ThumbnailLoader::kWidth, ThumbnailLoader::kHeight);
    const QVariant decoration = index.data(Qt::DecorationRole);
    const QImage image = decoration.value<QImage>();
    if (image.width() > 1) {
        const bool tooBig = image.width() > thumb.width() || image.height() > thumb.height();  // turned
        QRect target(QPoint(), tooBig ? image.size().scaled(thumb.size(), Qt::KeepAspectRatio) : image.size());
        target.moveCenter(thumb.center());
        p->drawImage(target, image);
    } else {
        // A blank slide's stage colour, or grey while the picture is read.
        const QColor stage = decoration.value<QColor>();
        p->fillRect(thumb, stage.isValid() ? stage : QColor(200, 200, 200));
    }
    p->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const int x = thumb.right() + 10;
    QFont bold = option.font;
    bold.setBold(true);
    p->setFont(bold);
    const int w = r.right() - x - 4;
    auto line = [&](int y, const QString& text) {
        p->drawText(x, r.top() + y, p->fontMetrics().elidedText(text, Qt::ElideMiddle, w));
    };
    line(16, index.data(Qt::DisplayRole).toString());
    p->setFont(option.font);
    line(32, index.data(SlideListModel::PathRole).toString());
    line(48, index.data(SlideListModel::ExtrasRole).toString());
    p->setPen(option.palette.color(QPalette::Mid));
    p->drawLine(r.bottomLeft(), r.bottomRight());
    p->restore();
}

QSize SlideRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
    return {300, (index.row() > 0 ? kBand : 0) + kBlock};
}

}  // namespace quillet::app
