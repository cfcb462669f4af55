"""macos_bundle.py <packaging/macos> <core/base/product.h> <version>: what the bundle for macOS says of itself.

The build fills the template in only on macOS; here its variables are given values, and the result is read by
rules of its own, because there is no tool of that system to judge it.
"""

import pathlib
import plistlib
import re
import sys

folder, product, version = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]


def expect(condition, complaint):
    if not condition:
        sys.exit(complaint)


def strings(path):
    """The dictionary in a .strings file; whatever is neither an entry nor a comment is an error."""
    text = re.sub(r"/\*.*?\*/", "", path.read_text("utf-8"), flags=re.S)
    entry = re.compile(r'\s*"((?:[^"\\]|\\.)+)"\s*=\s*"((?:[^"\\]|\\.)*)"\s*;')
    rest = entry.sub("", text)
    expect(not rest.strip(), f"{path}: not understood: {rest.strip()!r}")
    return dict(entry.findall(text))


identifier = re.search(r'bundleIdentifier = "([^"]+)"', product.read_text()).group(1)
cmake = (folder / "CMakeLists.txt").read_text()
values = dict(re.findall(r"^  (MACOSX_BUNDLE_\w+) (.+?)\)?$", cmake, re.M))
# Of other variables only those of the cache are known where the template is filled in.
values["CMAKE_OSX_DEPLOYMENT_TARGET"] = "13.0"
given = {"${PROJECT_VERSION}": version, "${HOPSEL_BUNDLE_IDENTIFIER}": identifier}


def fill(match):
    expect(match.group(1) in values, f"Info.plist.in: nobody sets {match.group(1)}")
    value = values[match.group(1)].strip('"')
    return given.get(value, value)


information = plistlib.loads(re.sub(r"\$\{(\w+)\}", fill, (folder / "Info.plist.in").read_text()).encode())
for key, value in {
    "CFBundleIdentifier": identifier,
    "CFBundleShortVersionString": version,
    "CFBundleVersion": version,
    "CFBundlePackageType": "APPL",
    "CFBundleExecutable": "Hopsel",
    "LSMinimumSystemVersion": "13.0",
    "LSUIElement": True,
}.items():
    expect(information.get(key) == value, f"Info.plist: {key} is {information.get(key)!r}, not {value!r}")
expect((folder.parent / "icons" / "hopsel.svg").exists(), "the icon's drawing is gone")

usages = {key for key in information if key.endswith("UsageDescription")}
expect(usages, "Info.plist: no reason for what the user is asked for")
for language in information["CFBundleLocalizations"]:
    texts = strings(folder / f"{language}.lproj" / "InfoPlist.strings")
    expect(usages <= texts.keys(), f"{language}: no text for {usages - texts.keys()}")
    expect(texts.keys() <= information.keys(), f"{language}: of no use: {texts.keys() - information.keys()}")
    expect(all(texts.values()), f"{language}: an empty text")
    isKorean = any("가" <= letter <= "힣" for letter in texts["NSDownloadsFolderUsageDescription"])
    expect(isKorean == (language == "ko"), f"{language}: the texts are in another language")
