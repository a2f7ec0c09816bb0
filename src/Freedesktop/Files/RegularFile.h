#pragma once

#include <cstddef>
#include <string>
#include <variant>

namespace marrowick {

/// Why a file was not read.
enum class ReadFailure {
    /// The system refused; its error number goes with it.
    system,
    notRegularFile,
    tooLarge,
};

struct ReadError {
    ReadFailure failure;
    int number = 0;
};

enum class Links {
    followed,
    /// A link is no regular file.
    refused,
};

/// The content of the regular file at `path` (seen from `directory`, or AT_FDCWD) when it holds at most `limit` bytes.
/// Everything that is no regular file is left alone: opening a FIFO would wake its writer, opening a device may act on it.
std::variant<std::string, ReadError> readRegularFile(
    int directory, char const* path, std::size_t limit, Links links = Links::followed);

/// At most the first `count` bytes of the regular file at `path`, by the same rules; links are followed.
std::variant<std::string, ReadError> readBeginningOfRegularFile(int directory, char const* path, std::size_t count);

}
