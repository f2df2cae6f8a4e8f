#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <string>

namespace zint {

/// zint-sim, serving until this is destroyed.
class Simulator {
public:
    explicit Simulator(const QStringList& options = {});
    ~Simulator();

    const QString& path() const { return path_; }

private:
    QProcess process_;
    QString path_;
};

/// What a program left behind.
struct Outcome {
    int status = -1; ///< -1 when it did not end by itself
    std::string output;
    std::string errors;
};

/// Runs zint-obd with a home of its own, so that nobody's settings matter.
Outcome runZint(const QStringList& arguments);

} // namespace zint
