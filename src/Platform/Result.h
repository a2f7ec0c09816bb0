#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace marrowick {

/// The kinds of failure that callers tell apart; everything else is `other`.
enum class ErrorKind {
    notFound,
    alreadyExists,
    noPermission,
    notRegularFile,
    tooLarge,
    intoItself,
    other,
};

/// Why something that was asked for did not happen.
struct Error {
    ErrorKind kind = ErrorKind::other;
    /// One sentence for people, in UTF-8.
    std::string message;
};

/// A value, or the error that stands in its place.
template<typename T>
class [[nodiscard]] Result {
public:
    Result(T value)
        : content_(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Error error)
        : content_(std::in_place_index<1>, std::move(error))
    {
    }

    bool hasValue() const { return content_.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    /// Only when `hasValue()`.
    T const& value() const& { return *std::get_if<0>(&content_); }
    T& value() & { return *std::get_if<0>(&content_); }
    T&& value() && { return std::move(*std::get_if<0>(&content_)); }

    /// Only when not `hasValue()`.
    Error const& error() const { return *std::get_if<1>(&content_); }

private:
    std::variant<T, Error> content_;
};

/// The outcome of an operation that yields nothing but its success.
template<>
class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error error)
        : error_(std::move(error))
    {
    }

    bool hasValue() const { return !error_; }
    explicit operator bool() const { return hasValue(); }
    Error const& error() const { return *error_; }

private:
    std::optional<Error> error_;
};

}
