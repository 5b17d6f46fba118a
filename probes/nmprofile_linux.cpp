#include "netadapters.h"

#include "luinterface.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

// NetworkManager re-applies a profile's MTU on every reconnect, so a changed
// link MTU alone would be undone; the profile of the active connection is
// updated too. Every call has a short time-out: without a system bus or
// NetworkManager the update is skipped at once.

using NmSettings = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(NmSettings)

namespace NetAdapters {

namespace {

const char *const kService = "org.freedesktop.NetworkManager";
constexpr int kTimeoutMs = 2000;

QVariant call(const QString &strPath, const QString &strInterface, const QString &strMethod, const QVariantList &listArgs)
{
    QDBusMessage message = QDBusMessage::createMethodCall(QLatin1String(kService), strPath, strInterface, strMethod);
    message.setArguments(listArgs);
    message.setAutoStartService(false);
    const QDBusMessage reply = QDBusConnection::systemBus().call(message, QDBus::Block, kTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return QVariant();
    return reply.arguments().constFirst();
}

QString objectProperty(const QString &strPath, const QString &strInterface, const QString &strName)
{
    const QVariant value = call(strPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                                {strInterface, strName});
    const QVariant inner = value.value<QDBusVariant>().variant();
    return inner.value<QDBusObjectPath>().path();
}

} // namespace

void updateNetworkManagerMtu(const QString &strName, int nMtu)
{
    if (!LuInterface::isLiveRoot())
        return; // the running NetworkManager serves this machine, not another root
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return;
    qDBusRegisterMetaType<NmSettings>();
    const QVariant device = call(QStringLiteral("/org/freedesktop/NetworkManager"), QLatin1String(kService),
                                 QStringLiteral("GetDeviceByIpIface"), {strName});
    const QString strDevice = device.value<QDBusObjectPath>().path();
    if (strDevice.isEmpty())
        return; // not NetworkManager's interface
    const QString strActive = objectProperty(strDevice, QStringLiteral("org.freedesktop.NetworkManager.Device"),
                                             QStringLiteral("ActiveConnection"));
    if (strActive.isEmpty() || strActive == QLatin1String("/"))
        return;
    const QString strProfile = objectProperty(strActive, QStringLiteral("org.freedesktop.NetworkManager.Connection.Active"),
                                              QStringLiteral("Connection"));
    if (strProfile.isEmpty() || strProfile == QLatin1String("/"))
        return;
    const QString strConnection = QStringLiteral("org.freedesktop.NetworkManager.Settings.Connection");
    const QVariant settingsReply = call(strProfile, strConnection, QStringLiteral("GetSettings"), {});
    NmSettings settings;
    if (!settingsReply.canConvert<QDBusArgument>())
        return;
    settingsReply.value<QDBusArgument>() >> settings;
    if (!settings.contains(QStringLiteral("connection")))
        return;
    const QString strSection = settings.contains(QStringLiteral("802-3-ethernet")) || !settings.contains(QStringLiteral("802-11-wireless"))
                                   ? QStringLiteral("802-3-ethernet")
                                   : QStringLiteral("802-11-wireless");
    const uint uOld = settings[strSection].value(QStringLiteral("mtu")).toUInt();
    settings[strSection][QStringLiteral("mtu")] = QVariant::fromValue(uint(nMtu));
    // The deprecated address and route lists duplicate address-data and
    // route-data; NetworkManager takes the latter.
    for (const QString &strIp : {QStringLiteral("ipv4"), QStringLiteral("ipv6")}) {
        settings[strIp].remove(QStringLiteral("addresses"));
        settings[strIp].remove(QStringLiteral("routes"));
    }
    QDBusMessage message = QDBusMessage::createMethodCall(QLatin1String(kService), strProfile, strConnection, QStringLiteral("Update"));
    message.setArguments({QVariant::fromValue(settings)});
    const QDBusMessage reply = bus.call(message, QDBus::Block, kTimeoutMs);
    if (reply.type() == QDBusMessage::ReplyMessage)
        qCInfo(lcVxRepair).noquote() << "NetworkManager profile" << strProfile << "of" << strName << strSection
                                     << "mtu old:" << uOld << "new:" << nMtu;
    else
        qCWarning(lcVxRepair).noquote() << "NetworkManager profile" << strProfile << "of" << strName
                                        << "not updated:" << reply.errorMessage();
}

} // namespace NetAdapters
