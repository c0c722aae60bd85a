"""The chapters of `./dev bench` that look at the whole program from outside. Arguments choose
chapters by name; none means all."""
import os
import select
import subprocess
import sys
import time
from pathlib import Path
from statistics import median

import psutil
from Xlib import X
from Xlib.display import Display

sys.path.insert(0, str(Path(__file__).parents[1] / "tests/e2e"))
from driver.processes import wait_for  # noqa: E402
from driver.scene import BUILD, Scene  # noqa: E402

BARE_DIALOG = BUILD / "bench/veltaro-baredialog"


def report(what, value, unit, floor=None, aim=""):
    line = f"{what:46}{value:11.2f} {unit:10}"
    if floor is not None:
        line += f"floor {floor:11.2f}"
        if floor > 0:
            line += f"  x {value / floor:5.2f}"
    print(line + (f"   (aim: {aim})" if aim else ""), flush=True)


def megabytes(process):
    return process.memory_info().rss / 2 ** 20


def await_rest(process):
    """Waits until it has used no processor time for a while."""
    looks = [object()]

    def rests():
        looks.append(process.cpu_times())
        return len(set(looks[-15:])) == 1 and len(looks) > 15
    wait_for(rests, what="a program at rest")


def ticks_over(process, seconds):
    """The processor time, in clock ticks, that it uses in `seconds` once it has come to rest."""
    await_rest(process)
    before = process.cpu_times()
    psutil.wait_procs([process], timeout=seconds)
    after = process.cpu_times()
    return (after.user + after.system - before.user - before.system) * os.sysconf("SC_CLK_TCK")


def first_window(program, environment):
    """Milliseconds from the start of the program until the X server shows a window of some size,
    and the megabytes that it then holds. Only the server is asked, so that all are measured alike."""
    server = Display(environment["DISPLAY"])
    server.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
    server.sync()
    begin = time.perf_counter()
    process = psutil.Popen([program], env=environment)
    while True:
        if not server.pending_events() and not select.select([server], [], [], 10)[0]:
            raise AssertionError(f"{program} shows no window")
        while server.pending_events():
            event = server.next_event()
            if event.type == X.MapNotify:
                size = event.window.get_geometry()
                if size.width >= 200 and size.height >= 100:
                    needed = (time.perf_counter() - begin) * 1000
                    await_rest(process)
                    held = megabytes(process)
                    process.kill()
                    process.wait()
                    server.close()
                    return needed, held


def bench_start(scene):
    # No assistive technology: the user's usual case, and the same for both programs.
    scene.desktop.set_screen_reader(False)
    client = scene.client
    # The privacy agreement is behind us and nothing is saved: the login window waits.
    client.settings_file.parent.mkdir(parents=True, exist_ok=True)
    client.settings_file.write_text("[General]\nAGREE_PRIVACY=1\n")
    rounds = [first_window(client.folder / "veltaro", client.environment)
              + first_window(BARE_DIALOG, client.environment) for _ in range(16)]
    times, memory, floor_times, floor_memory = map(median, zip(*rounds[1:]))  # the first fills caches
    report("start to first window (floor: bare dialog)", times, "ms", floor_times, "within 2.5")
    report("resident memory there (floor: bare dialog)", memory, "MB", floor_memory, "under 40 MB")
    client.start()
    process = psutil.Process(wait_for(client.pid))
    report("processor time, 20 s idle before login", ticks_over(process, 20), "ticks", aim="none")


def bench_session(scene):
    """What an established connection costs while nobody touches the client."""
    client = scene.client
    scene.restore()
    # The tree kept for assistive technology is not the client's usual cost.
    scene.desktop.set_screen_reader(False)
    client.start()
    wait_for(lambda: "[NOTICE]  Connected" in client.log(), 20, "connection")
    process = psutil.Process(client.pid())
    psutil.wait_procs([process], timeout=3)
    report("resident memory 3 s after connecting", megabytes(process), "MB")
    report("processor time, 30 s idle and connected", ticks_over(process, 30), "ticks")


def bench_cycles(scene):
    """What 500 connections, made and stopped by hand one after the other, leave in the client."""
    client = scene.client
    scene.start_remembered()
    process = psutil.Process(client.pid())
    held = []
    for _ in range(500):
        client.stop()
        client.connect()
        held.append((megabytes(process), process.num_fds(), process.num_threads()))
    for what, unit, last, first in zip(("memory", "descriptors", "threads"), ("MB", "", ""),
                                       held[-1], held[0]):
        report(f"{what} after 500 connect/stop cycles (floor: after 1)", last, unit, first)


def main():
    chapters = {"start": bench_start, "session": bench_session, "cycles": bench_cycles}
    chosen = [name for name in chapters if name in sys.argv[1:] or len(sys.argv) == 1]
    if not chosen:
        return
    scene = Scene()
    try:
        for name in chosen:
            scene.desktop.set_screen_reader(True)
            chapters[name](scene)
            scene.client.kill_everything()
    finally:
        scene.close()


main()
