// The "Quillet Preview" window: plays the preview movie in the self-hosted
// Ruffle player inside a web view. The program serves the page, the player
// files and the movie itself over a socket on 127.0.0.1 under a random
// token, so nothing comes from a network and no file:// page is needed.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QWidget>

class QTcpServer;
class QTcpSocket;
class QWebEngineView;

namespace quillet::app {

class PreviewServer : public QObject {
    Q_OBJECT
public:
    explicit PreviewServer(QObject* parent = nullptr);
    // Starts listening; false (with `error`) when the player is not installed
    // or no port is free.
    bool start(QString* error);
    void setMovie(const QString& path) { movie_ = path; }
    void setBackground(uint32_t rgb) { background_ = rgb; }
    // The page's address; each call gives a fresh one so the view reloads.
    QString pageUrl();

private:
    void answer(QTcpSocket* socket, const QByteArray& target);
    QByteArray page() const;
    QTcpServer* server_;
    QHash<QObject*, QByteArray> buffers_;
    QString ruffle_, movie_;
    QByteArray token_;
    uint32_t background_ = 0;
    int loads_ = 0;
};

class PreviewWindow : public QWidget {
    Q_OBJECT
public:
    explicit PreviewWindow(QWidget* parent = nullptr);
    // Shows the movie (a stage of `width` by `height`); false when the player
    // cannot be served.
    bool play(const QString& movie, int width, int height, uint32_t background, QString* error);
    QWebEngineView* view() const { return view_; }
    // True once the page has loaded (tests wait for it).
    bool loaded() const { return loaded_; }

private:
    PreviewServer server_;
    QWebEngineView* view_;
    bool started_ = false, loaded_ = false;
};

}  // namespace quillet::app
