"""What a connected session goes through: an end after which the program really starts anew, the tray,
and many connections in a row."""
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


def test_the_account_is_switched(client, service):
    before = client.pid()
    for button in ("Quit", "Switch Account", "Yes"):
        client.press(button)
    wait_for(lambda: client.pid() not in (0, before), 20, "another process")
    client.see_login_page()
    assert psutil.Process(client.pid()).cmdline()[1:] == ["-logout", "-byuser"]
    wait_for(lambda: asked(service, "signout") == 1, what="sign-out")
    wait_for(lambda: not client.setting("TOKEN"), what="forgotten token")
    assert asked(service, "disconnect") == 1
    assert not client.datapath()


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
