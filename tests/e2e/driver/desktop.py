"""A desktop session without a screen: an X server, a session bus, a screen reader's switches."""
import os
import subprocess

from gi.repository import Gio, GLib
from PIL import ImageGrab

from .processes import start

# Sanitizer and coverage settings of the caller reach the programs under test.
_KEPT = ("USER", "TZ", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS",
         "GCOV_PREFIX")


class Desktop:
    """Nothing of it touches the user's own session. It has no window manager: windows stay where
    they are put, and the one clicked last gets the keys. `environment` is what a program needs to
    run on it, in English, with a home of its own in `folder`."""

    def __init__(self, folder, screen_reader=True):
        for name in ("bin", "config", "runtime", "tmp"):
            (folder / name).mkdir(mode=0o700)
        ping = folder / "bin/ping"  # nobody outside is asked
        ping.write_text("#!/bin/sh\necho PING $3\n")
        ping.chmod(0o700)
        self.environment = {name: os.environ[name] for name in _KEPT if name in os.environ} | {
            "PATH": f"{folder}/bin:{os.environ['PATH']}", "HOME": str(folder), "TMPDIR": f"{folder}/tmp", "LANG": "C.UTF-8",
            "XDG_CONFIG_HOME": f"{folder}/config", "XDG_RUNTIME_DIR": f"{folder}/runtime",
            "GSETTINGS_BACKEND": "memory", "QT_QPA_PLATFORM": "xcb"}
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.DEVNULL,
                 "text": True, "env": self.environment}
        # Started without a display, the accessibility bus leaves its address on no root window:
        # programs have to ask the session bus, as on Wayland. It ends with what it reads from here.
        self._bus = subprocess.Popen(["dbus-run-session", "--", "sh", "-c",
                                      'echo "$DBUS_SESSION_BUS_ADDRESS" && exec cat'], **pipes)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._bus.stdout.readline().strip()
        # Without -noreset the server begins anew with its last client, while the next one comes.
        self._server = start(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-dpi", "96",
                              "-nolisten", "tcp", "-noreset", "-wr"], **pipes)
        self.environment["DISPLAY"] = ":" + self._server.stdout.readline().strip()
        assert self.environment["DISPLAY"] != ":", "Xvfb did not start"
        self.set_screen_reader(screen_reader)

    def connection(self):
        """A new connection to the session bus."""
        flags = Gio.DBusConnectionFlags
        return Gio.DBusConnection.new_for_address_sync(
            self.environment["DBUS_SESSION_BUS_ADDRESS"],
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)

    def set_screen_reader(self, on):
        """Programs bring their accessible tree up when they find both of these set."""
        connection = self.connection()
        for name in ("IsEnabled", "ScreenReaderEnabled"):
            value = GLib.Variant("(ssv)", ("org.a11y.Status", name, GLib.Variant("b", on)))
            connection.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties",
                                 "Set", value, None, Gio.DBusCallFlags.NONE, 10000, None)
        connection.close_sync()

    def join(self):
        """Makes this process a program of this desktop, before it first looks at others."""
        os.environ.update({name: self.environment[name]
                           for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})
        os.environ.pop("AT_SPI_BUS_ADDRESS", None)

    def keys(self, *arguments):
        """Real key and pointer events, in the words of xdotool."""
        subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=True)

    def picture(self, box):
        """What the screen shows within (left, top, right, bottom)."""
        return ImageGrab.grab(box, xdisplay=self.environment["DISPLAY"])

    def close(self):
        self._bus.stdin.close()
        self._bus.wait()
        self._server.terminate()
        self._server.wait()
