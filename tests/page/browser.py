"""A development service with its page, and a browser without a window that reaches no other address."""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest
import urllib.request

from selenium import webdriver
from selenium.webdriver.chrome.service import Service as Driver
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import Select, WebDriverWait

PROGRAM = os.environ["PROGRAM"]
TIMEOUT = 60
OPTIONS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--disable-extensions",
           "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"]


def start_browser(folder, logs_network=False):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for option in [*OPTIONS, f"--user-data-dir={folder}/profile"]:
        options.add_argument(option)
    options.add_experimental_option("prefs", {"download.default_directory": f"{folder}/downloads"})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL" if logs_network else "OFF"})
    driver = webdriver.Chrome(options=options, service=Driver("/usr/bin/chromedriver"))
    driver.set_script_timeout(TIMEOUT)
    return driver


class Service:
    """`scriptwells serve --page`. It ends with its standard input, so it never outlives the test."""

    def __init__(self, folder, *options):
        self.folder = folder
        self.environment = {"PATH": os.environ["PATH"], "HOME": folder, "TMPDIR": folder, "LC_ALL": "C.UTF-8",
                            "QV_REGISTRY": "/dev/null"}
        self.environment.update({name: text for name, text in os.environ.items() if name.endswith("SAN_OPTIONS")})
        command = [PROGRAM, "serve", "--json", "--page", "--control", "--until-eof", "--script-timeout", "60",
                   *options]
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, text=True, env=self.environment)
        line = json.loads(self.process.stdout.readline())
        self.url, self.page, self.control = line["url"], line["page"], line["control"]

    def stop(self):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait(TIMEOUT)

    def requests(self):
        """All requests, with their secrets."""
        with urllib.request.urlopen(self.control + "/requests", timeout=TIMEOUT) as answer:
            return json.load(answer)["requests"]

    def run(self, *arguments):
        """Another client of the service."""
        return subprocess.run([PROGRAM, "run", "--server", self.url, *arguments], env=self.environment, text=True,
                              capture_output=True, timeout=TIMEOUT, check=False)


class PageTest(unittest.TestCase):
    """A class of tests has one browser and one service; each test begins with a new page."""
    service_options = ()
    logs_network = False  # it takes memory of the page

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        (cls.folder / "downloads").mkdir()
        cls.driver = start_browser(folder.name, cls.logs_network)
        cls.addClassCleanup(cls.driver.quit)
        cls.service = cls.start_service()
        cls.driver.get(cls.service.page)
        cls.wait(lambda: cls.text("#connection") == "Connected", "the page is connected")

    @classmethod
    def start_service(cls, *options):
        service = Service(str(cls.folder), *(options or cls.service_options))
        cls.addClassCleanup(lambda: service.process.poll() is not None or service.stop())
        return service

    def setUp(self):
        self.expected_errors = []
        self.size(1600, 900)
        self.colours("light")
        self.open(self.service.url + "/page/")
        self.addCleanup(self.check_console)

    def check_console(self):
        """No script failed, and the browser refused nothing."""
        errors = [entry["message"] for entry in self.driver.get_log("browser") if entry["level"] in ("SEVERE", "WARNING")]
        unexpected = [text for text in errors if not any(part in text for part in self.expected_errors)]
        self.assertEqual(unexpected, [])

    def open(self, address):
        self.driver.get(address)
        self.wait(lambda: self.text("#connection") == "Connected", "the page is connected")
        self.wait(lambda: self.text("#session option") != "", "sessions are read")

    def size(self, width, height):
        metrics = {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False}
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)

    def colours(self, scheme):
        features = [{"name": "prefers-color-scheme", "value": scheme}]
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": features})

    # Elements are found by CSS.
    @classmethod
    def all(cls, css):
        return cls.driver.find_elements(By.CSS_SELECTOR, css)

    @classmethod
    def one(cls, css):
        return cls.driver.find_element(By.CSS_SELECTOR, css)

    @classmethod
    def text(cls, css):
        """The text of the first element, shown or not; empty if there is none."""
        return cls.js("return document.querySelector(arguments[0])?.textContent ?? ''", css)

    @classmethod
    def texts(cls, css):
        return cls.js("return [...document.querySelectorAll(arguments[0])].map((one) => one.textContent)", css)

    @classmethod
    def js(cls, script, *arguments):
        return cls.driver.execute_script(script, *arguments)

    @classmethod
    def module(cls, name, expression):
        """Evaluates the expression with a module of the page as `it`."""
        result = cls.driver.execute_async_script(
            "const done = arguments[arguments.length - 1];"
            f"import('/page/{name}').then((it) => done({{value: {expression}}}), (e) => done({{error: String(e)}}));")
        if "error" in result:
            raise AssertionError(result["error"])
        return result["value"]

    @classmethod
    def wait(cls, condition, what):
        return WebDriverWait(cls.driver, TIMEOUT, 0.05).until(lambda _: condition(), f"in vain for: {what}")

    def click(self, css):
        self.one(css).click()

    def click_button(self, name, inside="body"):
        """The visible button with this text."""
        buttons = [one for one in self.all(f"{inside} button") if one.text == name]
        self.assertEqual(len(buttons), 1, f"buttons with the text {name}")
        buttons[0].click()

    def choose(self, css, text):
        Select(self.one(css)).select_by_visible_text(text)

    def write(self, css, text):
        element = self.one(css)
        element.clear()
        element.send_keys(text)

    def keys(self, *keys):
        ActionChains(self.driver).send_keys(*keys).perform()

    def with_control(self, key):
        ActionChains(self.driver).key_down("\ue009").send_keys(key).key_up("\ue009").perform()

    # The script and its answer.
    def set_script(self, code):
        self.js("document.querySelector('.CodeMirror').CodeMirror.setValue(arguments[0])", code)

    def finish_run(self):
        self.wait(lambda: self.one("#run").get_attribute("aria-disabled") == "false", "the answer")

    def run_script(self, code):
        """Runs the script, and returns the text of the answer."""
        self.set_script(code)
        self.click("#run")
        self.finish_run()
        return self.text("#value")

    def add_parameter(self, name, kind, value=""):
        self.click("#add-parameter")
        row = self.all(".parameter")[-1]
        row.find_element(By.CSS_SELECTOR, "input").send_keys(name)
        Select(row.find_element(By.CSS_SELECTOR, "select")).select_by_visible_text(kind)
        if kind == "boolean":
            Select(row.find_element(By.CSS_SELECTOR, ".parameter-value select")).select_by_visible_text(value)
        elif value:
            row.find_element(By.CSS_SELECTOR, ".parameter-value input, .parameter-value textarea").send_keys(value)
        return row
