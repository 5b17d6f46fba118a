#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// The names of the USB id database (usb.ids) that a descriptor dump shows
// beside the numbers: vendors and products, device and interface classes
// with their subclasses and protocols, audio terminal types, HID descriptor
// types and HID country codes. Every look-up of an id the database does not
// list gives an empty string.
class CUsbIdsDb
{
public:
    // Parses the text of a usb.ids file; unknown sections and malformed lines are skipped.
    static CUsbIdsDb fromText(const QByteArray &text);
    // The database below the system root (else the machine's own copy),
    // read once; empty when no file was found.
    static const CUsbIdsDb &system();

    QString vendor(quint16 uVendor) const { return m_mapVendors.value(uVendor); }
    QString product(quint16 uVendor, quint16 uProduct) const
    {
        return m_mapProducts.value(quint32(uVendor) << 16 | uProduct);
    }
    QString className(quint8 uClass) const { return m_mapClasses.value(classKey(1, uClass, 0, 0)); }
    QString subclassName(quint8 uClass, quint8 uSub) const { return m_mapClasses.value(classKey(2, uClass, uSub, 0)); }
    QString protocolName(quint8 uClass, quint8 uSub, quint8 uProtocol) const
    {
        return m_mapClasses.value(classKey(3, uClass, uSub, uProtocol));
    }
    QString audioTerminal(quint16 uType) const { return m_mapAudioTerminals.value(uType); }
    QString hidType(quint8 uType) const { return m_mapHidTypes.value(uType); }
    QString countryCode(quint8 uCode) const { return m_mapCountries.value(uCode); }
    bool isEmpty() const { return m_mapVendors.isEmpty() && m_mapClasses.isEmpty(); }

private:
    // Level 1 class, 2 subclass, 3 protocol.
    static quint32 classKey(quint32 uLevel, quint32 uClass, quint32 uSub, quint32 uProtocol)
    {
        return uLevel << 24 | (uClass & 0xFF) << 16 | (uSub & 0xFF) << 8 | (uProtocol & 0xFF);
    }

    QHash<quint16, QString> m_mapVendors;
    QHash<quint32, QString> m_mapProducts;
    QHash<quint32, QString> m_mapClasses;
    QHash<quint16, QString> m_mapAudioTerminals;
    QHash<quint8, QString> m_mapHidTypes;
    QHash<quint8, QString> m_mapCountries;
};
