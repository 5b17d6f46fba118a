// Runs the checks whose Windows XP rules differ, for a test that starts it
// with Wine's per-program version set to Windows XP x64:
//   xpcheck system               prints LuInterface::systemName()
//   xpcheck firewall             prints 1 when the firewall counts as on
//   xpcheck jumbo <driver key>   prints "<state> <value> <value name>"
#include "firewallstatus.h"
#include "luinterface.h"
#include "netadapters.h"
#include "netadapters_win_p.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList listArgs = app.arguments().mid(1);
    const QString strWhat = listArgs.value(0);
    if (strWhat == QLatin1String("system")) {
        std::printf("%d\n", LuInterface::systemName());
    } else if (strWhat == QLatin1String("firewall")) {
        std::printf("%d\n", FirewallStatus().isEnabled() ? 1 : 0);
    } else if (strWhat == QLatin1String("jumbo") && listArgs.size() == 2) {
        int nValue = 0;
        const int nState = NetAdapters::Detail::readJumbo(listArgs.at(1), &nValue);
        std::printf("%d %d %s\n", nState, nValue, qPrintable(NetAdapters::jumboValueNames().value(listArgs.at(1))));
    } else {
        return 2;
    }
    std::fflush(stdout);
    return 0;
}
