#include "netadapters.h"

namespace NetAdapters {

QList<CNetAdapter> &adapterList()
{
    static QList<CNetAdapter> list;
    return list;
}

QList<CLinkFacts> LinkSource::allLinks() const
{
    return links ? links() : QList<CLinkFacts>();
}

bool LinkSource::physical(const QString &strName) const
{
    return isPhysical && isPhysical(strName);
}

QMap<QString, QString> &jumboValueNames()
{
    static QMap<QString, QString> map;
    return map;
}

} // namespace NetAdapters
