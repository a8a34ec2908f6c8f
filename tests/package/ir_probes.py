#!/usr/bin/env python3
"""Writes a probe for every register-form declaration of ocl_ravl_l9.ll:

  ir_probes.py DECLARATIONS.ll OUT.ll

probe.NAME(ptr in0, ptr in1, ptr in2, ptr out) loads each argument from its
packed lanes, calls NAME through its declaration (cc 77), and stores the
results packed one after the other at out, followed by the lanes stored
through the pointer argument: the layout in which the tests' harness gives the
defined results of a call (tests/common/harness.h). A table probe_table of
{name, probe} and probe_count let ir_probe_driver.cpp find them."""
import re
import sys

SIZE = {"double": 8, "float": 4, "i32": 4, "i64": 8}
DECL = re.compile(r"^declare cc 77 (.+?) @(\w+)\((.*)\)$")


def store_size(t):
    m = re.fullmatch(r"<(\d+) x (\w+)>", t)
    return int(m.group(1)) * SIZE[m.group(2)] if m else SIZE[t]


def probe(ret, name, args):
    lines = [f'define void @"probe.{name}"(ptr %i0, ptr %i1, ptr %i2, ptr %o) {{']
    m = re.fullmatch(r"\{ (.+), (.+) \}", ret)
    parts = [m.group(1), m.group(2)] if m else [ret]
    ops, k = [], 0
    for t in args:
        if t == "ptr":
            off = sum(store_size(p) for p in parts)
            lines.append(f"  %p = getelementptr i8, ptr %o, i64 {off}")
            ops.append("ptr %p")
        else:
            lines.append(f"  %a{k} = load {t}, ptr %i{k}, align 1")
            ops.append(f"{t} %a{k}")
            k += 1
    lines.append(f"  %r = call cc 77 {ret} @{name}({', '.join(ops)})")
    if len(parts) == 1:
        lines.append(f"  store {ret} %r, ptr %o, align 1")
    else:
        lines.append(f"  %r0 = extractvalue {ret} %r, 0")
        lines.append(f"  %r1 = extractvalue {ret} %r, 1")
        lines.append(f"  store {parts[0]} %r0, ptr %o, align 1")
        lines.append(f"  %o1 = getelementptr i8, ptr %o, i64 {store_size(parts[0])}")
        lines.append(f"  store {parts[1]} %r1, ptr %o1, align 1")
    lines += ["  ret void", "}"]
    return lines


def main():
    decls = [l.strip() for l in open(sys.argv[1]) if l.startswith("declare")]
    out, names = [], []
    for d in decls:
        out.append(d)
        m = DECL.match(d)
        if m:
            ret, name, args = m.groups()
            out += probe(ret, name, args.split(", ") if args else [])
            names.append(name)
    for i, n in enumerate(names):
        out.append(f'@probe.name.{i} = private constant [{len(n) + 1} x i8] c"{n}\\00"')
    entries = ", ".join(f'{{ ptr, ptr }} {{ ptr @probe.name.{i}, ptr @"probe.{n}" }}' for i, n in enumerate(names))
    out.append(f"@probe_table = constant [{len(names)} x {{ ptr, ptr }}] [{entries}]")
    out.append(f"@probe_count = constant i32 {len(names)}")
    open(sys.argv[2], "w").write("\n".join(out) + "\n")


if __name__ == "__main__":
    main()
