#include "gentlproducers.h"

namespace GenTLProducers {

QString variableValue(const QString &strName)
{
    const QByteArray name = strName.toLatin1();
    if (!qEnvironmentVariableIsSet(name.constData()))
        return QString();
    const QString strValue = qEnvironmentVariable(name.constData());
    return strValue.isNull() ? QStringLiteral("") : strValue;
}

QChar listSeparator()
{
    return QLatin1Char(';');
}

QString localPath(const QString &strFolder)
{
    return strFolder;
}

CBinaryFormat expectedFormat(int nBits)
{
    CBinaryFormat format;
    format.eKind = CBinaryFormat::Pe;
    format.nBits = nBits;
    format.bLibrary = true;
#if defined(_M_ARM64) || defined(__aarch64__)
    format.uMachine = nBits == 64 ? 0xaa64 : 0x1c4;
#else
    format.uMachine = nBits == 64 ? 0x8664 : 0x14c; // IMAGE_FILE_MACHINE_AMD64, _I386
#endif
    return format;
}

Qt::CaseSensitivity nameCase()
{
    return Qt::CaseInsensitive;
}

} // namespace GenTLProducers
