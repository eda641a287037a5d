#!/usr/bin/env python3
"""Runs every command that the documents show and compares what it prints.

    run_commands.py BUILD_DIRECTORY DOCUMENT...

A block that begins with ```console holds commands ("$ " before each; one with a here-document goes
on to its end) and what they print, standard output and standard error as one. "..." on a line of
its own stands for any lines, within a line for any text. Behind ```console, "fails" says that the
last command's exit status is not 0. Blocks run in their order, in a directory that looks like the top
of the tree after ./run.sh, with beanhost on the PATH. For a block with

    in a copy   that is a copy of the tree with builds of its own, kept for the next time,
    in place    it is the tree itself, if the build directory is the one of its preset dev,
    runs this   there is nothing to run: its commands are what runs this program.

/opt/quenlatrix and ~ stand for directories of the test's own; what lasts as long as it is told to lasts a
second, and each benchmark runs once.
"""

import os
import re
import shutil
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


def shortened(command, prefix):
    command = re.sub(r"(QUENLATRIX_(SOAK_SECONDS|PROCESS_ENDS))=\d+", r"\1=1", command)
    command = command.replace("./bench.sh", "./bench.sh --benchmark_min_time=0 --benchmark_repetitions=1")
    return command.replace("/opt/quenlatrix", prefix)


def copy_tree(root, copy):
    """Brings the copy up to date; files that are the same keep their times, so little is built again."""
    kept = set()
    for name in subprocess.check_output(["git", "ls-files", "-z"], cwd=root, text=True).split("\0"):
        source, target = os.path.join(root, name), os.path.join(copy, name)
        if not name or not os.path.isfile(source):
            continue
        kept.add(target)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        if not os.path.exists(target) or open(source, "rb").read() != open(target, "rb").read():
            shutil.copy(source, target)
    for directory, directories, files in os.walk(copy):
        if directory == copy and "build" in directories:
            directories.remove("build")
        for name in files:
            if os.path.join(directory, name) not in kept:
                os.remove(os.path.join(directory, name))


class Reader:
    """Somebody who reads the documents one after the other and types what they show."""

    def __init__(self, root, build, scratch):
        self.root, self.build, self.scratch = root, build, scratch
        self.copy = os.path.join(build, "tests", "copy_of_the_tree")
        self.prefix = os.path.join(scratch, "prefix")
        self.environment = dict(os.environ, QUENLATRIX_BUILD=build, LC_ALL="C.UTF-8", TERM="dumb",
                                HOME=os.path.join(scratch, "home"),
                                PATH=os.path.join(build, "bin") + os.pathsep + os.environ["PATH"])
        for name in ("CLASSPATH", "QUENLATRIX_PATH", "JAVA_TOOL_OPTIONS"):
            self.environment.pop(name, None)
        # The compilers' cache stays where it is, wherever home is.
        home = os.path.expanduser("~")
        self.environment.setdefault("XDG_CACHE_HOME", os.path.join(home, ".cache"))
        self.environment.setdefault("XDG_CONFIG_HOME", os.path.join(home, ".config"))
        os.mkdir(self.environment["HOME"])

    def after_run(self, document):
        """A directory that looks like the top of the tree after ./run.sh."""
        place = os.path.join(self.scratch, os.path.basename(document))
        os.makedirs(os.path.join(place, "build"))
        for entry in os.listdir(self.root):
            if entry != "build" and not entry.startswith("."):
                os.symlink(os.path.join(self.root, entry), os.path.join(place, entry))
        os.symlink(self.build, os.path.join(place, "build", "run"))
        return place

    def run(self, command, place):
        environment = dict(self.environment)
        if place == self.copy:
            del environment["QUENLATRIX_BUILD"]
        return subprocess.run(["bash", "-c", shortened(command, self.prefix)], cwd=place,
                              env=environment, text=True, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=1200)

    def place_of(self, mode, usual):
        if mode in ("", "fails"):
            return usual
        if mode == "in place":
            return self.root if self.build == os.path.join(self.root, "build", "dev") else None
        if mode == "in a copy":
            copy_tree(self.root, self.copy)
            return self.copy
        if mode == "runs this":
            return None
        raise ValueError(f"unknown mode of a console block: {mode}")

    def check(self, document):
        with open(document, encoding="utf-8") as file:
            text = file.read()
        ran = failures = 0
        usual = self.after_run(document)
        for number, mode, lines in blocks(text):
            place = self.place_of(mode, usual)
            shown = list(commands(lines))
            for position, (command, expected) in enumerate(shown):
                if place is None:
                    print(f"{document}:{number}: not run here ({mode}): $ {command}")
                    continue
                run = self.run(command, place)
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
    ran = failures = 0
    with tempfile.TemporaryDirectory() as scratch:
        reader = Reader(root, build, scratch)
        for document in documents:
            counts = reader.check(document)
            ran, failures = ran + counts[0], failures + counts[1]
    if ran == 0:
        print("no command found")
    sys.exit(1 if failures or ran == 0 else 0)


main()
