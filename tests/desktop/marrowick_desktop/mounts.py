"""Volumes that come and go, seen by this test and what it starts alone."""

import ctypes
import os
import pathlib

CLONE_NEWNS = 0x20000
MS_REC = 0x4000
MS_PRIVATE = 0x40000
MNT_DETACH = 2


class OwnMounts:
    """Where removable volumes are mounted, empty at the beginning."""

    place = pathlib.Path("/media")

    def __init__(self):
        """Fails with OSError where the system allows no mounts of one's own."""
        self._library = ctypes.CDLL(None, use_errno=True)
        self._check(self._library.unshare(CLONE_NEWNS))
        self._mount("none", "/", None, MS_REC | MS_PRIVATE)
        self._mount("memory", self.place, "tmpfs")

    def _check(self, outcome):
        if outcome != 0:
            raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))

    def _mount(self, source, target, kind, flags=0, options=None):
        self._check(self._library.mount(os.fsencode(source), os.fsencode(target), kind and kind.encode(), flags,
                                        options and options.encode()))

    def mount(self, name):
        """An empty volume, of a kind that the system does not use for itself."""
        target = self.place / name
        target.mkdir()
        self._mount("stick", target, "ramfs")
        return target

    def mount_silent(self, name):
        """A volume whose server never answers: what asks it for anything waits until the open file returned with it
        is closed."""
        target = self.place / name
        target.mkdir()
        server = os.open("/dev/fuse", os.O_RDWR | os.O_CLOEXEC)
        self._mount("silent", target, "fuse", 0, f"fd={server},rootmode=40000,user_id=0,group_id=0")
        return target, server

    def unmount(self, target):
        self._check(self._library.umount2(os.fsencode(target), MNT_DETACH))
        target.rmdir()
