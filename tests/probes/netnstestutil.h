#pragma once

#include "netadapters.h"

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

// The namespace's interfaces from its kernel, with the veth ends named
// counting as physical adapters (a veth pair has no device behind it).
inline NetAdapters::LinkSource vethLinks(const QStringList &listNames)
{
    NetAdapters::LinkSource source = NetAdapters::LinkSource::system();
    source.isPhysical = [listNames](const QString &strName) { return listNames.contains(strName); };
    return source;
}

} // namespace NetnsTest
