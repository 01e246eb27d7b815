#pragma once

#include "tests/builders/ScratchFolder.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <string>

namespace velmorant {

/// A certificate authority of the test's own, and certificates that it has signed.
class TestCertificates {
  public:
    /// `names` as in "DNS:localhost,IP:127.0.0.1".
    explicit TestCertificates(const std::string& names) {
        openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                 "-nodes", "-days", "2", "-subj", "/CN=Test authority", "-keyout", at("ca.key"),
                 "-out", at("ca.pem")});
        openssl({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                 "-subj", "/CN=Test server", "-keyout", at("server.key"), "-out",
                 at("server.csr")});
        m_folder.write("server.ext", "subjectAltName=" + names + "\n");
        openssl({"x509", "-req", "-in", at("server.csr"), "-CA", at("ca.pem"), "-CAkey",
                 at("ca.key"), "-days", "2", "-extfile", at("server.ext"), "-out",
                 at("server.pem")});
    }

    std::string authority() const { return m_folder.path("ca.pem"); }
    std::string certificate() const { return m_folder.path("server.pem"); }
    std::string key() const { return m_folder.path("server.key"); }
    bool made() const { return m_folder.has("server.pem") && m_messages.empty(); }
    std::string messages() const { return m_messages; }

  private:
    QString at(const std::string& name) const {
        return QString::fromStdString(m_folder.path(name));
    }
    void openssl(const QStringList& arguments) {
        QProcess process;
        process.start("openssl", arguments);
        if (!process.waitForFinished() || process.exitCode() != 0)
            m_messages += process.readAllStandardError().toStdString() + "\n";
    }

    builders::ScratchFolder m_folder;
    std::string m_messages;
};

} // namespace velmorant
