#!/usr/bin/env python3
"""The README's speed tables from one report run: per subsystem, one row per
function and width with the plain and `_native` entries side by side.

    bench/report.py build > report.md
    bench/summary.py report.md [huge_one.txt huge_all.txt]

report.md is bench/report.py's table (the .so and the DLL in one run); the
optional huge_*.txt are ravl_bench outputs with RAVL_BENCH_HUGE=one and =all,
which add the trigonometric full-range table.
"""
import re
import sys

GROUPS = [
    ("Exponentials and logarithms",
     "exp exp2 exp10 expm1 log log2 log10 log1p"),
    ("Trigonometric functions",
     "sin cos tan sincos sincosreg sinpi cospi tanpi"),
    ("Inverse trigonometric functions",
     "asin acos atan atan2 asinpi acospi atanpi atan2pi"),
    ("Powers and roots",
     "pow powr pown rootn cbrt rcbrt sqrt rsqrt hypot"),
    ("Hyperbolic functions and their inverses",
     "sinh cosh tanh asinh acosh atanh"),
    ("Special functions",
     "erf erfc lgamma lgammar tgamma"),
]


def read_report(path):
    rows, head = {}, ""
    for line in open(path):
        if line.startswith("one cycle"):
            head = line.strip()
        m = re.match(r"^\| `(\S+)` \|(.*)\|\s*$", line)
        if not m:
            continue
        cells = [c.strip() for c in m.group(2).split("|")]
        # ns, peer ns, ratio, cycles, floor+mca, bound by, DLL ns, DLL ratio, DLL cycles, DLL floor+mca, goal
        rows[m.group(1)] = cells
    return rows, head


def member(fam, single, native):
    return fam + ("f8" if single else "4") + ("_native" if native else "")


def fmt(cells, i):
    return cells[i] if cells and cells[i] != "-" else "-"


def speed_tables(rows):
    out = []
    for title, fams in GROUPS:
        out.append(f"{title}:\n")
        out.append("| entry | ns | SLEEF ns | ratio | DLL ratio | `_native` ns | SLEEF ns | ratio | DLL ratio |")
        out.append("|---|---|---|---|---|---|---|---|---|")
        for fam in fams.split():
            for single in (False, True):
                p, n = rows.get(member(fam, single, False)), rows.get(member(fam, single, True))
                if not p and not n:
                    continue
                out.append(f"| `{member(fam, single, False)}` | {fmt(p, 0)} | {fmt(p, 1)} | {fmt(p, 2)} | {fmt(p, 7)} | "
                           f"{fmt(n, 0)} | {fmt(n, 1)} | {fmt(n, 2)} | {fmt(n, 7)} |")
        out.append("")
    return out


def read_bench(path):
    """ravl_bench's table: our rows and SLEEF's, ns per element."""
    ours, peers = {}, {}
    for line in open(path):
        m = re.match(r"^(sleef )?(\S+)\s+([0-9.]+)\s+([0-9.]+)", line)
        if m:
            (peers if m.group(1) else ours)[m.group(2)] = float(m.group(3))
    return ours, peers


def huge_table(one, all_):
    o1, p1 = read_bench(one)
    o2, p2 = read_bench(all_)
    out = ["| entry | one lane huge: ns | SLEEF u10 ns | every lane huge: ns | SLEEF u10 ns |",
           "|---|---|---|---|---|"]
    for fam in "sin cos tan sincos".split():
        for single in (False, True):
            for native in (False, True):
                name = member(fam, single, native)
                if name not in o1:
                    continue
                peer = fam + ("f8" if single else "d4") + "_u10"
                out.append(f"| `{name}` | {o1[name]:.3f} | {p1.get(peer, 0):.3f} | {o2[name]:.3f} | {p2.get(peer, 0):.3f} |")
    return out


def goal_summary(rows):
    """How many entries meet the goal on each binary, and which miss it."""
    so_missed = [n for n, c in rows.items() if c[10].startswith("MISSED")]
    dll_missed = [n for n, c in rows.items() if c[10].endswith("DLL missed")]
    math = {m for _, fams in GROUPS for f in fams.split() for m in
            (member(f, s, n) for s in (False, True) for n in (False, True))}
    below = [f"`{n}` {c[2]}" for n, c in rows.items() if n in math and
             c[2] != "-" and float(c[2].rstrip("x")) < 1.5 and not c[10].startswith("MISSED")]
    names = lambda l: ", ".join(f"`{n}`" for n in l) or "none"
    return [f"In that run {len(rows) - len(so_missed)} of the {len(rows)} entries meet the goal on the .so "
            f"and {len(rows) - len(dll_missed)} on the DLL. Missed on the .so: {names(so_missed)}; "
            f"on the DLL: {names(dll_missed)}. At their bound but under 1.5x SLEEF (where SLEEF's "
            f"function is itself near the call floor, or the entry's path is the designed one): "
            f"{', '.join(below) or 'none'}."]


def main():
    rows, head = read_report(sys.argv[1])
    print(head + "\n")
    print("\n".join(speed_tables(rows)))
    if len(sys.argv) > 3:
        print("\n".join(huge_table(sys.argv[2], sys.argv[3])))
        print()
    print("\n".join(goal_summary(rows)))


if __name__ == "__main__":
    main()
