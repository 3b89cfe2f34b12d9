#!/usr/bin/env python3
"""The measuring half of bench/run.sh.

  measure.py zone DIR              writes DIR/bench.test.zone and DIR/names.txt
  measure.py run [options]         measures vexa against the floor program

The run expects a DNS server with the zone on --server and the worst-case
responder on --worst, both on loopback (bench/run.sh starts them in a private
network namespace). Timed runs are interleaved, floor then tool, round after
round. The table shows the median times, the median of the per-round ratios
(tool / floor) with their range, the ratio of the fastest runs ("best": what
the machine gives when nothing else interferes) and the median ratio of the
CPU time (user and system) of the two programs, which other load on the
machine disturbs far less than the wall time. Targets are judged on the
median wall ratio.
"""
import argparse
import os
import re
import statistics
import subprocess
import sys
import time

NAME_COUNT = 10000


def make_zone(directory):
    """10,000 names: mostly one A record; every 10th three A records, every
    20th a CNAME to the next name, every 25th missing from the zone (NXDOMAIN)."""
    zone = ["$ORIGIN bench.test.", "$TTL 3600",
            "@ IN SOA ns1 hostmaster 1 7200 900 1209600 300",
            "  IN NS ns1", "ns1 IN A 127.0.0.53"]
    names = []
    for i in range(NAME_COUNT):
        name = f"h{i:05d}"
        names.append(f"{name}.bench.test")
        address = f"10.{i >> 16 & 255}.{i >> 8 & 255}.{i & 255}"
        if i % 25 == 7:
            continue
        if i % 20 == 3:
            zone.append(f"{name} IN CNAME h{i + 1:05d}")
        elif i % 10 == 5:
            zone.extend(f"{name} IN A 10.{k}.{i >> 8 & 255}.{i & 255}" for k in (100, 101, 102))
        else:
            zone.append(f"{name} IN A {address}")
    with open(os.path.join(directory, "bench.test.zone"), "w") as f:
        f.write("\n".join(zone) + "\n")
    with open(os.path.join(directory, "names.txt"), "w") as f:
        f.write("\n".join(names) + "\n")


def spawn(argv, stdin=None, stdout=None, pipe_reader=False, stderr=None):
    """Runs argv once; stdin, stdout and stderr are paths (None: /dev/null).
    With pipe_reader the output goes through a pipe into `cat`. Returns wall
    seconds, the CPU seconds (user and system) of the command, and its exit code."""
    def actions(in_path, out_fd=None, out_path=None, err_path=None):
        acts = [(os.POSIX_SPAWN_OPEN, 0, in_path or os.devnull, os.O_RDONLY, 0)]
        if out_fd is not None:
            acts.append((os.POSIX_SPAWN_DUP2, out_fd, 1))
        else:
            acts.append((os.POSIX_SPAWN_OPEN, 1, out_path or os.devnull,
                         os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o644))
        acts.append((os.POSIX_SPAWN_OPEN, 2, err_path or os.devnull,
                     os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o644))
        return acts

    start = time.perf_counter()
    reader = None
    if pipe_reader:
        r, w = os.pipe()
        # The reader may run on any CPU, whatever this process is bound to.
        bound = os.sched_getaffinity(0)
        os.sched_setaffinity(0, range(os.cpu_count()))
        reader = os.posix_spawn("/bin/cat", ["cat"], os.environ,
                                file_actions=[(os.POSIX_SPAWN_DUP2, r, 0)] + actions(None)[1:])
        os.sched_setaffinity(0, bound)
        pid = os.posix_spawn(argv[0], argv, os.environ, file_actions=actions(stdin, out_fd=w, err_path=stderr))
        os.close(r)
        os.close(w)
    else:
        pid = os.posix_spawn(argv[0], argv, os.environ, file_actions=actions(stdin, out_path=stdout, err_path=stderr))
    _, status, usage = os.wait4(pid, 0)
    if reader is not None:
        os.wait4(reader, 0)
    wall = time.perf_counter() - start
    return wall, usage.ru_utime + usage.ru_stime, os.waitstatus_to_exitcode(status)


def peak_rss(runner, argv, stdin=None, stdout=None):
    """Peak RSS in KiB of one run, read by the small runner (see peak_rss.cpp)."""
    out = subprocess.run([runner, stdin or os.devnull, stdout or os.devnull] + argv,
                         stdout=subprocess.PIPE, text=True).stdout
    return int(out.strip() or 0)


def instructions(argv):
    """Instructions of one run under callgrind, from the first one of the loader."""
    out = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null"] + argv,
                         stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True).stderr
    match = re.search(r"Collected\s*:\s*(\d+)", out)
    return int(match.group(1)) if match else 0


def median(values):
    return statistics.median(values) if values else float("nan")


class Table:
    def __init__(self):
        self.rows = []

    def add(self, what, floor, tool, ratio="", best="", cpu_ratio="", target="", note=""):
        self.rows.append((what, floor, tool, ratio, best, cpu_ratio, target, note))

    def print(self):
        head = ("measure", "floor", "vexa", "ratio (range)", "best", "cpu", "target", "")
        widths = [max(len(str(r[i])) for r in self.rows + [head]) for i in range(len(head))]
        for row in [head] + self.rows:
            print("  ".join(str(c).ljust(widths[i]) if i == 0 else str(c).rjust(widths[i])
                            for i, c in enumerate(row)).rstrip())


def ratio_text(ratios):
    return f"{median(ratios):.3f} ({min(ratios):.2f}-{max(ratios):.2f})"


def best_text(floor_times, tool_times):
    """The fastest run of each side: what the machine gives when nothing else interferes."""
    return f"{min(tool_times) / min(floor_times):.3f}"


def check_target(value, limit):
    return "ok" if value <= limit else "MISSED"


def run(args):
    vexa = os.path.abspath(args.vexa)
    floor = os.path.abspath(args.floor)
    names = args.names
    results = os.path.join(args.work, "results.txt")
    base = [vexa, "-url_pipe", "-server", args.server]
    table = Table()

    # List mode: the five forms, interleaved with the floor round after round.
    forms = [("list, padded, -out file", ["-out", results], False, 1.10),
             ("list, -csv, -out file", ["-csv", "-out", results], False, 1.15),
             ("list, -xml, -out file", ["-xml", "-out", results], False, 1.15),
             ("list, -verbose, -out file", ["-verbose", "-out", results], False, 1.30),
             ("list, padded, stdout pipe", [], True, 1.15),
             # One write per line as into the pipe, but nobody to wake: the
             # tool's own share of the piped figure.
             ("list, padded, stdout /dev/null", [], False, None)]
    times = {f[0]: ([], [], [], []) for f in forms}
    for round_number in range(args.rounds):
        for what, extra, piped, _ in forms:
            floor_wall, floor_cpu, floor_code = spawn([floor, args.server], stdin=names)
            tool_wall, tool_cpu, tool_code = spawn(base + extra, stdin=names, pipe_reader=piped)
            if floor_code != 0 or tool_code != 0:
                print(f"warning: {what}: floor exit {floor_code}, vexa exit {tool_code}", file=sys.stderr)
            f, t, r, c = times[what]
            f.append(floor_wall)
            t.append(tool_wall)
            r.append(tool_wall / floor_wall)
            c.append(tool_cpu / floor_cpu if floor_cpu else float("nan"))
        print(f"round {round_number + 1}/{args.rounds} done", file=sys.stderr)
    for what, _, _, target in forms:
        f, t, r, c = times[what]
        table.add(what + " (s)", f"{median(f):.3f}", f"{median(t):.3f}", ratio_text(r),
                  best_text(f, t), f"{median(c):.3f}", f"<= {target:.2f}" if target else "",
                  check_target(median(r), target) if target else "")

    # Every row is there: a timed-out query would make the list look fast.
    spawn(base + ["-out", results], stdin=names)
    with open(results, "rb") as f:
        report = f.read()
    if b"timeout" in report:
        print("warning: the list run had time-outs", file=sys.stderr)

    # What a line end on standard output costs by itself, into a pipe and
    # into /dev/null: a few lines after each pause of about a round trip.
    line_costs = {}
    for label, piped in (("pipe", True), ("/dev/null", False)):
        runs = []
        for _ in range(3):
            errors = os.path.join(args.work, "line_writes.err")
            spawn([args.line_writes, "10000", "3", "50"], pipe_reader=piped, stderr=errors)
            with open(errors) as f:
                runs.append(float(f.read().strip() or "nan"))
        line_costs[label] = median(runs)
    table.add("one line written after a pause, pipe / /dev/null (us per write)", "",
              f"{line_costs['pipe']:.2f} / {line_costs['/dev/null']:.2f}")

    # One query per process.
    one_name = "h00001.bench.test"
    tool_one = [vexa, "-url", one_name, "-server", args.server]
    floor_one = [floor, args.server, one_name]
    fw, tw, ratios, cpu_ratios, f_all, t_all = [], [], [], [], [], []
    for _ in range(args.rounds):
        f, t = [], []
        for _ in range(args.launches):
            f.append(spawn(floor_one))
            t.append(spawn(tool_one))
        fw.append(median([x[0] for x in f]))
        tw.append(median([x[0] for x in t]))
        f_all.extend(x[0] for x in f)
        t_all.extend(x[0] for x in t)
        ratios.append(tw[-1] / fw[-1])
        floor_cpu = sum(x[1] for x in f)
        cpu_ratios.append(sum(x[1] for x in t) / floor_cpu if floor_cpu else float("nan"))
    table.add("one query per process (ms)", f"{median(fw) * 1e3:.2f}", f"{median(tw) * 1e3:.2f}",
              ratio_text(ratios), best_text(f_all, t_all), f"{median(cpu_ratios):.3f}", "<= 1.50",
              check_target(median(ratios), 1.5))
    fi, ti = instructions(floor_one), instructions(tool_one)
    ratio = ti / fi if fi else float("nan")
    table.add("one query per process (instructions)", f"{fi:,}", f"{ti:,}", f"{ratio:.3f}",
              target="<= 2.00", note=check_target(ratio, 2.0))

    # Peak RSS of list runs of two lengths.
    short = os.path.join(args.work, "names-1000.txt")
    with open(names) as src, open(short, "w") as dst:
        dst.writelines(src.readlines()[:1000])
    rss = {}
    for label, path in (("1,000", short), ("10,000", names)):
        for form, extra in (("padded", []), ("-verbose", ["-verbose"])):
            rss[(label, form)] = peak_rss(args.peak_rss, base + extra + ["-out", results], stdin=path)
    for form in ("padded", "-verbose"):
        small, large = rss[("1,000", form)], rss[("10,000", form)]
        table.add(f"peak RSS of a list run, {form} (KiB, 1,000 / 10,000 names)", "",
                  f"{small} / {large}", target="<= 8192, flat",
                  note="ok" if large <= 8192 and large - small <= 256 else "MISSED")

    # The worst-case reply: time, peak RSS and instructions of one query, at
    # three sizes; the instructions per record between sizes show it linear.
    sizes = []
    # Names of one length, so that every size pays the same for its owner names.
    for count in ("01000", "02000", "99999"):
        argv = [vexa, "-url", f"{count}.worst.test", "-server", args.worst, "-out", results]
        wall = median([spawn(argv)[0] for _ in range(args.launches // 4 + 1)])
        peak = peak_rss(args.peak_rss, argv)
        with open(results, "rb") as f:
            rows = f.read().count(b"| answer ")
        sizes.append((rows, wall, peak, instructions(argv)))
    for i, (rows, wall, peak, count) in enumerate(sizes):
        per_record = ""
        if i > 0 and rows != sizes[i - 1][0]:
            per_record = f"{(count - sizes[i - 1][3]) / (rows - sizes[i - 1][0]):,.0f} instr/record"
        table.add(f"worst reply, {rows} records (ms / peak RSS KiB / instructions)", "",
                  f"{wall * 1e3:.1f} / {peak} / {count:,}", per_record, target="< 50 ms, < 32768",
                  note="ok" if wall < 0.05 and peak < 32768 else "MISSED")

    table.print()


def main():
    parser = argparse.ArgumentParser()
    sub = parser.add_subparsers(dest="command", required=True)
    zone = sub.add_parser("zone")
    zone.add_argument("directory")
    measure = sub.add_parser("run")
    measure.add_argument("--vexa", required=True)
    measure.add_argument("--floor", required=True)
    measure.add_argument("--peak-rss", required=True)
    measure.add_argument("--line-writes", required=True)
    measure.add_argument("--names", required=True)
    measure.add_argument("--server", required=True)
    measure.add_argument("--worst", required=True)
    measure.add_argument("--work", required=True)
    measure.add_argument("--rounds", type=int, default=5)
    measure.add_argument("--launches", type=int, default=100)
    args = parser.parse_args()
    if args.command == "zone":
        make_zone(args.directory)
    else:
        run(args)


main()
