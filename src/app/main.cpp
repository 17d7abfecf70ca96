// quillet-studio [SHOW.qpj]: the desktop program.
#include <unistd.h>

#include <QApplication>
#include <QColorDialog>
#include <QCommandLineParser>
#include <QFileInfo>
#include <cstdlib>
#include <ctime>

#include "app/MainWindow.h"
#include "app/Prompts.h"
#include "app/SlideListModel.h"
#include "movie/ControlSets.h"
#include "settings/AppSettings.h"

namespace {

// The screenshot run shows no dialog: messages go to the terminal.
class ConsolePrompts : public quillet::app::Prompts {
public:
    Answer ask(QWidget*, const QString&, const QString& text, bool) override {
        qWarning("%s (answered No)", qPrintable(text));
        return Answer::No;
    }
    void tell(QWidget*, const QString&, const QString& text, const QString& details) override {
        qWarning("%s %s", qPrintable(text), qPrintable(details));
    }
};

}  // namespace

int main(int argc, char** argv) {
    // The web view's sandbox cannot run as root.
    if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    QApplication::setApplicationName("quillet-studio");
    QApplication::setApplicationVersion(QUILLET_VERSION);
    QApplication::setDesktopFileName("quillet-studio");
    QCommandLineParser parser;
    parser.setApplicationDescription("Quillet: photo slide shows compiled into SWF movies");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("project", "a project (.qpj) to open");
    const QCommandLineOption screenshot("screenshot", "open the project, save a picture of the window to FILE and quit",
                                        "FILE");
    parser.addOption(screenshot);
    parser.process(app);

    std::srand(unsigned(std::time(nullptr)));  // random transitions
    std::string error;
    if (!quillet::AppSettings::current().load(&error))
        qWarning("%s: %s", quillet::settingsFilePath().c_str(), error.c_str());
    // The colour chooser's sixteen custom colours, kept as 0x00BBGGRR.
    const auto& custom = quillet::AppSettings::current().customColors;
    for (int i = 0; i < int(custom.size()); ++i)
        QColorDialog::setCustomColor(i, QColor(custom[i] & 0xFF, (custom[i] >> 8) & 0xFF, (custom[i] >> 16) & 0xFF));

    // Run from the build folder, the control sets are beside the quillet
    // program, one folder up.
    const QString buildSets = QFileInfo(QCoreApplication::applicationDirPath() + "/..").absoluteFilePath();
    if (quillet::FindControlsFolder(quillet::ControlKind::Playback).empty() &&
        qEnvironmentVariableIsEmpty("QUILLET_CONTROLS_DIR") && QFileInfo::exists(buildSets + "/Controls"))
        qputenv("QUILLET_CONTROLS_DIR", buildSets.toUtf8());

    if (parser.isSet(screenshot)) {
        // For the demo and the documentation: no questions, nothing saved.
        static ConsolePrompts console;
        quillet::app::setPrompts(&console);
        quillet::app::MainWindow window(true);
        window.resize(1180, 720);
        window.show();
        if (!parser.positionalArguments().isEmpty() && !window.openFile(parser.positionalArguments().first()))
            return 1;
        window.grab();  // painting the rows asks for their thumbnails
        window.slideModel()->thumbnails().waitForDone();
        QCoreApplication::processEvents();
        return window.grab().save(parser.value(screenshot)) ? 0 : 1;
    }

    quillet::app::MainWindow window;
    window.show();
    if (quillet::ListControlSets(quillet::ControlKind::Playback).empty())
        quillet::app::prompts().tell(&window, "Quillet", quillet::kNoControlTemplates);
    const bool restored = window.offerRecovery();
    if (!restored && !parser.positionalArguments().isEmpty()) window.openFile(parser.positionalArguments().first());
    return app.exec();
}
