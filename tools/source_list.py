"""Prints apt's source lines for the mirrors that this system takes its packages from."""

import pathlib
import re


def fields(stanza):
    return dict(re.findall(r"^([A-Za-z-]+):[ \t]*(.+)$", stanza, re.MULTILINE))


def deb822_lines(text):
    for stanza in re.split(r"\n\s*\n", text):
        field = fields(stanza)
        if "deb" not in field.get("Types", "").split():
            continue
        for address in field["URIs"].split():
            for suite in field["Suites"].split():
                yield f"deb-src {address} {suite} main"


def one_line_lines(text):
    for address, suite in re.findall(r"^deb\s+(?:\[[^\]]*\]\s+)?(\S+)\s+(\S+)\s", text, re.MULTILINE):
        yield f"deb-src {address} {suite} main"


def main():
    folder = pathlib.Path("/etc/apt")
    for path in sorted(folder.glob("sources.list.d/*.sources")):
        print("\n".join(deb822_lines(path.read_text())))
    for path in [folder / "sources.list", *sorted(folder.glob("sources.list.d/*.list"))]:
        if path.exists():
            print("\n".join(one_line_lines(path.read_text())))


if __name__ == "__main__":
    main()
