"""Waiting for facts, always with a deadline."""

import os
import time

from gi.repository import GLib

# A loaded machine or a build with sanitizers may be slow; a deadline only says when to give up.
DEADLINE = float(os.environ.get("MARROWICK_DESKTOP_DEADLINE", "15"))


def serve():
    """Lets the services of the test itself (a file manager's, for example) answer what has arrived."""
    context = GLib.MainContext.default()
    while context.pending():
        context.iteration(False)


def wait_for(condition, what, deadline=None):
    """Returns the first true value of `condition()`; fails with `what` when the deadline passes before."""
    end = time.monotonic() + (DEADLINE if deadline is None else deadline)
    while True:
        serve()
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("never came: " + (what() if callable(what) else what))
        time.sleep(0.005)


def wait_until_steady(read, what, span=0.1):
    """Returns the value of `read()` when it is true and has stayed the same for `span` seconds."""
    state = {"value": None, "since": 0.0}

    def steady():
        value = read()
        now = time.monotonic()
        if value != state["value"] or not value:
            state.update(value=value, since=now)
        return value if value and now - state["since"] >= span else None

    return wait_for(steady, what)


def holds_for(condition, seconds, what):
    """Fails when `condition()` is false at any moment of the given span."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        serve()
        if not condition():
            raise AssertionError("did not hold: " + what)
        time.sleep(0.01)
