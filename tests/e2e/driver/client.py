"""The installed client: its folder, its process and its windows as an assistive tool sees them."""
import contextlib
import os
import re
import shutil
import subprocess

import gi
import psutil

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from .processes import below, kill_below, start, wait_for  # noqa: E402

_R = Atspi.Role
_BUTTONS = {_R.PUSH_BUTTON, _R.TOGGLE_BUTTON, _R.RADIO_BUTTON, _R.CHECK_BOX}
_FIELDS = {_R.TEXT, _R.PASSWORD_TEXT, _R.ENTRY}
_ANSWER_MS = 2000


class Client:
    """A person in front of the client: reads what the windows show and uses what they offer. Every
    step waits for what it needs and fails when it does not see its outcome."""

    def __init__(self, built, folder, environment, desktop=None):
        """Puts the programs `built` side by side into `folder`, as an installation has them."""
        self.folder = folder / "program"
        self.folder.mkdir()
        for program in built:
            try:
                os.link(program, self.folder / program.name)
            except OSError:  # another file system
                shutil.copy2(program, self.folder)
        self.environment = environment
        self.settings_file = folder / "config/Veltaro/setting.conf"
        self._desktop = desktop
        self._process = None

    # The process

    def start(self, *arguments):
        self._process = start([self.folder / "veltaro", *arguments], env=self.environment)

    def run_second_copy(self):
        """Its exit code."""
        return subprocess.run([self.folder / "veltaro"], env=self.environment, timeout=10).returncode

    def pid(self):
        """Of what runs now, also when it is a copy that the client started in its own place; 0 for
        none. A fork of the client that is about to become another program does not count."""
        copies = {pid for pid, name in below(self.folder).items() if name == "veltaro"}
        for pid in copies:
            with contextlib.suppress(psutil.NoSuchProcess):
                if psutil.Process(pid).ppid() not in copies:
                    return pid
        return 0

    def exit_code(self):
        return self._process.wait(10)

    def kill(self):
        """As a crash does."""
        self._process.kill()
        self._process.wait()

    def kill_everything(self):
        kill_below(self.folder)
        if self._process:
            self._process.wait()

    def datapath(self):
        """The process numbers of the datapath's programs."""
        return {pid for pid, name in below(self.folder).items() if name != "veltaro"}

    # Its files

    def log(self):
        file = self.folder / "ui.log"
        return file.read_text() if file.exists() else ""

    def setting(self, key):
        found = re.search(rf"^{key}=(.*)$", self.settings_file.read_text(), re.MULTILINE)
        return found[1] if found else ""

    # Its windows

    def windows(self):
        """The windows that show now, in order."""
        root = Atspi.get_desktop(0)
        Atspi.set_timeout(_ANSWER_MS, _ANSWER_MS)
        root.clear_cache()
        pid = self.pid()
        for i in range(root.get_child_count()):
            program = root.get_child_at_index(i)
            if program and program.get_process_id() == pid:
                program.set_cache_mask(Atspi.Cache.NONE)
                return _children(program)
        return []

    def boxes(self):
        """Left, top, right and bottom of each window on the screen."""
        boxes = [window.get_extents(Atspi.CoordType.SCREEN) for window in self.windows()]
        return [(box.x, box.y, box.x + box.width, box.y + box.height) for box in boxes]

    def nodes(self):
        """Everything that shows now but the entries of lists, each with its depth."""
        def walk(nodes, depth):
            for node in nodes:
                yield node, depth
                if node.get_role() != _R.LIST:
                    yield from walk(_children(node), depth + 1)
        return walk(self.windows(), 0)

    def find(self, roles, name):
        """The first of these roles with this name, or with this description; None without one."""
        return next((node for node, _ in self.nodes()
                     if node.get_role() in roles
                     and name in (node.get_name(), node.get_description())), None)

    def dump(self):
        """A listing of everything that shows, and the log."""
        lines = []
        try:
            lines += [f"{'  ' * depth}{node.get_role_name()} '{node.get_name()}' "
                      f"({node.get_description()})" for node, depth in self.nodes()]
        except GLib.Error as error:
            lines.append(f"no answer: {error}")
        return "\n".join([*lines, "ui.log:", self.log()])

    def see(self, roles, name, seconds=10):
        return wait_for(lambda: self.find(roles, name), seconds, f"'{name}'", self.dump)

    def see_button(self, name, seconds=10):
        return self.see(_BUTTONS, name, seconds)

    def see_text(self, part, seconds=10):
        """Waits until a label, such as the top prompt's, contains it. Line breaks do not count."""
        def seen():
            labels = [node.get_name() for node, _ in self.nodes() if node.get_role() == _R.LABEL]
            return part in " ".join(" ".join(labels).split())
        wait_for(seen, seconds, f"'{part}'", self.dump)

    def press(self, name):
        """Presses a button once it shows and is enabled."""
        def pressed():
            button = self.find(_BUTTONS, name)
            if not button or not button.get_state_set().contains(Atspi.StateType.ENABLED):
                return False
            return button.do_action(0)
        wait_for(pressed, 10, f"button '{name}'", self.dump)

    def type(self, field, text):
        """Clicks into a field, empties it and types, as a person would."""
        node = self.see(_FIELDS, field)
        self._click(node)
        wait_for(lambda: node.get_state_set().contains(Atspi.StateType.FOCUSED), what=field)
        self._desktop.keys("key", "ctrl+a", "Delete")
        wait_for(lambda: node.get_character_count() == 0, what=f"{field} empty")
        self._desktop.keys("type", "--delay", "1", text)
        # A password field tells no more than its length.
        masked = node.get_role() == _R.PASSWORD_TEXT
        wait_for(lambda: node.get_character_count() == len(text)
                 and (masked or Atspi.Text.get_text(node, 0, -1) == text), what=f"{field} filled")

    def _click(self, node):
        box = node.get_extents(Atspi.CoordType.SCREEN)
        self._desktop.keys("mousemove", box.x + box.width // 2, box.y + box.height // 2, "click", "1",
                           "mousemove", "0", "0")

    # Its steps

    def accept_privacy(self):
        self.press("Accept")
        wait_for(lambda: not self.find(_BUTTONS, "Accept"), what="agreement gone", detail=self.dump)

    def enter_customer(self, customer):
        self.type("Customer ID", customer)
        self.press("Continue")
        self.see_login_page()
        self.see_text(customer)

    def see_login_page(self):
        self.see(_FIELDS, "Username")

    def tick_auto_login(self):
        box = self.see({_R.CHECK_BOX}, "Auto Login")
        if not box.get_state_set().contains(Atspi.StateType.CHECKED):
            self._click(box)
            wait_for(lambda: box.get_state_set().contains(Atspi.StateType.CHECKED), what="tick")

    def ask_for_login(self, username, password):
        self.type("Username", username)
        self.type("Password", password)
        self.press("Login")

    def log_in(self, username, password):
        self.ask_for_login(username, password)
        self.see_button("Home")

    def enter_authenticator_code(self, code):
        self._click(self.see({_R.LABEL}, "Digit 1 of 6"))
        self._desktop.keys("type", code)
        self.press("Verify")
        self.see_button("Home")

    def see_connected(self):
        self.see_button("Stop", 20)

    def rates(self):
        """What is sent and received each second; 0 while nothing is shown."""
        labels = [self.find({_R.LABEL}, name) for name in ("Send rate", "Receive rate")]
        numbers = [re.search(r"\d+(\.\d+)?", label.get_name()) if label else None for label in labels]
        return [float(number[0]) if number else 0 for number in numbers]

    def see_traffic(self):
        wait_for(lambda: all(self.rates()), 20, "rates above zero", self.dump)

    def stop(self):
        self.press("Stop")
        self.press("Yes")
        self.see_button("Connect")

    def connect(self):
        self.press("Connect")
        self.see_connected()

    def diagnose(self):
        for button in ("Setting", "Network Diagnosis", "Start the network diagnosis"):
            self.press(button)
        self.see_text("Network Normal Orchestrator Connected", 30)

    def quit(self):
        """Leaves by the quit page and confirms."""
        for button in ("Quit", "Quit Application", "Yes"):
            self.press(button)
        wait_for(lambda: not self.pid(), what="the end", detail=self.dump)


def _children(node):
    children = (node.get_child_at_index(i) for i in range(node.get_child_count()))
    return [child for child in children
            if child and child.get_state_set().contains(Atspi.StateType.SHOWING)]
