#include "gentlproducers.h"

#include "etcenvironment.h"
#include "luinterface.h"

#include <QFile>
#include <QFileInfo>

namespace GenTLProducers {

QString variableValue(const QString &strName)
{
    // The running system: what a camera program started now sees. Another
    // system root: what its sessions get from its /etc/environment.
    if (LuInterface::isLiveRoot()) {
        if (!qEnvironmentVariableIsSet(strName.toLatin1().constData()))
            return QString();
        const QString strValue = qEnvironmentVariable(strName.toLatin1().constData());
        return strValue.isNull() ? QStringLiteral("") : strValue;
    }
    QFile file(EtcEnvironment::filePath());
    if (!QFileInfo(file.fileName()).isFile() || !file.open(QIODevice::ReadOnly))
        return QString();
    return EtcEnvironment::valueOf(file.read(1 << 20), strName);
}

QChar listSeparator()
{
    return QLatin1Char(':');
}

QString localPath(const QString &strFolder)
{
    return LuInterface::sysPath(strFolder);
}

CBinaryFormat expectedFormat(int nBits)
{
    CBinaryFormat format;
    format.eKind = CBinaryFormat::Elf;
    format.nBits = nBits;
    format.bLibrary = true;
#if defined(__aarch64__) || defined(__arm__)
    format.uMachine = nBits == 64 ? 183 : 40; // EM_AARCH64, EM_ARM
#else
    format.uMachine = nBits == 64 ? 62 : 3; // EM_X86_64, EM_386
#endif
    return format;
}

Qt::CaseSensitivity nameCase()
{
    return Qt::CaseSensitive;
}

} // namespace GenTLProducers
