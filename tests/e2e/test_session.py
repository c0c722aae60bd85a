"""What a connected session goes through: a datapath that dies, ends after which the program really
starts anew, the tray, and many connections in a row."""
import psutil
import pytest

from driver.processes import wait_for
from driver.tray import Tray


@pytest.fixture(scope="module")
def tray(scene):
    tray = Tray(scene.desktop)
    yield tray
    tray.close()


@pytest.fixture(autouse=True)
def connected(fair, tray, scene, service):
    scene.restore()
    service.command(clear=True, scenario={"connectReply": {"heartbeatInterval": 1}})
    scene.client.start()
    scene.client.see_connected()


def asked(service, action):
    return len(service.requests(f"/api/mobile/v2/{action}"))


def see_restart(client, before, arguments):
    """Waits for the login page of another process than `before`, started with these arguments."""
    wait_for(lambda: client.pid() not in (0, before), 20, "another process")
    client.see_login_page()
    assert psutil.Process(client.pid()).cmdline()[1:] == arguments
    wait_for(lambda: not client.setting("TOKEN"), what="forgotten token")


@pytest.mark.parametrize("situation, explanation, arguments, message", [
    ("Log out, forced", "The account alice@acme.example logged into your device has been forcibly "
     "logged out on Orchestrator.", ["-logout"], ""),
    ("Log out, no reason", None, ["-logout", "-invalidToken"], "6027 ")])
def test_the_service_ends_the_session(client, service, situation, explanation, arguments, message):
    before = client.pid()
    service.enter(situation)
    if explanation:
        client.see_text(explanation, 20)
        assert client.pid() == before
        client.press("Confirm")
    see_restart(client, before, arguments)
    client.see_text(message)
    wait_for(lambda: not client.datapath(), what="end of the datapath")
    assert client.setting("PASSWORD") == ""
    assert asked(service, "disconnect") == 0


def test_the_tray_opens_and_quits(client, service, tray):
    wait_for(lambda: tray.tool_tip() == "Veltaro\nConnected", what="tray icon")
    assert list(tray.menu()) == ["Open Veltaro", "Exit"]
    client.press("Close")
    wait_for(lambda: not client.windows(), what="hidden window")
    assert client.datapath()
    token = client.setting("TOKEN")
    tray.choose("Open Veltaro")
    client.see_connected()

    tray.choose("Exit")
    assert client.exit_code() == 0
    assert asked(service, "disconnect") == 1
    assert not client.datapath()
    assert client.setting("TOKEN") == token != ""


def test_connecting_and_stopping_leaves_nothing_behind(client):
    def cycle():
        client.stop()
        client.connect()
    cycle()
    process = psutil.Process(client.pid())
    descriptors, threads = process.num_fds(), process.num_threads()
    for _ in range(10):
        cycle()
    # A connection to the service or a resolver's thread may be idle or gone at either moment.
    idle = 4
    wait_for(lambda: process.num_fds() <= descriptors + idle, what="closed descriptors")
    wait_for(lambda: process.num_threads() <= threads + idle, what="ended threads")
