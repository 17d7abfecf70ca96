#include "app/PreviewWindow.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <QVBoxLayout>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include "app/Prompts.h"
#include "publish/RufflePage.h"

namespace quillet::app {

namespace {

QByteArray contentType(const QString& name) {
    if (name.endsWith(".html")) return "text/html; charset=utf-8";
    if (name.endsWith(".js")) return "text/javascript";
    if (name.endsWith(".wasm")) return "application/wasm";
    if (name.endsWith(".swf")) return "application/x-shockwave-flash";
    return "application/octet-stream";
}

void reply(QTcpSocket* socket, int status, const QByteArray& type, const QByteArray& body) {
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + (status == 200 ? " OK" : " Not Found") + "\r\n";
    head += "Content-Type: " + type + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n";
    head += "Cache-Control: no-store\r\nConnection: close\r\n\r\n";
    socket->write(head);
    socket->write(body);
    socket->disconnectFromHost();
}

}  // namespace

PreviewServer::PreviewServer(QObject* parent) : QObject(parent), server_(new QTcpServer(this)) {
    token_ = QByteArray::number(QRandomGenerator::global()->generate64(), 16);
    connect(server_, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = server_->nextPendingConnection()) {
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                // Only the request line matters; wait for the end of the headers.
                QByteArray& buffer = buffers_[socket];
                buffer += socket->readAll();
                if (!buffer.contains("\r\n\r\n")) return;
                const QList<QByteArray> words = buffer.left(buffer.indexOf("\r\n")).split(' ');
                buffer.clear();
                answer(socket, words.size() >= 2 ? words[1] : QByteArray());
            });
            connect(socket, &QObject::destroyed, this, [this, socket] { buffers_.remove(socket); });
        }
    });
}

bool PreviewServer::start(QString* error) {
    ruffle_ = QString::fromStdString(FindRufflePlayer());
    if (ruffle_.isEmpty()) {
        if (error) *error = "the Ruffle player was not found (ruffle.js)";
        return false;
    }
    if (!server_->isListening() && !server_->listen(QHostAddress::LocalHost, 0)) {
        if (error) *error = server_->errorString();
        return false;
    }
    return true;
}

QString PreviewServer::pageUrl() {
    return QString("http://127.0.0.1:%1/%2/index.html?%3").arg(server_->serverPort()).arg(token_).arg(++loads_);
}

QByteArray PreviewServer::page() const {
    const QByteArray colour = QByteArray("#") + QByteArray::number(background_ | 0x1000000, 16).mid(1);
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">\n"
           "<style>html,body{margin:0;height:100%;overflow:hidden;background:" + colour + "}"
           "#stage{width:100%;height:100%}</style>\n"
           "<script>\nwindow.RufflePlayer = window.RufflePlayer || {};\n"
           "window.RufflePlayer.config = {autoplay: \"on\", unmuteOverlay: \"hidden\", splashScreen: false,\n"
           "  letterbox: \"on\", contextMenu: \"off\", allowNetworking: \"none\", warnOnUnsupportedContent: false,\n"
           "  backgroundColor: \"" + colour + "\", publicPath: \"ruffle/\"};\n"
           "window.addEventListener(\"DOMContentLoaded\", () => {\n"
           "  const player = window.RufflePlayer.newest().createPlayer();\n"
           "  player.id = \"stage\";\n  document.body.appendChild(player);\n"
           "  player.ruffle().load({url: \"preview.swf?" + QByteArray::number(loads_) + "\"});\n});\n"
           "</script>\n<script src=\"ruffle/ruffle.js\"></script>\n</head><body></body></html>\n";
}

void PreviewServer::answer(QTcpSocket* socket, const QByteArray& target) {
    QByteArray path = target.left(target.indexOf('?') < 0 ? target.size() : target.indexOf('?'));
    const QByteArray prefix = "/" + token_ + "/";
    if (!path.startsWith(prefix)) return reply(socket, 404, "text/plain", "not found\n");
    const QString name = QString::fromUtf8(path.mid(prefix.size()));
    if (name == "index.html") return reply(socket, 200, contentType(name), page());
    QString file;
    if (name == "preview.swf") file = movie_;
    else if (name.startsWith("ruffle/") && !name.contains("..") && name.count('/') == 1)
        file = QDir(ruffle_).filePath(name.mid(7));
    QFile in(file);
    if (file.isEmpty() || !in.open(QIODevice::ReadOnly)) return reply(socket, 404, "text/plain", "not found\n");
    reply(socket, 200, contentType(name), in.readAll());
}

PreviewWindow::PreviewWindow(QWidget* parent) : QWidget(parent, Qt::Window), view_(new QWebEngineView(this)) {
    setWindowTitle(kPreviewTitle);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    // The show's music starts with the movie, without a click first.
    view_->settings()->setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, false);
    connect(view_, &QWebEngineView::loadFinished, this, [this](bool ok) { loaded_ = ok; });
}

bool PreviewWindow::play(const QString& movie, int width, int height, uint32_t background, QString* error) {
    if (!server_.start(error)) return false;
    server_.setMovie(movie);
    server_.setBackground(background);
    if (!started_) resize(width, height);
    started_ = true;
    loaded_ = false;
    view_->load(QUrl(server_.pageUrl()));
    show();
    raise();
    return true;
}

}  // namespace quillet::app
