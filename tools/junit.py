"""Results of tests in the JUnit form that GoogleTest and pytest write too."""

from __future__ import annotations

import dataclasses
import pathlib
import xml.etree.ElementTree as ET


@dataclasses.dataclass(frozen=True)
class Case:
    name: str
    failure: str | None = None
    skipped: bool = False
    seconds: float = 0.0


def write(path: pathlib.Path, suite: str, cases: list[Case]) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    root = ET.Element("testsuites")
    node = ET.SubElement(root, "testsuite", name=suite, tests=str(len(cases)))
    for case in cases:
        element = ET.SubElement(
            node, "testcase", classname=suite, name=case.name, time=f"{case.seconds:.3f}"
        )
        if case.failure is not None:
            ET.SubElement(element, "failure", message=_printable(case.failure))
    ET.ElementTree(root).write(path, encoding="utf-8", xml_declaration=True)


def read(path: pathlib.Path) -> list[Case]:
    return [_case(element) for element in ET.parse(path).getroot().iter("testcase")]


def _case(element: ET.Element) -> Case:
    name = f"{element.get('classname', '')}.{element.get('name', '')}"
    problems = [child for child in element if child.tag in ("failure", "error")]
    skipped = (
        any(child.tag == "skipped" for child in element)
        or element.get("status") == "notrun"
        or element.get("result") in ("skipped", "suppressed")
    )
    failure = None
    if problems:
        failure = problems[0].get("message") or problems[0].text or "failed"
    return Case(name, failure, skipped and failure is None, float(element.get("time") or 0.0))


def _printable(text: str) -> str:
    return "".join(c for c in text if c in "\n\t" or ord(c) >= 32)
