"""Puts all mutants of a source into it at once: switch_mutants(TEXT, {NUMBER: MUTANT}). Used by mutantbuild.py.

Each function with mutants in it becomes a switch over the environment variable FFC_MUTANT, read once when the program or the
library is loaded: one copy of its body for each mutant, and the original. So that thousands of mutants are compiled and linked
once. What is outside of functions (constants of the file, members' first values, tables) cannot be switched, and is built by
itself. A copy calls itself mutant_NUMBER in what the compiler says, so that those that do not compile are found."""

import re

from mutants import blank_out, find_end

VARIABLE = "FFC_MUTANT"
# Reads the variable; a function that the compiler evaluates has no mutant then.
HEAD = f"""#include <cstdlib>
static const long long ffc_mutant = std::getenv("{VARIABLE}") ? std::atoll(std::getenv("{VARIABLE}")) : 0;
"""
SWITCH = "switch (__builtin_is_constant_evaluated() ? 0 : ffc_mutant)"
# What stands before a bracket that opens no body, but has functions inside; and before one that opens a body.
SCOPE = re.compile(r'^\s*(inline\s+)?namespace\b|^\s*extern\b[^()]*$|\b(class|struct|union)\s[^()=]*$')
BODY = re.compile(r"\)\s*((const|noexcept|override|final|mutable)\s*)*(->[^;{}]*)?$")
INITIALISERS = re.compile(r"\)\s*:\s")
MEMBER = re.compile(r"[\w>]\s*$")


def find_bodies(code):
    """Where the bodies of functions stand that are in no other one: [(start, end)] of their brackets."""
    found, head, i = [], 0, 0
    while i < len(code):
        if code[i] in ";}":
            head = i + 1
        elif code[i] == "{":
            before, end = code[head:i], find_end(code, i)
            if end is None:
                break
            if SCOPE.search(before):
                head = i + 1
            elif INITIALISERS.search(before) and MEMBER.search(before):
                i = end
            else:
                if BODY.search(before) or INITIALISERS.search(before):
                    found.append((i, end))
                i, head = end, end + 1
        i += 1
    return found


def switch_mutants(path, text, mutants):
    """(changed text, the numbers of those that are in it)."""
    parts, done, numbers = [HEAD, f'#line 1 "{path}"\n'], 0, set()
    for start, end in find_bodies(blank_out(text)):
        inside = {number: mutant for number, mutant in mutants.items() if start < mutant.start and mutant.end <= end}
        if not inside:
            continue
        line = text.count("\n", 0, start) + 1
        parts += [text[done:start], "{\n", SWITCH, " {\n"]
        for number, mutant in inside.items():
            body = text[start:mutant.start] + mutant.text + text[mutant.end:end + 1]
            parts.append(f'case {number}:\n#line {line} "mutant_{number}"\n{body}\nbreak;\n')
        parts.append(f'default:\n#line {line} "{path}"\n{text[start:end + 1]}\nbreak;\n}}\n}}\n')
        parts.append(f'#line {text.count(chr(10), 0, end) + 1} "{path}"\n')
        done = end + 1
        numbers |= set(inside)
    return ("".join([*parts, text[done:]]) if numbers else text), numbers
