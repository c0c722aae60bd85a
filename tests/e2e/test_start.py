"""How the client comes up: for a new user, beside another copy, after a crash, and in a folder where
somebody has planted things."""
import ctypes
import json
import os
import signal
import stat
import subprocess

import pytest

from driver.processes import wait_for

PLANTED = ["platforms/p.so", "platformthemes/p.so", "platforminputcontexts/p.so", "bearer/p.so",
           "imageformats/p.so", "iconengines/p.so", "styles/p.so", "xcbglintegrations/p.so",
           "qt.conf", "qtlogging.ini"]


def test_a_new_user_connects_stops_and_quits(scene, client, service):
    scene.log_in_by_hand()
    client.see_traffic()
    assert client.datapath()
    assert client.setting("TOKEN") in [session["token"] for session in service.state()["clients"]]
    assert client.setting("PASSWORD") == "*" * len(service.account()["password"])
    assert stat.S_IMODE(client.settings_file.stat().st_mode) == 0o600

    client.stop()
    notice, = service.requests("/api/mobile/v2/disconnect")
    assert json.loads(notice["body"])["mobileActionLogType"] == 1
    wait_for(lambda: not client.datapath(), what="end of the datapath")
    client.connect()
    assert client.datapath()
    client.quit()
    assert client.exit_code() == 0
    assert not client.datapath()


def test_a_second_copy_leaves_the_first_alone(scene, client):
    scene.start_remembered()
    first, settings, log = client.pid(), client.settings_file.read_bytes(), client.log()
    assert client.run_second_copy() == 0
    assert client.pid() == first
    assert client.settings_file.read_bytes() == settings
    assert client.log().startswith(log)
    assert client.log().count(" login successful") == 1
    # The agent still reaches the first copy: it can stop and connect again.
    client.stop()
    client.connect()
    client.press("Minimise")
    assert client.run_second_copy() == 0
    client.see_connected()  # shown again
    client.quit()


def test_questions_are_answered_without_a_display(client):
    for question, answer in ("--version", b"Veltaro 6."), ("--help", b"Usage: "):
        command = [client.folder / "veltaro", "-logout", question]
        assert subprocess.run(command, env={}, capture_output=True).stdout.startswith(answer)
    assert not (client.folder / "UI_SOCKET").exists()


def test_a_crash_does_not_lock_out(scene, client):
    scene.start_remembered()
    client.kill()
    assert (client.folder / "UI_SOCKET").is_socket()
    assert client.datapath()
    # The datapath outlived the client; a new client takes over all the same.
    client.start()
    client.see_connected()
    assert client.run_second_copy() == 0
    # The end of a desktop session is an end in order.
    os.kill(client.pid(), signal.SIGTERM)
    assert client.exit_code() == 0
    assert not client.datapath()
    assert not (client.folder / "UI_SOCKET").exists()


def test_nothing_planted_in_its_folder_is_used(scene, client):
    scene.restore()
    opened = watch_opening([plant(client.folder / name) for name in PLANTED])

    client.start()
    client.see_connected()
    client.quit()
    with pytest.raises(BlockingIOError):
        os.read(opened, 4096)
    os.close(opened)


def plant(file):
    """What to watch: the file itself, or its folder where it has one to itself."""
    file.parent.mkdir(exist_ok=True)
    file.touch()
    return file.parent if file.suffix == ".so" else file


def watch_opening(paths):
    """A descriptor that can be read once one of them, or something in it, is opened."""
    c = ctypes.CDLL(None, use_errno=True)
    opened = c.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
    in_open = 0x20
    assert all(c.inotify_add_watch(opened, os.fsencode(path), in_open) >= 0 for path in paths)
    return opened
