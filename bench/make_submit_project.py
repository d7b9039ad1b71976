#!/usr/bin/python3
"""Writes a project for the HMBomSubmit benchmark with ezdxf: a primary diagram of 500 circuits (100 cabinets
of 5 drawers) naming 200 shared secondary drawings, and 100 device folders, each with its .prj and 10
drawings of 10 labelled parts. SCALE multiplies the cabinets, the devices and the shared drawings.

Usage: /usr/bin/python3 bench/make_submit_project.py OUTPUT_FOLDER [SCALE]
The project is OUTPUT_FOLDER/Project; pass that folder to the benchmark in $QX_BENCH_SUBMIT_PROJECTS.
"""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import make_assembly_project as assembly  # noqa: E402

DRAWINGS_PER_DEVICE = 10


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    scale = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    assembly.DRAWERS = 5
    cabinets, secondaries = 100 * scale, 200 * scale
    project = os.path.join(sys.argv[1], "Project")
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


if __name__ == "__main__":
    main()
