#include "app/TransitionPreview.h"

#include <QFileInfo>

#include "app/Document.h"
#include "app/ExportRunner.h"
#include "app/PreviewWindow.h"
#include "io/TempFolder.h"
#include "model/ProjectFile.h"
#include "effects/CameraEffect.h"
#include "effects/Transition.h"
#include "model/Slide.h"
#include "model/SlideShow.h"

namespace quillet::app {

bool PreviewTransition(QWidget* parent, const Document& doc, int row, PreviewWindow*& window, QString* error) {
    const SlideShow& source = doc.show();
    if (row < 0 || row >= source.count()) {
        *error = "no slide";
        return false;
    }
    // A copy of the show (its stage, background and frame) keeping two slides.
    std::string why;
    SlideShow show;
    PublishSettings publish;
    const std::string folder = doc.path().isEmpty() ? std::string() : QFileInfo(doc.path()).path().toStdString();
    if (!LoadProjectText(ProjectText(source, const_cast<Document&>(doc).publish()), folder, show, publish, &why)) {
        *error = QString::fromStdString(why);
        return false;
    }
    for (int i = show.count() - 1; i > row; --i) show.remove(i);
    for (int i = row - 2; i >= 0; --i) show.remove(i);
    // The loop goes back to the first slide's label, which stands after that
    // slide's transition: the first slide of the show comes in over a blank
    // slide (the background colour) so that its transition plays every time.
    if (row == 0) show.insert(show.createSlide(SlideType::Blank), 0);
    // Only the transition plays: no captions, sounds, moves or actions.
    show.captions = {};
    show.sound = {};
    for (int i = 0; i < show.count(); ++i) {
        Slide& s = *show.slideAt(i);
        s.captions = {};
        s.sound = {};
        s.clickAction = {};
        while (s.removeCameraEffect(0)) {}
        s.duration = 600;
        if (i + 1 < show.count()) s.setTransitionIn(nullptr);
    }
    // Played again and again until the window is closed, with a hold on the
    // slide coming in before the next pass.
    show.slideAt(show.count() - 1)->duration = 1200;
    show.swfData.loop = SwfData::Loop::Forever;
    const QString movie = QString::fromStdString(PrivateTempFile("transition.swf", &why));
    if (movie.isEmpty()) {
        *error = QString::fromStdString(why);
        return false;
    }
    const ExportResult result = RunExport(parent, show, movie, DesktopExportOptions());
    if (!result.ok) {
        *error = result.cancelled ? QString("cancelled") : QString::fromStdString(result.error);
        return false;
    }
    if (!window) {
        window = new PreviewWindow(parent);
        window->setWindowTitle("Transition Preview");
    }
    const bool ok = window->play(movie, show.width(), show.height(), show.bgColor, error);
    if (ok) window->resize(std::min(show.width(), 400), std::min(show.width(), 400) * show.height() / std::max(1, show.width()));
    return ok;
}

}  // namespace quillet::app
