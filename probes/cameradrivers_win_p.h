#pragma once

#include <QString>

// Windows internals of the USB3 Vision driver check, open to the tests.
namespace CameraDrivers {
namespace Detail {

// How the driver install framework (difxapi.dll) answered for an INF.
enum class FrameworkAnswer {
    InStore,     // the package is in the driver store
    NotInStore,  // the framework answered: not there (or an empty path)
    Unavailable, // no framework on this system, or it does not support the call
};
FrameworkAnswer askDriverFramework(const QString &strInf);

// The driver store through SetupAPI: true when the system's INF folder holds
// a published INF (oem*.inf, or one under the package's own name) whose
// original name is the package's file name.
bool publishedInfFound(const QString &strInf);

// Test seam: the library asked first (default "difxapi.dll"); an empty name
// restores the default.
void setDriverFrameworkLibrary(const QString &strLibrary);

} // namespace Detail
} // namespace CameraDrivers
