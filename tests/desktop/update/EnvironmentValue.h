#pragma once

#include <QByteArray>

namespace velmorant {

/// Sets a variable of the environment for as long as it lives.
class EnvironmentValue {
  public:
    EnvironmentValue(const char* name, const QByteArray& value)
        : m_name(name), m_wasSet(qEnvironmentVariableIsSet(name)), m_before(qgetenv(name)) {
        qputenv(name, value);
    }
    ~EnvironmentValue() {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }
    EnvironmentValue(const EnvironmentValue&) = delete;
    EnvironmentValue& operator=(const EnvironmentValue&) = delete;

  private:
    const char* m_name;
    bool m_wasSet;
    QByteArray m_before;
};

} // namespace velmorant
