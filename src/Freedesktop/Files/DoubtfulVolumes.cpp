#include "Freedesktop/Files/DoubtfulVolumes.h"

#include "Freedesktop/Files/KernelTick.h"
#include "Freedesktop/Files/MountChanges.h"
#include "Freedesktop/Files/RegularFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <utility>
#include <variant>

namespace marrowick {

namespace {

constexpr std::size_t largestTable = 64 << 20;

bool isDoubtful(std::string_view fileSystem)
{
    static constexpr std::array<std::string_view, 22> types { "9p", "afs", "autofs", "beegfs", "ceph", "cifs", "coda",
        "davfs", "fuse", "fuseblk", "gfs2", "gpfs", "lustre", "ncpfs", "nfs", "nfs4", "ocfs2", "pvfs2", "smb3", "smbfs",
        "vboxsf", "virtiofs" };
    return std::find(types.begin(), types.end(), fileSystem) != types.end() || fileSystem.starts_with("fuse.");
}

/// Takes the first of the fields, which single spaces separate.
std::string_view takeField(std::string_view& line)
{
    auto const field = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(field.size() + 1, line.size()));
    return field;
}

bool isOctalDigit(char character)
{
    return character >= '0' && character <= '7';
}

/// The bytes that the table cannot hold as they are stand in it as a backslash and three octal digits.
std::string unescaped(std::string_view field)
{
    std::string text;
    text.reserve(field.size());
    for (std::size_t position = 0; position < field.size(); ++position) {
        auto const digits = field.substr(position).substr(0, 4);
        if (digits.size() == 4 && digits[0] == '\\' && std::all_of(digits.begin() + 1, digits.end(), isOctalDigit)) {
            text += static_cast<char>((digits[1] - '0') * 64 + (digits[2] - '0') * 8 + (digits[3] - '0'));
            position += 3;
        } else {
            text += field[position];
        }
    }
    return text;
}

struct MountLine {
    std::string path;
    std::string_view fileSystem;
};

/// Absent for what is no line of the table.
std::optional<MountLine> parseLine(std::string_view line)
{
    constexpr int fieldsBeforePath = 4;
    for (int field = 0; field < fieldsBeforePath; ++field)
        takeField(line);
    auto const path = takeField(line);
    // Between the options and the file system's type stand any number of fields, which a lone hyphen ends.
    while (!line.empty() && takeField(line) != "-") { }
    auto const fileSystem = takeField(line);
    if (!path.starts_with('/') || fileSystem.empty())
        return std::nullopt;
    return MountLine { unescaped(path), fileSystem };
}

/// The system's volumes, kept until its table changes.
class CurrentVolumes {
public:
    std::shared_ptr<VolumePaths const> get()
    {
        std::scoped_lock const lock(mutex_);
        if (tick_.hasCome() && (changes_.haveCome() || !isRead_))
            read();
        return volumes_;
    }

private:
    void read()
    {
        volumes_.reset();
        isRead_ = true;
        auto const table = readRegularFile(AT_FDCWD, mountTableFile, largestTable);
        if (auto const* text = std::get_if<std::string>(&table)) {
            if (auto paths = doubtfulVolumes(*text); !paths.empty())
                volumes_ = std::make_shared<VolumePaths const>(std::move(paths));
        }
    }

    std::mutex mutex_;
    MountChanges changes_;
    KernelTick tick_;
    bool isRead_ = false;
    std::shared_ptr<VolumePaths const> volumes_;
};

}

VolumePaths doubtfulVolumes(std::string_view mountTable)
{
    VolumePaths volumes;
    while (!mountTable.empty()) {
        auto const text = mountTable.substr(0, mountTable.find('\n'));
        mountTable.remove_prefix(std::min(text.size() + 1, mountTable.size()));
        auto line = parseLine(text);
        if (!line || line->path == "/")
            continue;
        std::erase(volumes, line->path);
        if (isDoubtful(line->fileSystem))
            volumes.push_back(std::move(line->path));
    }
    return volumes;
}

std::shared_ptr<VolumePaths const> currentDoubtfulVolumes()
{
    static CurrentVolumes volumes;
    return volumes.get();
}

}
