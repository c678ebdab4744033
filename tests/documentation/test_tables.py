"""Tables of the documents equal what the sources say."""
import json
import re
import tomllib
import unittest
import xml.etree.ElementTree as ElementTree

from markdown import ROOT, table

NAMESPACE = {"r": "http://relaxng.org/ns/structure/1.0"}
TELEVISION = "The television: one key file"


def television_rules():
    """From (group, key) to the accepted words or range, as makeKeyRules() has them."""
    text = (ROOT / "platform/host/television-file.cpp").read_text()
    rules = text[text.index("makeKeyRules() {"):text.index("struct GlibDelete")]
    lists = {name: re.findall(r'\{"([^"]+)",', body) for name, body in re.findall(r"> (\w+) = \{(.*?)\};", rules, re.S)}
    found = {}
    for kind, group, key, rest in re.findall(r'(?:(\w+)(?:<[^>]*>)?\(|\{)"([\w-]+)", (?:"([\w-]+)", )?(.*?)[)}],\n', rules):
        if kind == "rulesKey":
            group, key = "privilege", group
        numbers = re.search(r"(\d+), (\d+)$", rest)
        if kind == "numberKey":
            found[group, key] = list(numbers.groups())
        elif kind == "choiceKey":
            found[group, key] = lists.get(rest.split(", ")[-1]) or re.findall(r'\{"([^"]+)",', rest)
        elif "kLogTargets" in rest:
            found[group, key] = ["stderr", "none"]
        elif key:
            found[group, key] = []
    return found


def documented_rules():
    found = {}
    group = ""
    for group_cell, keys, values, default in table("docs/development-host.md", TELEVISION, 4):
        group = group_cell.strip("`") or group
        for key in re.findall(r"`([^`]+)`", keys):
            found[group, key] = (values, default)
    return found


def television_defaults():
    """From a member of Television to the text of its initial value."""
    text = (ROOT / "platform/host/television.h").read_text()
    struct = text[text.index("struct Television {"):]
    return dict(re.findall(r"^    [\w:<>]+ (\w+) = ([^;]+);", struct[:struct.index("};")], flags=re.M))


def own_attributes(holder):
    """The attributes of an element of the schema, and not those of elements in it."""
    found = []
    for child in holder:
        tag = child.tag.rsplit("}", 1)[-1]
        if tag == "attribute":
            found.append(child.get("name"))
        elif tag != "element":
            found += own_attributes(child)
    return found


class DevelopmentHost(unittest.TestCase):
    def test_every_key_of_the_television_is_in_the_table_and_no_other(self):
        rules = television_rules()
        self.assertGreater(len(rules), 20)
        self.assertEqual(set(rules), set(documented_rules()))

    def test_the_table_says_what_each_key_takes(self):
        documented = documented_rules()
        for name, accepted in television_rules().items():
            values = re.findall(r"`([^`]+)`", documented[name][0])
            if accepted and accepted != ["none", "landscape", "portrait", "portrait-reversed"]:
                self.assertEqual(accepted, values[:len(accepted)], name)
        self.assertEqual("the same", documented["orientation", "sensor"][0])
        self.assertEqual(["none", "landscape", "portrait", "portrait-reversed"],
                         re.findall(r"`([^`]+)`", documented["orientation", "rotator"][0]))

    def test_the_table_says_the_defaults(self):
        documented = documented_rules()
        defaults = television_defaults()
        members = {("settings", "language"): "language", ("settings", "focus-zoom"): "focusZoom",
                   ("sound", "volume"): "volume", ("sound", "speaker"): "speaker", ("sound", "voice"): "voice",
                   ("orientation", "mirrored"): "mirrored", ("secure-world", "display"): "taDisplay",
                   ("secure-world", "view"): "taView", ("secure-world", "log"): "taLog",
                   ("secure-world", "timeout"): "taTimeoutSeconds"}
        for name, member in members.items():
            self.assertEqual(f"`{defaults[member].strip(chr(34))}`", documented[name][1], name)


class Packaging(unittest.TestCase):
    def test_findings_that_are_let_pass_have_a_reason_and_no_other_has(self):
        filters = tomllib.loads((ROOT / "packaging/rpmlint.toml").read_text())["Filters"]
        passed = {("rpmlint", text.split()[0]) for text in filters}
        for path in (ROOT / "packaging/debian").glob("*.lintian-overrides"):
            passed |= {("lintian", name) for name in re.findall(r"^[^#\s]+: (\S+)", path.read_text(), re.M)}
        rows = table("docs/packaging.md", "Findings that are let pass", 3)
        self.assertEqual(passed, {(checker, finding.strip("`")) for finding, checker, _ in rows})
        self.assertTrue(all(reason.endswith(".") for _, _, reason in rows))


class LayoutGuide(unittest.TestCase):
    def test_the_table_has_the_attributes_that_the_schema_allows(self):
        schema = ElementTree.parse(ROOT / "tools/data/layout.rng").getroot()
        drawn = schema.find("r:define[@name='drawn']", NAMESPACE)
        allowed = set()
        for element in schema.iterfind(".//r:element", NAMESPACE):
            uses_drawn = element.find("r:ref[@name='drawn']", NAMESPACE) is not None
            for holder in [element, drawn] if uses_drawn else [element]:
                allowed |= {(element.get("name"), name) for name in own_attributes(holder)}
        documented = set()
        name = ""
        for cell, attributes, _ in table("docs/layout-guide.md", "Elements and attributes", 3):
            name = cell.strip("`") or name
            documented |= {(name, attribute) for attribute in re.findall(r"`([^`]+)`", attributes)}
        self.assertEqual(set(), allowed ^ documented)

    def test_the_areas_are_those_that_the_layouts_are_made_in(self):
        areas = tomllib.loads((ROOT / "res/generator/areas.toml").read_text())
        sizes = {tuple(area["size"]) for pad in areas.values() for area in pad.values()}
        rows = table("docs/layout-guide.md", "Places", 3)
        self.assertEqual(sizes, {(int(width), int(height)) for _, width, height in rows})


class IntegrationGuide(unittest.TestCase):
    def test_every_function_of_the_header_is_in_the_table_of_return_codes(self):
        header = (ROOT / "include/vaultpad/vaultpad.h").read_text()
        functions = re.findall(r"^VAULTPAD_API int (\w+)\(", header, flags=re.M)
        self.assertGreater(len(functions), 10)
        rows = table("docs/integration-guide.md", "Return codes", 3)
        self.assertEqual(sorted(functions), sorted(row[0].strip("`") for row in rows))


class Developers(unittest.TestCase):
    def commands(self):
        return [command for row in table("DEVELOPERS.md", "Commands", 2) for command in re.findall(r"`([^`]+)`", row[0])]

    def test_scripts_in_the_table_of_commands_are_there(self):
        scripts = [script for command in self.commands()
                   for script in re.findall(r"(?:^|\s)((?:\./|scripts/|res/|\.ci/)[\w./-]+)", command)]
        self.assertGreater(len(scripts), 8)
        for script in scripts:
            self.assertTrue((ROOT / script).stat().st_mode & 0o100, f"{script} is no program")

    def test_presets_in_the_table_of_commands_are_there(self):
        presets = {preset["name"] for preset in json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]}
        named = [name for command in self.commands() for name in re.findall(r"(?:--preset|scripts/build) ([a-z]+)", command)]
        self.assertGreater(len(named), 3)
        self.assertEqual(set(), set(named) - presets)


class Options(unittest.TestCase):
    def test_the_readme_has_the_build_options_that_there_are(self):
        files = [ROOT / "CMakeLists.txt", *(ROOT / "cmake").glob("*.cmake")]
        text = "\n".join(file.read_text() for file in files)
        options = set(re.findall(r"^(?:option|set)\((VAULTPAD_\w+) (?:\".*\" (?:ON|OFF)|.*CACHE (?:STRING|PATH))", text, re.M))
        options.discard("VAULTPAD_FUZZERS")  # for scripts/fuzz alone
        rows = table("README.md", "Building without the scripts", 3)
        self.assertEqual(options, {row[0].strip("`") for row in rows})


if __name__ == "__main__":
    unittest.main()
