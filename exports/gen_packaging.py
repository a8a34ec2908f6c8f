#!/usr/bin/env python3
"""Generates what a kernel compiler reads, from the family table and its
companion exports/opencl.tsv:

  gen_packaging.py FAMILIES OPENCL OUTDIR

Writes into OUTDIR:
  builtins.tsv    one row per export: the OpenCL C built-in it implements,
                  its class and algorithm, when a compiler picks it, the OpenCL
                  C result and argument types, the register or by-address
                  form, the body behind the name, and the designed results
                  that differ from OpenCL C
  ocl_ravl_l9.ll  an LLVM IR declaration of every export: register-form
                  members in the library's register convention (cc 77) with
                  OpenCL's vector types whole (<16 x double>, <3 x float>) and
                  two register results as a literal struct; by-address members
                  in the platform's C convention (ptr arguments)
"""
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from gen_exports import LANE, by_address, members, read_table, write  # noqa: E402

OPENCL_TYPE = {"d": "double", "s": "float", "i": "int", "u": "uint", "l": "long", "ul": "ulong"}
IR_TYPE = {"d": "double", "s": "float", "i": "i32", "u": "i32", "l": "i64", "ul": "i64"}
# The OpenCL C functions that have native_ and half_ forms (single lanes only).
NATIVE_HALF = {"cos", "divide", "exp", "exp2", "exp10", "log", "log2", "log10", "powr",
               "recip", "rsqrt", "sin", "sqrt", "tan"}
CONVERT_INT = {"i32": "int", "i64": "long", "u32": "uint", "u64": "ulong"}


def read_opencl(path):
    rows = {}
    for no, line in enumerate(open(path), 1):
        if line.startswith("#") or not line.strip():
            continue
        cols = line.rstrip("\n").split("\t")
        if len(cols) != 5:
            sys.exit(f"{path} line {no}: expected 5 tab-separated columns")
        fam, builtin, relaxed, measured, notes = cols
        if relaxed not in ("yes", "no", "-"):
            sys.exit(f"{path} line {no}: relaxed must be yes, no or -")
        if fam in rows:
            sys.exit(f"{path} line {no}: {fam} listed twice")
        rows[fam] = (builtin, relaxed, "" if measured == "-" else measured, "" if notes == "-" else notes)
    return rows


def single(f):
    """A family on single lanes (expf, ilogbf, nanf), whose name ends in f."""
    return "s" in f.results + f.args


def convert_builtin(name, w):
    """convert_<type>N[_sat]_<rm> from the conversion grammar, with the note
    every out-of-range rule of that body implies."""
    n = "" if w == 1 else str(w)
    rm = name[name.index("rt"):][:3]
    if name.startswith("cvtfpto"):
        dst = CONVERT_INT[name[7:10]]
        sat = "nosat" not in name
        note = ""
        if not sat:
            big = "0x80000000" if dst in ("int", "uint") else "0x8000000000000000"
            note = f"out of range, infinity and NaN give {big} (OpenCL: undefined)"
            if dst in ("uint", "ulong"):
                note += "; a negative source converts to the magnitude of its rounded value"
        return f"convert_{dst}{n}{'_sat' if sat else ''}_{rm}", note
    if name.startswith("cvtfp64tofp32"):
        return f"convert_float{n}_{rm}", ""
    dst = "float" if name.endswith("f") else "double"
    return f"convert_{dst}{n}_{rm}", ""


def cl_type(t, w):
    return OPENCL_TYPE[t] + ("" if w == 1 else str(w))


def builtin_rows(fams, opencl):
    impl = [m for m in members(fams) if m[2].implemented]
    for f in fams:
        if f.implemented and "native" in f.classes and opencl.get(f.name, ("", "-", "", ""))[1] == "-":
            sys.exit(f"opencl.tsv: {f.name} has a _native member: say whether -cl-fast-relaxed-math may pick it")
    known = {f.name for f in fams}
    for fam in opencl:
        if fam not in known:
            sys.exit(f"opencl.tsv: {fam} is not a family of the family table")
    rows = [["export", "builtin", "class", "algorithm", "picked", "result", "arguments", "form", "body", "notes"]]
    for name, body, f, cls, w in impl:
        builtin, relaxed, measured, notes = opencl.get(f.name, ("=", "-", "", ""))
        if f.name.startswith("cvt"):
            plain, note = convert_builtin(f.name, w)
            notes = "; ".join(x for x in (notes, note) if x)
            base = None
        else:
            if builtin == "=":
                builtin = f.name[:-1] if single(f) and f.name.endswith("f") else f.name
            plain, _, base = builtin.partition("|")
            base = base or plain
        sp = single(f)
        if cls == "plain":
            bi, picked = plain, "default"
        elif cls == "native":
            bi = f"native_{base}" if sp and base in NATIVE_HALF else plain
            ways = ([bi] if bi != plain else []) + (["-cl-fast-relaxed-math"] if relaxed == "yes" else [])
            picked = ", ".join(ways) if ways else "on request only (not within the relaxed bound)"
            if bi != plain and relaxed == "no":
                picked += " (not under -cl-fast-relaxed-math)"
            if measured:
                notes = "; ".join(x for x in (f"relaxed: {measured}", notes) if x)
        elif cls == "half":
            bi = f"half_{base}" if sp and base in NATIVE_HALF else plain
            picked = bi if bi != plain else "on request only (OpenCL's half_ built-ins take float)"
        else:
            bi = plain
            picked = f"on request only (the {f.classes[cls]} algorithm; no rounding mode is set)"
        res = ", ".join(cl_type(t, w) for t in f.results)
        args = [cl_type(t, w) for t in f.args] + ([cl_type(f.ptr_result, w) + " *"] if f.ptr_result else [])
        form = "by-address" if by_address(f, w) else "register"
        rows.append([name, bi, cls, f.classes[cls], picked, res, ", ".join(args), form, body, notes or "-"])
    return "".join("\t".join(r) + "\n" for r in rows)


def ir_vec(t, w):
    return IR_TYPE[t] if w == 1 else f"<{w} x {IR_TYPE[t]}>"


def ir_decl(name, f, w):
    if by_address(f, w):
        n = 1 + len(f.args) + (1 if f.ptr_result else 0)
        return f"declare ptr @{name}({', '.join(['ptr'] * n)})"
    args = [ir_vec(t, w) for t in f.args] + (["ptr"] if f.ptr_result else [])
    r0 = f.results[0]
    if len(f.results) == 1:
        ret = ir_vec(r0, w)
    elif w == 1 and not LANE[r0][3]:
        ret = "i64"  # quotient in the low half of rax, remainder in the high half
    elif w == 1:
        ret = f"<2 x {IR_TYPE[r0]}>"  # first result in lane 0, second in lane 1 of xmm0
    else:
        ret = f"{{ {ir_vec(r0, w)}, {ir_vec(f.results[1], w)} }}"
    return f"declare cc 77 {ret} @{name}({', '.join(args)})"


def ir_text(fams):
    impl = [m for m in members(fams) if m[2].implemented]
    out = ["; libocl_ravl_l9: a declaration of every export. Generated from exports/families.tsv",
           "; by exports/gen_packaging.py; do not edit.",
           ";",
           "; cc 77: vectors in ymm0-3 (xmm for 128-bit values), results from ymm0 up, integer",
           "; scalars and pointers in the integer argument registers, ymm8-15 (Linux) or",
           "; ymm6-15 (Windows) preserved. Wide vectors are split over consecutive registers",
           "; (<16 x double>: ymm0-3); width 3 travels as width 4. Two register results are a",
           "; literal struct (idivrem4: xmm0, xmm1). Members whose values need more than four",
           "; 256-bit registers take the by-address form in the platform's C convention:",
           "; (ptr result, ptr arg0, ...), each argument laid out as its register image,",
           "; returning result. Pointers are opaque (`ptr`; LLVM 14 reads them with",
           "; -opaque-pointers).",
           ""]
    out += [ir_decl(name, f, w) for name, body, f, cls, w in impl]
    return "\n".join(out) + "\n"


def main():
    fams = read_table(sys.argv[1])
    opencl = read_opencl(sys.argv[2])
    outdir = sys.argv[3]
    write(os.path.join(outdir, "builtins.tsv"), builtin_rows(fams, opencl))
    write(os.path.join(outdir, "ocl_ravl_l9.ll"), ir_text(fams))


if __name__ == "__main__":
    main()
