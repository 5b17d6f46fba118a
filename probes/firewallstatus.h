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
    FirewallStatus();
    ~FirewallStatus();

    // firewalld active or running, nftables active, or ufw switched on in its
    // configuration while its service is not known to be stopped.
    bool isEnabled() const;

    // Test seam: the source of systemd's ActiveState of a unit ("active",
    // "inactive", "failed"..., empty when unknown, e.g. without a system
    // bus) and of firewalld's own state ("RUNNING"..., empty when unknown).
    using UnitStateReader = std::function<QString(const QString &strUnit)>;
    static void setUnitStateReader(UnitStateReader reader);
    using FirewalldStateReader = std::function<QString()>;
    static void setFirewalldStateReader(FirewalldStateReader reader);

    // The running system's answers over D-Bus, which the readers default to
    // for the live system root (tests call them on a private bus).
    static QString systemdUnitState(const QString &strUnit);
    static QString firewalldState();
};

namespace Firewall {
// bNormal = the firewall is off.
void check(CDetectInfo &info);
} // namespace Firewall
