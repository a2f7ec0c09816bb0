#include "Shared/Report.h"

#include <glib.h>

namespace marrowick::companion {

void reportUnreadable(char const* fileManager, char const* missing)
{
    static bool isReported = false;
    if (isReported)
        return;
    isReported = true;
    g_message("Marrowick: this version of %s does not tell what its windows show: it has no %s", fileManager, missing);
}

}
