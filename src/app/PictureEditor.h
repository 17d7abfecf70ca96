// The picture of one slide, drawn as the slide shows it (turned and
// mirrored), with the crop rectangle the user draws and drags, and for the
// selected camera move the part of the picture the stage shows when the move
// starts (blue) and when it ends (orange, dragged and resized). The editor
// owns no slide: every change goes to its owner as one edit.
#pragma once

#include <QGroupBox>
#include <QImage>
#include <QRect>
#include <functional>

class QLabel;

namespace quillet {
class Slide;
}

namespace quillet::app {

class PictureCanvas;

// Announces pictures that PictureEditor::Picture decoded away from the
// window's thread, on the window's thread.
class DecodedPictures : public QObject {
    Q_OBJECT
public:
    static DecodedPictures& instance();
signals:
    void decoded(const QString& path);
};

class PictureEditor : public QGroupBox {
    Q_OBJECT
public:
    // Runs `change` on the edited slide as one undo step named `what`.
    using Edit = std::function<void(const QString& what, const std::function<void(Slide&)>& change)>;
    explicit PictureEditor(Edit edit, QWidget* parent = nullptr);

    // Shows `slide`; null disables the editor with `why` as its note.
    void setSlide(const Slide* slide, const QString& why = {});
    // The camera move whose frames are drawn; -1 for none.
    void setMove(int index);

    // The buttons.
    void rotate(int delta);
    void flip(bool horizontal);
    void clearCrop();

    // Where a point of the shown (turned) picture lies in the canvas.
    QPoint canvasPoint(QPointF picture) const;
    QWidget* canvas() const;
    // The stage's view of the picture before and after the selected move,
    // in shown-picture pixels; empty without a move.
    QRectF cameraFrame(bool end) const;

    // The slide's picture decoded once at most `longest` pixels on its
    // longer side, unturned; a null image when it cannot be read. Without
    // `wait`, a large picture not decoded yet gives a null image and is
    // decoded on a worker thread; DecodedPictures tells when it is ready.
    static QImage Picture(const QString& path, int longest = 640, bool wait = true);
    // The picture as the slide shows it: turned and mirrored.
    static QImage Shown(const Slide& slide, int longest = 640, bool wait = true);

private:
    friend class PictureCanvas;
    Edit edit_;
    PictureCanvas* canvas_ = nullptr;
    QLabel* note_ = nullptr;
    QWidget* buttons_ = nullptr;
};

}  // namespace quillet::app
