#pragma once

#include "Platform/DefaultsStore.h"
#include "Platform/Log.h"

#include <memory>

namespace marrowick {

/// The user's settings in the desktop's settings database, as plain values below "/org/marrowick/Marrowick/": there is no
/// schema, so each value keeps the type it was written with, by whom ever. Reading needs no session bus. A value that
/// could not be written is gone, which the log says for the first one.
class FreedesktopDefaultsStore final : public DefaultsStore {
public:
    explicit FreedesktopDefaultsStore(Log& log);
    ~FreedesktopDefaultsStore() override;

    std::optional<DefaultsValue> object(std::string_view key) override;
    void set(std::string_view key, DefaultsValue const& value) override;

private:
    struct Database;

    void reportOnce(std::string_view key, std::string_view reason);

    Log& log_;
    std::unique_ptr<Database> database_;
    bool hasReported_ = false;
};

}
