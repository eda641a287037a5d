"""Measures JPype on the work of the benchmark program and prints it beside the program's times.

    /usr/bin/python3 jpype_bench.py TIMES.json JAR...

TIMES.json is what the program wrote with --benchmark_out: its times, and the VM that it ran on,
which is the one that runs here. The JARs hold the classes to call and JPype's own. Each work calls
the same methods of the same classes with the same sizes; its result is turned into Python's own
values where there are such, and looked at. Times are the calling thread's CPU time, as the
program's are: the median of five rounds through all works, each at least 0.1 s, after one round
that warms the VM up and isn't counted.
"""

import gc
import json
import statistics
import sys
import time

import jpype
import numpy

ROUNDS = 5
SECONDS_A_ROUND = 0.1


def expect(condition, what):
    if not condition:
        sys.exit("jpype_bench.py: " + what)


def describe(cls):
    """The names and types of a class's methods, which JPype leaves to Java's reflection."""
    return [
        (
            str(method.getName()),
            str(method.getReturnType().getName()),
            [str(parameter.getName()) for parameter in method.getParameterTypes()],
        )
        for method in cls.class_.getMethods()
    ]


def make_works():
    """Pairs of a work's name in the program's table and a function of the turn's number."""
    bean = jpype.JClass("bench.Work")()
    plain = jpype.JClass("bench.Plain")
    described = jpype.JClass("bench.ManyMethods50")
    words = ["hello there", "hello where", "hello again", "hello hello"]
    texts = ["text %d" % i for i in range(10000)]

    def add(i):
        expect(bean.add(i, 7) == i + 7, "add answered a wrong sum")

    def echo(i):
        word = words[i % len(words)]
        expect(str(bean.echo(word)) == word, "echo answered another text")

    def throw(_):
        try:
            bean.fail()
        except jpype.JException as thrown:
            text = str(thrown)
        expect("as ordered" in text, "fail threw something else")

    def object_result(_):
        expect(bean.object() is not None, "no object came back")

    def create(_):
        expect(plain() is not None, "no object was made")

    def ints_out(_):
        values = list(bean.giveMillion())
        expect(len(values) == 1000000 and values[-1] == 999999, "wrong numbers came back")

    def ints_out_as_numpy(_):
        values = numpy.array(bean.giveMillion())
        expect(len(values) == 1000000 and values[-1] == 999999, "wrong numbers came back")

    def texts_in(_):
        try:
            bean.refuseTexts(texts)
        except jpype.JException as thrown:
            text = str(thrown)
        expect(texts[-1] in text, "the texts didn't arrive")

    def texts_out(_):
        values = [str(text) for text in bean.giveTexts()]
        expect(values == texts, "wrong texts came back")

    def walk(_):
        values = [str(text) for text in bean.stringList()]
        expect(len(values) == 100000 and values[-1] == "text 99999", "a walk gave other texts")

    def introspect(_):
        methods = describe(described)
        own = [name for name, _, parameters in methods if parameters == ["int", "java.lang.String"]]
        expect(len(own) == 50, "the class has another number of methods")

    return [
        ("int add(int, int)", "", add),
        ("String echo, 11 characters", "", echo),
        ("a method that throws, with its text", "", throw),
        ("create and release", "", create),
        ("object result, wrapped and released", "", object_result),
        ("int[1,000,000] out", ", as a list of ints", ints_out),
        ("int[1,000,000] out", ", as one numpy array", ints_out_as_numpy),
        ("String[10,000] in", "", texts_in),
        ("String[10,000] out", "", texts_out),
        ("walk 100,000 Strings", "", walk),
        ("introspect a class of 50 methods", ", by reflection", introspect),
    ]


def time_of(work, turns):
    """Nanoseconds a turn."""
    start = time.thread_time_ns()
    for i in range(turns):
        work(i)
    return (time.thread_time_ns() - start) / turns


def turns_for(work):
    turns = 1
    while time_of(work, turns) * turns < SECONDS_A_ROUND * 1e9:
        turns *= 2
    return turns


def read_times(runs):
    """The medians of the program's own benchmarks, in nanoseconds, by the work's name."""
    units = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    times = {}
    for run in runs:
        name = run["run_name"]
        if run.get("aggregate_name") == "median" and "|ours" in name:
            times[name.split("|")[0]] = run["cpu_time"] * units[run["time_unit"]]
    return times


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        program = json.load(file)
    ours = read_times(program["benchmarks"])
    jpype.startJVM(jvmpath=program["context"]["jvm"], classpath=sys.argv[2:])
    works = [work for work in make_works() if work[0] in ours]
    gc.disable()
    turns = [turns_for(work) for _, _, work in works]
    rounds = [
        [time_of(work, count) for (_, _, work), count in zip(works, turns)]
        for _ in range(1 + ROUNDS)
    ]
    medians = [statistics.median(times) for times in zip(*rounds[1:])]
    print("\nJPype %s on Python %s, the same VM and classes; median of %d rounds, CPU time"
          % (jpype.__version__, sys.version.split()[0], ROUNDS))
    print("%-52s %14s %14s %14s" % ("work", "ours, ns", "JPype, ns", "JPype / ours"))
    for (name, note, _), median in zip(works, medians):
        print("%-52s %14.0f %14.0f %14.3g" % (name + note, ours[name], median, median / ours[name]))


main()
