#!/usr/bin/env python3
"""Generates every list of exported names from the family table.

  gen_exports.py TABLE OUTDIR [--header PATH] [--check-header PATH]

Writes into OUTDIR:
  libocl_ravl_l9.def       the DLL's exports (aliases as `name = body`)
  libocl_ravl_l9.map       the Linux version script (exactly the same names)
  exports_list.inc         the tests' list: name, body, family, class, width,
                           signature and where each argument and result travels
  entries/<family>.inc     the entry point definitions of each implemented family
and the public header ocl_ravl_l9.h (to --header, default OUTDIR).
Prints `exports: N of 2328` and fails on a name that breaks the grammar.
"""
import os
import re
import sys

PREFIX = "__ocl_ravl_l9_"
WIDTHS = (1, 2, 3, 4, 8, 16)
CLASS_SUFFIX = {"plain": "", "native": "_native", "half": "_half", "rm": "_rm"}
LANE = {  # code: (C++ type, header type stem, bytes, floating)
    "d": ("double", "double", 8, True),
    "s": ("float", "float", 4, True),
    "i": ("int32_t", "int", 4, False),
    "u": ("uint32_t", "uint", 4, False),
    "l": ("int64_t", "long", 8, False),
    "ul": ("uint64_t", "ulong", 8, False),
}
HEADER_SCALAR = {"d": "double", "s": "float", "i": "int32_t", "u": "uint32_t", "l": "int64_t", "ul": "uint64_t"}
NAME_RE = re.compile(r"^__ocl_ravl_l9_[a-z][a-z0-9]*(1|2|3|4|8|16)(_native|_half|_rm)?$")


class Family:
    def __init__(self, fields, line):
        if len(fields) != 6:
            sys.exit(f"families table line {line}: expected 6 columns")
        self.name, self.dir, sig, classes, aliases, state = fields
        self.implemented = state == "impl"
        m = re.fullmatch(r"([a-z]+)(?:,([a-z]+))?\(([^)]*)\)", sig)
        if not m:
            sys.exit(f"families table line {line}: bad signature {sig}")
        self.sig = sig
        self.results = [m.group(1)] + ([m.group(2)] if m.group(2) else [])
        self.args = m.group(3).split(",")
        self.ptr_result = None
        if self.args[-1].startswith("*"):
            self.ptr_result = self.args.pop()[1:]
        for t in self.results + self.args + ([self.ptr_result] if self.ptr_result else []):
            if t not in LANE:
                sys.exit(f"families table line {line}: unknown lane type {t}")
        self.classes = dict(c.split("=") for c in classes.split(","))
        self.alias_family = None
        self.alias_class = {}
        if aliases != "-":
            for a in aliases.split(","):
                if a.startswith("="):
                    self.alias_family = a[1:]
                else:
                    k, v = a.split("=")
                    self.alias_class[k] = v

    def kernel(self, cls):
        return f"ravl::{self.name}_k::{self.classes[cls]}"


def pad(w):
    return 4 if w == 3 else w


def image_lanes(t, w):
    b = LANE[t][2]
    return 1 if w == 1 else max(pad(w), 16 // b)


def image_bytes(t, w):
    return LANE[t][2] * image_lanes(t, w)


def regs(t, w):
    """Vector registers a value needs (0 for an integer scalar, which goes in a GPR)."""
    if w == 1 and not LANE[t][3]:
        return 0
    return max(1, image_bytes(t, w) // 32)


def by_address(f, w):
    nin = sum(regs(t, w) for t in f.args)
    nout = sum(regs(t, w) for t in f.results)
    if len(f.results) == 2 and w == 1:
        nout = 1
    return nin > 4 or nout > 4


def split_thunk(f, w):
    return len(f.results) == 2 and w > 1 and image_bytes(f.results[0], w) == 16


def cxx_vec(t, lanes):
    return LANE[t][0] if lanes == 1 else f"ravl::Vec<{LANE[t][0]}, {lanes}>"


def pieces(t, w):
    """The C parameter types one argument of lane type t travels in."""
    lanes = image_lanes(t, w)
    per = 32 // LANE[t][2]
    if lanes * LANE[t][2] <= 32:
        return [lanes]
    return [per] * (lanes // per)


def ret_lanes(f, w):
    """Lanes of the register return value (in lanes of results[0])."""
    if len(f.results) == 1:
        return image_lanes(f.results[0], w)
    if w == 1:
        return 16 // LANE[f.results[0]][2] if LANE[f.results[0]][3] else 0  # 0: packed in rax
    return 2 * image_lanes(f.results[0], w)


def members(fams):
    """(name, body, family, class, width) for every export of implemented families."""
    by_name = {f.name: f for f in fams}
    out = []
    for f in fams:
        for cls in f.classes:
            for w in WIDTHS:
                name = f"{PREFIX}{f.name}{w}{CLASS_SUFFIX[cls]}"
                body = name
                if w != 3 and cls in f.alias_class:
                    body = f"{PREFIX}{f.name}{w}{CLASS_SUFFIX[f.alias_class[cls]]}"
                if w != 3 and f.alias_family:
                    target = by_name[f.alias_family]
                    body = f"{PREFIX}{target.name}{w}{CLASS_SUFFIX[cls]}"
                out.append((name, body, f, cls, w))
    return out


def placement(f, w):
    """Where arguments and results travel, for the tests' universal caller:
    vK:B   B bytes in vector registers from K on;  gK:B  B bytes in GPR argument K;
    pK:B   GPR argument K points to a B-byte result buffer the call writes;
    mK:B   GPR argument K points to a B-byte image in memory (by-address form);
    rax:B  result in rax."""
    args, ret = [], []
    if by_address(f, w):
        g = 1
        for t in f.args:
            args.append(f"m{g}:{image_bytes(t, w)}")
            g += 1
        if f.ptr_result:
            args.append(f"p{g}:{LANE[f.ptr_result][2] * w}")
        nbytes = LANE[f.results[0]][2] * w
        ret.append(f"m0:{nbytes * len(f.results)}")
        return "reg" if False else "mem", ",".join(args), ",".join(ret)
    v, g = 0, 0
    for t in f.args:
        n = regs(t, w)
        if n == 0:
            args.append(f"g{g}:{LANE[t][2]}")
            g += 1
        else:
            args.append(f"v{v}:{image_bytes(t, w)}")
            v += n
    if f.ptr_result:
        args.append(f"p{g}:{LANE[f.ptr_result][2] * w}")
    r0 = f.results[0]
    if len(f.results) == 1:
        ret.append(f"rax:{LANE[r0][2]}" if regs(r0, w) == 0 else f"v0:{image_bytes(r0, w)}")
    elif w == 1:
        ret.append("v0:16" if LANE[r0][3] else "rax:8")
    elif split_thunk(f, w):
        ret.append("v0:16,v1:16")
    else:
        ret.append(f"v0:{2 * image_bytes(r0, w)}")
    return "reg", ",".join(args), ",".join(ret)


# ---- entry point definitions -------------------------------------------------

def entry_code(f, cls, w, name):
    """An entry point and its slow function. Both have the same signature: the
    entry computes every lane and tests the lane mask; when a lane is flagged it
    tail-calls the slow function, which computes the call again with the inline
    pass and the lane loop (so the common path needs no stack frame at all).
    A tied kernel's test comes out of the computation itself: the entry keeps
    that one computation and returns its results; other kernels test first and
    compute after the test.
    The common path is written first and marked likely, so that it falls
    through the lane test to its return and only a flagged call takes a branch
    (to the tail call, placed after the return)."""
    E = f"ravl::frame::Entry<{f.kernel(cls)}, {w}>"
    slow = f"ravl_slow{name}"
    lines = [f"// {name}"]
    if by_address(f, w):
        n = len(f.args) + (1 if f.ptr_result else 0)
        params = ", ".join(["void* r"] + [f"const void* a{i}" for i in range(n)])
        call = ", ".join(["r"] + [f"a{i}" for i in range(n)])
        lines.append(f'extern "C" inline RAVL_NOINLINE void* {slow}({params}) {{ return {E}::mem<true>({call}); }}')
        lines.append(f'extern "C" RAVL_EXPORT void* {name}({params}) {{')
        lines.append(f"  if constexpr ({E}::tied) {{")
        lines.append(f"    const auto s = {E}::load_and_compute<false>({', '.join(f'a{i}' for i in range(n))});")
        lines.append(f"    if (__builtin_expect(s.mask == 0, 1)) return {E}::mem_out(s, {call});")
        lines.append(f"  }} else if (__builtin_expect(!{E}::flagged_mem({call}), 1)) return {E}::mem<false>({call});")
        lines.append(f"  [[clang::musttail]] return {slow}({call});")
        lines.append("}")
        return "\n".join(lines)
    params, imgs, args = [], [], []
    for i, t in enumerate(f.args):
        ps = pieces(t, w)
        if len(ps) == 1:
            params.append(f"{cxx_vec(t, ps[0])} a{i}")
            imgs.append(f"a{i}")
            args.append(f"a{i}")
        else:
            names = [f"a{i}_{k}" for k in range(len(ps))]
            params += [f"{cxx_vec(t, p)} {nm}" for p, nm in zip(ps, names)]
            imgs.append("ravl::frame::pieces(" + ", ".join(names) + ")")
            args += names
    ptr = "nullptr"
    if f.ptr_result:
        params.append(f"{LANE[f.ptr_result][0]}* p")
        ptr = "p"
        args.append("p")
    r0 = f.results[0]
    if len(f.results) == 2 and w == 1 and not LANE[r0][3]:
        rtype = "uint64_t"
    else:
        rtype = cxx_vec(r0, ret_lanes(f, w))
    fn = name if not split_thunk(f, w) else f"ravl_body{name}"
    export = "RAVL_EXPORT " if fn == name else ""
    p, im, a = ", ".join(params), ", ".join(imgs), ", ".join(args)
    lines.append(f'extern "C" inline RAVL_CC RAVL_NOINLINE {rtype} {slow}({p}) {{ return {E}::reg<true>({ptr}, {im}); }}')
    lines.append(f'extern "C" {export}RAVL_CC {rtype} {fn}({p}) {{')
    lines.append(f"  if constexpr ({E}::tied) {{")
    lines.append(f"    const auto s = {E}::compute<false>({im});")
    lines.append(f"    if (__builtin_expect(s.mask == 0, 1)) return {E}::reg_out({ptr}, s);")
    lines.append(f"  }} else if (__builtin_expect(!{E}::flagged({im}), 1)) return {E}::reg<false>({ptr}, {im});")
    lines.append(f"  [[clang::musttail]] return {slow}({a});")
    lines.append("}")
    if fn != name:
        lines.append(f"RAVL_SPLIT_THUNK({name}, {fn})")
    return "\n".join(lines)


# ---- public header -------------------------------------------------------------

def header_type(t, lanes):
    return HEADER_SCALAR[t] if lanes == 1 else f"ocl_ravl_{LANE[t][1]}{lanes}"


def header_proto(f, cls, w, name):
    if by_address(f, w):
        n = len(f.args) + (1 if f.ptr_result else 0)
        params = ", ".join(["void* result"] + [f"const void* arg{i}" for i in range(n)])
        return f"OCL_RAVL_API void* {name}({params});"
    params = []
    for i, t in enumerate(f.args):
        ps = pieces(t, w)
        if len(ps) == 1:
            params.append(f"{header_type(t, ps[0])} a{i}")
        else:
            params += [f"{header_type(t, p)} a{i}_{k}" for k, p in enumerate(ps)]
    if f.ptr_result:
        params.append(f"{HEADER_SCALAR[f.ptr_result]}* out")
    r0 = f.results[0]
    if split_thunk(f, w):
        rt = header_type(r0, image_lanes(r0, w))
        return (f"/* returns the first result in xmm0 and the second in xmm1 (LLVM IR: a two-vector\n"
                f"   struct); C and C++ take both from the wrapper {name[2:]} below */\n"
                f"OCL_RAVL_API {rt} OCL_RAVL_CC {name}({', '.join(params)});")
    if len(f.results) == 2 and w == 1 and not LANE[r0][3]:
        rt = "uint64_t"
    else:
        rt = header_type(r0, ret_lanes(f, w))
    return f"OCL_RAVL_API {rt} OCL_RAVL_CC {name}({', '.join(params)});"


def header_params(f, w):
    """(type, name) of each C parameter of a register-form member."""
    params = []
    for i, t in enumerate(f.args):
        ps = pieces(t, w)
        if len(ps) == 1:
            params.append((header_type(t, ps[0]), f"a{i}"))
        else:
            params += [(header_type(t, p), f"a{i}_{k}") for k, p in enumerate(ps)]
    return params


def pair_type(t, w):
    lanes = 1 if w == 1 else image_lanes(t, w)
    stem = LANE[t][1] + ("" if lanes == 1 else str(lanes))
    return f"ocl_ravl_{stem}_pair", header_type(t, lanes)


# Both results of a two-result member as one struct {r0, r1}, one wrapper a
# member, each written with one of these macros. The members that return in
# xmm0 and xmm1, which no C declaration can express, are called from inline
# assembly with their arguments pinned to xmm0 (and xmm1): the call steps
# over the caller's red zone (Linux), aligns the stack to 16 bytes, gives the
# callee its 32-byte home area (Windows) and names every register the
# convention lets the callee change.
PAIR_MACROS = r"""#if defined(_WIN32)
#define OCL_RAVL_PAIR_CALL_(fn)                                                    \
  "push %%rbx\n\tmov %%rsp, %%rbx\n\tand $-16, %%rsp\n\tsub $32, %%rsp\n\t"          \
  "call *__imp_" #fn "(%%rip)\n\tmov %%rbx, %%rsp\n\tpop %%rbx"
#define OCL_RAVL_PAIR_CLOBBERS_ "rax", "rcx", "rdx", "r8", "r9", "r10", "r11",     \
  "xmm2", "xmm3", "xmm4", "xmm5", "memory", "cc"
#else
#define OCL_RAVL_PAIR_CALL_(fn)                                                    \
  "lea -128(%%rsp), %%rsp\n\tpush %%rbx\n\tmov %%rsp, %%rbx\n\tand $-16, %%rsp\n\t"   \
  "call " #fn "@PLT\n\tmov %%rbx, %%rsp\n\tpop %%rbx\n\tlea 128(%%rsp), %%rsp"
#define OCL_RAVL_PAIR_CLOBBERS_ "rax", "rcx", "rdx", "rsi", "rdi", "r8", "r9", "r10", \
  "r11", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "memory", "cc"
#endif
/* arguments in xmm0 (and xmm1: init1 is `= a1`, mode1 "+x"); results in xmm0 and xmm1 */
#define OCL_RAVL_PAIR_XMM_(PT, T, fn, init1, mode1)                                \
  register T x0 __asm__("xmm0") = a0;                                              \
  register T x1 __asm__("xmm1") init1;                                             \
  __asm__ volatile(OCL_RAVL_PAIR_CALL_(fn) : "+x"(x0), mode1(x1) : : OCL_RAVL_PAIR_CLOBBERS_); \
  PT r = {x0, x1};                                                                 \
  return r;
#define OCL_RAVL_PAIR_XMM1_(PT, T, wrap, fn)                                       \
  static inline PT wrap(T a0) { OCL_RAVL_PAIR_XMM_(PT, T, fn, , "=x") }
#define OCL_RAVL_PAIR_XMM2_(PT, T, wrap, fn)                                       \
  static inline PT wrap(T a0, T a1) { OCL_RAVL_PAIR_XMM_(PT, T, fn, = a1, "+x") }
/* one vector V holding both: the halves (wider members), or lanes 0 and 1 (width 1) */
#define OCL_RAVL_PAIR_HALVES_(PT, V, wrap, fn, P, A)                                \
  static inline PT wrap P { V v = fn A; PT r = {v.lo, v.hi}; return r; }
#define OCL_RAVL_PAIR_LANES_(PT, V, wrap, fn, P, A)                                 \
  static inline PT wrap P { V v = fn A; PT r = {v.x, v.y}; return r; }
/* integer width 1: both in rax, the first in the low half */
#define OCL_RAVL_PAIR_RAX_(PT, E, wrap, fn, P, A)                                   \
  static inline PT wrap P {                                                        \
    uint64_t v = fn A;                                                             \
    PT r = {(E)(uint32_t)v, (E)(uint32_t)(v >> 32)};                               \
    return r;                                                                      \
  }
/* by address: both images one after the other in the result buffer */
#define OCL_RAVL_PAIR_MEM_(PT, E, wrap, fn, P, A)                                   \
  static inline PT wrap P { E buf[2]; fn A; PT r = {buf[0], buf[1]}; return r; }"""


def pair_wrapper(f, cls, w, name):
    """The wrapper of a two-result member, under the member's name less its
    leading underscores."""
    r0 = f.results[0]
    pt, et = pair_type(r0, w)
    wrap = name[2:]
    if by_address(f, w):
        n = len(f.args)
        params = ", ".join(f"const void* a{i}" for i in range(n))
        args = ", ".join(["buf"] + [f"a{i}" for i in range(n)])
        return f"OCL_RAVL_PAIR_MEM_({pt}, {et}, {wrap}, {name}, ({params}), ({args}))"
    params = header_params(f, w)
    if split_thunk(f, w):
        return f"OCL_RAVL_PAIR_XMM{len(params)}_({pt}, {et}, {wrap}, {name})"
    p = "(" + ", ".join(f"{t} {n}" for t, n in params) + ")"
    a = "(" + ", ".join(n for t, n in params) + ")"
    if w == 1 and not LANE[r0][3]:
        return f"OCL_RAVL_PAIR_RAX_({pt}, {et}, {wrap}, {name}, {p}, {a})"
    kind = "LANES" if w == 1 else "HALVES"
    return f"OCL_RAVL_PAIR_{kind}_({pt}, {header_type(r0, ret_lanes(f, w))}, {wrap}, {name}, {p}, {a})"


def header_text(fams, mem):
    types = set()
    for t in LANE:
        for lanes in (2, 4, 8, 16, 32):
            types.add((t, lanes))
    out = ["/* libocl_ravl_l9: OpenCL built-in math for x86-64 AVX2+FMA. Generated from",
           "   exports/families.tsv by exports/gen_exports.py; do not edit.",
           "",
           "   Register form: vectors in ymm0-3 (xmm for 128-bit values), results in ymm0-3,",
           "   integer scalars and pointers in the integer argument registers, all of",
           "   ymm6-15 preserved (Windows; ymm8-15 on Linux): OCL_RAVL_CC.",
           "   By-address form (functions taking void* result): the platform's C convention;",
           "   result buffer first, then the arguments' register images; returns the buffer.",
           "   Width 3 travels as width 4; its fourth lane is undefined on entry and return.",
           "   remquo stores the 7 low bits of the integral quotient with its sign. */",
           "#ifndef OCL_RAVL_L9_H",
           "#define OCL_RAVL_L9_H",
           "#include <stdint.h>",
           "#ifdef __cplusplus",
           'extern "C" {',
           "#endif",
           "#if !defined(__clang__)",
           "#error \"the register-form entry points need clang's register convention (OCL_RAVL_CC)\"",
           "#endif",
           "#define OCL_RAVL_CC __attribute__((intel_ocl_bicc))",
           "#ifdef _WIN32",
           "#define OCL_RAVL_API __declspec(dllimport)",
           "#else",
           "#define OCL_RAVL_API",
           "#endif",
           ""]
    for t, lanes in sorted(types):
        out.append(f"typedef {HEADER_SCALAR[t]} ocl_ravl_{LANE[t][1]}{lanes} __attribute__((ext_vector_type({lanes})));")
    out.append("")
    out.append(f"#define OCL_RAVL_EXPORT_COUNT {len(mem)}")
    out.append("")
    for name, body, f, cls, w in mem:
        out.append(header_proto(f, cls, w, name))
    pairs = [m for m in mem if len(m[2].results) == 2]
    if pairs:
        out += ["", "/* Both results of the two-result members as one struct {r0, r1}: sincosreg gives",
                "   (sine, cosine), idivrem and udivrem (quotient, remainder). */"]
        types = []
        for name, body, f, cls, w in pairs:
            t = pair_type(f.results[0], w)
            if t not in types:
                types.append(t)
        for pt, et in types:
            out.append(f"typedef struct {{ {et} r0, r1; }} {pt};")
        out += ["", PAIR_MACROS, ""]
        for name, body, f, cls, w in pairs:
            out.append(pair_wrapper(f, cls, w, name))
    out += ["", "#ifdef __cplusplus", "}", "#endif", "#endif", ""]
    return "\n".join(out)


def write(path, text):
    os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
    old = open(path).read() if os.path.exists(path) else None
    if old != text:
        with open(path, "w") as fh:
            fh.write(text)


def read_table(table):
    fams = []
    for no, line in enumerate(open(table), 1):
        line = line.split("#", 1)[0].strip()
        if line:
            fams.append(Family(line.split(), no))
    return fams


def main():
    table, outdir = sys.argv[1], sys.argv[2]
    header = os.path.join(outdir, "ocl_ravl_l9.h")
    check = None
    if "--header" in sys.argv:
        header = sys.argv[sys.argv.index("--header") + 1]
    if "--check-header" in sys.argv:
        check = sys.argv[sys.argv.index("--check-header") + 1]
    fams = read_table(table)
    everything = members(fams)
    bad = [m[0] for m in everything if not NAME_RE.match(m[0])]
    if bad:
        sys.exit(f"names that break the grammar: {bad[:5]}")
    if len({f.name for f in fams}) != len(fams):
        sys.exit("a family is listed twice")
    impl = [m for m in everything if m[2].implemented]
    names = {m[0] for m in impl}
    missing = [m[1] for m in impl if m[1] not in names]
    if missing:
        sys.exit(f"aliases of members that are not built: {missing[:5]}")

    deff = ["LIBRARY libocl_ravl_l9.dll", "EXPORTS"]
    for name, body, *_ in impl:
        deff.append(f"  {name}" if body == name else f"  {name} = {body}")
    write(os.path.join(outdir, "libocl_ravl_l9.def"), "\n".join(deff) + "\n")
    write(os.path.join(outdir, "libocl_ravl_l9.map"),
          "{\n  global:\n" + "".join(f"    {m[0]};\n" for m in impl) + "  local: *;\n};\n")

    lst = []
    for name, body, f, cls, w in impl:
        form, args, ret = placement(f, w)
        lst.append(f'{{"{name}", "{body}", "{f.name}", "{cls}", "{f.classes[cls]}", {w}, "{f.sig}", '
                   f'"{form}", "{args}", "{ret}"}},')
    write(os.path.join(outdir, "exports_list.inc"), "\n".join(lst) + "\n")

    # Every implemented family gets its entry definitions; names that are
    # another body's second name go, as ELF aliases, beside that body (the DLL
    # binds them in its .def instead).
    alias_lines = {}
    for name, body, g, cls, w in impl:
        if body != name:
            owner = next(m[2] for m in impl if m[0] == body)
            alias_lines.setdefault(owner.name, []).append(f"RAVL_ALIAS({name}, {body})")
    for f in fams:
        if not f.implemented:
            continue
        code = ["// Generated by exports/gen_exports.py from exports/families.tsv; do not edit."]
        for name, body, g, cls, w in impl:
            if g is f and body == name:
                code.append(entry_code(f, cls, w, name))
        code += alias_lines.get(f.name, [])
        write(os.path.join(outdir, "entries", f"{f.name}.inc"), "\n".join(code) + "\n")

    text = header_text(fams, impl)
    if check:
        if not os.path.exists(check) or open(check).read() != text:
            sys.exit(f"{check} is out of date: regenerate it with exports/gen_exports.py --header")
    else:
        write(header, text)
    print(f"exports: {len(impl)} of {len(everything)}")


if __name__ == "__main__":
    main()
