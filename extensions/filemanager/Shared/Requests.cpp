#include "Shared/Requests.h"

#include "Support/ExchangeCoding.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string_view>

namespace marrowick::companion {

namespace {

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        auto const count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}

bool dropRequest(std::string const& folder, MoveRequest const& request)
{
    auto const bytes = encode(request);
    auto const requests = folder + "/Requests";
    constexpr int onlyTheUser = 0700;
    if (!bytes || g_mkdir_with_parents(requests.c_str(), onlyTheUser) != 0)
        return false;

    char* const unique = g_uuid_string_random();
    auto const name = requests + "/" + unique;
    g_free(unique);
    auto const unfinished = name + ".part";
    int const file = open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0)
        return false;
    bool isWritten = writeAll(file, *bytes);
    isWritten = close(file) == 0 && isWritten;
    if (isWritten && std::rename(unfinished.c_str(), (name + ".json").c_str()) == 0)
        return true;
    unlink(unfinished.c_str());
    return false;
}

}
