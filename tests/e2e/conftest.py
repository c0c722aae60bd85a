import pytest

from driver.scene import Scene


@pytest.fixture(scope="session")
def scene():
    scene = Scene()
    yield scene
    scene.close()


@pytest.fixture(autouse=True)
def fair(scene):
    """Each test begins with a service that is well, and ends without a broken rule and without a
    secret in the log."""
    scene.service.be_well()
    yield
    log = scene.client.log()
    scene.client.kill_everything()
    scene.service.check(log)


@pytest.fixture
def client(scene):
    return scene.client


@pytest.fixture
def service(scene):
    return scene.service


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item):
    report = (yield).get_result()
    if report.when == "call" and report.failed:
        report.sections.append(("The client", item.funcargs["scene"].client.dump()))
