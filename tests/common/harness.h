// Calls any export of the generated list through the checked trampoline
// (tests/call_checked.S), from nothing but its row of the list: the row says
// where each argument and result travels (vK:B B bytes in the vector
// registers from K on, gK:B integer argument register K, pK:B register K
// points to a B-byte result buffer, mK:B to a B-byte image, m0 the result
// buffer of the by-address form, rax:B the result in rax). Shared by the Linux
// tests and the Windows runner: C library only, and nothing shared between
// calls, so that threads may call at once.
//
// call_checked() makes every call twice. The second call changes everything
// the callee must not depend on: the lanes past the width (hostile values),
// the bytes of a register past its value, the upper half of 32-bit integer
// arguments, the junk in the registers that carry nothing, the prior contents
// of the result buffers and the misalignment of every buffer. The defined
// result bytes must come out the same. Guard bytes surround every buffer, and
// the input images must come back unchanged.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "inputs.h"

namespace ravl_test {

// The register file of one call through the trampoline:
//   int ravl_call_checked(void* fn, RegFile* rf);
// loads ymm0-3 and the first four integer argument registers from rf, puts a
// canary in every register the callee must preserve and junk in the volatile
// ones, calls fn with the stack 16-byte but not 32-byte aligned, stores ymm0-3
// and rax back into rf and returns a kClobber bit per broken promise.
// Register form (RAVL_CC): Linux keeps rbx, rbp, r12-r15 and all 256
// bits of ymm8-15, Windows also rdi, rsi and ymm6-15. By-address form (the
// platform's C convention): the general registers, and on Windows the low 128
// bits of xmm6-15. Both: MXCSR's control bits and the caller's stack.
struct alignas(32) RegFile {
  uint8_t v[4][32];  // ymm0-3: arguments in, results out
  uint64_t g[4];     // integer argument registers in order (Linux rdi rsi rdx rcx, Windows rcx rdx r8 r9)
  uint64_t rax;      // out
  uint32_t form;     // kFormRegister or kFormByAddress
  uint32_t pad0;
  uint64_t pad1[2];
  uint8_t junk[32];  // loaded into the volatile registers that carry nothing
};
static_assert(offsetof(RegFile, g) == 128 && offsetof(RegFile, rax) == 160 && offsetof(RegFile, form) == 168 &&
                  offsetof(RegFile, junk) == 192 && sizeof(RegFile) == 224,
              "the trampoline hard-codes this layout");
enum : uint32_t { kFormRegister = 0, kFormByAddress = 1 };
extern "C" int ravl_call_checked(void* fn, RegFile* rf);

enum : uint32_t {
  kClobberRbx = 1u << 0, kClobberRbp = 1u << 1, kClobberR12 = 1u << 2, kClobberR15 = 1u << 5,
  kClobberRdi = 1u << 6, kClobberRsi = 1u << 7,  // Windows only
  kClobberYmmShift = 8,                          // bit 8 + (k - 6) for ymm k
  kClobberMxcsr = 1u << 20,                      // a control bit of MXCSR changed
  kClobberCallerStack = 1u << 21,                // the caller's frame above the return address was written
  kFaultGuard = 1u << 24,                        // a guard byte or an input image changed
  kFaultRax = 1u << 25,                          // the by-address form did not return the result buffer
  kFaultUnstable = 1u << 26,                     // the defined results depend on what they must not
  kFaultMissing = 1u << 27,                      // the name does not resolve
  kFaultAlias = 1u << 28,                        // an alias resolves to another address than its body
};

inline void describe_faults(uint32_t f, char* out, size_t n) {
  static const char* const names[29] = {
      "rbx", "rbp", "r12", "r13", "r14", "r15", "rdi", "rsi", "ymm6", "ymm7", "ymm8", "ymm9", "ymm10", "ymm11",
      "ymm12", "ymm13", "ymm14", "ymm15", "?", "?", "MXCSR control bits", "caller stack above the return address",
      "?", "?", "guard bytes or input images", "rax is not the result buffer",
      "results depend on undefined lanes, upper register bits or prior buffer contents", "name missing",
      "alias is not its body's address"};
  size_t at = 0;
  out[0] = 0;
  for (int b = 0; b < 29; ++b)
    if (f >> b & 1 && at < n) at += (size_t)snprintf(out + at, n - at, "%s%s", at ? ", " : "", names[b]);
}

struct ExportRow {
  const char *name, *body, *family, *cls, *algorithm;
  int width;
  const char *sig, *form, *args, *ret;
};
inline constexpr ExportRow kExports[] = {
#include "exports_list.inc"
};
constexpr int kExportCount = (int)(sizeof kExports / sizeof kExports[0]);

// ---- the shape of a call, parsed from the row ------------------------------------

struct Place {
  char kind;  // 'v', 'g', 'p', 'm', 'a' (rax)
  int reg, bytes;
};
struct Shape {
  int w, nin, nres, nout;  // nout: the results, then the one stored through the pointer
  bool by_address;
  Lane in_t[3], out_t[3];
  Place in_p[3], ptr_p, ret_p[2];
  int nret;              // 2: two results in two placements (xmm0, xmm1)
  int out_off[4];        // where output k starts in the defined output bytes of one call
  const char* arg_types;  // the argument list of the signature, for the input seed
};

inline Lane parse_lane(const char*& p) {
  if (p[0] == 'u' && p[1] == 'l') return p += 2, kUL;
  switch (*p++) {
    case 'd': return kD;
    case 's': return kS;
    case 'i': return kI;
    case 'u': return kU;
    default: return kL;
  }
}
inline int parse_places(const char* s, Place* out) {
  int n = 0;
  for (char* e; *s; s = e + (*e == ',')) {
    Place& pl = out[n++];
    pl.kind = s[0] == 'r' ? 'a' : s[0];
    pl.reg = pl.kind == 'a' ? 0 : (int)strtol(s + 1, &e, 10);
    pl.bytes = (int)strtol(strchr(s, ':') + 1, &e, 10);
  }
  return n;
}
inline Shape parse_shape(const ExportRow& row) {
  Shape sh;
  memset(&sh, 0, sizeof sh);
  sh.w = row.width;
  sh.by_address = row.form[0] == 'm';
  const char* p = row.sig;
  sh.out_t[sh.nres++] = parse_lane(p);
  if (*p == ',') sh.out_t[sh.nres++] = parse_lane(++p);
  sh.nout = sh.nres;
  sh.arg_types = ++p;
  for (; *p && *p != ')'; p += *p == ',')
    if (*p == '*') sh.out_t[sh.nout++] = parse_lane(++p);
    else sh.in_t[sh.nin++] = parse_lane(p);
  Place args[6] = {};
  parse_places(row.args, args);
  memcpy(sh.in_p, args, sizeof(Place) * sh.nin);
  sh.ptr_p = args[sh.nin];
  sh.nret = parse_places(row.ret, sh.ret_p);
  for (int k = 0; k < sh.nout; ++k) sh.out_off[k + 1] = sh.out_off[k] + sh.w * lane_bytes(sh.out_t[k]);
  return sh;
}
inline int out_bytes(const Shape& sh) { return sh.out_off[sh.nout]; }

// ---- one call -------------------------------------------------------------------

struct CallIn {
  uint64_t lane[3][16];  // the defined lanes of each argument (bits, zero-extended)
};
struct CallOut {
  uint32_t faults;
  uint8_t bytes[512];  // the defined lanes of each output, one output after the other
};

inline void make_inputs(const Shape& sh, int trial, CallIn& in) {
  memset(&in, 0, sizeof in);
  Rng r(trial_seed(sh.arg_types, sh.w, trial));
  uint64_t v[3];
  for (int j = 0; j < sh.w; ++j) {
    gen_call(sh.in_t, sh.nin, r, v);
    for (int i = 0; i < sh.nin; ++i) in.lane[i][j] = v[i];
  }
}

// Calls fn once; variant 0 or 1 chooses the junk (see the top of this file).
inline void call_once(void* fn, const Shape& sh, const CallIn& in, int trial, int variant, CallOut& out) {
  enum { kSlot = 512, kBytes = 6 * kSlot };
  alignas(64) uint8_t arena[kBytes];
  uint8_t expect[kBytes];
  RegFile rf;
  memset(&rf, 0, sizeof rf);
  Rng junk(0x5eed0000u + (uint64_t)trial * 31 + (uint64_t)variant * 0x10001);
  for (int k = 0; k < 32; ++k) rf.junk[k] = (uint8_t)junk.next();
  for (int b = 0; variant && b < 128; ++b) rf.v[b / 32][b % 32] = (uint8_t)(junk.next() >> 17);
  for (int k = 0; k < 4; ++k) rf.g[k] = variant ? junk.next() : 0;
  rf.form = sh.by_address ? kFormByAddress : kFormRegister;
  for (int b = 0; b < kBytes; ++b) arena[b] = (uint8_t)(0xa5 ^ (b * 37) ^ (variant * 0x3c));
  // Buffers at odd offsets of their own slots; result buffers start with junk.
  int slot = 0;
  auto place = [&](int bytes, bool result) {
    uint8_t* p = arena + slot * kSlot + 65 + 2 * ((trial + slot * 5 + variant * 11) % 24);
    ++slot;
    for (int b = 0; result && b < bytes; ++b) p[b] = variant ? (uint8_t)(0x5a + b) : 0xcd;
    return p;
  };
  uint8_t *res_buf = 0, *ptr_buf = 0;
  if (sh.by_address) rf.g[0] = (uint64_t)(uintptr_t)(res_buf = place(sh.ret_p[0].bytes, true));
  for (int i = 0; i < sh.nin; ++i) {
    const Place& pl = sh.in_p[i];
    const int lb = lane_bytes(sh.in_t[i]);
    if (pl.kind == 'g') {
      rf.g[pl.reg] = lb == 4 ? (uint32_t)in.lane[i][0] | (variant ? junk.next() << 32 : 0) : in.lane[i][0];
      continue;
    }
    uint8_t* img = pl.kind == 'm' ? place(pl.bytes, false) : &rf.v[0][0] + 32 * pl.reg;
    for (int j = 0; j * lb < pl.bytes; ++j) {
      const uint64_t v = j < sh.w ? in.lane[i][j] : variant ? gen_undefined_lane(sh.in_t[i], j + i + trial, junk)
                                                            : in.lane[i][0];
      memcpy(img + j * lb, &v, (size_t)lb);
    }
    if (pl.kind == 'm') rf.g[pl.reg] = (uint64_t)(uintptr_t)img;
  }
  if (sh.nout > sh.nres) rf.g[sh.ptr_p.reg] = (uint64_t)(uintptr_t)(ptr_buf = place(sh.ptr_p.bytes, true));
  memcpy(expect, arena, kBytes);

  out.faults = (uint32_t)ravl_call_checked(fn, &rf);

  if (sh.by_address && rf.rax != (uint64_t)(uintptr_t)res_buf) out.faults |= kFaultRax;
  uint8_t regs[136];
  memcpy(regs, rf.v, 128);
  memcpy(regs + 128, &rf.rax, 8);
  for (int k = 0; k < sh.nres; ++k) {
    const int lb = lane_bytes(sh.out_t[k]);
    const Place& pl = sh.ret_p[sh.nret == 2 ? k : 0];
    const uint8_t* src = pl.kind == 'm' ? res_buf : pl.kind == 'a' ? regs + 128 : regs + 32 * pl.reg;
    // Two results in one placement: packed lane after lane at width 1, one half each when wider.
    if (k == 1 && sh.nret == 1) src += sh.w == 1 ? lb : pl.bytes / 2;
    memcpy(out.bytes + sh.out_off[k], src, (size_t)(sh.w * lb));
  }
  if (ptr_buf) memcpy(out.bytes + sh.out_off[sh.nres], ptr_buf, (size_t)sh.ptr_p.bytes);
  if (res_buf) memcpy(expect + (res_buf - arena), res_buf, (size_t)sh.ret_p[0].bytes);
  if (ptr_buf) memcpy(expect + (ptr_buf - arena), ptr_buf, (size_t)sh.ptr_p.bytes);
  if (memcmp(arena, expect, kBytes) != 0) out.faults |= kFaultGuard;
}

// Calls fn twice (variants 0 and 1): variant 0's results, the faults of both,
// and kFaultUnstable when the defined bytes differ.
inline void call_checked(void* fn, const Shape& sh, const CallIn& in, int trial, CallOut& out) {
  CallOut second;
  call_once(fn, sh, in, trial, 0, out);
  call_once(fn, sh, in, trial, 1, second);
  out.faults |= second.faults | (memcmp(out.bytes, second.bytes, (size_t)out_bytes(sh)) ? kFaultUnstable : 0);
}

// ---- every trial of one export, and the outputs file ------------------------------------
//
// File: "RAVLOUT1", u32 export count, then per export in list order: u32 name
// length, the name, u32 faults, u32 trials, u32 record bytes, the records.

struct ExportResult {
  uint32_t faults;
  int trials, rec_bytes, first_fault_trial;
  uint8_t* out;  // trials * rec_bytes, malloc'ed
};

inline void run_export(void* fn, const ExportRow& row, ExportResult& res) {
  const Shape sh = parse_shape(row);
  res.faults = fn ? 0 : kFaultMissing;
  res.trials = trials_for_width(sh.w);
  res.rec_bytes = out_bytes(sh);
  res.out = (uint8_t*)calloc((size_t)res.trials, (size_t)res.rec_bytes);
  res.first_fault_trial = -1;
  CallIn in;
  CallOut o;
  for (int t = 0; fn && t < res.trials; ++t) {
    make_inputs(sh, t, in);
    call_checked(fn, sh, in, t, o);
    if (o.faults && res.first_fault_trial < 0) res.first_fault_trial = t;
    res.faults |= o.faults;
    memcpy(res.out + (size_t)t * res.rec_bytes, o.bytes, (size_t)res.rec_bytes);
  }
}

inline bool write_u32(FILE* f, uint32_t v) { return fwrite(&v, 4, 1, f) == 1; }
inline bool write_outputs_header(FILE* f, uint32_t count) {
  return fwrite("RAVLOUT1", 1, 8, f) == 8 && write_u32(f, count);
}
inline bool write_export_record(FILE* f, const char* name, const ExportResult& r) {
  const uint32_t n = (uint32_t)strlen(name);
  const size_t bytes = (size_t)r.trials * r.rec_bytes;
  return write_u32(f, n) && fwrite(name, 1, n, f) == n && write_u32(f, r.faults) && write_u32(f, (uint32_t)r.trials) &&
         write_u32(f, (uint32_t)r.rec_bytes) && fwrite(r.out, 1, bytes, f) == bytes;
}

}  // namespace ravl_test
