"""The page of `styles-inspect gallery` in a browser: what its reader sees, and does with keys and mouse.

browser.py BROWSER PROGRAM SOURCE_FOLDER DATA_FOLDER
"""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import chromium

BROWSER, PROGRAM = sys.argv[1:3]
EXAMPLE = pathlib.Path(sys.argv[3]) / "examples/inspect/data"
OTHER = pathlib.Path(sys.argv[4]) / "draw-bpmn"

SCHEMA = {
    "version": 1,
    "styleSets": [{"name": "area", "uiName": "<i>Area</i>", "look": "fill", "properties": [
        {"name": "paint", "type": "string", "default": "#ffffff", "look": "color"}]},
        {"name": "letters", "uiName": "Letters", "look": "text", "properties": [
            {"name": "face", "type": "string", "default": "", "look": "font"}]}],
    "base": {"uiName": "Shape & <b>form</b>", "properties": [{"name": "note", "type": "string", "default": ""}]},
}

HOSTILE = [
    "<img src=x onerror=\"window.taken=1\">",
    "</script><script>window.taken=2</script>",
    "<!--<script>",
    "\"double\" 'single' &amp; \\ ${window.taken=3} `",
    "line\u2028and\u2029paragraph",
    "\u0634\u0643\u0644 \u202e turned",
    "@data@ @script@",
]


class Page(unittest.TestCase):
    """Each test opens a page of its own in one browser."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.browser = chromium.Chromium(BROWSER)

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()
        cls.folder.cleanup()

    def setUp(self):
        self.browser.set_theme("light")
        self.browser.set_window(1400, 900)

    def make(self, schema, sheet, *options):
        """Has the program make a page of two files, or of what is to stand in them; gives its address."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder.name))
        paths = []
        for name, content in (("schema.json", schema), ("sheet.json", sheet)):
            if isinstance(content, dict):
                (folder / name).write_text(json.dumps(content), encoding="utf-8")
                content = folder / name
            paths.append(str(content))
        page = folder / "page.html"
        subprocess.run([PROGRAM, "--schema", *paths, "gallery", "-o", str(page), *options], check=True,
                       capture_output=True, timeout=120)
        return page.as_uri()

    def open(self, address):
        self.browser.open(address)
        self.browser.wait_for("document.querySelector('.preview svg') !== null")

    def open_example(self, style=""):
        page = self.make(EXAMPLE / "drawing-schema.json", EXAMPLE / "drawing-sheet.json")
        self.open(page + (f"#style={style}" if style else ""))

    def value(self, expression):
        return self.browser.evaluate(expression)

    def heading(self):
        return self.value("document.getElementById('details-heading').textContent")

    def selected_everywhere(self):
        """The names that the grid, the tree and the details show as selected."""
        return self.value("[document.querySelector('[role=option][aria-selected=true] .name').textContent,"
                          " document.querySelector('[role=treeitem][aria-selected=true] .name').textContent,"
                          " document.getElementById('details-heading').textContent]")

    def shown_names(self):
        return self.value("[...document.querySelectorAll('[role=option]')].filter(t => t.checkVisibility())"
                          ".map(t => t.querySelector('.name').textContent)")

    def focused(self):
        return self.value("(e => [e.getAttribute('role') ?? e.localName, (e.querySelector('.name') ?? e).textContent])"
                          "(document.activeElement)")

    def tab_to(self, role, most=200):
        for _ in range(most):
            self.browser.press("Tab")
            if self.focused()[0] == role:
                return
        self.fail(f"the Tab key leads to no {role}")

    def expect_quiet(self):
        """Nothing went wrong in the page, and it asked nobody for anything."""
        own = self.value("location.href.replace(/#.*/, '')")
        for event in self.browser.events:
            method, params = event["method"], event["params"]
            self.assertNotIn(method, ("Runtime.exceptionThrown", "Log.entryAdded", "Runtime.consoleAPICalled"), params)
            if method == "Network.requestWillBeSent":
                address = params["request"]["url"].split("#")[0]
                self.assertTrue(address in (own, "about:blank") or address.startswith("data:"), address)

    def test_opens_without_errors_and_asks_for_nothing(self):
        for theme in ("light", "dark"):
            with self.subTest(theme):
                self.browser.set_theme(theme)
                self.open_example()
                self.assertEqual(len(self.shown_names()), 43)
                self.assertEqual(self.value("document.querySelectorAll('[role=treeitem].style').length"), 43)
                self.browser.wait_for("document.querySelectorAll('[role=option] svg').length > 10")
                self.value("document.querySelectorAll('[role=option]')[42].scrollIntoView()")
                self.browser.wait_for("document.querySelectorAll('[role=option]')[42].querySelector('svg') !== null")
                self.expect_quiet()
        self.assertEqual(self.value("document.title"), "drawing-sheet.json")

    def test_a_schema_of_others_is_drawn_by_a_file_of_looks(self):
        if not OTHER.exists():
            return
        self.open(self.make(OTHER / "schema.json", OTHER / "sheet.json", "--look", str(EXAMPLE / "draw-bpmn-look.json"))
                  + "#style=Filled%20Blue%20(graphic)")
        self.assertEqual(len(self.shown_names()), 100)
        self.assertEqual(self.value("[...document.querySelectorAll('.preview stop')].map(s => s.getAttribute('stop-color'))"),
                         ["#729fcf", "#355269"])
        self.assertEqual(self.value("document.querySelector('.preview text').getAttribute('font-weight')"), "bold")
        self.expect_quiet()

    def test_draws_what_the_looks_say(self):
        self.open_example("Fa%C3%A7ade%2C%20listed%2C%20ruin")
        self.assertEqual(self.value("document.querySelector('.preview pattern').getAttribute('patternTransform')"),
                         "rotate(45) skewX(5) scale(1.125 1.125)")
        outline = "document.querySelector('.preview rect[stroke=\"#7a1f1f\"]')"
        self.assertEqual(self.value(f"{outline}.getAttribute('stroke-dasharray')"), "18 6 18 18")
        self.assertAlmostEqual(float(self.value(f"{outline}.getAttribute('stroke-width')")), 2.1)
        self.assertEqual(self.value("document.querySelector('.preview text').style.fontFamily"), '"Noto Serif", serif')
        self.open_example("Evening%20sky")
        self.assertEqual(self.value("[...document.querySelectorAll('.preview stop')].map(s => s.getAttribute('offset'))"),
                         ["0", "0.6", "1"])
        self.open_example("Gr%C3%B6%C3%9Fenangabe")
        self.assertEqual(self.value("document.querySelectorAll('.preview path[fill=\"#1565c0\"]').length"), 2)

    def test_draws_hatches_and_patterns_that_nobody_described(self):
        schema = {
            "version": 1,
            "styleSets": [{"name": "area", "uiName": "Area", "look": "fill", "properties": [
                {"name": "how", "type": "string", "default": "solid", "look": "mode"},
                {"name": "number", "type": "uint", "default": "0", "look": "pattern"},
                {"name": "wide", "type": "double", "default": "1", "look": "xScale"},
                {"name": "lean", "type": "double", "default": "0", "look": "skew"}]}],
            "categories": [{"name": "lines", "uiName": "Lines", "look": "hatch", "properties": [
                {"name": "paint", "type": "string", "default": "", "look": "color"},
                {"name": "gap", "type": "double", "default": "0", "unit": "mm", "look": "distance"},
                {"name": "turn", "type": "double", "default": "0", "look": "angle"}]}],
            "base": {"uiName": "Shape", "properties": []},
            "substyles": {"area": ["lines"]},
        }
        sheet = {"version": 1, "lines": {"Slanted": {"paint": "#aa0000", "gap": "2", "turn": "30"}}, "style": {
            "Hatched": {"area": {"how": "hatch", "lines": {"inherits": "Slanted"}}},
            "Numbered": {"area": {"number": "5", "wide": "2", "lean": "10"}},
            "Plain": {"area": {"lines": {"inherits": "Slanted"}}}}}
        page = self.make(schema, sheet)
        pattern = "(p => p && [p.getAttribute('patternTransform'), p.firstChild.getAttribute('stroke')])" \
                  "(document.querySelector('.preview pattern'))"
        for style, expected in (("Hatched", ["rotate(30) skewX(0) scale(1.5 1.5)", "#aa0000"]),
                                ("Slanted", ["rotate(30) skewX(0) scale(1.5 1.5)", "#aa0000"]),
                                ("Numbered", ["rotate(0) skewX(10) scale(4.5 2.25)", "#000000"]),
                                ("Plain", None)):
            with self.subTest(style):
                self.open(f"{page}#style={style}")
                self.assertEqual(self.value(pattern), expected)
        self.expect_quiet()

    def test_tells_where_a_value_comes_from_and_what_it_overrides(self):
        self.open_example("Stra%C3%9Fe")
        row = "[...document.querySelector('tr[data-path=\"{}\"]').children].map(c => c.textContent)"
        self.assertEqual(self.value(row.format("outline.width")),
                         ["width", "0.5 mm", "ownoverrides 0.18 mm (Plan element), 0.25 mm (default)"])
        self.assertEqual(self.value(row.format("outline.cap")),
                         ["cap", "round", "Wayoverrides butt (default)"])
        self.assertEqual(self.value(row.format("character.font")),
                         ["font", "Noto Serif", "Bodyoverrides Noto Sans (default)"])
        self.assertIsNone(self.value("document.querySelector('tr[data-path=\"shadow.blur\"]')"))
        self.browser.click("document.getElementById('defaults')")
        self.assertEqual(self.value(row.format("shadow.blur")), ["blur", "1 mm", "default"])

    def test_the_mouse_selects_in_the_grid_the_tree_and_the_details(self):
        self.open_example()
        named = "[...document.querySelectorAll('{}')].find(e => e.textContent === '{}')"
        self.browser.click(named.format("[role=option] .name", "Garage"))
        self.assertEqual(self.selected_everywhere(), ["Garage"] * 3)
        self.browser.click(named.format("[role=treeitem] .name", "Fluß"))
        self.assertEqual(self.selected_everywhere(), ["Fluß"] * 3)
        self.browser.click(named.format("#details a", "Ground"))
        self.browser.wait_for("document.getElementById('details-heading').textContent === 'Ground'")
        self.assertEqual(self.selected_everywhere(), ["Ground"] * 3)
        self.assertIn("style=Ground", self.value("location.hash"))
        self.expect_quiet()

    def test_the_tree_is_walked_with_the_arrow_keys(self):
        self.open_example()
        self.tab_to("treeitem")
        self.browser.press("Home")
        self.assertEqual(self.focused(), ["treeitem", "Graphic style"])
        self.browser.press("ArrowDown")
        self.browser.press("ArrowDown")
        self.assertEqual(self.selected_everywhere(), ["Plan element"] * 3)
        self.browser.press("ArrowRight")
        self.assertEqual(self.selected_everywhere(), ["Annotation"] * 3)
        self.browser.press("ArrowLeft")  # closes
        self.assertEqual(self.value("document.activeElement.getAttribute('aria-expanded')"), "false")
        self.browser.press("ArrowDown")
        self.assertEqual(self.heading(), "Building")
        self.browser.press("ArrowUp")
        self.browser.press("ArrowRight")  # opens
        self.assertEqual(self.value("document.activeElement.getAttribute('aria-expanded')"), "true")
        self.browser.press("ArrowRight")
        self.browser.press("ArrowLeft")  # has nothing to close: leads to what it inherits from
        self.assertEqual(self.heading(), "Annotation")
        self.browser.press("g")
        self.assertEqual(self.heading(), "Größenangabe")
        self.browser.press("End")
        self.assertEqual(self.focused()[0], "treeitem")
        self.assertEqual(self.value("getComputedStyle(document.activeElement).outlineStyle"), "solid")
        self.expect_quiet()

    def test_the_grid_is_walked_with_the_arrow_keys(self):
        self.open_example()
        self.tab_to("option")
        names = self.shown_names()
        self.browser.press("ArrowRight")
        self.assertEqual(self.selected_everywhere(), [names[1]] * 3)
        self.browser.press("ArrowLeft")
        self.assertEqual(self.heading(), names[0])
        self.browser.press("ArrowDown")
        below = self.value("(b => b.left)(document.activeElement.getBoundingClientRect())")
        self.assertEqual(below, self.value("document.querySelector('[role=option]').getBoundingClientRect().left"))
        self.assertGreater(names.index(self.heading()), 1)
        self.browser.press("ArrowUp")
        self.assertEqual(self.heading(), names[0])
        self.browser.press("End")
        self.assertEqual(self.heading(), names[28])
        self.assertEqual(self.value("getComputedStyle(document.activeElement).outlineStyle"), "solid")
        self.tab_to("a")  # the links of the details
        target = self.focused()[1]
        self.browser.press("Enter")
        self.browser.wait_for(f"document.getElementById('details-heading').textContent === {json.dumps(target)}")
        self.expect_quiet()

    def test_the_search_finds_names_and_own_values(self):
        self.open_example()
        self.browser.press("/")
        self.assertEqual(self.focused()[0], "input")
        self.browser.type("straSSE".lower().replace("ss", "ß"))
        self.assertEqual(self.shown_names(), ["Hauptstraße", "Hauptstraße, geplant", "Straße"])
        self.assertEqual(self.value("document.getElementById('found').textContent"), "3 of 43")
        tree = "[...document.querySelectorAll('[role=treeitem].style')].filter(t => t.checkVisibility()).map(t => t.textContent)"
        self.assertEqual(self.value(tree), ["Plan element", "Way", "Straße", "Hauptstraße", "Hauptstraße, geplant"])
        self.browser.press("Enter")
        self.assertEqual(self.heading(), "Hauptstraße")
        self.browser.press("/")
        self.browser.type("#FFE08A")
        self.assertEqual(self.shown_names(), ["Hauptstraße"])
        self.browser.press("/")
        self.browser.type("no such thing")
        self.assertEqual(self.shown_names(), [])
        self.assertTrue(self.value("document.getElementById('nothing').checkVisibility()"))
        self.browser.press("Escape")
        self.assertEqual(len(self.shown_names()), 43)
        self.expect_quiet()

    def test_names_and_values_with_markup_in_them_are_shown_as_text(self):
        styles = {name: {"note": name, "area": {"paint": "url(http://styles.invalid/paint)"},
                         "letters": {"face": "x\"; background: url(http://styles.invalid/face)"}} for name in HOSTILE}
        styles["heir"] = {"inherits": HOSTILE[0], "area": {"paint": "red;} </style><b>"}}
        self.open(self.make(SCHEMA, {"version": 1, "style": styles}))
        self.assertCountEqual(self.shown_names(), [*HOSTILE, "heir"])
        for index in range(len(styles)):
            self.browser.click(f"document.querySelectorAll('[role=option]')[{index}]")
            name = self.value(f"document.querySelectorAll('[role=option] .name')[{index}].textContent")
            self.assertEqual(self.selected_everywhere(), [name] * 3)
            note = self.value("document.querySelector('tr[data-path=note] td').textContent")
            self.assertEqual(note, HOSTILE[0] if name == "heir" else name)
        self.assertEqual(self.value("document.querySelector('section h2').firstChild.textContent"), "Shape & <b>form</b>")
        self.assertEqual(self.value("document.querySelectorAll('img, b, i, body script:not([id])').length"), 1)
        self.assertIsNone(self.value("window.taken"))
        self.expect_quiet()

    def test_a_thousand_styles_are_drawn_as_they_come_to_be_seen(self):
        styles = {f"style {number}": {"inherits": f"style {number - 1}"} if number % 50 else {} for number in range(1000)}
        for number in range(0, 1000, 7):
            styles[f"style {number}"]["area"] = {"paint": f"#{number:06x}"}
        self.open(self.make(SCHEMA, {"version": 1, "style": styles}))
        self.browser.wait_for("document.querySelector('[role=option] svg') !== null")
        self.assertEqual(self.value("document.querySelectorAll('[role=option]').length"), 1000)
        self.assertLess(self.value("document.querySelectorAll('[role=option] svg').length"), 300)
        self.tab_to("option")
        self.browser.press("End")
        self.assertEqual(self.selected_everywhere(), ["style 999"] * 3)
        self.browser.wait_for("document.activeElement.querySelector('svg') !== null")
        self.browser.press("/")
        self.browser.type("style 77")
        self.assertEqual(len(self.shown_names()), 11)
        self.expect_quiet()

    def test_a_closed_chain_is_shown_once_around(self):
        styles = {"A": {"inherits": "C"}, "B": {"inherits": "A"}, "C": {"inherits": "B"}, "T": {"inherits": "B"}, "Z": {}}
        self.open(self.make(SCHEMA, {"version": 1, "style": styles}))
        tree = "[...document.querySelectorAll('[role=treeitem].style')].map(t => [t.ariaLevel, t.textContent])"
        self.assertEqual(self.value(tree),
                         [["2", "Z"], ["2", "A in a closed chain"], ["3", "B"], ["4", "C"], ["4", "T"]])
        self.expect_quiet()

    def test_a_sheet_without_styles_says_so(self):
        self.browser.open(self.make(SCHEMA, {"version": 1}))
        self.assertEqual(self.heading(), "No styles")
        self.expect_quiet()

    def test_every_part_has_a_role_and_a_name(self):
        self.open_example()
        nodes = [node for node in self.browser.call("Accessibility.getFullAXTree")["nodes"] if not node["ignored"]]
        names = {}
        for node in nodes:
            names.setdefault(node["role"]["value"], []).append(node.get("name", {}).get("value", ""))
        self.assertEqual(names["navigation"], ["Inheritance"])
        self.assertEqual(names["tree"], ["Inheritance"])
        self.assertEqual(names["main"], ["Styles"])
        self.assertEqual(names["complementary"], [self.heading()])
        self.assertEqual(names["searchbox"], ["Search"])
        self.assertIn("banner", names)
        self.assertIn("Graphic style 29", names["listbox"])
        for role in ("treeitem", "option", "link", "checkbox", "columnheader", "rowheader"):
            self.assertTrue(names[role], role)
            self.assertTrue(all(names[role]), role)

    def test_texts_have_enough_contrast_in_light_and_dark(self):
        measure = """(() => {
          const numbers = (color) => color.match(/[\\d.]+/g).map(Number);
          const part = (c) => (c /= 255) <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
          const light = ([r, g, b]) => 0.2126 * part(r) + 0.7152 * part(g) + 0.0722 * part(b);
          const behind = (element) => {
            for (let e = element; e !== null; e = e.parentElement) {
              const color = numbers(getComputedStyle(e).backgroundColor);
              if (color.length < 4 || color[3] > 0) return color;
            }
          };
          const poor = [];
          for (const element of document.body.querySelectorAll('*')) {
            const hasText = [...element.childNodes].some(n => n.nodeType === 3 && n.data.trim() !== '');
            if (!hasText || element.closest('svg, script, noscript') || !element.checkVisibility()) continue;
            const one = light(numbers(getComputedStyle(element).color)), other = light(behind(element));
            const ratio = (Math.max(one, other) + 0.05) / (Math.min(one, other) + 0.05);
            if (ratio < 4.5) poor.push([element.className, element.textContent, ratio]);
          }
          return poor;
        })()"""
        for theme in ("light", "dark"):
            with self.subTest(theme):
                self.browser.set_theme(theme)
                self.open_example("Stra%C3%9Fe")
                self.assertEqual(self.value(measure), [])
                ground = self.value("getComputedStyle(document.documentElement).backgroundColor")
                self.assertEqual(sum(map(int, ground[4:-1].split(","))) < 384, theme == "dark")

    def test_a_narrow_window_needs_no_scrolling_sideways(self):
        self.browser.set_window(400, 800)
        self.open_example()
        self.browser.click("document.querySelector('[role=option]')")
        self.assertLessEqual(self.value("document.documentElement.scrollWidth"), 400)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
