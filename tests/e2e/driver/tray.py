"""The part of a desktop that holds tray icons: a StatusNotifierItem watcher and host on a session
bus (the freedesktop.org draft of that name), whose last guest's menu can be used."""
import threading

from gi.repository import Gio, GLib

_NAME = "org.kde.StatusNotifierWatcher"
_INTERFACE = f"""<node><interface name="{_NAME}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
</interface></node>"""


class Tray:
    """Answers in a thread of its own: programs wait for it when they start."""

    def __init__(self, desktop):
        self._items = []
        self._connection = desktop.connection()
        self._loop = GLib.MainLoop(GLib.MainContext())
        up = threading.Event()
        self._thread = threading.Thread(target=self._serve, args=(up,), daemon=True)
        self._thread.start()
        assert up.wait(10)

    def _serve(self, up):
        self._loop.get_context().push_thread_default()
        self._connection.register_object(
            "/StatusNotifierWatcher", Gio.DBusNodeInfo.new_for_xml(_INTERFACE).interfaces[0],
            self._registered, self._property, None)
        self._call("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
                   GLib.Variant("(su)", (_NAME, 0)))
        up.set()
        self._loop.run()
        self._connection.close_sync()  # without its name on the bus nobody waits for it

    def _registered(self, _connection, _sender, _path, _interface, _method, arguments, invocation):
        self._items += arguments.unpack()
        invocation.return_value(None)

    def _property(self, _connection, _sender, _path, _interface, _name):
        return GLib.Variant("b", True)

    def _call(self, service, path, interface, method, arguments):
        return self._connection.call_sync(service, path, interface, method, arguments, None,
                                          Gio.DBusCallFlags.NONE, 2000, None).unpack()

    def tool_tip(self):
        """The tool tip of the icon that registered last; nothing while there is none."""
        if not self._items:
            return None
        (_icon, _pictures, title, _text), = self._call(
            self._items[-1], "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
            GLib.Variant("(ss)", ("org.kde.StatusNotifierItem", "ToolTip")))
        return title

    def menu(self):
        """The texts of its menu, each with its number there."""
        _revision, (_root, _properties, children) = self._call(
            self._items[-1], "/MenuBar", "com.canonical.dbusmenu", "GetLayout",
            GLib.Variant("(iias)", (0, -1, [])))
        return {properties["label"]: number for number, properties, _ in children
                if "label" in properties}

    def choose(self, text):
        event = (self.menu()[text], "clicked", GLib.Variant("s", ""), 0)
        self._call(self._items[-1], "/MenuBar", "com.canonical.dbusmenu", "Event",
                   GLib.Variant("(isvu)", event))

    def close(self):
        self._loop.quit()
        self._thread.join()
