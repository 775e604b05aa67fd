"""Looks at pages of kpifc report in a browser: check_page.py CASE PAGE [ARGUMENT].

Prints what is wrong, and how many checks were made; the exit code is 1 where anything is, 77 where there is no browser.
"""
import json
import sys

sys.dont_write_bytecode = True
import browser as browsers  # noqa: E402
import picture  # noqa: E402

WIDE, NARROW = (1280, 900), (360, 740)
ITEM_NAME = "document.getElementById('item-name')?.textContent"


class Checks:
    def __init__(self):
        self.made = 0
        self.failed = 0

    def equal(self, what, found, expected):
        self.made += 1
        if found != expected:
            self.failed += 1
            print(f"{what}: found {found!r}, expected {expected!r}")

    def holds(self, what, found):
        self.equal(what, bool(found), True)


def tree_item(name):
    return f"""[...document.querySelectorAll('[role=treeitem]')]
        .find((each) => each.querySelector('.caption')?.textContent === {json.dumps(name)})"""


def link(name, within="#item"):
    return f"""[...document.querySelectorAll({json.dumps(within + ' a')})]
        .find((each) => each.querySelector('bdi')?.textContent === {json.dumps(name)})"""


def search(page, text):
    """Types into the search; returns the results as texts."""
    page.script("document.getElementById('query').select()")
    page.type(text)
    page.wait(f"document.getElementById('query').value === {json.dumps(text)}")
    page.wait("/found/.test(document.getElementById('status').textContent)")
    return page.script("[...document.querySelectorAll('#results li')].map((each) => each.textContent)")


def fits(page, checks, what):
    checks.holds(f"{what} is no wider than the window",
                 page.script("document.documentElement.scrollWidth <= innerWidth"))


def house(page, path, checks):
    page.view(*WIDE)
    page.load(path)
    checks.equal("figures", page.script("[...document.querySelectorAll('.counts dt, .counts dd')].slice(0, 4)"
                                        ".map((each) => each.textContent)"),
                 ["Elements", "8", "Spaces", "1"])
    # the mouse
    checks.holds("closed at first", not page.has(tree_item("South wall")))
    page.click(tree_item("Ground floor") + ".querySelector('.twist')")
    page.wait(tree_item("South wall"))
    page.click(tree_item("South wall") + ".querySelector('.caption')")
    page.wait(ITEM_NAME + " === 'South wall #74'")
    rows = page.script("[...document.querySelectorAll('#item tr')].map((row) => [...row.cells].map((cell) => "
                       "cell.innerText.trim()).join(' = '))")
    for row in ("FireRating = F 90", "Length = 8000 mm", "NetSideArea = 18.2 m\u00b2", "Tag = W-S",
                "IsExternal = true"):
        checks.holds(f"{row} in {rows}", row in rows)
    checks.equal("layers", page.script("document.querySelector('.layers').innerText.replace(/\\s+/g, ' ')").strip(),
                 "20 mm Render 265 mm Brick 15 mm Plaster")
    checks.equal("where it is", page.script("document.querySelector('.crumbs').lastElementChild.textContent"),
                 "Ground floor")
    # links, there and back
    page.click(link("Brick 300"))
    page.wait(ITEM_NAME + " === 'Brick 300 #190'")
    walls = """[...document.querySelectorAll('.relation')]
        .find((each) => each.textContent.startsWith('ObjectTypeOf')).querySelectorAll('li').length"""
    checks.equal("of its type", page.script(walls), 4)
    page.click(link("East wall"))
    page.wait(ITEM_NAME + " === 'East wall #86'")
    page.script("history.back()")
    page.wait(ITEM_NAME + " === 'Brick 300 #190'")
    # search
    for text, expected in (("reference BRICK-300", ["Brick 300", "South wall", "East wall", "North wall", "West wall"]),
                           ("0xGO74I1L2sOBnKbLTH2I2", ["South wall"]), ("ifcslab", ["Floor", "Roof"]),
                           ("no such wall", []), ("kitchen window", ["Kitchen window"])):
        found = search(page, text)
        checks.equal(f"found for {text}", [name for name in expected if any(each.startswith(name) for each in found)],
                     expected)
        checks.equal(f"count for {text}", len(found), len(expected))
    page.key("Enter")
    page.wait("document.activeElement.closest('#results')")
    page.key("Enter")
    page.wait(ITEM_NAME + " === 'Kitchen window #145'")
    # the keyboard alone
    page.load(path)
    page.script("document.querySelector('[role=treeitem][tabindex=\"0\"]').focus()")
    page.key("End", "ArrowUp", "ArrowRight", "ArrowRight", "ArrowDown", "Enter")
    page.wait(ITEM_NAME + " === 'South wall #74'")
    page.key("ArrowLeft", "ArrowLeft")
    page.wait("!" + tree_item("South wall"))
    page.load(path, "#i74")
    checks.equal("marked in the tree", page.script("document.querySelector('[aria-selected] .caption').textContent"),
                 "South wall")
    page.load(path, "#i999")
    checks.equal("unknown instance", page.script(ITEM_NAME), "#999 is not on this page")


def looks(page, path, checks):
    """Pictures are not blank, dark ones dark, and nothing is cut off."""
    brightness = {}
    for address in ("", "#i74", "#q=wall"):
        for size in (WIDE, NARROW):
            for dark in (False, True):
                page.view(*size, dark=dark)
                page.load(path, address)
                fits(page, checks, f"{address} at {size}")
                counts = picture.colours(page.screenshot(scale=0.25))
                total = sum(counts.values())
                ground = max(counts, key=counts.get)
                checks.holds(f"{address} at {size}: {len(counts)} colours", len(counts) > 30)
                checks.holds(f"{address} at {size}: something on the ground", counts[ground] < 0.97 * total)
                brightness[dark] = sum(ground) / 3
        checks.holds(f"{address}: light {brightness}", brightness[False] > 200 > 60 > brightness[True])
    page.view(*WIDE, media="print")
    page.load(path, "#i74")
    checks.equal("printed", page.script("[getComputedStyle(document.querySelector('.side')).display,"
                                        "getComputedStyle(document.querySelector('#item')).display]"),
                 ["none", "block"])


def no_script(page, path, checks):
    page.call("Emulation.setScriptExecutionDisabled", value=True)
    page.view(*WIDE)
    page.call("Page.navigate", url="about:blank")
    page.url = "file://" + path
    page.call("Page.navigate", url=page.url)
    page.wait("document.readyState === 'complete' && document.querySelector('noscript p')?.offsetHeight > 0")
    text = page.script("document.body.innerText")
    for piece in sys.argv[3:]:
        checks.holds(f"{piece} without a script", piece in text)
    checks.equal("side", page.script("getComputedStyle(document.querySelector('.side')).display"), "none")


def hostile(page, path, checks):
    """Texts that look like markup are texts. The argument: instance names and the names that people gave them."""
    page.view(*NARROW)
    for instance, name in json.loads(sys.argv[3]).items():
        page.load(path, "#i" + instance)
        checks.equal("name", page.script("document.querySelector('#item-name bdi').textContent"), name)
        page.load(path)
        found = search(page, name.split()[0])
        checks.holds(f"{name} among {found}", any(each.startswith(name) for each in found))
    for address in ("", "#i3", "#i4", "#i5", "#q=<", "#findings", "#%3Cb%3E"):
        page.load(path, address)
        checks.equal(f"scripts and pictures at {address}",
                     page.script("[document.querySelectorAll('img, iframe, b b').length, typeof hacked]"),
                     [0, "undefined"])
        checks.equal("scripts", page.script("document.scripts.length"),
                     page.script("document.querySelectorAll('script[id^=data-]').length") + 1)
        fits(page, checks, address)
    page.load(path, "#findings")
    page.click(link("#6 IfcActorRole", "#findings"))
    page.wait(ITEM_NAME + " === 'IfcActorRole #6'")
    checks.holds("its finding", page.has("document.querySelector('#item .found .badge')"))


def model(page, path, checks):
    """Any page: loads soon, opens, finds and shows. The argument: the seconds that anything may take."""
    limit = float(sys.argv[3])
    page.view(*WIDE)
    loaded = page.load(path)
    page.script("""window.longest = 0; new PerformanceObserver((list) => { for (const each of list.getEntries())
                longest = Math.max(longest, each.duration); }).observe({ type: 'longtask', buffered: true });""")
    checks.holds("there is a tree or word of none", page.script("document.querySelector('#tree').textContent.trim()"))
    found = search(page, "ifc")
    checks.holds("something is found", found)
    shown = page.script("""(async () => {
        const start = performance.now();
        let shown = 0;
        for (const place of [...document.querySelectorAll('#results a')].slice(0, 40)) {
            location.hash = place.getAttribute('href');
            await new Promise((done) => addEventListener('hashchange', done, { once: true }));
            await new Promise(requestAnimationFrame);
            shown += document.querySelectorAll('#item section').length > 0;
        }
        return [shown, (performance.now() - start) / shown];
    })()""")
    checks.equal("shown", shown[0], min(40, len(found)))
    elements = page.script("document.querySelectorAll('*').length")
    longest = page.script("new Promise((done) => setTimeout(() => done(longest), 100))") / 1000
    checks.holds(f"soon enough: loaded in {loaded:.2f} s, longest task {longest:.2f} s",
                 loaded < limit and longest < limit)
    print(f"loaded {loaded:.2f} s, longest task {longest:.2f} s, an instance {shown[1]:.0f} ms, {elements} elements")


def main():
    case = {"house": house, "looks": looks, "no_script": no_script, "hostile": hostile, "model": model}[sys.argv[1]]
    path = browsers.find_browser()
    if not path:
        print("no browser")
        return 77
    checks = Checks()
    with browsers.Browser(path) as page:
        case(page, sys.argv[2], checks)
        for problem in page.problems:
            checks.equal("the browser", problem, None)
    print(f"{checks.made} checks, {checks.failed} failed")
    return 1 if checks.failed else 0


if __name__ == "__main__":
    sys.exit(main())
