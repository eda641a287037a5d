#!/usr/bin/env python3
"""Runs every command that the documents show and compares what it prints.

    run_commands.py BUILD_DIRECTORY DOCUMENT...

A block that begins with ```console holds commands ("$ " before each; one with a here-document goes
on to its end) and what they print, standard output and standard error as one. "..." on a line of
its own stands for any lines, within a line for any text. Behind ```console, "fails" says that the
last command's exit status is not 0, and "not run: REASON" that the block can't be run here. Blocks
of a document run in its order, in a directory that looks like the top of the tree after ./run.sh,
with beanhost on the PATH.
"""

import os
import re
import subprocess
import sys
import tempfile

HERE_DOCUMENT = re.compile(r"<<-?\s*'?(\w+)'?")


def blocks(text):
    """Yields (line number, words behind "console", lines) of each console block."""
    lines = text.split("\n")
    number = 0
    while number < len(lines):
        opening = lines[number]
        number += 1
        if not opening.startswith("```"):
            if opening.startswith("    $ "):
                raise ValueError(f"line {number}: a command outside of a console block")
            continue
        first = number
        while lines[number] != "```":
            number += 1
        if opening.startswith("```console"):
            yield first, opening[len("```console"):].strip(), lines[first:number]
        elif opening.rstrip("`") == "" and any(line.startswith("$ ") for line in lines[first:number]):
            raise ValueError(f"line {first}: commands in a block that is not marked console")
        number += 1


def commands(lines):
    """Yields (command, what it is to print)."""
    number = 0
    while number < len(lines):
        if not lines[number].startswith("$ "):
            raise ValueError(f"expected a command, found: {lines[number]}")
        command = [lines[number][2:]]
        number += 1
        here = HERE_DOCUMENT.search(command[0])
        while command[-1].endswith("\\") or (here and command[-1] != here.group(1)):
            command.append(lines[number])
            number += 1
        output = []
        while number < len(lines) and not lines[number].startswith("$ "):
            output.append(lines[number])
            number += 1
        yield "\n".join(command), output


def matches(expected, printed):
    pattern = ""
    for line in expected:
        if line == "...":
            pattern += r"(?:.*\n)*?"
        else:
            pattern += ".*?".join(re.escape(part) for part in line.split("...")) + r"\n"
    return re.fullmatch(pattern, printed) is not None


def check(document, build, environment, scratch):
    with open(document, encoding="utf-8") as file:
        text = file.read()
    ran = failures = 0
    for number, mode, lines in blocks(text):
        if mode.startswith("not run: ") and len(mode) > len("not run: "):
            continue
        if mode not in ("", "fails"):
            raise ValueError(f"{document}:{number}: unknown mode of a console block: {mode}")
        shown = list(commands(lines))
        for position, (command, expected) in enumerate(shown):
            run = subprocess.run(["bash", "-c", command], cwd=scratch, env=environment, text=True,
                                 stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, timeout=120)
            ran += 1
            may_fail = mode == "fails" and position == len(shown) - 1
            if (run.returncode != 0) != may_fail or not matches(expected, run.stdout):
                failures += 1
                print(f"{document}:{number}: $ {command}\n-- expected"
                      f"{' to fail' if may_fail else ''}\n" + "\n".join(expected) +
                      f"\n-- printed, exit status {run.returncode}\n{run.stdout}")
    print(f"{document}: {ran} commands, {failures} failures")
    return ran, failures


def main():
    build, documents = os.path.abspath(sys.argv[1]), sys.argv[2:]
    root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    environment = dict(os.environ, QUENLATRIX_BUILD=build, LC_ALL="C.UTF-8", TERM="dumb",
                       PATH=os.path.join(build, "bin") + os.pathsep + os.environ["PATH"])
    for name in ("CLASSPATH", "QUENLATRIX_PATH", "JAVA_TOOL_OPTIONS"):
        environment.pop(name, None)
    ran = failures = 0
    for document in documents:
        with tempfile.TemporaryDirectory() as scratch:
            # A reader stands at the top of the tree.
            for entry in os.listdir(root):
                if entry != "build" and not entry.startswith("."):
                    os.symlink(os.path.join(root, entry), os.path.join(scratch, entry))
            os.mkdir(os.path.join(scratch, "build"))
            os.symlink(build, os.path.join(scratch, "build", "run"))
            counts = check(document, build, environment, scratch)
        ran, failures = ran + counts[0], failures + counts[1]
    if ran == 0:
        print("no command found")
    sys.exit(1 if failures or ran == 0 else 0)


main()
