"""vaultpad-layout gallery: a page that a browser opens and filters."""

import shutil
import unittest
from urllib.parse import quote

from layouttool import STAGE, ToolTest, opened, run, staged

try:
    from selenium import webdriver
    from selenium.webdriver.common.by import By
    from selenium.webdriver.support.ui import Select, WebDriverWait
except ImportError:
    webdriver = None

LAYOUTS = ("pinpad", "reverse-keyboard-eh")
LANGUAGES = ("en", "de")
FLAGS = ("--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-dev-shm-usage",
         "--disable-background-networking", "--disable-component-update", "--disable-sync", "--window-size=1600,1200")
WAIT = 30


class GalleryTest(ToolTest):
    """With a gallery of two layouts in two languages."""

    def setUp(self):
        super().setUp()
        self.page = self.folder / "gallery" / "index.html"
        self.result = run("gallery", *map(staged, LAYOUTS), "-o", self.page.parent, "--resources", STAGE,
                          "--languages", ",".join(LANGUAGES), "--reduce", "1")
        self.assertEqual(0, self.result.returncode, self.result.stderr)


class Gallery(GalleryTest):
    def test_says_where_the_page_is_and_how_far_it_got(self):
        self.assertEqual(f"{self.page}\n", self.result.stdout)
        self.assertIn("4 of 4 pictures", self.result.stderr)

    def test_pictures_are_those_of_render(self):
        for layout in LAYOUTS:
            for language in LANGUAGES:
                with self.subTest(f"{layout} {language}"):
                    drawn = opened(self.render(staged(layout), "--language", language))
                    shown = opened(self.page.parent / "pictures" / f"{layout}.{language}.png")
                    self.assert_same_picture(drawn, shown)

    def test_reduces_the_pictures(self):
        small = self.folder / "small"
        self.assertEqual(0, run("gallery", staged("pinpad"), "-o", small, "--resources", STAGE, "--languages", "en",
                                "--reduce", "3").returncode)
        self.assertEqual((148, 162), opened(small / "pictures/pinpad.en.png").size)

    def test_needs_nothing_from_elsewhere(self):
        for file in self.page.parent.glob("*.*"):
            self.assertNotRegex(file.read_text(encoding="utf-8"), r"https?:|//[a-z]+\.|@import")

    def test_refuses_wrong_use(self):
        for options, text in (
                (("gallery",), "--output"),
                (("gallery", "-o", self.folder / "none", "--resources", self.folder), "--resources"),
                (("gallery", "-o", self.folder / "none", "--languages", "xx", "--resources", STAGE), "'xx'"),
        ):
            with self.subTest(options[1:2]):
                self.assert_wrong_use(run(*options), text)


class GalleryInABrowser(GalleryTest):
    def setUp(self):
        super().setUp()
        driver, browser = shutil.which("chromedriver"), shutil.which("chromium")
        self.assertTrue(webdriver and driver and browser,
                        "no browser to test with; install chromium, chromium-driver and python3-selenium")
        options = webdriver.ChromeOptions()
        options.binary_location = browser
        for flag in FLAGS + (f"--user-data-dir={self.folder / 'browser'}",):
            options.add_argument(flag)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.browser = webdriver.Chrome(service=webdriver.chrome.service.Service(driver), options=options)
        self.addCleanup(self.browser.quit)
        self.browser.get(f"file://{quote(str(self.page))}")

    def shown(self):
        """The descriptions of the pictures that can be seen."""
        return {picture.get_attribute("alt") for picture in self.browser.find_elements(By.CSS_SELECTOR, "figure img")
                if picture.is_displayed()}

    def choose(self, name, label):
        Select(self.browser.find_element(By.CSS_SELECTOR, f"[data-filter={name}]")).select_by_visible_text(label)

    def wait_for(self, condition):
        WebDriverWait(self.browser, WAIT).until(lambda _: condition())

    def test_filters_and_enlarges_pictures(self):
        everything = {f"{layout} in {language}" for layout in LAYOUTS for language in LANGUAGES}
        self.assertEqual(everything, self.shown())
        self.wait_for(lambda: all(self.browser.execute_script("return arguments[0].naturalWidth", picture) > 0
                                  for picture in self.browser.find_elements(By.CSS_SELECTOR, "figure img")))
        for name, label, shown in (
                ("pad", "PIN pad", {"pinpad in en", "pinpad in de"}),
                ("language", "de", {"pinpad in de"}),
                ("pad", "All", {"pinpad in de", "reverse-keyboard-eh in de"}),
                ("direction", "Reverse", {"reverse-keyboard-eh in de"}),
                ("look", "Plain", set()),
                ("look", "Both", {"reverse-keyboard-eh in de"}),
                ("orientation", "Portrait", set()),
        ):
            self.choose(name, label)
            self.assertEqual(shown, self.shown(), f"{name} {label}")
            count = self.browser.find_element(By.ID, "count").text
            self.assertEqual(f"{len(shown)} pictures", count)
        self.browser.find_element(By.CSS_SELECTOR, "button[type=reset]").click()
        self.wait_for(lambda: self.shown() == everything)

        self.browser.find_element(By.CSS_SELECTOR, "figure a").click()
        enlarged = self.browser.find_element(By.ID, "enlarged")
        self.assertTrue(enlarged.is_displayed())
        self.assertEqual("pinpad in en", enlarged.text)
        enlarged.click()
        self.assertFalse(enlarged.is_displayed())
        self.assertEqual([], self.browser.get_log("browser"))


if __name__ == "__main__":
    unittest.main()
