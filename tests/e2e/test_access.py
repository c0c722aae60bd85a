"""A whole session without a pointer: once by the keyboard alone, once by what an assistive tool is
offered alone. Both log in with an authenticator and end with a diagnosis."""
import contextlib

import pytest
from gi.repository import Atspi

from driver.client import _BUTTONS, _FIELDS
from driver.processes import wait_for

_STATE = Atspi.StateType


class Keyboard:
    """Goes from one control to the next with Tab, as far as it takes."""

    def __init__(self, client, keys):
        self._client, self._keys = client, keys

    def _focused(self):
        return next((node for node, _ in self._client.nodes()
                     if node.get_state_set().contains(_STATE.FOCUSED)), None)

    def _where(self):
        node = self._focused()
        return node and (node.get_role(), node.get_name(), node.get_description())

    def reach(self, name):
        for _ in range(40):
            before = self._where()
            if before and name in before:
                return
            self._keys("key", "Tab")
            with contextlib.suppress(AssertionError):  # a second link in one label tells nothing
                wait_for(lambda: self._where() != before, 1)
        raise AssertionError(f"Tab does not lead to '{name}'\n{self._client.dump()}")

    def press(self, name):
        self._client.see_button(name)
        self.reach(name)
        self._keys("key", "space")

    def fill(self, name, text):
        self._client.see(_FIELDS, name)
        self.reach(name)
        self._keys("type", text)

    def enter_code(self, code):
        self._client.see_button("Verify")
        self._keys("type", code)
        self._keys("key", "Return")


class Assistant:
    """Uses the actions and texts that controls offer."""

    def __init__(self, client, _keys):
        self._client = client

    def press(self, name):
        self._client.press(name)

    def fill(self, name, text):
        Atspi.EditableText.set_text_contents(self._client.see(_FIELDS, name), text)

    def enter_code(self, code):
        self.fill("Authentication code", code)
        self.press("Verify")


def state(client, name):
    return client.see(_BUTTONS, name).get_state_set()


@pytest.mark.parametrize("way", [Keyboard, Assistant])
def test_a_session_without_a_pointer(scene, client, service, way):
    account = service.account("otto")
    service.command(account={"username": account["username"], "factor": "authenticator"})
    client.settings_file.unlink(missing_ok=True)
    user = way(client, scene.desktop.keys)
    client.start()
    user.press("Accept")
    user.fill("Customer ID", account["customer"])
    user.press("Continue")
    user.fill("Username", account["username"])
    user.fill("Password", account["password"])
    user.press("Login")
    user.press("Next")
    user.enter_code(service.account("otto")["totp"])
    user.press("Copy")
    client.see_connected()
    assert state(client, "Home").contains(_STATE.CHECKED)

    user.press("Setting")
    assert not state(client, "Network Diagnosis").contains(_STATE.EXPANDED)
    user.press("Network Diagnosis")
    wait_for(lambda: state(client, "Network Diagnosis").contains(_STATE.EXPANDED), what="section")
    user.press("Start the network diagnosis")
    client.see_text("Network Normal Orchestrator Connected", 30)
    user.press("Log")
    rows = client.see({Atspi.Role.LIST}, "Log")
    wait_for(lambda: "Report upload results" in [rows.get_child_at_index(i).get_name()
                                                 for i in range(rows.get_child_count())], what="row")
    user.press("Quit")
    user.press("Quit Application")
    user.press("Yes")
    assert client.exit_code() == 0
