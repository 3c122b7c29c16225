#!/usr/bin/env python3
"""The page of the development service in Chromium: who may enter, hostile texts, secrets, and a service that ends.
ctest sets PROGRAM."""
import base64
import html
import json
import re
import unittest
import urllib.parse

from browser import PageTest

HOSTILE = "<img src=x onerror=\"window.hacked = 1\"><script>window.hacked = 1</script>&amp;'`${hacked}"
SECRET = "canary-0f<&\"é-password"


class EntryTest(PageTest):
    def test_the_token_leaves_the_address_and_works_once(self):
        token = self.service.page.partition("#")[2]
        self.assertGreaterEqual(len(token), 32)
        service = self.start_service()
        self.open(service.page)
        self.assertEqual(self.js("return location.href"), service.url + "/page/")
        self.assertNotIn(service.page.partition("#")[2], self.js("return document.documentElement.outerHTML"))
        self.driver.delete_all_cookies()
        self.expected_errors = ["status of 403", "status of 401"]
        self.driver.get("about:blank")
        self.driver.get(service.page)
        self.wait(lambda: "Open the address" in self.text("#notice"), "the notice")
        self.assertEqual(self.text("#connection"), "Not allowed")

    def test_without_a_cookie_the_page_shows_nothing(self):
        self.driver.delete_all_cookies()
        self.expected_errors = ["status of 401"]
        self.driver.get(self.service.url + "/page/")
        self.wait(lambda: "Open the address" in self.text("#notice"), "the notice")
        self.assertEqual(self.text("#requests .requests"), "")

    def setUp(self):
        self.driver.delete_all_cookies()
        type(self).service = self.start_service()
        self.driver.get("about:blank")
        self.driver.get(self.service.page)
        super().setUp()

    def test_scripts_cannot_read_the_cookie(self):
        self.assertEqual(self.js("return document.cookie"), "")
        cookies = self.driver.get_cookies()
        self.assertEqual([(one["httpOnly"], one["sameSite"], one["path"]) for one in cookies], [(True, "Strict", "/page/")])

    def test_nothing_is_loaded_from_elsewhere_and_nothing_is_inline(self):
        self.run_script("[{a: 1}]")
        self.click("#tab-chart")
        self.wait(lambda: self.all("#chart canvas"), "the chart")
        loaded = self.js("return performance.getEntriesByType('resource').map((one) => one.name)")
        self.assertTrue(any("codemirror" in one for one in loaded) and any("chart" in one for one in loaded))
        self.assertEqual([one for one in loaded if not one.startswith(self.service.url + "/page/")], [])
        # The policy holds: a script in the page is refused.
        self.js("const one = document.createElement('script'); one.textContent = 'window.hacked = 1'; document.body.append(one)")
        self.assertIsNone(self.js("return window.hacked ?? null"))
        self.expected_errors = ["Content Security Policy"]


class HostileTest(PageTest):
    def assert_only_text(self):
        self.assertIsNone(self.js("return window.hacked ?? null"))
        self.assertEqual(self.all("main img, main script, dialog img, dialog script"), [])

    def answer_of(self, code):
        return self.run_script("const text = " + json.dumps(HOSTILE) + ";\n" + code)

    def test_values_consoles_and_faults(self):
        self.assertEqual(self.answer_of("console.log(text); text"), HOSTILE)
        self.click("#tab-console")
        self.assertEqual(self.texts("#console pre"), [HOSTILE])
        self.assertIn(HOSTILE, self.answer_of("throw new ScriptError(5, text)"))
        self.assertIn(HOSTILE, self.text(".fault-note"))
        self.answer_of("[{a: text}]")
        self.assertEqual(self.texts(".table-body [role=gridcell]"), [HOSTILE])
        self.all("#requests .request")[0].click()
        self.assertIn("onerror", self.text("#requests .envelope"))
        self.assert_only_text()

    def test_users_parameters_and_charts(self):
        self.click("#tab-sessions")
        self.write("#session-user", "<img onerror><b>joe</b>")
        self.click_button("Open session")
        self.wait(lambda: any("onerror" in one for one in self.texts("#sessions b")), "the session")
        self.add_parameter("a", "string", HOSTILE)
        self.assertEqual(self.run_script("parameters.a"), HOSTILE)
        self.click("#copy-as")
        self.wait(lambda: self.all("#copy-dialog[open] pre"), "the texts")
        self.assert_only_text()
        self.click_button("Close", "#copy-dialog")
        self.answer_of("[{[`a_b`]: text, n: 1}]")
        self.click("#tab-chart")
        self.wait(lambda: self.all("#chart canvas"), "the chart")
        self.assert_only_text()

    def test_links_lead_to_web_pages_only(self):
        links = self.module("value_view.js", """['javascript:hacked()', 'data:text/html,x', 'http://a.example/'].map((value) =>
          it.valueElement({type: 'url', value, caption: '<b>'}).querySelectorAll('a').length)""")
        self.assertEqual(links, [0, 0, 1])

    def test_damaged_and_endless_messages(self):
        lines = self.module("envelope.js", """(() => {
          const shown = (text) => it.envelopeElement(text).textContent;
          const start = performance.now();
          const long = ['<'.repeat(65536), '<a '.repeat(20000), '<a b="'.repeat(10000), '<a>'.repeat(20000), '<![CDATA['.repeat(7000)];
          return {cut: shown('<a><b x="1">te'), text: shown('no markup <'), odd: shown('</a>< <!-- c --><b/>'),
            kept: long.every((one) => shown(one).replace(/\\s/g, '') === one.replace(/\\s/g, '')),
            took: performance.now() - start};
        })()""")
        self.assertEqual(lines["cut"], '<a>\n  <b x="1">te\n')
        self.assertEqual(lines["text"], "no markup <")
        self.assertIn("<b/>", lines["odd"])
        self.assertTrue(lines["kept"])
        self.assertLess(lines["took"], 20000)


class CanaryTest(PageTest):
    """Password, session id and ticket: nowhere in the page, its storage, or what the service sent it."""
    logs_network = True

    @classmethod
    def start_service(cls, *options):
        file = cls.folder / "users"
        file.write_text(f"joe:{SECRET}\n")
        return super().start_service("--users-file", str(file))

    def forms_of(self, secret):
        encoded = secret.encode()
        yield from (secret, urllib.parse.quote(secret), urllib.parse.quote(secret, safe=""), html.escape(secret),
                    html.escape(html.escape(secret)), json.dumps(secret)[1:-1], json.dumps(secret, ensure_ascii=False)[1:-1],
                    base64.b64encode(encoded).decode())

    def received(self):
        """All bodies that the browser got from the service, and all events."""
        bodies = []
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            parameters = message["params"]
            if message["method"] == "Network.eventSourceMessageReceived":
                bodies.append(parameters["data"])
            if message["method"] != "Network.loadingFinished":
                continue
            try:
                body = self.driver.execute_cdp_cmd("Network.getResponseBody", {"requestId": parameters["requestId"]})
            except Exception:  # an answer without body, or of an earlier page
                continue
            bodies.append(base64.b64decode(body["body"]).decode("latin-1") if body["base64Encoded"] else body["body"])
        return bodies

    def use_everything(self):
        self.click("#tab-sessions")
        self.write("#session-user", "joe")
        self.write("#session-password", SECRET)
        self.click_button("Open session")
        self.wait(lambda: self.text("#session option:checked").startswith("joe ("), "the session")
        (self.folder / "sent.txt").write_text("content")
        self.click("#tab-files")
        self.one("#upload").send_keys(str(self.folder / "sent.txt"))
        self.wait(lambda: "sent.txt" in self.texts("#files b"), "the upload")
        self.add_parameter("doc", "file")
        self.assertEqual(self.run_script("parameters.doc.text()"), "content")
        self.run_script("publish('out.txt', 'x') + ' ' + uploadUrl()")
        self.run_script("publish('out.txt', 'x')")
        self.click("#tab-requests")
        for head in self.all("#requests .request"):
            head.click()
        self.click("#copy-as")
        self.wait(lambda: self.all("#copy-dialog[open] pre"), "the texts")

    def test_no_secret_reaches_the_page(self):
        self.driver.get_log("performance")
        self.open(self.service.url + "/page/") if self.all("#session option") else None
        self.use_everything()
        sent = self.service.requests()
        text = json.dumps(sent)
        secrets = set(re.findall(r"\b[0-9a-f]{32}\b", text)) | {SECRET}
        self.assertGreater(len(secrets), 2, "a session id and a ticket")
        page = [self.js("return document.documentElement.outerHTML"), self.js("return JSON.stringify([{...localStorage},"
                "{...sessionStorage}, history.state, location.href, window.name, document.cookie])"),
                *self.js("return [...document.querySelectorAll('input, textarea, select')].map((one) => one.value)")]
        received = self.received()
        self.assertTrue(any("ExecuteResult" in body for body in received), "events were seen")
        self.assertTrue(any('"columns"' in body or '"milliseconds"' in body for body in received), "answers were seen")
        found = [(secret, place[:200]) for secret in secrets for form in self.forms_of(secret)
                 for place in [*page, *received] if form in place]
        self.assertEqual(found, [])


class LossTest(PageTest):
    def test_a_service_that_ends_is_reported_and_found_again(self):
        self.expected_errors = ["ERR_CONNECTION_REFUSED", "ERR_EMPTY_RESPONSE", "ERR_INCOMPLETE_CHUNKED", "ERR_CONNECTION_RESET",
                                "status of 401"]
        port = self.service.url.rpartition(":")[2]
        self.service.stop()
        self.wait(lambda: "does not answer" in self.text("#notice"), "the notice")
        self.assertEqual(self.text("#connection"), "Not connected")
        self.assertIn("does not answer", self.run_script("1"))
        again = self.start_service("--port", port)
        self.wait(lambda: "Open the address" in self.text("#notice"), "the notice of another service")
        self.open(again.page)
        self.assertFalse(self.one("#notice").is_displayed())
        self.assertEqual(self.run_script("6 * 7"), "42")

    def test_a_connection_that_breaks_comes_back(self):
        self.expected_errors = ["ERR_INTERNET_DISCONNECTED"]
        type(self).service = service = self.start_service()
        self.driver.get("about:blank")
        self.driver.get(service.page)
        self.wait(lambda: self.text("#connection") == "Connected", "the page is connected")
        offline = {"latency": 0, "downloadThroughput": -1, "uploadThroughput": -1}
        self.driver.execute_cdp_cmd("Network.enable", {})
        self.driver.execute_cdp_cmd("Network.emulateNetworkConditions", {"offline": True, **offline})
        self.assertIn("does not answer", self.run_script("1"))
        self.wait(lambda: self.text("#connection") == "Not connected", "the loss")
        self.driver.execute_cdp_cmd("Network.emulateNetworkConditions", {"offline": False, **offline})
        self.wait(lambda: self.text("#connection") == "Connected", "the connection")
        self.assertEqual(self.run_script("6 * 7"), "42")


if __name__ == "__main__":
    unittest.main()
