#!/usr/bin/python3
"""Writes a project for the project command benchmarks with ezdxf: DEVICES device folders (100 unless given),
each with its .prj and 10 drawings of 10 labelled parts, and a primary diagram of one cabinet of 5 drawers
per device (500 circuits for 100 devices) naming 2 shared secondary drawings per device.

Usage: /usr/bin/python3 bench/make_submit_project.py OUTPUT_FOLDER [DEVICES]
The project is OUTPUT_FOLDER/Project; pass that folder to the benchmark in $QX_BENCH_SUBMIT_PROJECTS.
"""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_assembly_project as assembly  # noqa: E402

DRAWINGS_PER_DEVICE = 10


def write_project(folder, devices):
    assembly.DRAWERS = 5
    cabinets, secondaries = devices, 2 * devices
    project = os.path.join(folder, "Project")
    os.makedirs(os.path.join(project, "Secondary"), exist_ok=True)
    with open(os.path.join(project, "Project.itm"), "wb") as f:
        f.write(b"$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF")
    assembly.primary(os.path.join(project, "一次系统图.dwg"), cabinets, secondaries)
    for i in range(secondaries):
        assembly.secondary(os.path.join(project, "Secondary", f"S{i:04d}.dwg"), i)
    for c in range(cabinets):
        name = f"K{c + 1:03d}"
        os.makedirs(os.path.join(project, name), exist_ok=True)
        assembly.write_prj(os.path.join(project, name, name + ".prj"), name)
        for d in range(DRAWINGS_PER_DEVICE):
            assembly.device(os.path.join(project, name, f"{name}-{d + 1:02d}.dwg"), name)
    return project


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    write_project(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 100)


if __name__ == "__main__":
    main()
