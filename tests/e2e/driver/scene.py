"""Everything a person would have: a desktop, the installed client, and a service to talk to."""
import os
from pathlib import Path

from .client import Client
from .desktop import Desktop
from .processes import Folder
from .simulator import Simulator

BUILD = Path(os.environ.get("VELTARO_BUILD", "build/dev")).resolve()
SIMULATOR = BUILD / "sim/veltaro-sim"
PROGRAMS = [BUILD / "src/veltaro", *(BUILD / "sim/datapath" / name for name in (
    "tarvelin", "tarvelin_datapath", "tarvelin_agent", "dispatch"))]


class Scene:
    """Started once and used for several runs of the client."""

    def __init__(self):
        self._folder = Folder()
        folder = self._folder.path
        self.desktop = Desktop(folder)
        self.desktop.join()
        self.client = Client(PROGRAMS, folder, self.desktop.environment, self.desktop)
        self.service = Simulator(SIMULATOR, self.client.folder, self.desktop.environment)
        self.client.environment = self.desktop.environment | self.service.variables
        self._saved = None  # the settings after a login

    def log_in_by_hand(self):
        """The way of a new user, with "Auto Login" ticked, until the connection stands."""
        account = self.service.account()
        self.client.settings_file.unlink(missing_ok=True)
        self.client.start()
        self.client.accept_privacy()
        self.client.enter_customer(account["customer"])
        self.client.tick_auto_login()
        self.client.log_in(account["username"], account["password"])
        self.client.see_connected()
        self._saved = self.client.settings_file.read_bytes()

    def restore(self):
        """Back to a new log and the settings of a login by hand, for a client that logs in by
        itself."""
        if not self._saved or not self.client.setting("TOKEN"):  # never in, or signed out
            self.log_in_by_hand()
        self.client.kill_everything()
        (self.client.folder / "ui.log").unlink(missing_ok=True)
        self.client.settings_file.write_bytes(self._saved)

    def start_remembered(self):
        self.restore()
        self.client.start()
        self.client.see_connected()

    def close(self):
        self.client.kill_everything()
        self.service.close()
        self.desktop.close()
        self._folder.remove()
