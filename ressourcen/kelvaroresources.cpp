#include "kelvaroresources.h"

namespace kelvaro {

bool hasStyleSheet()
{
#ifdef KELVARO_HAS_QDARKSTYLE
    return true;
#else
    return false;
#endif
}

} // namespace kelvaro
