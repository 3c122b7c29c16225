#!/usr/bin/env python3
"""The page of the development service in Chromium: sessions, requests, files, faults and counters, and how it is
used. ctest sets PROGRAM."""
import unittest

from browser import PageTest
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

PASSWORD = "a-password"


class ServiceTest(PageTest):
    def outcomes(self):
        return self.texts("#requests .badge")

    def names(self):
        return self.texts("#requests .request-name b")

    def test_requests_appear_as_they_come(self):
        self.service.run("-e", "'from another client'", "--user", "joe")
        self.wait(lambda: self.names()[:3] == ["CloseUserSession", "Execute", "CreateUserSession"], "its requests")
        self.wait(lambda: self.outcomes()[:3] == ["200"] * 3, "their answers")
        self.all("#requests .request")[1].click()
        self.assertEqual(self.all("#requests .request")[1].get_attribute("aria-expanded"), "true")
        self.assertIn("from another client", self.texts("#requests .envelope")[0])
        self.assertIn("ExecuteResult", self.texts("#requests .envelope")[1])
        self.assertRegex(self.texts("#requests .envelope")[1], r"\n    <[\w:]*ExecuteResponse")
        self.assertIn("<Code>'from another client'</Code>", self.texts("#requests .xml-inner"))
        self.click("#raw")
        self.assertIn("&lt;Code&gt;&amp;apos;from another client&amp;apos;&lt;/Code&gt;", self.texts("#requests .envelope")[0])
        self.all("#requests .request")[1].click()
        self.assertEqual(self.all("#requests .envelope"), [])

    def test_a_fault_is_a_fault_in_the_list_and_the_list_can_be_cleared(self):
        self.run_script("throw new ScriptError(5, 'no such customer')")
        self.wait(lambda: self.outcomes()[:1] == ["200 fault"], "the fault")
        self.click_button("Clear list")
        self.assertEqual(self.names(), [])
        self.run_script("1")
        self.wait(lambda: self.names() == ["Execute"], "a new request")

    def test_sessions_are_opened_chosen_and_closed(self):
        self.click("#tab-sessions")
        before = len(self.all("#sessions .row"))
        self.write("#session-user", "ann")
        self.click_button("Open session")
        self.wait(lambda: len(self.all("#sessions .row")) == before + 1, "the session")
        ann = self.texts("#session option")[-1]
        self.assertTrue(ann.startswith("ann ("), ann)
        self.assertEqual(self.text("#session option:checked"), ann)
        self.run_script("1")
        self.wait(lambda: "1 run" in self.texts("#sessions .row")[-1], "the count")
        self.click("#sessions .row:first-child input")
        self.assertNotEqual(self.text("#session option:checked"), ann)
        self.choose("#session", ann)
        self.assertTrue(self.one("#sessions .row:last-child input").is_selected())
        self.click(f"[aria-label='Close session {ann}']")
        self.wait(lambda: ann not in self.texts("#session option"), "its end")

    def test_without_a_session_the_page_says_so(self):
        self.click("#tab-sessions")
        while self.all("#sessions .row"):
            count = len(self.all("#sessions .row"))
            self.click("#sessions .row button")
            self.wait(lambda: len(self.all("#sessions .row")) < count, "the end of the session")
        self.click("#tab-counters")
        self.assertIn("no open session", self.run_script("1"))
        self.assertEqual(self.driver.switch_to.active_element.get_attribute("id"), "session-user")
        self.keys("joe", Keys.ENTER)
        self.wait(lambda: len(self.all("#sessions .row")) == 1, "the session")
        self.assertEqual(self.run_script("1"), "1")

    def test_files_are_uploaded_listed_downloaded_and_removed(self):
        name = "umlaut <b>ä & co.bin"
        content = bytes(range(256)) * 3
        (self.folder / name).write_bytes(content)
        self.click("#tab-files")
        self.one("#upload").send_keys(str(self.folder / name))
        self.wait(lambda: name in self.texts("#files b"), "the upload")
        self.assertIn(f"{name}768 bytes, uploaded", "".join(self.texts("#files .row-main")))
        self.click(f"#files [aria-label='Download {name}']")
        self.wait(lambda: self.downloads(content), "the download")
        self.click(f"#files [aria-label='Remove {name}']")
        self.wait(lambda: name not in self.texts("#files b"), "its end")

    def downloads(self, content):
        return any(file.read_bytes() == content for file in (self.folder / "downloads").iterdir()
                   if not file.name.endswith(".crdownload"))

    def test_a_published_file_is_downloaded(self):
        self.run_script("publish('report.txt', 'from a script')")
        self.assertIn("***", self.text("#value pre"))
        self.click("#value a")
        self.wait(lambda: self.downloads(b"from a script"), "the download")
        self.click("#tab-files")
        self.wait(lambda: "report.txt" in self.texts("#files b"), "the file in the list")
        self.assertIn("from a script", self.text("#files .rows"))

    def test_an_ordered_fault_meets_the_next_script(self):
        self.click("#tab-faults")
        self.write("#fault-number", "77")
        self.write("#fault-text", "out of <b>paper</b>")
        self.choose("#fault-action", "Execute")
        self.click_button("Order fault")
        self.wait(lambda: "SOAP fault 77 for the next Execute" in self.text(".remembered"), "the order")
        answer = self.run_script("1")
        self.assertIn("77", answer)
        self.assertIn("out of <b>paper</b>", answer)
        self.assertEqual(self.run_script("1"), "1")

    def test_a_wrong_order_is_reported(self):
        self.expected_errors = ["status of 400"]
        self.click("#tab-faults")
        self.choose("#fault-kind", "HTTP status")
        self.write("#fault-number", "204")
        self.click_button("Order fault")
        self.wait(lambda: self.text("#faults .form-failure") != "", "the reason")
        self.choose("#fault-kind", "Answer cut off")
        self.assertFalse(self.one("#fault-number").is_displayed())

    def test_odd_answers_are_ordered_and_removed(self):
        self.click("#tab-faults")
        self.wait(lambda: self.all("#odd-names input"), "the names")
        self.click_button("Order odd answers")
        self.wait(lambda: "at least one" in self.text("#faults form:last-of-type .form-failure"), "the reason")
        self.click("#odd-names input[value=spoil]")
        self.choose("#odd-spread", "all from now on")
        self.choose("#odd-action", "Execute")
        self.click_button("Order odd answers")
        self.wait(lambda: "spoil for all requests" in self.text(".remembered"), "the order")
        for _ in range(2):
            self.run_script("1")
            self.assertEqual(len(self.all("#value .failure")), 1)
        self.click_button("Remove all odd answers")
        self.wait(lambda: "removed" in self.text(".remembered li"), "the removal")
        self.assertEqual(self.run_script("1"), "1")

    def test_counters_follow_the_requests(self):
        self.click("#tab-counters")
        count = "[data-count='scripts run'] dd"
        self.wait(lambda: self.text(count) != "", "the counts")
        before = int(self.text(count).replace(",", ""))
        self.run_script("1")
        self.wait(lambda: self.text(count) == f"{before + 1:,}", "the new count")

    def test_copy_as(self):
        self.driver.execute_cdp_cmd("Browser.grantPermissions", {"permissions": ["clipboardReadWrite", "clipboardSanitizedWrite"]})
        self.add_parameter("a", "int", "41")
        self.set_script("parameters.a + 1 // \"it's\"")
        self.click("#copy-as")
        self.wait(lambda: self.all("#copy-dialog[open] [role=tab]"), "the texts")
        self.assertEqual(self.texts("#copy-dialog [role=tab]"), ["Command line", "C++", "Python", "curl"])
        for form, part in (("command", "scriptwells"), ("cpp", "#include"), ("python", "import"), ("curl", "curl")):
            self.click(f"#tab-copy-{form}")
            self.assertIn(part, self.text(f"#copy-{form}"))
            self.assertIn("parameters.a", self.text(f"#copy-{form}"))
        self.click_button("Copy", "#copy-dialog")
        self.wait(lambda: self.all("#copy-dialog .primary")[0].text == "Copied", "the clipboard")
        copied = self.driver.execute_async_script("navigator.clipboard.readText().then(arguments[0], (e) => arguments[0](String(e)))")
        self.assertEqual(copied, self.text("#copy-curl"))
        self.keys(Keys.ESCAPE)
        self.wait(lambda: not self.all("#copy-dialog[open]"), "the end of the dialog")
        self.assertEqual(self.driver.switch_to.active_element.get_attribute("id"), "copy-as")


class PasswordTest(PageTest):
    @classmethod
    def start_service(cls, *options):
        file = cls.folder / "users"
        file.write_text(f"joe:{PASSWORD}\n")
        return super().start_service("--users-file", str(file))

    def test_a_session_needs_the_password(self):
        self.expected_errors = ["status of 400"]
        self.click("#tab-sessions")
        self.write("#session-user", "joe")
        self.write("#session-password", "another")
        self.click_button("Open session")
        self.wait(lambda: self.text("#sessions form .form-failure") != "", "the reason")
        self.assertEqual(self.one("#session-password").get_attribute("value"), "")
        self.write("#session-password", PASSWORD)
        self.click_button("Open session")
        self.wait(lambda: self.text("#session option:checked").startswith("joe ("), "the session")
        self.assertEqual(self.run_script("6 * 7"), "42")


class UseTest(PageTest):
    """Keyboard and layout."""

    def test_tabs_with_arrow_keys(self):
        self.click("#tab-requests")
        self.keys(Keys.ARROW_LEFT)
        self.assertTrue(self.one("#counters").is_displayed())
        self.keys(Keys.HOME, Keys.ARROW_RIGHT)
        self.assertTrue(self.one("#sessions").is_displayed())
        self.assertEqual(len(self.all("#service-tabs [tabindex='0']")), 1)

    def test_tab_reaches_everything_in_order(self):
        self.js("document.activeElement.blur()")
        reached = []
        for _ in range(40):
            self.keys(Keys.TAB)
            reached.append(self.js("const e = document.activeElement;"
                                   "return e.closest('.CodeMirror') ? 'editor' : e.id || e.tagName"))
            if reached[-1] == "requests":
                break
        wanted = ["session", "editor", "run", "add-parameter", "copy-as", "tab-value", "value", "tab-requests", "requests"]
        self.assertEqual([name for name in reached if name in wanted], wanted)

    def test_the_focus_is_seen(self):
        for css in ("#run", "#session", "#tab-value"):
            self.js("document.activeElement.blur()")
            for _ in range(20):
                self.keys(Keys.TAB)
                if self.js("return document.activeElement.matches(arguments[0])", css):
                    break
            self.assertNotEqual(self.js("return getComputedStyle(document.querySelector(arguments[0])).outlineStyle", css), "none")

    def test_narrow_windows_stack_the_panes_and_wide_ones_do_not(self):
        place = "const r = document.querySelector(arguments[0]).getBoundingClientRect(); return [r.left, r.top, r.bottom]"
        script, service = self.js(place, ".script"), self.js(place, ".service")
        self.assertEqual(script[1], service[1])
        self.assertLess(script[0], service[0])
        self.assertLessEqual(service[2], 900)
        self.size(400, 800)
        self.wait(lambda: self.js(place, ".script")[2] < self.js(place, ".service")[1], "panes below each other")

    def assert_no_sideways_scroll(self, where):
        width = self.js("const page = document.documentElement; return [page.scrollWidth, page.clientWidth]")
        self.assertLessEqual(width[0], width[1], where)

    def test_400_pixels_are_enough(self):
        self.add_parameter("name", "string", "text")
        file = self.folder / ("long-" * 20 + ".txt")
        file.write_text("x")
        row = self.add_parameter("doc", "file")
        row.find_element(By.CSS_SELECTOR, "input[type=file]").send_keys(str(file))
        self.wait(lambda: file.name in self.texts(".parameter-value option"), "the upload")
        self.run_script("throw new Error('x'.repeat(500))")
        self.click("#requests .request")
        self.size(400, 800)
        for tab in ("requests", "sessions", "files", "faults", "counters"):
            self.click(f"#tab-{tab}")
            self.assert_no_sideways_scroll(tab)
        self.run_script("Array.from({length: 9}, (_, i) => ({a: i, long: 'x'.repeat(90), more: 'y'.repeat(90)}))")
        for tab in ("value", "chart", "console"):
            self.click(f"#tab-{tab}")
            self.assert_no_sideways_scroll(tab)
        self.click("#copy-as")
        self.wait(lambda: self.all("#copy-dialog[open]"), "the dialog")
        self.assert_no_sideways_scroll("dialog")


if __name__ == "__main__":
    unittest.main()
