#include "firewallstatus.h"

#include "luinterface.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int kTimeoutMs = 1000;

// One blocking call with a short time-out that never starts a service.
QVariant callBus(const QString &strService, const QString &strPath, const QString &strInterface, const QString &strMethod,
                 const QVariantList &listArgs)
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return QVariant();
    QDBusMessage message = QDBusMessage::createMethodCall(strService, strPath, strInterface, strMethod);
    message.setArguments(listArgs);
    message.setAutoStartService(false);
    const QDBusMessage reply = bus.call(message, QDBus::Block, kTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return QVariant();
    return reply.arguments().constFirst();
}

QString property(const QString &strService, const QString &strPath, const QString &strInterface, const QString &strName)
{
    const QVariant value = callBus(strService, strPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                                   {strInterface, strName});
    return value.value<QDBusVariant>().variant().toString();
}

} // namespace

QString FirewallStatus::systemdUnitState(const QString &strUnit)
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return QString();
    const QString strSystemd = QStringLiteral("org.freedesktop.systemd1");
    QDBusMessage message = QDBusMessage::createMethodCall(strSystemd, QStringLiteral("/org/freedesktop/systemd1"),
                                                          QStringLiteral("org.freedesktop.systemd1.Manager"), QStringLiteral("GetUnit"));
    message.setArguments({strUnit});
    message.setAutoStartService(false);
    const QDBusMessage reply = bus.call(message, QDBus::Block, kTimeoutMs);
    // systemd answers NoSuchUnit for a unit it has not loaded: not running.
    if (reply.type() == QDBusMessage::ErrorMessage && reply.errorName() == QLatin1String("org.freedesktop.systemd1.NoSuchUnit"))
        return QStringLiteral("inactive");
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return QString();
    const QString strPath = reply.arguments().constFirst().value<QDBusObjectPath>().path();
    if (strPath.isEmpty())
        return QString();
    return property(strSystemd, strPath, QStringLiteral("org.freedesktop.systemd1.Unit"), QStringLiteral("ActiveState"));
}

QString FirewallStatus::firewalldState()
{
    return property(QStringLiteral("org.fedoraproject.FirewallD1"), QStringLiteral("/org/fedoraproject/FirewallD1"),
                    QStringLiteral("org.fedoraproject.FirewallD1"), QStringLiteral("state"));
}

namespace {

// Another system root cannot be asked over D-Bus: a unit that the root's
// systemd starts at boot (linked in a *.wants folder of /etc/systemd/system)
// counts as active, one that it does not as inactive; without that folder
// the state is unknown.
QString bootUnitState(const QString &strUnit)
{
    const QDir system(LuInterface::sysPath(QStringLiteral("/etc/systemd/system")));
    if (!system.exists())
        return QString();
    for (const QString &strWants : system.entryList({QStringLiteral("*.wants")}, QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QFileInfo link(system.filePath(strWants) + QLatin1Char('/') + strUnit);
        if (link.isSymLink() || link.exists())
            return QStringLiteral("active");
    }
    return QStringLiteral("inactive");
}

// The system's unit state: systemd's answer on the live root, the boot
// links of another root.
QString systemUnitState(const QString &strUnit)
{
    return LuInterface::isLiveRoot() ? FirewallStatus::systemdUnitState(strUnit) : bootUnitState(strUnit);
}

// firewalld is asked on the live root only.
QString systemFirewalldState()
{
    return LuInterface::isLiveRoot() ? FirewallStatus::firewalldState() : QString();
}

// ufw keeps its on/off switch in ufw.conf: ENABLED=yes.
bool ufwSwitchedOn()
{
    QFile file(LuInterface::sysPath(QStringLiteral("/etc/ufw/ufw.conf")));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    bool bOn = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(4096).trimmed();
        if (line.startsWith("ENABLED=")) {
            QByteArray value = line.mid(8).trimmed();
            if (value.size() >= 2 && (value.startsWith('"') || value.startsWith('\'')) && value.endsWith(value.at(0)))
                value = value.mid(1, value.size() - 2);
            bOn = value.toLower() == "yes"; // the last assignment counts, as in a shell
        }
    }
    return bOn;
}

} // namespace

FirewallStatus::FirewallStatus()
    : FirewallStatus(systemUnitState, systemFirewalldState)
{
}

FirewallStatus::FirewallStatus(UnitStateReader unitState, FirewalldStateReader firewalldState)
    : m_unitState(std::move(unitState))
    , m_firewalldState(std::move(firewalldState))
{
}

FirewallStatus::~FirewallStatus() = default;

QString FirewallStatus::unitState(const QString &strUnit) const
{
    return m_unitState ? m_unitState(strUnit) : QString();
}

bool FirewallStatus::isEnabled() const
{
    if (unitState(QStringLiteral("firewalld.service")) == QLatin1String("active"))
        return true;
    const QString strFirewalld = m_firewalldState ? m_firewalldState() : QString();
    if (strFirewalld == QLatin1String("RUNNING"))
        return true;
    if (unitState(QStringLiteral("nftables.service")) == QLatin1String("active"))
        return true;
    if (ufwSwitchedOn()) {
        // Without systemd's answer the switch alone decides.
        const QString strUfw = unitState(QStringLiteral("ufw.service"));
        if (strUfw != QLatin1String("inactive") && strUfw != QLatin1String("failed"))
            return true;
    }
    return false;
}
