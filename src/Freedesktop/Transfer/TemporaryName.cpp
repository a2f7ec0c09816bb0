#include "Freedesktop/Transfer/TemporaryName.h"

#include "Freedesktop/Files/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <random>
#include <unistd.h>

namespace marrowick {

namespace {

constexpr std::string_view prefix = ".marrowick-transfer-";

/// A number for the processes that this one can see: those of one start of one system, in one container. Zero is unknown.
std::uint32_t processWorld()
{
    std::array<char, 128> text {};
    FileDescriptor const boot(::open("/proc/sys/kernel/random/boot_id", O_RDONLY | O_CLOEXEC));
    auto const bootLength = boot.isOpen() ? ::read(boot.get(), text.data(), 64) : -1;
    if (bootLength <= 0)
        return 0;
    auto const linkLength = ::readlink("/proc/self/ns/pid", text.data() + bootLength, 63);
    if (linkLength <= 0)
        return 0;
    std::uint32_t world = 2166136261;
    for (char const byte : std::string_view(text.data(), static_cast<std::size_t>(bootLength + linkLength)))
        world = (world ^ static_cast<unsigned char>(byte)) * 16777619;
    return world;
}

struct Maker {
    std::uint32_t world;
    pid_t process;
};

template<typename Number>
bool takeNumber(std::string_view& text, Number& number, int base)
{
    auto const parsed = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (parsed.ec != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(parsed.ptr - text.data()));
    return true;
}

bool takeDash(std::string_view& text)
{
    if (!text.starts_with('-'))
        return false;
    text.remove_prefix(1);
    return true;
}

std::optional<Maker> makerOf(std::string_view name)
{
    if (!name.starts_with(prefix))
        return std::nullopt;
    auto rest = name.substr(prefix.size());
    Maker maker {};
    std::uint64_t random = 0;
    if (takeNumber(rest, maker.world, 16) && takeDash(rest) && takeNumber(rest, maker.process, 10) && takeDash(rest)
        && takeNumber(rest, random, 16) && rest.empty() && maker.process > 0)
        return maker;
    return std::nullopt;
}

}

std::string makeTemporaryName()
{
    std::random_device random;
    char name[80];
    std::snprintf(name, sizeof name, "%s%08x-%ld-%08x%08x", prefix.data(), processWorld(),
        static_cast<long>(::getpid()), random(), random());
    return name;
}

bool isTemporaryName(std::string_view name)
{
    return makerOf(name).has_value();
}

bool isMakerGone(std::string_view temporaryName)
{
    auto const maker = makerOf(temporaryName);
    if (!maker || maker->world == 0 || maker->world != processWorld())
        return false;
    return ::kill(maker->process, 0) != 0 && errno == ESRCH;
}

}
