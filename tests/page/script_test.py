#!/usr/bin/env python3
"""The page of the development service in Chromium: scripts, parameters and answers. ctest sets PROGRAM."""
import unittest

from browser import PageTest
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

ROWS = "Array.from({length: %d}, (_, i) => ({id: i, city: 'City ' + (i * 7919) %% %d, share: i / 7}))"


class ScriptTest(PageTest):
    def test_a_typed_script_runs_with_the_keyboard(self):
        self.set_script("")
        self.click(".CodeMirror-lines")
        self.keys("parameters.a + 40")
        self.add_parameter("a", "int", "2")
        self.click(".CodeMirror-lines")
        self.with_control(Keys.ENTER)
        self.finish_run()
        self.assertEqual(self.text("#value"), "42")
        self.assertRegex(self.text("#answer-facts"), r"^int, [\d.]+ m?s$")

    def test_parameters_have_their_types(self):
        self.add_parameter("on", "boolean", "false")
        self.add_parameter("day", "date", "2024-03-05")
        self.add_parameter("lines", "string", 'two\n"lines" <b>')
        self.add_parameter("big", "long", "9007199254740993")
        answer = self.run_script("[parameterList.map(p => p.type).join(), parameters.on, parameters.day.getUTCFullYear(),"
                                 " parameters.lines, String(parameters.big)].join('|')")
        self.assertEqual(answer, 'boolean,date,string,long|false|2024|two\n"lines" <b>|9007199254740993')

    def test_a_parameter_can_be_removed_and_a_wrong_one_is_reported(self):
        self.add_parameter("a", "int", "2")
        self.add_parameter("b", "int", "no number")
        self.assertIn("b", self.run_script("1"))
        self.assertEqual(len(self.all("#value .failure")), 1)
        self.all("[aria-label='Remove parameter']")[1].click()
        self.assertEqual(self.driver.switch_to.active_element.get_attribute("value"), "a")
        self.assertEqual(self.run_script("parameterList.length"), "1")

    def test_a_file_is_a_value(self):
        file = self.folder / "notes.txt"
        file.write_text("to be sent")
        row = self.add_parameter("doc", "file")
        row.find_element(By.CSS_SELECTOR, "input[type=file]").send_keys(str(file))
        self.wait(lambda: "notes.txt" in self.texts(".parameter-value option"), "the upload")
        self.assertEqual(self.run_script("parameters.doc.text()"), "to be sent")

    def test_a_parameter_without_its_file_is_reported(self):
        self.add_parameter("doc", "file")
        row = self.one(".parameter")
        self.js("document.querySelector('.parameter-value select').replaceChildren()")
        self.assertIn("Choose a file", self.run_script("1"))
        row.find_element(By.CSS_SELECTOR, "[aria-label='Remove parameter']").click()
        self.assertEqual(self.run_script("1"), "1")

    def test_what_gets_lost_on_the_way_is_said(self):
        self.run_script("typed.byte(5)")
        self.assertEqual(len(self.all("#value .notes li")), 1)

    def test_values_of_every_kind(self):
        for script, shown in (("true", "true"), ("1.5", "1.5"), ("'a\\n b'", "a\n b"), ("''", "The text is empty."),
                              ("typed.date('2024-03-05')", "2024-03-05")):
            with self.subTest(script):
                self.assertTrue(self.run_script(script).startswith(shown), self.text("#value"))
        self.assertIn("P1DT2H", self.run_script("typed.duration('P1DT2H')"))
        self.assertEqual(self.texts("#value .details dt")[:3], ["negative", "years", "months"])

    def test_stop_ends_a_script(self):
        self.set_script("for (;;);")
        self.click("#run")
        self.wait(lambda: "running" in self.text("#value"), "the state of a running script")
        self.click("#stop")
        self.finish_run()
        self.assertIn("Stopped", self.text("#value"))
        self.assertEqual(self.run_script("6 * 7"), "42")

    def test_the_console(self):
        self.run_script("console.log('one', {a: 1}); console.error('<i>two</i>'); 1")
        self.assertEqual(self.text("#tab-console"), "Console (2)")
        self.click("#tab-console")
        self.assertEqual(self.texts("#console .level"), ["log", "error"])
        self.assertEqual(self.texts("#console pre"), ['one {"a":1}', "<i>two</i>"])

    def test_a_fault_is_marked_at_its_line(self):
        self.run_script("const a = 1;\n\nthrow new ScriptError(5, 'no such <b>customer</b>');\n")
        self.assertIn("Script fault 5", self.text("#value"))
        self.assertIn("no such <b>customer</b>", self.text(".fault-note"))
        marked = self.all(".fault-line")
        self.assertEqual(len(marked), 1)
        self.assertIn("ScriptError", marked[0].text)
        self.click_button("Go to line 3", "#value")
        self.assertEqual(self.js("return document.querySelector('.CodeMirror').CodeMirror.getCursor().line"), 2)
        self.keys("x")
        self.assertEqual(self.all(".fault-line, .fault-note"), [])

    def test_a_syntax_error_is_marked_too(self):
        self.run_script("1 +\n2 +\n")
        self.assertEqual(len(self.all(".fault-note")), 1)


class TableTest(PageTest):
    def cells(self, column):
        return self.texts(f".table-body [role=row]:not([hidden]) [data-column='{column}']")

    def shown_rows(self):
        """The own numbers of the rows, in their order on the screen."""
        return [int(text.replace(",", "")) for text in self.texts(".table-body [role=row]:not([hidden]) .row-number")]

    def detail(self):
        return self.text(".cell-detail")

    def test_rows_are_shown_and_sorted(self):
        self.run_script(ROWS % (50, 50))
        self.assertIn("table, 50 rows", self.text("#answer-facts"))
        self.assertEqual(self.texts(".table-head [role=columnheader]"), ["#", "id", "city", "share"])
        head = ".table-head [data-column='0']"
        self.click(head)
        self.click(head)
        self.assertEqual(self.one(head).get_attribute("aria-sort"), "descending")
        self.assertEqual(self.shown_rows()[:3], [50, 49, 48])
        self.click(head)
        self.assertEqual(self.shown_rows()[:3], [1, 2, 3])

    def test_100000_rows_scroll_with_few_elements(self):
        self.run_script(ROWS % (100000, 100000))
        self.assertEqual(self.one(".table").get_attribute("aria-rowcount"), "100001")
        self.js("document.querySelector('.table').scrollTop = 1e9")
        self.wait(lambda: 100000 in self.shown_rows(), "the last row")
        self.assertLess(len(self.all(".table-body [role=row]")), 80)
        self.click(".table-head [data-column='1']")
        self.wait(lambda: "City 99999" in self.cells(1), "the last text of all")

    def test_the_keyboard_moves_and_sorts(self):
        self.run_script(ROWS % (100000, 100000))
        self.js("document.querySelector('.table').focus()")
        self.assertEqual(self.detail(), "Row 1, id: 0.")
        self.keys(Keys.ARROW_DOWN, Keys.ARROW_RIGHT)
        self.assertEqual(self.detail(), "Row 2, city: City 7919.")
        self.with_control(Keys.END)
        self.assertTrue(self.detail().startswith("Row 100,000, share"), self.detail())
        active = self.one(".table").get_attribute("aria-activedescendant")
        self.assertTrue(self.one(f"[id='{active}']").is_displayed())
        self.keys(Keys.PAGE_UP, Keys.HOME)
        self.assertRegex(self.detail(), r"^Row 99,9\d\d, id")
        self.with_control(Keys.HOME)
        self.keys(Keys.ARROW_UP, Keys.ENTER, Keys.ENTER)
        self.assertEqual(self.shown_rows()[:2], [100000, 99999])

    def test_empty_cells_come_last(self):
        order = self.module("table_model.js", """(() => {
          const table = {columns: [{name: 'n', type: 'double'}, {name: 't', type: 'string'}],
            rows: [[null, 'b'], ['INF', ''], [2, 'a'], ['NaN', 'B'], [-1, null]]};
          const order = (...one) => [...it.orderOf(table, ...one)];
          return [order(0, 'ascending'), order(0, 'descending'), order(1, 'ascending'), order(1, 'none')];
        })()""")
        self.assertEqual(order, [[4, 2, 1, 0, 3], [1, 2, 4, 0, 3], [2, 0, 3, 1, 4], [0, 1, 2, 3, 4]])

    def test_a_table_without_rows_or_columns(self):
        self.run_script("typed.table({a: 'int'}, [])")
        self.assertIn("table, 0 rows", self.text("#answer-facts"))
        self.js("document.querySelector('.table').focus()")
        self.keys(Keys.ARROW_DOWN, Keys.ARROW_RIGHT, Keys.END, Keys.PAGE_DOWN)
        self.run_script("typed.table({}, [])")
        self.assertEqual(self.texts(".table-head [role=columnheader]"), ["#"])


class ChartTest(PageTest):
    def setUp(self):
        super().setUp()
        self.expected_errors.append("willReadFrequently")  # these tests read the canvas

    def painted(self):
        """The number of pixels of the chart that are not empty."""
        return self.js("""
          const canvas = document.querySelector('#chart canvas');
          if (!canvas || !canvas.width) return 0;
          const {data} = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
          let count = 0;
          for (let at = 3; at < data.length; at += 4) if (data[at]) ++count;
          return count;""")

    def label(self):
        return self.js("return document.querySelector('#chart canvas')?.getAttribute('aria-label') ?? ''")

    def wait_for_chart(self, label):
        self.wait(lambda: self.label() == label and self.painted() > 1000, label)

    def test_bars_lines_and_points_of_chosen_columns(self):
        self.run_script(ROWS % (30, 30))
        self.click("#tab-chart")
        self.wait_for_chart("Bars: id by city")
        self.choose("#chart-kind", "Line")
        self.wait_for_chart("Line: id by city")
        self.click("#chart-ys label:nth-of-type(2)")
        self.wait_for_chart("Line: id, share by city")
        self.choose("#chart-kind", "Scatter")
        self.choose("#chart-x", "share")
        self.wait_for_chart("Scatter: id, share by share")
        self.assertEqual(self.texts("#chart-x option"), ["Row number", "id", "share"])
        self.run_script(ROWS % (20, 20))
        self.wait_for_chart("Scatter: id, share by share")

    def test_a_chart_follows_colours_and_width(self):
        self.run_script(ROWS % (30, 30))
        self.click("#tab-chart")
        self.wait_for_chart("Bars: id by city")
        colour = """
          const canvas = document.querySelector('#chart canvas');
          const {data} = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
          const count = new Map();
          for (let at = 0; at < data.length; at += 4)
            if (data[at + 3] === 255) count.set(data.slice(at, at + 3).join(), 1 + (count.get(data.slice(at, at + 3).join()) ?? 0));
          return [...count].sort((a, b) => b[1] - a[1])[0][0];"""
        light = self.js(colour)
        self.colours("dark")
        self.wait(lambda: self.painted() > 1000 and self.js(colour) != light, "other colours")
        self.size(400, 900)
        self.wait(lambda: self.painted() > 1000 and self.js("return document.querySelector('#chart canvas').clientWidth") < 400,
                  "a narrow chart")
        self.colours("light")
        self.wait(lambda: self.painted() > 1000 and self.js(colour) == light, "the first colours")

    def test_a_long_table_says_what_is_left_out(self):
        self.run_script(ROWS % (3000, 3000))
        self.click("#tab-chart")
        self.wait_for_chart("Bars: id by city")
        self.assertIn("The first 500 of 3,000 rows.", self.text("#chart"))

    def test_without_numbers_there_is_no_chart(self):
        self.run_script("[{a: 'x'}]")
        self.click("#tab-chart")
        self.assertIn("no column of numbers", self.text("#chart"))
        self.run_script("1")
        self.click("#tab-chart")
        self.assertIn("answers a table", self.text("#chart"))

    def test_points(self):
        data = self.module("chart_data.js", """it.chartData({columns: [{name: 'x', type: 'int'}, {name: 'y', type: 'long'}],
          rows: [[1, '9007199254740993'], [2, null], [null, 3]]}, {kind: 'scatter', x: 0, ys: [1]})""")
        self.assertEqual(data["series"], [{"name": "y", "points": [{"x": 1, "y": 9007199254740992}]}])


if __name__ == "__main__":
    unittest.main()
