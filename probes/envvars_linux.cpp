#include "envvars.h"

#include "envvars_linux_p.h"
#include "etcenvironment.h"

#include <QFile>

namespace EnvVars {

namespace {

// The PATH a login gets when /etc/environment sets none: the search path
// systemd hands to every session it starts (and the one Debian and Ubuntu
// write into /etc/environment).
const char kDefaultPath[] = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";

// The value pam_env gives the next login: the machine-wide file's.
QString etcEnvironmentValue(const QString &strName)
{
    QFile file(EtcEnvironment::filePath());
    QByteArray content;
    if (file.open(QIODevice::ReadOnly))
        content = file.read(1024 * 1024);
    const QString strValue = EtcEnvironment::valueOf(content, strName);
    if (strValue.isNull() && strName == QLatin1String("PATH"))
        return QString::fromLatin1(kDefaultPath);
    return strValue;
}

} // namespace

// The runtime folders mirror the Windows ones: Runtime/Linux32_i86 for
// 32-bit and Runtime/Linux64_x64 for 64-bit programs.
Layout layout()
{
    Layout lay {QStringLiteral("PATH"), QLatin1Char(':'), QStringLiteral("Runtime/Linux32_i86"),
        QStringLiteral("Runtime/Linux64_x64")};
    lay.machineValue = etcEnvironmentValue;
    return lay;
}

// The file is replaced as a whole: every value or none is written.
MachineWriter Detail::fileWriter(const AtomicFile::Options &options)
{
    return [options](const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten) {
        if (!EtcEnvironment::apply(listWrites, options))
            return false;
        for (const auto &write : listWrites)
            pWritten->append(write.first);
        return true;
    };
}

bool writeMachineEnvironment(const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten)
{
    return Detail::fileWriter(AtomicFile::Options())(listWrites, pWritten);
}

} // namespace EnvVars
