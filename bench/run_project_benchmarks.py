#!/usr/bin/python3
"""Makes projects of 25, 50, 100 and 200 devices (bench/make_submit_project.py) and measures the project
commands on each: HMBomSubmit, HMBomCmp and `qxinspect project`, with the drawing files read per command
beside the time. Prints a Markdown table.

HMBomSubmit, HMBomCmp and the reading half of `qxinspect project` run in build/bin/project_commands_bench
(medians of 3 runs; processor time of the process, and wall time, in ms). `qxinspect project` is also run
as a program, 3 times, for its whole processor time (reading, JSON and all).

Usage: /usr/bin/python3 bench/run_project_benchmarks.py OUTPUT_FOLDER [BUILD_FOLDER] [DEVICES ...]
"""
import json
import os
import platform
import statistics
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_submit_project  # noqa: E402

RUNS = 3


def project_of(out, devices):
    folder = os.path.join(out, f"D{devices}")
    project = os.path.join(folder, "Project")
    if not os.path.exists(os.path.join(project, "Project.itm")):
        make_submit_project.write_project(folder, devices)
    return project


def bench_commands(build, projects):
    env = dict(os.environ, QX_BENCH_SUBMIT_PROJECTS=":".join(projects))
    out = subprocess.run([os.path.join(build, "bin", "project_commands_bench"), "--benchmark_format=json",
                          "--benchmark_repetitions=1"], env=env, check=True, capture_output=True, text=True).stdout
    results = {}
    for run in json.loads(out)["benchmarks"]:
        name, project = run["name"].split("/", 1)
        project = project.split("/iterations")[0]
        results[(name, project)] = run
    return results


def time_inspect(build, project):
    itm = os.path.join(project, "Project.itm")
    cpu, wall = [], []
    for _ in range(RUNS):
        start = time.monotonic()
        child = subprocess.Popen([os.path.join(build, "bin", "qxinspect"), "project", itm],
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(child.pid, 0)
        wall.append((time.monotonic() - start) * 1000)
        if status != 0:
            sys.exit(f"qxinspect project {itm} failed")
        cpu.append((usage.ru_utime + usage.ru_stime) * 1000)
    return statistics.median(cpu), statistics.median(wall)


def machine():
    model = "unknown processor"
    with open("/proc/cpuinfo") as f:
        for line in f:
            if line.startswith("model name"):
                model = line.split(":", 1)[1].strip()
                break
    return f"{model}, {os.cpu_count()} cores, {platform.system()} {platform.release()}"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    out = sys.argv[1]
    build = sys.argv[2] if len(sys.argv) > 2 else "build"
    sizes = [int(n) for n in sys.argv[3:]] or [25, 50, 100, 200]
    projects = {n: project_of(out, n) for n in sizes}
    results = bench_commands(build, list(projects.values()))
    print(f"Machine: {machine()}\n")
    print("| devices | drawings | command | processor ms | wall ms | drawing reads |")
    print("|---|---|---|---|---|---|")
    for n, project in projects.items():
        for name in ("HMBomSubmit", "HMBomCmp", "qxinspect_project"):
            run = results[(name, project)]
            print(f"| {n} | {int(run['drawings'])} | {name.replace('_', ' ')} (in process) | {run['cpu_time']:.0f} "
                  f"| {run['real_time']:.0f} | {run['reads']:.0f} |")
        cpu, wall = time_inspect(build, project)
        reads = results[("qxinspect_project", project)]["reads"]
        print(f"| {n} | {int(results[('HMBomSubmit', project)]['drawings'])} | qxinspect project (program) "
              f"| {cpu:.0f} | {wall:.0f} | {reads:.0f} |")


if __name__ == "__main__":
    main()
