#include "envvars.h"

#include "etcenvironment.h"

namespace EnvVars {

// The runtime folders mirror the Windows ones: Runtime/Linux32_i86 for
// 32-bit and Runtime/Linux64_x64 for 64-bit programs.
Layout layout()
{
    return {QStringLiteral("PATH"), QLatin1Char(':'), QStringLiteral("Runtime/Linux32_i86"),
            QStringLiteral("Runtime/Linux64_x64")};
}

// The file is replaced as a whole: every value or none is written.
bool writeMachineEnvironment(const QList<QPair<QString, QString>> &listWrites, QStringList *pWritten)
{
    if (!EtcEnvironment::apply(listWrites))
        return false;
    for (const auto &write : listWrites)
        pWritten->append(write.first);
    return true;
}

} // namespace EnvVars
