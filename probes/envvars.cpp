#include "envvars.h"

#include "cdetectinfo.h"
#include "luinterface.h"

#include <QCoreApplication>
#include <QDir>

namespace EnvVars {

namespace {

const char *const kCommonRunEnv = "LUCAM_COMMON_RUNENV";
const char *const kHeartbeat = "LUCAM_GIGE_DEBUG_HEARTBEAT";
const char *const kClProtocol = "LUCAM_GENICAM_CLPROTOCOL";
const char *const kGenTl32 = "GENICAM_GENTL32_PATH";
const char *const kGenTl64 = "GENICAM_GENTL64_PATH";

QString readLatin1(const QString &strName)
{
    return QDir::toNativeSeparators(QString::fromLatin1(qgetenv(strName.toLatin1().constData())));
}

QString readLocale(const QString &strName)
{
    const QByteArray value = qgetenv(strName.toLatin1().constData());
    return LuInterface::char2QStringLocale(value.constData(), -1);
}

// C + "/" + A + "/" + strSub, with native separators.
QString expected(const QString &strSub)
{
    return QDir::toNativeSeparators(LuInterface::commonFilesPath() + QStringLiteral("/%1/").arg(LuInterface::appName()) + strSub);
}

void fail(CEnvDetectInfo &info, const QString &strName, const QString &strValue)
{
    info.bNormal = 0;
    info.missingValues[strName].append(strValue);
}

} // namespace

QString sdkFolder()
{
    return QDir::toNativeSeparators(LuInterface::commonFilesPath() + QLatin1Char('/') + LuInterface::appName());
}

QStringList variableNames()
{
    return {layout().strPathName, QLatin1String(kCommonRunEnv), QLatin1String(kHeartbeat),
            QLatin1String(kClProtocol), QLatin1String(kGenTl32), QLatin1String(kGenTl64)};
}

bool isPathLike(const QString &strName)
{
    return strName == QLatin1String(kGenTl64) || strName == QLatin1String(kGenTl32) || strName == layout().strPathName;
}

void check(CEnvDetectInfo &info)
{
    info.missingValues.clear();
    info.currentValues.clear();
    info.bNormal = 1;
    const Layout lay = layout();
    const QString strSep(lay.cSeparator);

    // The executable search path: both runtime folders, each with its separator.
    const QString strPath = readLatin1(lay.strPathName);
    info.currentValues[lay.strPathName] = strPath;
    for (const QString &strSub : {lay.strRuntime32, lay.strRuntime64}) {
        const QString strEntry = expected(strSub) + strSep;
        if (strPath.indexOf(strEntry) == -1)
            fail(info, lay.strPathName, strEntry);
    }

    // The common runtime: the program's path cut before "Applications".
    const QString strRunEnv = QDir::toNativeSeparators(readLocale(QLatin1String(kCommonRunEnv)));
    info.currentValues[QLatin1String(kCommonRunEnv)] = strRunEnv;
    const QString strApp = QCoreApplication::applicationFilePath();
    const QString strRunExpected =
        QDir::toNativeSeparators(strApp.left(strApp.lastIndexOf(QLatin1String("Applications"))) + QStringLiteral("Development"));
    if (strRunEnv.compare(strRunExpected, Qt::CaseInsensitive) != 0)
        fail(info, QLatin1String(kCommonRunEnv), strRunExpected);

    // The heartbeat only has to be a number.
    const QString strHeartbeat = readLocale(QLatin1String(kHeartbeat));
    info.currentValues[QLatin1String(kHeartbeat)] = strHeartbeat;
    bool bNumber = false;
    strHeartbeat.toInt(&bNumber, 10);
    if (!bNumber)
        fail(info, QLatin1String(kHeartbeat), QStringLiteral("60000"));

    // The protocol list: the protocol folder present, the bare runtime absent.
    const QString strProtocol = readLatin1(QLatin1String(kClProtocol));
    info.currentValues[QLatin1String(kClProtocol)] = strProtocol;
    const QString strP1 = expected(QStringLiteral("Runtime/CLProtocol"));
    const QString strP2 = strP1 + QDir::toNativeSeparators(QStringLiteral("/"));
    const QString strR1 = expected(QStringLiteral("Runtime"));
    const QString strR2 = strR1 + QDir::toNativeSeparators(QStringLiteral("/"));
    bool bProtocol = false;
    bool bRuntime = false;
    QString strRest;
    for (const QString &strPart : strProtocol.split(lay.cSeparator, Qt::KeepEmptyParts)) {
        if (strPart.compare(strP1, Qt::CaseInsensitive) == 0 || strPart.compare(strP2, Qt::CaseInsensitive) == 0)
            bProtocol = true;
        else if (strPart.compare(strR1, Qt::CaseInsensitive) == 0 || strPart.compare(strR2, Qt::CaseInsensitive) == 0)
            bRuntime = true;
        else if (!strPart.trimmed().isEmpty())
            strRest += strPart + strSep;
    }
    if (!bProtocol || bRuntime)
        fail(info, QLatin1String(kClProtocol), strRest + strP1);

    // The two GenTL producer folders.
    const QList<QPair<const char *, QString>> listGenTl = {{kGenTl32, lay.strRuntime32}, {kGenTl64, lay.strRuntime64}};
    for (const auto &genTl : listGenTl) {
        const QString strName = QLatin1String(genTl.first);
        const QString strValue = readLatin1(strName);
        info.currentValues[strName] = strValue;
        const QString strExpected = expected(genTl.second);
        if (strValue.indexOf(strExpected) == -1)
            fail(info, strName, strExpected + strSep);
    }
}

QList<QPair<QString, QString>> plannedWrites(const CEnvDetectInfo &info)
{
    QList<QPair<QString, QString>> listWrites;
    for (auto it = info.missingValues.cbegin(); it != info.missingValues.cend(); ++it) {
        const bool bPathLike = isPathLike(it.key());
        QString strBase = bPathLike ? info.currentValues.value(it.key()) : QString();
        QString strFinal;
        for (const QString &strValue : it.value()) {
            if (strValue.isEmpty())
                continue;
            // Same fixed 1024-byte buffer as the registry write: longer values are cut.
            unsigned char buffer[1024] = {};
            LuInterface::string2UcharLocale(strValue + strBase, buffer, int(sizeof buffer));
            strFinal = LuInterface::char2QStringLocale(reinterpret_cast<const char *>(buffer), -1);
            if (bPathLike)
                strBase = strFinal;
        }
        if (!strFinal.isNull())
            listWrites.append({it.key(), strFinal});
    }
    return listWrites;
}

VxRepairStatus repair(CEnvDetectInfo &info)
{
    const QList<QPair<QString, QString>> listWrites = plannedWrites(info);
    VxRepairStatus status = VxRepairStatus::Done;
    QStringList listWritten;
    if (!listWrites.isEmpty()) {
        if (VxPrivileged::isRoot()) {
            status = writeMachineEnvironment(listWrites, &listWritten) ? VxRepairStatus::Done : VxRepairStatus::Failed;
        } else {
            QStringList listArgs;
            for (const auto &write : listWrites)
                listArgs << write.first << write.second;
            status = VxPrivileged::runHelper(QStringLiteral("set-env"), listArgs);
            if (status == VxRepairStatus::Done) {
                for (const auto &write : listWrites)
                    listWritten << write.first;
            }
        }
    }
    if (status != VxRepairStatus::Done) {
        VxPrivileged::setLastStatus(status);
        return status; // nothing written: the item stays exceptional
    }
    // Only what the machine environment took goes into this process, so a
    // new check still finds a value that could not be written.
    bool bAllWritten = true;
    for (const auto &write : listWrites) {
        if (!listWritten.contains(write.first)) {
            bAllWritten = false;
            continue;
        }
        qputenv(write.first.toLatin1().constData(), write.second.toLocal8Bit());
        info.missingValues.remove(write.first);
    }
    if (bAllWritten) {
        info.bNormal = 1;
        info.missingValues.clear();
    } else {
        status = VxRepairStatus::Failed;
    }
    VxPrivileged::setLastStatus(status);
    return status;
}

} // namespace EnvVars
