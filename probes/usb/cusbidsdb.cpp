#include "cusbidsdb.h"

#include "luinterface.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace {

// The hexadecimal number of nDigits at the start of the text, or -1.
int hexAt(const char *p, int nLength, int nDigits)
{
    if (nLength < nDigits)
        return -1;
    int v = 0;
    for (int i = 0; i < nDigits; ++i) {
        const char c = p[i];
        int d = -1;
        if (c >= '0' && c <= '9')
            d = c - '0';
        else if (c >= 'a' && c <= 'f')
            d = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            d = c - 'A' + 10;
        if (d < 0)
            return -1;
        v = v << 4 | d;
    }
    return v;
}

// The name after the id: blanks, then the rest of the line; empty when the
// id is not followed by a blank.
QString nameAfter(const char *p, int nLength, int nAt)
{
    if (nAt >= nLength || (p[nAt] != ' ' && p[nAt] != '\t'))
        return QString();
    return QString::fromUtf8(p + nAt, nLength - nAt).trimmed();
}

} // namespace

CUsbIdsDb CUsbIdsDb::fromText(const QByteArray &text)
{
    CUsbIdsDb db;
    enum class Section { None, Vendor, Class, Other };
    Section section = Section::None;
    int nVendor = -1;
    int nClass = -1;
    int nSub = -1;
    int pos = 0;
    const int n = text.size();
    while (pos < n) {
        int end = text.indexOf('\n', pos);
        if (end < 0)
            end = n;
        const char *p = text.constData() + pos;
        int len = end - pos;
        if (len > 0 && p[len - 1] == '\r')
            --len;
        pos = end + 1;
        if (len == 0 || p[0] == '#')
            continue;
        if (p[0] == '\t') {
            const bool bSecond = len > 1 && p[1] == '\t';
            const char *q = p + (bSecond ? 2 : 1);
            const int qlen = len - (bSecond ? 2 : 1);
            if (section == Section::Vendor && !bSecond && nVendor >= 0) {
                const int id = hexAt(q, qlen, 4);
                const QString name = nameAfter(q, qlen, 4);
                if (id >= 0 && !name.isEmpty())
                    db.m_mapProducts.insert(quint32(nVendor) << 16 | quint32(id), name);
            } else if (section == Section::Class && nClass >= 0) {
                const int id = hexAt(q, qlen, 2);
                const QString name = nameAfter(q, qlen, 2);
                if (id < 0 || name.isEmpty())
                    continue;
                if (!bSecond) {
                    nSub = id;
                    db.m_mapClasses.insert(classKey(2, quint32(nClass), quint32(id), 0), name);
                } else if (nSub >= 0) {
                    db.m_mapClasses.insert(classKey(3, quint32(nClass), quint32(nSub), quint32(id)), name);
                }
            }
            continue;
        }
        nVendor = nClass = nSub = -1;
        const int nVendorId = hexAt(p, len, 4);
        if (nVendorId >= 0 && len > 4 && (p[4] == ' ' || p[4] == '\t')) {
            section = Section::Vendor;
            nVendor = nVendorId;
            const QString name = nameAfter(p, len, 4);
            if (!name.isEmpty() && !db.m_mapVendors.contains(quint16(nVendorId)))
                db.m_mapVendors.insert(quint16(nVendorId), name);
            continue;
        }
        section = Section::Other;
        const QByteArray line = QByteArray::fromRawData(p, len);
        if (line.startsWith("C ")) {
            const int id = hexAt(p + 2, len - 2, 2);
            const QString name = nameAfter(p + 2, len - 2, 2);
            if (id >= 0 && !name.isEmpty()) {
                section = Section::Class;
                nClass = id;
                db.m_mapClasses.insert(classKey(1, quint32(id), 0, 0), name);
            }
        } else if (line.startsWith("AT ")) {
            const int id = hexAt(p + 3, len - 3, 4);
            const QString name = nameAfter(p + 3, len - 3, 4);
            if (id >= 0 && !name.isEmpty())
                db.m_mapAudioTerminals.insert(quint16(id), name);
        } else if (line.startsWith("HID ")) {
            const int id = hexAt(p + 4, len - 4, 2);
            const QString name = nameAfter(p + 4, len - 4, 2);
            if (id >= 0 && !name.isEmpty())
                db.m_mapHidTypes.insert(quint8(id), name);
        } else if (line.startsWith("HCC ")) {
            // Country codes are written in decimal.
            bool ok = false;
            const QByteArray rest = line.mid(4).trimmed();
            const int nSpace = rest.indexOf(' ');
            const int id = rest.left(nSpace).toInt(&ok);
            if (ok && nSpace > 0 && id >= 0 && id <= 255)
                db.m_mapCountries.insert(quint8(id), QString::fromUtf8(rest.mid(nSpace)).trimmed());
        }
    }
    return db;
}

const CUsbIdsDb &CUsbIdsDb::system()
{
    static const CUsbIdsDb db = [] {
        const QStringList listPaths = {QStringLiteral("/usr/share/misc/usb.ids"),
            QStringLiteral("/usr/share/hwdata/usb.ids"), QStringLiteral("/var/lib/usbutils/usb.ids")};
        QStringList listCandidates;
        for (const QString &strPath : listPaths)
            listCandidates << LuInterface::sysPath(strPath);
        if (LuInterface::isLiveRoot())
            listCandidates << listPaths;
        for (const QString &strPath : listCandidates) {
            QFile file(strPath);
            if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
                continue;
            CUsbIdsDb parsed = fromText(file.read(32 * 1024 * 1024));
            if (!parsed.isEmpty())
                return parsed;
        }
        return CUsbIdsDb();
    }();
    return db;
}
