#include "Freedesktop/Files/MountChanges.h"

#include <fcntl.h>
#include <poll.h>

namespace marrowick {

MountChanges::MountChanges()
    : table_(::open(mountTableFile, O_RDONLY | O_CLOEXEC))
{
}

bool MountChanges::haveCome()
{
    pollfd question { table_.get(), POLLPRI, 0 };
    if (!table_.isOpen() || ::poll(&question, 1, 0) < 0)
        return true;
    return (question.revents & (POLLPRI | POLLERR)) != 0;
}

}
