#pragma once

#include <QString>

#include <functional>

class CDetectInfo;

// Item 1024: whether a firewall is on. Linux asks systemd (over D-Bus, no
// rights needed) for the state of the firewalld, ufw and nftables services,
// firewalld itself for its state, and reads ufw's own switch. With another
// system root nothing is asked over D-Bus: a service the root's systemd
// starts at boot counts as active.
class FirewallStatus
{
public:
    // Where the answers come from (Linux): systemd's ActiveState of a unit
    // ("active", "inactive", "failed"..., empty when unknown, e.g. without a
    // system bus) and firewalld's own state ("RUNNING"..., empty when
    // unknown). An empty reader answers "unknown".
    using UnitStateReader = std::function<QString(const QString &strUnit)>;
    using FirewalldStateReader = std::function<QString()>;

    // The system being diagnosed: D-Bus for the live system root, the boot
    // links of another root (whose firewalld cannot be asked).
    FirewallStatus();
    // Other readers (tests hand in fakes or the D-Bus readers on a private
    // bus). Windows asks its firewall policy and has no use for them.
    FirewallStatus(UnitStateReader unitState, FirewalldStateReader firewalldState);
    ~FirewallStatus();

    // firewalld active or running, nftables active, or ufw switched on in its
    // configuration while its service is not known to be stopped.
    bool isEnabled() const;

    // The running system's answers over D-Bus, which the default readers
    // give for the live system root (tests call them on a private bus).
    static QString systemdUnitState(const QString &strUnit);
    static QString firewalldState();

private:
    QString unitState(const QString &strUnit) const;

    UnitStateReader m_unitState;
    FirewalldStateReader m_firewalldState;
};

namespace Firewall {
// bNormal = the firewall is off, as status tells it.
void check(CDetectInfo &info, const FirewallStatus &status = FirewallStatus());
} // namespace Firewall
