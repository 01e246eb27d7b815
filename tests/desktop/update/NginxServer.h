#pragma once

#include "tests/builders/ScratchFolder.h"
#include "tests/desktop/update/TestCertificates.h"

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <string>
#include <unistd.h>

namespace velmorant {

/// A real web server on a free port of loopback, with the project's own configuration: it serves
/// "update/" of the folder `served`. Ends with the object.
class NginxServer {
  public:
    /// With certificates it speaks https; they are read once.
    explicit NginxServer(const TestCertificates* certificates = nullptr)
        : m_certificates(certificates) {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        m_port = probe.serverPort();
        probe.close();
        m_served.write("map/DeskMap.asp", "map");
        m_served.write("update/none", "");
        m_served.write("nginx.conf", configuration());
        QString program = QStandardPaths::findExecutable("nginx");
        if (program.isEmpty())
            program = "/usr/sbin/nginx";
        m_nginx.start(program, {"-c", QString::fromStdString(m_served.path("nginx.conf")), "-e",
                                QString::fromStdString(m_served.path("error.log"))});
    }
    ~NginxServer() {
        m_nginx.terminate();
        m_nginx.waitForFinished(10000);
    }
    NginxServer(const NginxServer&) = delete;
    NginxServer& operator=(const NginxServer&) = delete;

    /// Waits until it answers; false when it does not.
    bool ready() {
        for (int i = 0; i < 200; ++i) {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, m_port);
            if (socket.waitForConnected(100))
                return true;
            if (m_nginx.state() == QProcess::NotRunning)
                return false;
            QThread::msleep(25);
        }
        return false;
    }
    std::string base() const {
        return (m_certificates ? "https" : "http") + std::string("://127.0.0.1:") +
               std::to_string(m_port) + "/";
    }
    const builders::ScratchFolder& served() const { return m_served; }
    std::string errors() const { return m_served.read("error.log"); }

  private:
    QByteArray listening() const {
        const QByteArray place = "listen 127.0.0.1:" + QByteArray::number(m_port);
        if (!m_certificates)
            return place + ";";
        return place + " ssl;\nssl_certificate " +
               QByteArray::fromStdString(m_certificates->certificate()) +
               ";\nssl_certificate_key " + QByteArray::fromStdString(m_certificates->key()) + ";";
    }
    std::string configuration() const {
        QFile file(VELMORANT_SERVER_CONFIGURATION);
        file.open(QIODevice::ReadOnly);
        QByteArray site = file.readAll();
        const QByteArray root = QByteArray::fromStdString(m_served.path());
        site.replace("listen 80;", listening());
        site.replace("/srv/velmorant", root);
        QByteArray temporary;
        for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
            temporary += QByteArray(kind) + "_temp_path " + root + "/tmp_" + kind + ";\n";
        // Its workers must be able to read the folder of the test, which is its user's alone.
        const QByteArray user = ::geteuid() == 0 ? "user root;\n" : "";
        const QByteArray text =
            user + "daemon off;\nworker_processes 1;\npid " + root +
            "/nginx.pid;\nevents {}\nhttp {\ninclude /etc/nginx/mime.types;\naccess_log off;\n" +
            temporary + site + "}\n";
        return text.toStdString();
    }

    const TestCertificates* m_certificates;
    builders::ScratchFolder m_served;
    quint16 m_port = 0;
    QProcess m_nginx;
};

} // namespace velmorant
