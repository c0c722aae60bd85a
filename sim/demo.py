"""The program behind `./dev demo`: the real client against the simulated service. On a desktop it
opens the client and says what to type; without one, or with --headless, it starts a desktop of its
own, drives the client from outside and keeps a picture of every step."""
import contextlib
import math
import os
import shutil
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tests/e2e"))
from driver.client import Client  # noqa: E402
from driver.processes import Folder, wait_for  # noqa: E402
from driver.scene import BUILD, PROGRAMS, SIMULATOR, Scene  # noqa: E402
from driver.simulator import Simulator  # noqa: E402


def show_to_user():
    """On the user's own desktop, in settings of its own."""
    folder = Folder()
    try:
        environment = os.environ | {"XDG_CONFIG_HOME": str(folder.path / "config")}
        client = Client(PROGRAMS, folder.path, environment)
        service = Simulator(SIMULATOR, client.folder, environment)
        client.environment = environment | service.variables
        client.start()
        print("\nVeltaro is opening. Type one of these:\n\n"
              "    Customer ID   Username              Password        Logs in")
        for one in service.accounts():
            print(f"    {one['customer']:12}  {one['username']:20}  {one['password']:14}  {one['remark']}")
        print(f"\nCodes that were sent, and more to switch: {service.page}\n"
              "The demo ends when you quit the client (left bar: Quit, Quit Application).\n", flush=True)
        # A logout starts the client anew, so it is the folder that is watched, not one process.
        wait_for(client.pid, what="the client")
        wait_for(lambda: not client.pid(), math.inf)
        service.close()
    finally:
        folder.remove()


def tour(client, service):
    """The main job, each step with its name; a step fails when it does not see its outcome."""
    account, other = service.account(), service.account("otto")

    def code():
        return service.account("otto")["totp"]

    def page(name):
        return f"page {name.lower()}", lambda: (client.press(name), client.see_text(name))
    return [("client opened", lambda: (client.start(), client.see_button("Accept"))),
            ("privacy accepted", client.accept_privacy),
            ("customer found", lambda: client.enter_customer(account["customer"])),
            ("logged in", lambda: client.log_in(account["username"], account["password"])),
            ("connected", client.see_connected), ("rates above zero", client.see_traffic),
            page("Setting"), page("Log"), page("About"), ("page home", lambda: client.press("Home")),
            ("stopped", client.stop), ("page quit", lambda: client.press("Quit")),
            ("quit", client.quit), ("opened again", lambda: (client.start(), client.see_login_page())),
            ("authenticator wanted", lambda: (
                client.ask_for_login(other["username"], other["password"]), client.see_button("Next"))),
            ("its code wanted", lambda: client.press("Next")),
            ("logged in by its code", lambda: client.enter_authenticator_code(code())),
            ("recovery codes copied", lambda: client.press("Copy")),
            ("connected again", client.see_connected), ("diagnosis shown", client.diagnose),
            ("bundle received", lambda: wait_for(lambda: service.state()["bundle"]["files"])),
            ("quit again", client.quit),
            ("no rule broken", service.check)]


def keep_picture(scene, path):
    boxes = scene.client.boxes()
    if not boxes:
        return
    left, top, right, bottom = zip(*boxes)
    pictures = [None]

    def still():
        pictures.append(scene.desktop.picture((min(left), min(top), max(right), max(bottom))))
        return pictures[-1] == pictures[-2]
    # What was just changed has to reach the screen: the picture counts once it stands still. The
    # animated button never does, so a second is enough.
    with contextlib.suppress(AssertionError):
        wait_for(still, 1)
    pictures[-1].save(path)


def drive():
    folder = BUILD / "demo"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    scene = Scene()
    try:
        for number, (name, step) in enumerate(tour(scene.client, scene.service), 1):
            print(f"{name:24}", end="", flush=True)
            step()
            print("seen", flush=True)
            keep_picture(scene, folder / f"{number:02}-{name.replace(' ', '-')}.png")
        print(f"\nPictures of every step: {folder}")
    except AssertionError as error:
        sys.exit(f"NOT SEEN\n{error}")
    finally:
        scene.close()


if "--headless" in sys.argv or not {"DISPLAY", "WAYLAND_DISPLAY"} & os.environ.keys():
    drive()
else:
    show_to_user()
