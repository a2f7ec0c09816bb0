#pragma once

#include <any>

namespace marrowick {

/// Marks a value that only the main thread touches: what a highlighted entry represents.
struct MainThreadOnlyBox {
    std::any value;
};

}
