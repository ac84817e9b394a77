"""Finds where a source can be made wrong: find_mutants(PATH, TEXT). Used by mutate.py.

The sources are formatted by clang-format, so blanks tell what a token is: an operator with blanks around it has two operands,
one without belongs to a type, a template or a single operand. What is mistaken all the same does not compile, and is counted
as that."""

import collections
import re

# One change of one place: text[start:end] becomes `text`. Of several that change the same line in the same way, the nth.
Mutant = collections.namedtuple("Mutant", "path line operator before after start end text nth", defaults=(0,))

RELATIONAL = {"<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
              "&&": ("||",), "||": ("&&",)}
ARITHMETIC = {"+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",), "<<": (">>",), ">>": ("<<",), "&": ("|",),
              "|": ("&",), "^": ("&",), "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",), "|=": ("&=",), "&=": ("|=",)}
OPERATORS = re.compile(r"(?<=\s)(<<|>>|[<>=!+\-*/|&]=|&&|\|\||[<>+\-*/%&|^])(?=\s)")
NUMBER = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f']+|\d[\d']*(?:\.\d*)?(?:e[+-]?\d+)?)([uUlLfF]*)(?![\w.'])")
# The lesser or the greater of two, which are the same where they are equal.
CHOICE = re.compile(r"(?<![\w.])([\w.\[\]]+)(?= [<>]=? ([\w.\[\]]+) \? (?:\1 : \2|\2 : \1)(?![\w.\[(]))")
# What is no call, and what does not mind the order.
NO_CALL = {"min", "max", "Min", "Max", "if", "while", "for", "switch", "return", "sizeof", "catch", "static_assert", "alignas", "decltype", "noexcept"}
OPENING, CLOSING = "([{", ")]}"
PARAMETER = re.compile(r"^(const )?[\w:]+(<.*>)?(\s+[&*]*|\s*[&*]+)\w+( = .*)?$")
# What a statement without a declaration begins with: a name, its members and elements.
PLACE = r"\*?[\w:]+(?:(?:\.|->)\w+|\[[^\]]*\]|\([^()]*\))*"
DELETABLE = re.compile(rf"^(?:(?:\(void\))?{PLACE}(?:<[\w:]+>)?\(.*\)|{PLACE} [+\-*/|&^]?=[^=].*|\+\+{PLACE}|--{PLACE}|break|continue)$", re.S)


def blank_out(text):
    """The text with comments, strings, characters and lines for the preprocessor blanked, each character in its place."""
    def blank(match):
        return re.sub(r"[^\n]", " ", match.group(0))
    # A quote between two digits parts a number.
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|R"\((?:.*?)\)"|"(?:[^"\\\n]|\\.)*"|(?<![0-9A-Fa-f])\'(?:[^\'\\\n]|\\.)+\'|'
                         r"^[ \t]*#(?:[^\n\\]|\\.|\\\n)*", re.S | re.M)
    return pattern.sub(blank, text)


def find_end(code, start):
    """Where the bracket at start closes; None where it does not."""
    depth = 0
    for i in range(start, len(code)):
        if code[i] in OPENING:
            depth += 1
        elif code[i] in CLOSING:
            depth -= 1
            if depth == 0:
                return i
    return None


def split_arguments(code, text, start, end):
    """Where the arguments between two brackets stand: [(start, end)], without the white space around them."""
    parts, depth, begin = [], 0, start
    for i in range(start, end + 1):
        if i == end or (code[i] == "," and depth == 0):
            parts.append((begin, i))
            begin = i + 1
        elif code[i] in OPENING:
            depth += 1
        elif code[i] in CLOSING:
            depth -= 1
    stripped = []
    for first, last in parts:
        inside = text[first:last]
        stripped.append((first + len(inside) - len(inside.lstrip()), last - len(inside) + len(inside.rstrip())))
    return stripped


def change_numbers(code, _):
    for match in NUMBER.finditer(code):
        digits, suffix = match.group(1).replace("'", ""), match.group(2)
        if re.search(r"[.e]", digits) and not digits.startswith("0x"):
            value = float(digits)
            changed = [f"{value * 2 or 1.0!r}{suffix}"]
        else:
            value = int(digits, 16 if digits.startswith("0x") else 10)
            changed = [f"{value + 1}{suffix}"] + ([f"{value - 1}{suffix}"] if value else [])
        for text in changed:
            yield "constant", match.start(), match.end(), text
    for match in re.finditer(r"\b(true|false)\b", code):
        yield "constant", match.start(), match.end(), "false" if match.group(1) == "true" else "true"


def change_operators(code, _):
    choices = {match.end() + 1 for match in CHOICE.finditer(code)}
    for match in OPERATORS.finditer(code):
        token = match.group(1)
        for name, table in (("relational", RELATIONAL), ("arithmetic", ARITHMETIC)):
            for text in table.get(token, ()):
                if match.start() not in choices or text.rstrip("=") != token.rstrip("="):
                    yield name, match.start(), match.end(), text


def negate_conditions(code, text):
    for match in re.finditer(r"\b(?:if|while) \(", code):
        end = find_end(code, match.end() - 1)
        if end is None:
            continue
        start = code.rfind(";", match.end(), end) + 1 or match.end()
        condition = code[start:end]
        if not re.match(r"\s*(const )?[\w:<>]+[ *&]+\w+ = ", condition) and condition.count("(") == condition.count(")"):
            yield "condition", start, end, f"!({text[start:end].strip()})"


def delete_statements(code, _):
    stack, start = [], 0
    for i, character in enumerate(code):
        if character in OPENING:
            stack.append(character)
        elif character in CLOSING and stack:
            stack.pop()
        if character in "{}":
            start = i + 1
        elif character == ";" and stack and stack[-1] == "{":
            statement = code[start:i]
            label = re.match(r"\s*(?:case [\w:]+:|default:)(?=\s)", statement)
            first = start + (label.end() if label else 0)
            first += len(code[first:i]) - len(code[first:i].lstrip())
            head = re.match(r"\w*", code[first:i]).group(0)
            if DELETABLE.match(code[first:i].rstrip()) and head not in NO_CALL and not re.match(r"Q?[A-Z0-9]+_[A-Z0-9_]*\(", code[first:i]):
                yield "statement", first, i, ""
            start = i + 1


def swap_arguments(code, text):
    for match in re.finditer(r"\b(\w+)(?:<[\w:, ]+>)?\(", code):
        end = find_end(code, match.end() - 1)
        if end is None or match.group(1) in NO_CALL:
            continue
        arguments = split_arguments(code, text, match.end(), end)
        texts = [text[first:last] for first, last in arguments]
        if any(PARAMETER.match(text) for text in texts):
            continue
        for (first, one), (second, other) in zip(zip(arguments, texts), zip(arguments[1:], texts[1:])):
            if one != other and one and other:
                yield "arguments", first[0], second[1], text[second[0]:second[1]] + text[first[1]:second[0]] + text[first[0]:first[1]]


def find_mutants(path, text):
    """All mutants of a source, in the order of their places."""
    code = blank_out(text)
    found = []
    for finder in (change_numbers, change_operators, negate_conditions, delete_statements, swap_arguments):
        for operator, start, end, changed in finder(code, text):
            line_start, line_end = text.rfind("\n", 0, start) + 1, text.find("\n", end)
            if "static_assert" in code[line_start:line_end]:
                continue
            before = " ".join(text[line_start:line_end].split())
            after = " ".join((text[line_start:start] + changed + text[end:line_end]).split())
            found.append(Mutant(path, text.count("\n", 0, start) + 1, operator, before, after, start, end, changed))
    found.sort(key=lambda mutant: (mutant.start, mutant.end, mutant.text))
    seen = collections.Counter()
    for i, mutant in enumerate(found):
        found[i] = mutant._replace(nth=seen[mutant.before, mutant.after])
        seen[mutant.before, mutant.after] += 1
    return found
