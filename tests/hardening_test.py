#!/usr/bin/env python3
"""The built program is hardened (cmake/KvaHarden.cmake): read from its file by readelf.

Usage: hardening_test.py PROGRAM
"""

import re
import subprocess
import sys


def told(option, program):
    return subprocess.run(["readelf", "--wide", option, program], check=True,
                          stdout=subprocess.PIPE, text=True).stdout


def lacks(program):
    """What the program lacks."""
    header = told("--file-header", program)
    segments = told("--segments", program)
    dynamic = told("--dynamic", program)
    symbols = told("--dyn-syms", program)
    stack = re.search(r"GNU_STACK.*", segments)
    rows = [
        ("a position that the system picks (PIE)",
         re.search(r"Type:\s+DYN", header) and re.search(r"FLAGS_1.*\bPIE\b", dynamic)),
        ("tables read-only behind the start (RELRO)", "GNU_RELRO" in segments),
        ("all symbols bound at the start (BIND_NOW)",
         re.search(r"FLAGS.*\b(BIND_)?NOW\b", dynamic)),
        ("a stack that is not executed", stack and "RWE" not in stack[0]),
        ("the stack protector", "__stack_chk_fail" in symbols),
        ("checked calls (FORTIFY)", re.search(r"__(mem|str|v?f?s?n?printf|read|f)\w*_chk\b", symbols)),
    ]
    return [what for what, there in rows if not there]


def main():
    missing = lacks(sys.argv[1])
    print("\n".join("lacks " + what for what in missing) or "hardened")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
