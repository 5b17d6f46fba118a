#include "tuningapply.h"

#include "journaledrepairs.h"
#include "vxjournal.h"

#include "atomicfile.h"
#include "ethtoolrings.h"
#include "luinterface.h"
#include "vxrepair.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <climits>
#include <cstring>
#include <functional>

#include <fcntl.h>
#include <linux/if.h>
#include <unistd.h>

namespace TuningApply {

namespace {

const char kUsbfsParameter[] = "/sys/module/usbcore/parameters/usbfs_memory_mb";
const char kRpFilterPrefix[] = "net.ipv4.conf.";
const char kRpFilterSuffix[] = ".rp_filter";

void setError(QString *pError, const QString &strText)
{
    if (pError)
        *pError = strText;
}

bool isInterfaceName(const QString &strName)
{
    const QByteArray name = strName.toLocal8Bit();
    if (name.isEmpty() || name.size() >= IFNAMSIZ || name == "." || name == "..")
        return false;
    for (const char c : name) {
        if (c == '/' || c == ':' || uchar(c) <= ' ' || uchar(c) >= 0x7f)
            return false;
    }
    return true;
}

// The interface (or "all", "default") of an rp_filter key, empty otherwise.
QString rpFilterInterface(const QString &strKey)
{
    if (!strKey.startsWith(QLatin1String(kRpFilterPrefix)) || !strKey.endsWith(QLatin1String(kRpFilterSuffix)))
        return QString();
    const int nStart = int(qstrlen(kRpFilterPrefix));
    const int nLength = strKey.size() - nStart - int(qstrlen(kRpFilterSuffix));
    const QString strName = nLength > 0 ? strKey.mid(nStart, nLength) : QString();
    return isInterfaceName(strName) ? strName : QString();
}

bool isCoreKey(const QString &strKey)
{
    return strKey == QLatin1String("net.core.rmem_max") || strKey == QLatin1String("net.core.rmem_default")
        || strKey == QLatin1String("net.core.netdev_max_backlog");
}

// A decimal count 0..INT_MAX without sign or padding.
bool isCount(const QString &strValue)
{
    if (strValue.isEmpty() || strValue.size() > 10 || (strValue.size() > 1 && strValue.startsWith(QLatin1Char('0'))))
        return false;
    for (const QChar c : strValue) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    }
    return strValue.toLongLong() <= INT_MAX;
}

// A sysfs or procfs value: the first line, at most 64 bytes. Only regular
// files are read (a FIFO planted in an image could block).
bool readValue(const QString &strPath, QString *pValue)
{
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray data = file.read(64);
    if (data.isEmpty() && file.error() != QFileDevice::NoError)
        return false;
    *pValue = QString::fromLatin1(data).section(QLatin1Char('\n'), 0, 0).trimmed();
    return !pValue->isEmpty();
}

// Writes a value as sysctl and sysfs expect: one write of the text and a
// line end into the existing file.
bool writeValue(const QString &strPath, const QString &strValue, QString *pReason)
{
    if (!QFileInfo(strPath).isFile()) {
        *pReason = QString::fromLocal8Bit(std::strerror(ENOENT));
        return false;
    }
    const QByteArray path = QFile::encodeName(strPath);
    const int fd = ::open(path.constData(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) {
        *pReason = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    const QByteArray data = strValue.toLatin1() + '\n';
    const ssize_t nWritten = ::write(fd, data.constData(), size_t(data.size()));
    const int nErrno = errno;
    ::close(fd);
    if (nWritten != ssize_t(data.size())) {
        *pReason = QString::fromLocal8Bit(std::strerror(nWritten < 0 ? nErrno : EIO));
        return false;
    }
    return true;
}

const char kHeader[] = "# Kept by Vetrix Tool. Each setting follows the value it replaced;\n"
                       "# undoing the change in Vetrix Tool removes it again.\n";

QByteArray markerOf(const QString &strName)
{
    return "# " + strName.toLatin1() + " before Vetrix Tool: ";
}

// The keeping file's text with strName set by settingLine, or without it
// when the new value is the one it replaced. Our setting is the marker
// comment and the line after it, always at the end of the file (a later
// assignment wins); every other line, an assignment of the same name
// included, stays as it is. strOld is the running value before the change,
// remembered when the file does not hold the name yet.
QByteArray keptFile(const QByteArray &content, const QString &strName, const QString &strOld, const QString &strNew,
                    const QByteArray &settingLine, const std::function<bool(const QByteArray &)> &setsName)
{
    QList<QByteArray> listLines = content.split('\n');
    if (!listLines.isEmpty() && listLines.last().isEmpty())
        listLines.removeLast();
    const QByteArray marker = markerOf(strName);
    QString strOriginal = strOld;
    for (int i = listLines.size() - 1; i >= 0; --i) {
        if (!listLines.at(i).startsWith(marker))
            continue;
        strOriginal = QString::fromLatin1(listLines.at(i).mid(marker.size()).trimmed());
        if (i + 1 < listLines.size() && setsName(listLines.at(i + 1)))
            listLines.removeAt(i + 1);
        listLines.removeAt(i);
        break;
    }
    if (strNew != strOriginal) {
        if (listLines.isEmpty())
            listLines = QByteArray(kHeader).split('\n').mid(0, 2);
        listLines << marker + strOriginal.toLatin1() << settingLine;
    }
    QByteArray result;
    for (const QByteArray &line : listLines)
        result += line + '\n';
    return result;
}

// Replaces the keeping file (or removes it when only the header is left).
bool writeKeptFile(const QString &strPath, const QByteArray &content, QString *pReason)
{
    if (content.isEmpty() || content == kHeader) {
        if (QFileInfo::exists(strPath) && !QFile::remove(strPath)) {
            *pReason = QString::fromLocal8Bit(std::strerror(EACCES));
            return false;
        }
        return true;
    }
    if (!QDir().mkpath(QFileInfo(strPath).absolutePath()) || !AtomicFile::write(strPath, content)) {
        *pReason = QString::fromLocal8Bit(std::strerror(errno ? errno : EIO));
        return false;
    }
    return true;
}

bool readFile(const QString &strPath, QByteArray *pContent)
{
    QFile file(strPath);
    if (!QFileInfo::exists(strPath)) {
        pContent->clear();
        return true;
    }
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    *pContent = file.readAll();
    return file.error() == QFileDevice::NoError;
}

QString runningPath(const VxChange &change)
{
    if (change.strKind == QLatin1String(VxChangeKind::Sysctl))
        return sysctlPath(change.strTarget);
    if (change.strKind == QLatin1String(VxChangeKind::UsbfsMemory))
        return LuInterface::sysPath(QLatin1String(kUsbfsParameter));
    return QString();
}

// Writes the running value, then the keeping file; sets the running value
// back when the file cannot be written.
bool applyKept(const VxChange &change, QString *pError)
{
    const bool bSysctl = change.strKind == QLatin1String(VxChangeKind::Sysctl);
    const QString strPath = runningPath(change);
    const QString strKeepPath = bSysctl ? sysctlDropInPath() : usbfsTmpfilesPath();
    QString strOld;
    if (!readValue(strPath, &strOld)) {
        setError(pError, QCoreApplication::translate("VxOneKeyResult", "Cannot read %1.").arg(strPath));
        return false;
    }
    QByteArray content;
    if (!readFile(strKeepPath, &content)) {
        setError(pError, QCoreApplication::translate("VxOneKeyResult", "Cannot read %1.").arg(strKeepPath));
        return false;
    }
    QString strReason;
    if (!writeValue(strPath, change.strNew, &strReason)) {
        setError(pError, QCoreApplication::translate("VxOneKeyResult", "Cannot write %1: %2").arg(strPath, strReason));
        return false;
    }
    QString strNow;
    if (!readValue(strPath, &strNow) || strNow != change.strNew) {
        writeValue(strPath, strOld, &strReason);
        setError(pError,
            QCoreApplication::translate("VxOneKeyResult", "%1 did not take the value %2 (it reads %3).")
                .arg(strPath, change.strNew, strNow));
        return false;
    }
    QByteArray line;
    std::function<bool(const QByteArray &)> setsName;
    QString strName;
    if (bSysctl) {
        strName = sysctlFileKey(change.strTarget);
        line = strName.toLatin1() + " = " + change.strNew.toLatin1();
        setsName = [strName](const QByteArray &text) {
            const QByteArray trimmed = text.trimmed();
            if (trimmed.startsWith('#') || trimmed.startsWith(';'))
                return false;
            QString strKey = QString::fromLatin1(trimmed.left(trimmed.indexOf('='))).trimmed();
            if (strKey.startsWith(QLatin1Char('-')))
                strKey.remove(0, 1);
            return strKey == strName || QString(strKey).replace(QLatin1Char('/'), QLatin1Char('.')) == strName;
        };
    } else {
        strName = QStringLiteral("usbfs_memory_mb");
        line = "w " + QByteArray(kUsbfsParameter) + " - - - - " + change.strNew.toLatin1();
        setsName = [](const QByteArray &text) {
            const QList<QByteArray> listFields = text.simplified().split(' ');
            return listFields.size() >= 2 && !listFields.first().startsWith('#') && listFields.at(1) == kUsbfsParameter;
        };
    }
    const QByteArray kept = keptFile(content, strName, strOld, change.strNew, line, setsName);
    if (!writeKeptFile(strKeepPath, kept, &strReason)) {
        writeValue(strPath, strOld, &strReason);
        setError(pError,
            QCoreApplication::translate("VxOneKeyResult", "Cannot write %1; the running value was set back.")
                .arg(strKeepPath));
        return false;
    }
    qCInfo(lcVxRepair).noquote() << change.strKind << change.strTarget << "old:" << strOld << "new:" << change.strNew
                                 << "kept in" << strKeepPath;
    return true;
}

} // namespace

QString sysctlDropInPath()
{
    return LuInterface::sysPath(QStringLiteral("/etc/sysctl.d/90-vetrix-tool.conf"));
}

QString usbfsTmpfilesPath()
{
    return LuInterface::sysPath(QStringLiteral("/etc/tmpfiles.d/vetrix-tool-usbfs.conf"));
}

QString sysctlPath(const QString &strKey)
{
    if (isCoreKey(strKey))
        return LuInterface::sysPath(
            QStringLiteral("/proc/sys/") + QString(strKey).replace(QLatin1Char('.'), QLatin1Char('/')));
    const QString strName = rpFilterInterface(strKey);
    if (strName.isEmpty())
        return QString();
    return LuInterface::sysPath(QStringLiteral("/proc/sys/net/ipv4/conf/") + strName + QStringLiteral("/rp_filter"));
}

QString sysctlFileKey(const QString &strKey)
{
    if (isCoreKey(strKey))
        return strKey;
    const QString strName = rpFilterInterface(strKey);
    if (strName.isEmpty())
        return QString();
    return QLatin1String(kRpFilterPrefix) + QString(strName).replace(QLatin1Char('.'), QLatin1Char('/'))
        + QLatin1String(kRpFilterSuffix);
}

bool isValid(const VxChange &change, QString *pError)
{
    bool bValid = false;
    if (change.strKind == QLatin1String(VxChangeKind::Sysctl)) {
        if (isCoreKey(change.strTarget))
            bValid = isCount(change.strNew);
        else if (!rpFilterInterface(change.strTarget).isEmpty())
            bValid = change.strNew.size() == 1 && change.strNew.at(0) >= QLatin1Char('0')
                && change.strNew.at(0) <= QLatin1Char('2');
    } else if (change.strKind == QLatin1String(VxChangeKind::UsbfsMemory)) {
        bValid = change.strTarget == QLatin1String("usbfs_memory_mb") && isCount(change.strNew);
    } else if (change.strKind == QLatin1String(VxChangeKind::RxRing)) {
        bValid = isInterfaceName(change.strTarget) && isCount(change.strNew) && change.strNew != QLatin1String("0");
    }
    if (!bValid)
        setError(pError,
            QCoreApplication::translate("VxOneKeyResult", "The change is not one this program makes: %1 %2 = %3")
                .arg(change.strKind, change.strTarget, change.strNew));
    return bValid;
}

// Through the journal, so the changes can be undone: in this process as
// root or below another system root, else through vetrix-helper.
VxRepairOutcome applyPlan(const VxPlan &plan, const VxPrivileges &rights, const NetAdapters::LinkSource &links)
{
    VxJournal journal;
    return JournaledRepairs::applyPlan(plan, rights, journal, links);
}

} // namespace TuningApply

bool applyTuningChange(const VxChange &change, QString *pError)
{
    if (!TuningApply::isValid(change, pError))
        return false;
    if (change.strKind != QLatin1String(VxChangeKind::RxRing))
        return TuningApply::applyKept(change, pError);
    if (!LuInterface::isLiveRoot()) {
        TuningApply::setError(pError,
            QCoreApplication::translate(
                "VxOneKeyResult", "The receive ring of %1 can be set on the running system only.")
                .arg(change.strTarget));
        return false;
    }
    QString strOld;
    readTuningValue(change, &strOld);
    QString strReason;
    if (!EthtoolRings::setRx(change.strTarget, change.strNew.toUInt(), &strReason)) {
        TuningApply::setError(pError,
            QCoreApplication::translate("VxOneKeyResult", "Cannot set the receive ring of %1: %2")
                .arg(change.strTarget, strReason));
        return false;
    }
    qCInfo(lcVxRepair).noquote() << change.strKind << change.strTarget << "old:" << strOld << "new:" << change.strNew;
    return true;
}

bool readTuningValue(const VxChange &change, QString *pValue)
{
    QString strValue;
    bool bRead = false;
    if (change.strKind == QLatin1String(VxChangeKind::RxRing)) {
        CRxRing ring;
        bRead = LuInterface::isLiveRoot() && EthtoolRings::read(change.strTarget, &ring);
        strValue = QString::number(ring.uRx);
    } else {
        const QString strPath = TuningApply::runningPath(change);
        bRead = !strPath.isEmpty() && TuningApply::readValue(strPath, &strValue);
    }
    if (bRead && pValue)
        *pValue = strValue;
    return bRead;
}
