#pragma once

namespace marrowick {

/// Makes menus readable to accessibility clients: every open one is a child of the application, outermost first, with
/// its entries below it. The toolkit's own way leaves them out, and knows no submenu before it has been open.
void installMenuAccessibility();

}
