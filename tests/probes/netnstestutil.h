#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

// What the network namespace tests ask of iproute2.
namespace NetnsTest {

// The output of "ip ARGS", or "<failed: stderr>".
inline QByteArray ip(const QStringList &listArgs)
{
    QProcess process;
    process.start("ip", listArgs);
    if (!process.waitForFinished(10000) || process.exitCode() != 0)
        return QByteArray("<failed: ") + process.readAllStandardError() + ">";
    return process.readAllStandardOutput();
}

// The MTU "ip link" reports for an interface, -1 when it cannot be read.
inline int mtuOf(const QString &strName)
{
    const QByteArray out = ip({"-o", "link", "show", "dev", strName});
    const int nAt = out.indexOf(" mtu ");
    return nAt < 0 ? -1 : out.mid(nAt + 5, out.indexOf(' ', nAt + 5) - nAt - 5).toInt();
}

} // namespace NetnsTest
