// The slide list: one row per slide (its three text lines, a thumbnail and,
// from the second slide on, the transition row above it). Thumbnails are
// decoded on worker threads when a row is first painted and filled in as
// they arrive, so a long show opens at once.
#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QImage>
#include <QSet>
#include <QStyledItemDelegate>
#include <QThreadPool>

namespace quillet {
class SlideShow;
}

namespace quillet::app {

// Decodes pictures scaled down to thumbnails, two at a time.
class ThumbnailLoader : public QObject {
    Q_OBJECT
public:
    static constexpr int kWidth = 80, kHeight = 60;
    explicit ThumbnailLoader(QObject* parent = nullptr);
    ~ThumbnailLoader() override;
    // The thumbnail when ready; otherwise a null image, and the decoding starts.
    QImage thumbnail(const QString& path);
    // Waits for every decoding started so far (tests, benchmarks).
    void waitForDone() { pool_.waitForDone(); }
    int pending() const { return int(pending_.size()); }

signals:
    void ready(const QString& path);

private:
    Q_INVOKABLE void deliver(const QString& path, const QImage& image);
    QThreadPool pool_;
    QHash<QString, QImage> done_;
    QSet<QString> pending_;
    int requests_ = 0;
};

class SlideListModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { PathRole = Qt::UserRole + 1, ExtrasRole, TransitionRole };
    static constexpr const char* kSlidesMime = "application/x-quillet-slides";

    explicit SlideListModel(SlideShow& show, QObject* parent = nullptr);

    // The show changed in any way: rows are read again.
    void refresh();
    ThumbnailLoader& thumbnails() { return loader_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::CopyAction | Qt::MoveAction; }
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction, int, int, const QModelIndex&) const override;
    // Slides dropped from the list ask to be moved, pictures from outside to
    // be inserted, a project to be opened; the window does it (later, so the
    // drag has ended). `row`/`parent` give the drop position.
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

signals:
    void moveRequested(const QList<int>& rows, int target);
    void insertRequested(const QStringList& paths, int target);
    void openRequested(const QString& path);

private:
    SlideShow& show_;
    mutable ThumbnailLoader loader_;
};

// Draws a row: the transition band, the thumbnail and the three lines at 16,
// 32 and 48 pixels below the slide's top.
class SlideRowDelegate : public QStyledItemDelegate {
public:
    static constexpr int kBand = 22, kBlock = 64;
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace quillet::app
