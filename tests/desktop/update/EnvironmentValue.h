#pragma once

#include <QByteArray>

namespace velmorant {

/// Sets a variable of the environment for as long as it lives.
class EnvironmentValue {
  public:
    EnvironmentValue(const char* name, const QByteArray& value)
        : name_(name), wasSet_(qEnvironmentVariableIsSet(name)), before_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~EnvironmentValue() {
        if (wasSet_)
            qputenv(name_, before_);
        else
            qunsetenv(name_);
    }
    EnvironmentValue(const EnvironmentValue&) = delete;
    EnvironmentValue& operator=(const EnvironmentValue&) = delete;

  private:
    const char* name_;
    bool wasSet_;
    QByteArray before_;
};

} // namespace velmorant
