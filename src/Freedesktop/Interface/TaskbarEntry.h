#pragma once

class QWidget;

namespace marrowick {

/// Keeps a window that is about to be shown out of taskbars and pagers. Hiding the window undoes it.
void leaveOutOfTaskbars(QWidget& window);

}
