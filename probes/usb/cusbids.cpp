#include "cusbids.h"

#include "luinterface.h"

#include <QFile>
#include <QStringList>

namespace {

struct CVendorTable
{
    QHash<quint16, QString> mapNames;
    QHash<quint32, QString> mapProducts;
    QString strFile;
};

const CVendorTable &vendorTable()
{
    static const CVendorTable table = [] {
        CVendorTable t;
        const QStringList listPaths = {QStringLiteral("/usr/share/misc/usb.ids"), QStringLiteral("/usr/share/hwdata/usb.ids"),
                                       QStringLiteral("/var/lib/usbutils/usb.ids")};
        QStringList listCandidates;
        for (const QString &strPath : listPaths)
            listCandidates << LuInterface::sysPath(strPath);
        listCandidates << listPaths;
        for (const QString &strPath : listCandidates) {
            QFile file(strPath);
            if (!file.open(QIODevice::ReadOnly))
                continue;
            const QByteArray text = file.read(32 * 1024 * 1024);
            t.mapNames = CUsbIds::parseVendors(text);
            if (!t.mapNames.isEmpty()) {
                t.mapProducts = CUsbIds::parseProducts(text);
                t.strFile = strPath;
                break;
            }
        }
        return t;
    }();
    return table;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

QHash<quint16, QString> CUsbIds::parseVendors(const QByteArray &text)
{
    QHash<quint16, QString> map;
    int pos = 0;
    const int n = text.size();
    while (pos < n) {
        int end = text.indexOf('\n', pos);
        if (end < 0)
            end = n;
        // A vendor line: four hex digits at the start, blanks, the name.
        // Device lines start with a tab; the class lists ("C ...") and other
        // sections that follow the vendors start with a letter and a blank.
        if (end - pos > 6) {
            const char *p = text.constData() + pos;
            if (p[0] == 'C' && p[1] == ' ')
                break;
            int v = 0;
            bool ok = true;
            for (int i = 0; i < 4 && ok; ++i) {
                const int d = hexValue(p[i]);
                ok = d >= 0;
                v = (v << 4) | d;
            }
            if (ok && (p[4] == ' ' || p[4] == '\t')) {
                const QString name = QString::fromUtf8(p + 4, end - pos - 4).trimmed();
                if (!name.isEmpty() && !map.contains(quint16(v)))
                    map.insert(quint16(v), name);
            }
        }
        pos = end + 1;
    }
    return map;
}

QString CUsbIds::vendorName(quint16 uVendorId)
{
    return vendorTable().mapNames.value(uVendorId);
}

QString CUsbIds::sourceFile()
{
    return vendorTable().strFile;
}

QHash<quint32, QString> CUsbIds::parseProducts(const QByteArray &text)
{
    QHash<quint32, QString> map;
    int nVendor = -1; // the vendor line the device lines belong to
    int pos = 0;
    const int n = text.size();
    while (pos < n) {
        int end = text.indexOf('\n', pos);
        if (end < 0)
            end = n;
        const char *p = text.constData() + pos;
        const int nLength = end - pos;
        const bool bDevice = nLength > 6 && p[0] == '\t' && p[1] != '\t';
        const char *pDigits = bDevice ? p + 1 : p;
        int v = 0;
        bool ok = nLength > (bDevice ? 6 : 5);
        for (int i = 0; i < 4 && ok; ++i) {
            const int d = hexValue(pDigits[i]);
            ok = d >= 0;
            v = (v << 4) | d;
        }
        ok = ok && (pDigits[4] == ' ' || pDigits[4] == '\t');
        if (nLength > 1 && p[0] == 'C' && p[1] == ' ')
            break;
        if (!bDevice && nLength > 0 && p[0] != '\t' && p[0] != '#')
            nVendor = ok ? v : -1;
        if (bDevice && ok && nVendor >= 0) {
            const quint32 uKey = (quint32(nVendor) << 16) | quint32(v);
            const QString name = QString::fromUtf8(pDigits + 4, end - pos - 5).trimmed();
            if (!name.isEmpty() && !map.contains(uKey))
                map.insert(uKey, name);
        }
        pos = end + 1;
    }
    return map;
}

QString CUsbIds::productName(quint16 uVendorId, quint16 uProductId)
{
    return vendorTable().mapProducts.value((quint32(uVendorId) << 16) | uProductId);
}
