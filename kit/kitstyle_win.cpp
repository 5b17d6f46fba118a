#include "kitstyle.h"

namespace KitStyle {

// Desktop composition is always on from Windows 8 onwards.
bool compositingActive()
{
    return true;
}

} // namespace KitStyle
