#include "linerate.h"

#include "cdetectinfo.h"
#include "netadapters.h"

namespace LineRate {

void check(CNetworkSpeedDetectInfo &info, const NetAdapters::LinkSource &links)
{
    info.bNormal = 1;
    info.adapterSpeeds.clear();
    // No interface at all (not even loopback) means the list could not be read.
    if (links.allLinks().isEmpty()) {
        info.bNormal = 0;
        return;
    }
    for (const CLinkFacts &link : NetAdapters::connectedPhysicalLinks(links)) {
        const int nMbps = NetAdapters::speedMbps(link.strName);
        if (nMbps != kUnknownSpeed && nMbps < 1000)
            info.bNormal = 0;
        info.adapterSpeeds[link.strName] = nMbps;
    }
}

} // namespace LineRate
