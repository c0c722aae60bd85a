"""The simulated service as a process of its own, spoken to over its control addresses."""
import json
import urllib.request

from .processes import start, wait_for

_here = urllib.request.build_opener(urllib.request.ProxyHandler({}))


class Simulator:
    def __init__(self, program, folder, environment):
        """For the stand-in datapath in `folder`."""
        ready = folder / "simulator.json"  # appears at once and whole
        self._process = start([program, "--port-file", ready, "--datapath-dir", folder],
                              env=environment, stdout=open("/dev/null", "wb"))
        wait_for(lambda: ready.exists() or self._process.poll() is not None, what="simulator")
        addresses = json.loads(ready.read_text())
        self.page = addresses["control"]
        self.variables = {"VELTARO_LOOKUP_PRIMARY": addresses["lookupPrimary"],
                          "VELTARO_LOOKUP_BACKUP": addresses["lookupBackup"]}

    def state(self):
        with _here.open(self.page + "sim/state", timeout=10) as answer:
            return json.load(answer)

    def command(self, **members):
        """Carries out members of its command, see sim/ControlPage.h; fails when one is refused."""
        request = urllib.request.Request(self.page + "sim/switch", json.dumps(members).encode(),
                                         {"Content-Type": "application/json"})
        _here.open(request, timeout=10).close()

    def be_well(self):
        """Everything well, and nothing remembered of what was asked so far."""
        self.command(well=True, clear=True)

    def requests(self, path):
        """The last requests to `path`, oldest first."""
        return [request for request in self.state()["requests"] if request["path"] == path]

    def accounts(self):
        return self.state()["accounts"]

    def account(self, name=""):
        """The one whose username begins so; the first logs in without further steps."""
        return next(one for one in self.accounts() if one["username"].startswith(name))

    def check(self, log=""):
        """Fails when a rule was broken, or when `log` holds a password or token that it knows of."""
        state = self.state()
        secrets = [account["password"] for account in state["accounts"]] + \
            [session["token"] for session in state["clients"]]
        leaked = [secret for secret in secrets if secret in log]
        assert (state["violations"], leaked) == ([], [])

    def close(self):
        self._process.terminate()
        self._process.wait()
