// The slide's picture as the movie will carry it: the shown part at the
// slide's proportions, run through the slide's filters in list order, then
// flipped and turned, the way the exporter prepares it. Drawn small (at most
// 320 px) from the picture the picture editor has already decoded, on a
// worker thread; a result overtaken by a newer edit is dropped.
#pragma once

#include <QImage>
#include <QThreadPool>
#include <QWidget>
#include <memory>
#include <vector>

#include "media/ImageFilter.h"
#include "media/SlideImage.h"

class QLabel;

namespace quillet {
class Slide;
}

namespace quillet::app {

class FilterPreview : public QWidget {
    Q_OBJECT
public:
    explicit FilterPreview(QWidget* parent = nullptr);
    ~FilterPreview() override;

    // Shows `slide` (null: nothing). Starts a new picture only when the
    // picture settings or the filters differ from the last request.
    void setSlide(const Slide* slide);
    // The last finished picture, and whether a newer one is being made.
    QImage picture() const { return picture_; }
    bool busy() const { return done_ != asked_; }

    // The exported picture of `image`, drawn from `picture` (the file decoded
    // at any size, unturned) at most `longest` pixels on its longer side.
    // Types that store the file as it is get it whole, unturned, unfiltered.
    static QImage Render(const QImage& picture, const SlideImage& image,
                         const std::vector<std::unique_ptr<ImageFilter>>& filters, int longest = 320);

private:
    QThreadPool pool_;  // one worker: a newer request replaces a waiting one
    QImage picture_;
    QString key_;       // what the last request was made from
    quint64 asked_ = 0, done_ = 0;
    QLabel* note_ = nullptr;
};

}  // namespace quillet::app
