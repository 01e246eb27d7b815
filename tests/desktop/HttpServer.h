#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace velmorant {

struct HttpRequest {
    QByteArray target;         ///< path and query
    QList<QByteArray> headers; ///< "Name: value"
    QByteArray header(const QByteArray& name) const {
        for (const QByteArray& line : headers)
            if (line.toLower().startsWith(name.toLower() + ':'))
                return line.mid(name.size() + 1).trimmed();
        return {};
    }
};

/// A web server on loopback for tests, in the test's own event loop. It answers each request with
/// what the handler writes on the socket, and closes the connection when the handler says so.
class HttpServer {
  public:
    enum class After { Close, KeepOpen };
    using Handler = std::function<After(const HttpRequest&, QTcpSocket&)>;

    explicit HttpServer(Handler handler) : m_handler(std::move(handler)) {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            QTcpSocket* const socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [this, socket] { read(*socket); });
        });
    }

    int port() const { return m_server.serverPort(); }
    QByteArray address(const QByteArray& target) const {
        return "http://127.0.0.1:" + QByteArray::number(port()) + target;
    }
    void stop() { m_server.close(); }
    QObject& object() { return m_server; } ///< for timers that end with the server
    const QList<HttpRequest>& requests() const { return m_requests; }

    static QByteArray response(const QByteArray& body, const QByteArray& type,
                               const QByteArray& moreHeaders = {},
                               const QByteArray& status = "200 OK") {
        return "HTTP/1.1 " + status + "\r\nContent-Type: " + type +
               "\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\nConnection: close\r\n" + moreHeaders + "\r\n" + body;
    }

  private:
    void read(QTcpSocket& socket) {
        if (!socket.peek(65536).contains("\r\n\r\n"))
            return;
        QList<QByteArray> lines = socket.readAll().split('\n');
        for (QByteArray& line : lines)
            line = line.trimmed();
        HttpRequest request;
        request.target = lines.value(0).split(' ').value(1);
        request.headers = lines.mid(1);
        m_requests.append(request);
        if (m_handler(request, socket) == After::Close)
            socket.disconnectFromHost();
    }

    Handler m_handler;
    QTcpServer m_server;
    QList<HttpRequest> m_requests;
};

} // namespace velmorant
