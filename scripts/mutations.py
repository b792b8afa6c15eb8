"""What can be mutated in a C++ source, found by its text alone, each as an expression that a switch chooses.

The switch is vornaMutant() of mutant.h. What only logs, frees or makes room is left out, and what must be known while
compiling.
"""
import random
import re
import subprocess
from dataclasses import dataclass

TURNED = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&"}
LITERAL = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<!\w)\'(?:\\.|[^\'\\\n])+\'', re.S)
PASSED_OVER = re.compile(r"\s*(#|case |default:|using |namespace |template|static_assert|Q_)|.*\b(constexpr|q(Debug|Warning))\b")
NO_CALL = re.compile(r"(QObject::)?(return|delete|else|connect|disconnect|if|for|while|switch|[Qq]_?[A-Z]\w+|log[A-Z]\w*)$"
                     r"|.*\breserve$")


@dataclass
class Mutation:
    file: str
    start: int
    end: int
    first: int  # lines, from 1
    last: int
    kind: str
    old: str
    new: str
    switch: str  # with vornaMutant() where vornaMutant(number) is to stand
    line: str  # the first of the original ones
    number: int = 0

    def text(self):
        # Line numbers stay, so that the compiler's errors find their mutation.
        return self.switch.replace("vornaMutant()", f"vornaMutant({self.number})") + "\n" * (self.last - self.first)


class Source:
    """A source and the places in it that can be mutated."""

    def __init__(self, file, text):
        self.file, self.found = file, []
        def blank(match):
            return re.sub(r"[^\n]", " ", match[0])
        self.code = LITERAL.sub(lambda m: blank(m) if m[0][0] == "/" else m[0], text)
        self.masked = LITERAL.sub(lambda m: blank(m) if m[0][0] == "/" else '"' * len(m[0]), text)
        self.lines = self.masked.split("\n")

    def mutations(self):
        if 'R"' not in self.code:
            self.find_conditions()
            self.find_operators()
            self.find_negations()
            self.find_constants()
            self.find_calls()
        return self.found

    def add(self, kind, start, end, new, switch):
        first = self.masked.count("\n", 0, start) + 1
        last = first + self.masked.count("\n", start, end)
        if not any(PASSED_OVER.match(line) for line in self.lines[first - 1:last]):
            self.found.append(
                Mutation(self.file, start, end, first, last, kind, self.flat(start, end), new, switch,
                         self.code.split("\n")[first - 1].strip()))

    def flat(self, start, end):
        return re.sub(r"\s*\n\s*", " ", self.code[start:end]).strip()

    def closing(self, at):
        """The place of the bracket that closes the one at a place."""
        depth = 0
        for place in range(at, len(self.masked)):
            depth += (self.masked[place] in "([{") - (self.masked[place] in ")]}")
            if depth == 0:
                return place
        return len(self.masked) - 1

    def find_conditions(self):
        for match in re.finditer(r"\b(if|while) \(", self.masked):
            start, end = match.end(), self.closing(match.end() - 1)
            if re.search(r";| = |\{", self.masked[start:end]):
                continue  # declares a variable, or holds a function
            old = self.flat(start, end)
            self.add("never", start, end, f"({old}) && false", f"({old}) && !vornaMutant()")
            if match[1] == "if":
                self.add("turned", start, end, f"!({old})", f"vornaMutant() != bool({old})")
                self.add("always", start, end, f"({old}) || true", f"({old}) || vornaMutant()")

    def operand(self, at, step, stops):
        """How far the operand beside an operator goes."""
        depth, place = 0, at
        while 0 < place < len(self.masked) - 1:
            letter = self.masked[place] if step > 0 else self.masked[place - 1]
            opens, closes = ("([{", ")]}") if step > 0 else (")]}", "([{")
            if depth == 0:
                ahead = self.masked[place:place + 4] if step > 0 else self.masked[max(0, place - 8):place]
                if letter in closes + ",;?" or (letter == ":" and "::" not in self.masked[place - 2:place + 2]):
                    break
                if re.match(stops, ahead) if step > 0 else re.search(f"({stops}|\\breturn\\s| [-+|&]?=\\s)$", ahead):
                    break
            depth += (letter in opens) - (letter in closes)
            place += step
        return place

    def find_operators(self):
        for match in re.finditer(r"(?<=\s)(==|!=|<=?|>=?|&&|\|\|)(?=\s)", self.masked):
            sign = match[1]
            left = {"||": r"$.", "&&": r"\|\|"}.get(sign, r"(&&|\|\|)")
            right = {"||": r"\s\|\|\s"}.get(sign, r"\s(&&|\|\|)\s")
            start, end = self.operand(match.start(), -1, left), self.operand(match.end(), 1, right)
            start += len(self.masked[start:]) - len(self.masked[start:].lstrip())
            one, two = self.flat(start, match.start()), self.flat(match.end(), end)
            if not one or not two or re.search(r";| = ", self.masked[start:end]):
                continue
            new = f"{one} {TURNED[sign]} {two}"
            if sign in ("&&", "||"):
                one, two = f"({one})", f"({two})"
            both = f"vornaMutant() ? {one} {TURNED[sign]} {two} : {one} {sign} {two}"
            self.add("operator", start, end, new, f"({both})")

    def find_negations(self):
        for match in re.finditer(r"(?<=[\s(])!(?=[\w(])", self.masked):
            end = match.end()
            while part := re.compile(r"\w+|::|\.|->|[(\[]|<[\w:* ]+>(?=\()").match(self.masked, end):
                end = self.closing(end) + 1 if part[0] in "([" else part.end()
            old = self.flat(match.start(), end)
            self.add("negation", match.start(), end, old[1:], f"(vornaMutant() != {old})")

    def find_constants(self):
        for pattern, kind, new in ((r"(?<= [+-] )1(?![\w.'])", "off by one", "0"),
                                   (r"(?<![\w.'])0(?![\w.'])", "constant", "1"),
                                   (r"\btrue\b", "constant", "false"), (r"\bfalse\b", "constant", "true")):
            for match in re.finditer(pattern, self.masked):
                self.add(kind, *match.span(), new, f"(vornaMutant() ? {new} : {match[0]})")

    def find_calls(self):
        for match in re.finditer(r"(?<=\n)[ ]+((?:emit )?[\w:.>-]+)\(", self.masked):
            start, end = match.start(1), self.closing(match.end() - 1) + 1
            while more := re.compile(r"(\.|->)\w+\(").match(self.masked, end):
                end = self.closing(more.end() - 1) + 1
            before = self.masked[:start].rstrip()
            isStatement = self.masked[end:end + 1] == ";" and re.search(r"([;{})]|\belse)$", before)
            if isStatement and not NO_CALL.match(match[1]) and "{" not in self.masked[start:end]:
                old = self.flat(start, end + 1)
                self.add("no call", start, end + 1, ";", f"{{ if (!vornaMutant()) {old} }}")


def places(base, paths):
    """The file and line of all that may be mutated: what was added since a revision, or all."""
    def git(*arguments):
        return subprocess.run(["git", *arguments], check=True, capture_output=True, text=True).stdout.splitlines()
    found, file = set(), None
    for name in [] if base else git("ls-files", "--", *paths):
        if name.endswith(".cpp"):
            with open(name, encoding="utf-8") as source:
                found |= {(name, line + 1) for line in range(len(source.readlines()))}
    for line in git("diff", "-U0", base, "HEAD", "--", *paths) if base else []:
        if line.startswith("+++ "):
            file = line[6:]
        elif hunk := re.match(r"@@ \S+ \+(\d+)(?:,(\d+))?", line):
            found |= {(file, int(hunk[1]) + step) for step in range(int(hunk[2] or 1))}
    return {(file, line) for file, line in found if not re.match("(tests|bench|tools)/", file)}


def drawn(base, paths, compiled, seed):
    """Draws mutations of the compiled files, one a line, that do not overlap, for as long as there are any."""
    by_line, wanted = {}, {(file, line) for file, line in places(base, paths) if file in compiled}
    for file in sorted({file for file, _ in wanted}):
        with open(file, encoding="utf-8") as text:
            for mutation in Source(file, text.read()).mutations():
                if (file, mutation.first) in wanted:
                    by_line.setdefault((file, mutation.first), []).append(mutation)
    chance, order, taken = random.Random(seed), sorted(by_line), {}
    chance.shuffle(order)
    for number, place in enumerate(order, 1):
        mutation = chance.choice(by_line[place])
        others = taken.setdefault(mutation.file, [])
        if all(mutation.end <= other.start or mutation.start >= other.end for other in others):
            others.append(mutation)
            mutation.number = number
            yield mutation


def written(mutations, files):
    """Writes the sources with their mutations; those that have none left are as they were."""
    for file in files:
        subprocess.run(["git", "checkout", "--quiet", "--force", "--", file], check=True)
        own = sorted((m for m in mutations if m.file == file), key=lambda m: -m.start)
        if not own:
            continue
        with open(file, encoding="utf-8") as source:
            text = source.read()
        for mutation in own:
            text = text[:mutation.start] + mutation.text() + text[mutation.end:]
        with open(file, "w", encoding="utf-8") as source:
            source.write(f'#include "scripts/mutant.h"\n#line 1 "{file}"\n{text}')
