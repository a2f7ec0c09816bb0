"""Drives the program on a desktop of its own: clicks its icon, reads its menus, records what it starts."""

import gi

gi.require_version("Gio", "2.0")

from .cases import ENDING, GENERATED, DesktopCase, ExchangeCase, FinderCase, run  # noqa: E402,F401
from .companions import CompanionCase  # noqa: E402,F401
from .desktop import Window, empty, fill  # noqa: E402,F401
from .exchange import Exchange, node, written  # noqa: E402,F401
from .file_manager import FileManager, Shown  # noqa: E402,F401
from .file_managers import Caja, Nautilus, Nemo, Thunar, is_built  # noqa: E402,F401
from .folders import FolderReads  # noqa: E402,F401
from .hosts import LxqtPanel, Trayer, XfcePanel, watcher_property  # noqa: E402,F401
from .menus import SEPARATOR  # noqa: E402,F401
from .processes import Marrowick, Process  # noqa: E402,F401
from .mounts import OwnMounts  # noqa: E402,F401
from .recorders import FileManagerService, RecordingScripts  # noqa: E402,F401
from .screen import Area, centre  # noqa: E402,F401
from .submenus import SubmenuCase  # noqa: E402,F401
from .waiting import holds_for, wait_for, wait_until_steady  # noqa: E402,F401
