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

bool g_bFixtureRootHasProcessSession = false;

QString readLatin1(const QString &strName)
{
    return QDir::toNativeSeparators(QString::fromLatin1(qgetenv(strName.toLatin1().constData())));
}

QString readLocale(const QString &strName)
{
    const QByteArray value = qgetenv(strName.toLatin1().constData());
    return LuInterface::char2QStringLocale(value.constData(), -1);
}

// A mounted system image is judged by its own machine-wide values, and
// this process's environment belongs to the machine running the program.
bool readsImage()
{
    return !LuInterface::isLiveRoot() && !g_bFixtureRootHasProcessSession && layout().machineValue;
}

// C + "/" + A + "/" + strSub, with native separators. In an image the
// folders are named as its own programs see them, without the root in front.
QString expected(const QString &strSub)
{
    QString strCommon = LuInterface::commonFilesPath();
    const QString strRoot = LuInterface::sysRoot();
    if (readsImage() && strCommon.startsWith(strRoot + QLatin1Char('/')))
        strCommon = strCommon.mid(strRoot.size());
    return QDir::toNativeSeparators(strCommon + QStringLiteral("/%1/").arg(LuInterface::appName()) + strSub);
}

// The value this process sees for a variable, read as the check reads it.
QString sessionValue(const QString &strName)
{
    if (strName == QLatin1String(kCommonRunEnv))
        return QDir::toNativeSeparators(readLocale(strName));
    if (strName == QLatin1String(kHeartbeat))
        return readLocale(strName);
    return readLatin1(strName);
}

// The queued parts put in front of strBase (path-like variables) or alone,
// cut as the fixed 1024-byte buffer of the machine write cuts them; a null
// string when nothing is queued.
QString composed(const QStringList &listQueued, QString strBase, bool bPathLike)
{
    QString strFinal;
    for (const QString &strValue : listQueued) {
        if (strValue.isEmpty())
            continue;
        unsigned char buffer[1024] = {};
        LuInterface::string2UcharLocale(strValue + strBase, buffer, int(sizeof buffer));
        strFinal = LuInterface::char2QStringLocale(reinterpret_cast<const char *>(buffer), -1);
        if (bPathLike)
            strBase = strFinal;
    }
    return strFinal;
}

// What this process's own environment gets after a repair: the parts this
// session lacks put in front of its own value.
QList<QPair<QString, QString>> sessionWrites(const CEnvDetectInfo &info)
{
    QList<QPair<QString, QString>> listWrites;
    for (auto it = info.missingValues.cbegin(); it != info.missingValues.cend(); ++it) {
        const bool bPathLike = isPathLike(it.key());
        const QString strFinal = composed(it.value(), bPathLike ? info.currentValues.value(it.key()) : QString(), bPathLike);
        if (!strFinal.isNull())
            listWrites.append({it.key(), strFinal});
    }
    return listWrites;
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

QStringList queuedValues(const QString &strName, const QString &strValue)
{
    const Layout lay = layout();
    const QString strSep(lay.cSeparator);
    QStringList listQueued;
    if (strName == lay.strPathName) {
        // The executable search path: both runtime folders, each with its separator.
        for (const QString &strSub : {lay.strRuntime32, lay.strRuntime64}) {
            const QString strEntry = expected(strSub) + strSep;
            if (strValue.indexOf(strEntry) == -1)
                listQueued << strEntry;
        }
    } else if (strName == QLatin1String(kCommonRunEnv)) {
        // The common runtime: the program's path cut before "Applications".
        const QString strApp = QCoreApplication::applicationFilePath();
        const QString strExpected = QDir::toNativeSeparators(strApp.left(strApp.lastIndexOf(QLatin1String("Applications")))
                                                             + QStringLiteral("Development"));
        if (strValue.compare(strExpected, Qt::CaseInsensitive) != 0)
            listQueued << strExpected;
    } else if (strName == QLatin1String(kHeartbeat)) {
        // The heartbeat only has to be a number.
        bool bNumber = false;
        strValue.toInt(&bNumber, 10);
        if (!bNumber)
            listQueued << QStringLiteral("60000");
    } else if (strName == QLatin1String(kClProtocol)) {
        // The protocol list: the protocol folder present, the bare runtime absent.
        const QString strP1 = expected(QStringLiteral("Runtime/CLProtocol"));
        const QString strP2 = strP1 + QDir::toNativeSeparators(QStringLiteral("/"));
        const QString strR1 = expected(QStringLiteral("Runtime"));
        const QString strR2 = strR1 + QDir::toNativeSeparators(QStringLiteral("/"));
        bool bProtocol = false;
        bool bRuntime = false;
        QString strRest;
        for (const QString &strPart : strValue.split(lay.cSeparator, Qt::KeepEmptyParts)) {
            if (strPart.compare(strP1, Qt::CaseInsensitive) == 0 || strPart.compare(strP2, Qt::CaseInsensitive) == 0)
                bProtocol = true;
            else if (strPart.compare(strR1, Qt::CaseInsensitive) == 0 || strPart.compare(strR2, Qt::CaseInsensitive) == 0)
                bRuntime = true;
            else if (!strPart.trimmed().isEmpty())
                strRest += strPart + strSep;
        }
        if (!bProtocol || bRuntime)
            listQueued << strRest + strP1;
    } else if (strName == QLatin1String(kGenTl32) || strName == QLatin1String(kGenTl64)) {
        // The two GenTL producer folders.
        const QString strExpected = expected(strName == QLatin1String(kGenTl32) ? lay.strRuntime32 : lay.strRuntime64);
        if (strValue.indexOf(strExpected) == -1)
            listQueued << strExpected + strSep;
    }
    return listQueued;
}

void setFixtureRootHasProcessSession(bool bYes)
{
    g_bFixtureRootHasProcessSession = bYes;
}

void check(CEnvDetectInfo &info)
{
    info.missingValues.clear();
    info.currentValues.clear();
    info.pendingValues.clear();
    info.bNormal = 1;
    const Layout lay = layout();
    const bool bImage = readsImage();
    for (const QString &strName : variableNames()) {
        const QString strValue = bImage ? lay.machineValue(strName) : sessionValue(strName);
        info.currentValues[strName] = strValue;
        const QStringList listQueued = queuedValues(strName, strValue);
        if (listQueued.isEmpty())
            continue;
        if (lay.machineValue) {
            const QString strMachine = lay.machineValue(strName);
            if (!strMachine.isNull() && queuedValues(strName, strMachine).isEmpty()) {
                info.pendingValues[strName] = strMachine;
                continue;
            }
        }
        info.bNormal = 0;
        info.missingValues[strName] = listQueued;
    }
}

QList<QPair<QString, QString>> plannedWrites(const CEnvDetectInfo &info)
{
    const Layout lay = layout();
    if (!lay.machineValue)
        return sessionWrites(info);
    QList<QPair<QString, QString>> listWrites;
    for (auto it = info.missingValues.cbegin(); it != info.missingValues.cend(); ++it) {
        // The machine-wide value is what gets rewritten: a value it already
        // holds is not written again.
        const QString strMachine = lay.machineValue(it.key());
        const bool bPathLike = isPathLike(it.key());
        const QString strFinal = composed(queuedValues(it.key(), strMachine), bPathLike ? strMachine : QString(), bPathLike);
        if (!strFinal.isNull())
            listWrites.append({it.key(), strFinal});
    }
    return listWrites;
}

VxRepairOutcome repair(CEnvDetectInfo &info, const VxPrivileges &rights, const MachineWriter &writeMachine)
{
    const QList<QPair<QString, QString>> listWrites = plannedWrites(info);
    VxRepairStatus status = VxRepairStatus::Done;
    QStringList listWritten;
    if (!listWrites.isEmpty()) {
        // Another system root is written with this user's own rights: the
        // helper acts on the running machine only.
        if (rights.isRoot() || !LuInterface::isLiveRoot()) {
            const bool bWritten = writeMachine ? writeMachine(listWrites, &listWritten)
                                               : writeMachineEnvironment(listWrites, &listWritten);
            status = bWritten ? VxRepairStatus::Done : VxRepairStatus::Failed;
        } else {
            QStringList listArgs;
            for (const auto &write : listWrites)
                listArgs << write.first << write.second;
            status = rights.runHelper(QStringLiteral("set-env"), listArgs);
            if (status == VxRepairStatus::Done) {
                for (const auto &write : listWrites)
                    listWritten << write.first;
            }
        }
    }
    if (status != VxRepairStatus::Done) // nothing written: the item stays exceptional
        return VxRepairOutcome(status, QStringLiteral("writing the machine environment"));
    // Only what the machine environment took goes into this process (its own
    // value with the parts it lacked in front), so a new check here passes for
    // those and still finds a value that could not be written.
    bool bAllWritten = true;
    for (const auto &write : listWrites)
        bAllWritten = bAllWritten && listWritten.contains(write.first);
    for (const auto &write : sessionWrites(info)) {
        if (!listWritten.contains(write.first))
            continue;
        qputenv(write.first.toLatin1().constData(), write.second.toLocal8Bit());
        info.missingValues.remove(write.first);
    }
    if (bAllWritten) {
        info.bNormal = 1;
        info.missingValues.clear();
        return VxRepairOutcome();
    }
    return VxRepairOutcome::failed(QStringLiteral("some variables were not written"));
}

} // namespace EnvVars
