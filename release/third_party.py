#!/usr/bin/python3
"""Writes what a release tells about the libraries inside it: their licences and a bill of materials.

    third_party.py notices --root CHECKOUT [--author FILE] > THIRD_PARTY_NOTICES.txt
    third_party.py bom --root CHECKOUT --version V --epoch SECONDS > bom.cdx.json

Both are made from one list, below, and from what was really built: versions and checksums of
build/windows-deps/sources.txt, licence texts out of those sources, and the files of the compiler's
runtime that the linker takes. Ends with status 1 and one line when something is missing.
"""

from __future__ import annotations

import argparse
import datetime
import hashlib
import json
import pathlib
import subprocess
import sys
import uuid

COMPILER = "i686-w64-mingw32-g++-win32"

# Built from source into the Windows executable: name, source package, licence as SPDX knows it
# ("id", "name" or "expression"), files of the source that hold the licence.
SOURCES = [
    ("FLTK", "fltk1.4", {"license": {"name": "GNU LGPL 2 with the exceptions of FLTK"}}, ["COPYING"]),
    ("libzip", "libzip", {"license": {"id": "BSD-3-Clause"}}, ["LICENSE"]),
    ("libpng", "libpng1.6", {"license": {"id": "libpng-2.0"}}, ["LICENSE"]),
    ("zstd", "libzstd", {"license": {"id": "BSD-3-Clause"}}, ["LICENSE"]),
    (
        "zlib",
        "libz-mingw-w64-dev",
        {"license": {"id": "Zlib"}},
        ["unpacked/usr/share/doc/libz-mingw-w64-dev/copyright"],
    ),
]

# Where scripts/setup-windows unpacks a package, when not under its own name.
FOLDERS = {"libz-mingw-w64-dev": "zlib"}

# Files of Debian packages that enter the Windows executable: name, package, the library that the
# compiler names, licence, the package's licence text.
RUNTIME = [
    ("mingw-w64 runtime", "mingw-w64-i686-dev", "libmingwex.a", {"license": {"id": "ZPL-2.1"}}),
    ("mingw-w64 start-up code", "mingw-w64-i686-dev", "libmingw32.a", {"license": {"id": "ZPL-2.1"}}),
    (
        "GCC C++ runtime",
        "gcc-mingw-w64-base",
        "libstdc++.a",
        {"expression": "GPL-3.0-or-later WITH GCC-exception-3.1"},
    ),
    ("GCC runtime", "gcc-mingw-w64-base", "libgcc.a", {"expression": "GPL-3.0-or-later WITH GCC-exception-3.1"}),
]

# Headers that enter the author's tools, which otherwise take Debian's own libraries.
HEADERS = [("CLI11", "libcli11-dev", "/usr/include/CLI/CLI.hpp", {"license": {"id": "BSD-3-Clause"}})]

WINDOWS = "quirloduino.exe"
TOOLS = "quirloduino-pack, quirloduino-criteria"


class Missing(Exception):
    """What a release needs and the checkout lacks."""


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def sha256(path):
    return hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()


def read(path):
    try:
        return pathlib.Path(path).read_text(encoding="utf-8", errors="replace").strip("\n")
    except OSError as error:
        raise Missing(f"{path}: {error.strerror}") from error


def package_version(package):
    listed = output("dpkg-query", "-W", "-f", "${Package} ${Version}\n", package)
    return listed.splitlines()[0].split(" ")[1]


def recorded(record):
    """Of each source package, its version and the checksum of the file that holds the library."""
    found = {}
    for line in read(record).splitlines():
        name, version, checksum, file = line.split(" ")
        if ".orig." in file and not file.endswith(".asc") or file.endswith(".deb"):
            found[name] = (version, checksum, file)
    return found


def components(root):
    """One dictionary for each: name, version, sha256, of (what the checksum is of), licence, where, text."""
    work = root / "build/windows-deps"
    sources = recorded(work / "sources.txt")
    for name, package, licence, files in SOURCES:
        if package not in sources:
            raise Missing(f"{work}/sources.txt names no {package}")
        version, checksum, of = sources[package]
        folder = work / "source" / FOLDERS.get(package, package)
        text = "\n\n".join(read(folder / file) for file in files)
        yield {"name": name, "version": version, "sha256": checksum, "of": of, "licence": licence,
               "where": WINDOWS, "text": text}
    for name, package, library, licence in RUNTIME:
        file = output(COMPILER, "-print-file-name=" + library)
        yield {"name": name, "version": package_version(package), "sha256": sha256(file), "of": library,
               "licence": licence, "where": WINDOWS, "text": read(f"/usr/share/doc/{package}/copyright")}
    packer = root / "build/packer-zstd"
    if (packer / "prefix/lib/libzstd.a").exists():  # otherwise the tools take Debian's own
        version, checksum, file = recorded(packer / "sources/libzstd")["libzstd"]
        yield {"name": "zstd", "version": version, "sha256": checksum, "of": file,
               "licence": {"license": {"id": "BSD-3-Clause"}}, "where": "quirloduino-pack",
               "text": read(packer / "prefix/LICENSE")}
    for name, package, header, licence in HEADERS:
        yield {"name": name, "version": package_version(package), "sha256": sha256(header),
               "of": pathlib.Path(header).name, "licence": licence, "where": TOOLS,
               "text": read(f"/usr/share/doc/{package}/copyright")}


def licence_words(licence):
    return licence.get("expression") or licence["license"].get("id") or licence["license"]["name"]


def notices(parts, author):
    rule = "=" * 100
    lines = ["Libraries inside the programs of this release, and their licences.", ""]
    for part in parts:
        lines.append(f"  {part['name']} {part['version']}, in {part['where']}: {licence_words(part['licence'])}")
    lines += [
        "",
        "The Debian packages carry no other library: they take Debian's own, which have their licences",
        "under /usr/share/doc.",
    ]
    texts = {}
    for part in parts:
        texts.setdefault(part["text"], []).append(f"{part['name']} {part['version']}")
    for text, names in texts.items():
        lines += ["", rule, ", ".join(names), rule, "", text]
    if author is not None:
        lines += ["", rule, "What the payload installs", rule, "", read(author)]
    return "\n".join(lines) + "\n"


def bill(parts, version, epoch):
    def reference(name, its_version):
        return f"{name}@{its_version}".replace(" ", "-")

    product = {"type": "application", "bom-ref": reference("quirloduino", version), "name": "quirloduino",
               "version": version, "description": "Adds the Quirlo boards to copies of the Arduino IDE"}
    libraries = [
        {
            "type": "library",
            "bom-ref": reference(part["name"], part["version"]),
            "name": part["name"],
            "version": part["version"],
            "hashes": [{"alg": "SHA-256", "content": part["sha256"]}],
            "licenses": [part["licence"]],
            "properties": [
                {"name": "quirloduino:in", "value": part["where"]},
                {"name": "quirloduino:hash-of", "value": part["of"]},
            ],
        }
        for part in parts
    ]
    told = {
        "$schema": "http://cyclonedx.org/schema/bom-1.5.schema.json",
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "version": 1,
        "metadata": {
            "timestamp": datetime.datetime.fromtimestamp(epoch, datetime.timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ"),
            "component": product,
        },
        "components": libraries,
        "dependencies": [{"ref": product["bom-ref"], "dependsOn": [library["bom-ref"] for library in libraries]}]
        + [{"ref": library["bom-ref"]} for library in libraries],
    }
    # A number of its own for each content, and the same for the same content.
    told["serialNumber"] = uuid.uuid5(uuid.NAMESPACE_OID, json.dumps(told, sort_keys=True)).urn
    return json.dumps(told, indent=2) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("what", choices=["notices", "bom"])
    parser.add_argument("--root", type=pathlib.Path, required=True)
    parser.add_argument("--author", type=pathlib.Path)
    parser.add_argument("--version", default="")
    parser.add_argument("--epoch", type=int, default=0)
    asked = parser.parse_args()
    try:
        parts = list(components(asked.root))
        if asked.what == "notices":
            sys.stdout.write(notices(parts, asked.author))
        else:
            sys.stdout.write(bill(parts, asked.version, asked.epoch))
    except (Missing, OSError, subprocess.CalledProcessError) as error:
        sys.exit(f"third_party: {error}")


if __name__ == "__main__":
    main()
