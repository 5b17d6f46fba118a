#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// USB vendor names from the USB id database (usb.ids, Debian package
// usb.ids). Read once, on first use, below the system root or else from the
// machine's own copy; without a database every name is empty.
class CUsbIds
{
public:
    // The vendor's name, or an empty string when the id is not listed.
    static QString vendorName(quint16 uVendorId);
    // The product's name, or an empty string when it is not listed.
    static QString productName(quint16 uVendorId, quint16 uProductId);
    // The file the names came from (empty when none was found).
    static QString sourceFile();
    // Parses the text of a usb.ids file into "id -> name" (exposed for tests).
    static QHash<quint16, QString> parseVendors(const QByteArray &text);
    // Parses the device lines (a tab, four hex digits, the name) below each
    // vendor line into "vendor << 16 | product -> name".
    static QHash<quint32, QString> parseProducts(const QByteArray &text);
};
