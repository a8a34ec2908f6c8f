// Calls any export of the list through the checked trampoline, from nothing
// but its row of the generated export list: the row says where each argument
// and result travels (vK:B vector registers from K, gK:B integer argument
// register K, pK:B pointer in integer register K to a B-byte result buffer,
// mK:B pointer to a B-byte image, m0 the result buffer of the by-address
// form, rax:B the result in rax). Shared by the Linux tests and the Windows
// runner: C library only, no C++ library, so that the MinGW build needs none.
//
// Every call is made twice. The second call changes everything the callee
// must not depend on: the lanes past the width (NaN, huge, infinite and zero
// divisor values), the bytes of a register past its value, the upper half of
// 32-bit integer arguments, the junk in the registers that carry nothing, the
// prior contents of the result buffers and the misalignment of every buffer.
// The defined result bytes must come out the same. Around every buffer lie
// guard bytes, and the input images must come back unchanged.
#pragma once

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "inputs.h"
#include "regfile.h"

namespace ravl_test {

struct ExportRow {
  const char* name;
  const char* body;
  const char* family;
  const char* cls;
  const char* algorithm;
  int width;
  const char* sig;
  const char* form;
  const char* args;
  const char* ret;
};

static const ExportRow kExports[] = {
#include "exports_list.inc"
};
constexpr int kExportCount = (int)(sizeof kExports / sizeof kExports[0]);

// Per-export fault bits beyond the trampoline's kClobber* bits.
enum : uint32_t {
  kFaultGuard = 1u << 24,      // a guard byte or an input image changed
  kFaultRax = 1u << 25,        // the by-address form did not return the result buffer
  kFaultUnstable = 1u << 26,   // the defined results depend on what they must not
  kFaultMissing = 1u << 27,    // the name does not resolve
  kFaultAlias = 1u << 28,      // an alias resolves to another address than its body
};

// Describes a set of fault bits.
inline void describe_faults(uint32_t f, char* out, size_t n) {
  static const char* const names[32] = {
      "rbx", "rbp", "r12", "r13", "r14", "r15", "rdi", "rsi", "ymm6", "ymm7", "ymm8", "ymm9", "ymm10", "ymm11",
      "ymm12", "ymm13", "ymm14", "ymm15", 0, 0, "MXCSR control bits", "caller stack above the return address",
      0, 0, "guard bytes or input images", "rax is not the result buffer",
      "results depend on undefined lanes, upper register bits or prior buffer contents", "name missing",
      "alias is not its body's address", 0, 0, 0};
  out[0] = 0;
  size_t at = 0;
  for (int b = 0; b < 32; ++b)
    if (f >> b & 1) {
      int k = snprintf(out + at, n - at, "%s%s", at ? ", " : "", names[b] ? names[b] : "?");
      if (k < 0 || (size_t)k >= n - at) break;
      at += (size_t)k;
    }
}

// ---- the shape of a call, parsed from the row -------------------------------

struct Place {
  char kind;  // 'v', 'g', 'p', 'm', 'a' (rax)
  int reg;
  int bytes;
};

struct Shape {
  int w;
  bool by_address;
  int nin;
  Lane in_t[3];
  Place in_p[3];
  bool has_ptr;
  Lane ptr_t;
  Place ptr_p;
  int nres;
  Lane res_t[2];
  int nret;  // 1, or 2 for two results in two placements (xmm0, xmm1)
  Place ret_p[2];
  int out_bytes;        // defined result bytes of one call
  int res_offset[3];    // where result k (k = nres: the pointer result) starts in those
  char arg_types[16];   // the argument lane codes, for the input seed
};

inline Lane parse_lane(const char*& p) {
  Lane t;
  if (p[0] == 'u' && p[1] == 'l') {
    t = kUL;
    p += 2;
    return t;
  }
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
  while (*s) {
    Place pl;
    if (s[0] == 'r' && s[1] == 'a' && s[2] == 'x') {
      pl.kind = 'a';
      pl.reg = 0;
      s += 3;
    } else {
      pl.kind = *s++;
      pl.reg = (int)strtol(s, (char**)&s, 10);
    }
    ++s;  // ':'
    pl.bytes = (int)strtol(s, (char**)&s, 10);
    out[n++] = pl;
    if (*s == ',') ++s;
  }
  return n;
}

inline Shape parse_shape(const ExportRow& row) {
  Shape sh;
  memset(&sh, 0, sizeof sh);
  sh.w = row.width;
  sh.by_address = strcmp(row.form, "mem") == 0;
  const char* p = row.sig;
  sh.res_t[sh.nres++] = parse_lane(p);
  if (*p == ',') {
    ++p;
    sh.res_t[sh.nres++] = parse_lane(p);
  }
  ++p;  // '('
  int na = 0;
  while (*p && *p != ')') {
    if (*p == '*') {
      ++p;
      sh.has_ptr = true;
      sh.ptr_t = parse_lane(p);
      sh.arg_types[na++] = '*';
    } else {
      const char* q = p;
      sh.in_t[sh.nin++] = parse_lane(p);
      sh.arg_types[na++] = *q == 'u' && q[1] == 'l' ? 'U' : *q;
    }
    if (*p == ',') ++p;
  }
  Place args[6];
  parse_places(row.args, args);
  for (int i = 0; i < sh.nin; ++i) sh.in_p[i] = args[i];
  if (sh.has_ptr) sh.ptr_p = args[sh.nin];
  sh.nret = parse_places(row.ret, sh.ret_p);
  int at = 0;
  for (int k = 0; k < sh.nres; ++k) {
    sh.res_offset[k] = at;
    at += sh.w * lane_bytes(sh.res_t[k]);
  }
  sh.res_offset[sh.nres] = at;
  if (sh.has_ptr) at += sh.w * lane_bytes(sh.ptr_t);
  sh.out_bytes = at;
  return sh;
}

// ---- one call -----------------------------------------------------------------

// The defined input lanes of one call (bits, zero-extended); the harness
// fills everything else.
struct CallIn {
  uint64_t lane[3][16];
  bool fixed_undefined;    // use `undefined` for every lane past the width
  uint64_t undefined[3];
};

inline void make_inputs(const Shape& sh, int trial, CallIn& in) {
  memset(&in, 0, sizeof in);
  Rng r(trial_seed(sh.arg_types, sh.w, trial));
  for (int j = 0; j < sh.w; ++j)
    for (int i = 0; i < sh.nin; ++i) in.lane[i][j] = gen_lane(sh.in_t[i], r);
}

// The memory of one call: input images, result buffers, guards.
struct Arena {
  enum { kSlot = 512, kSlots = 6, kBytes = kSlot * kSlots };
  alignas(64) uint8_t bytes[kBytes];
  uint8_t expect[kBytes];
  bool is_result[kBytes];
};

inline void put_lane(uint8_t* dst, Lane t, uint64_t v) { memcpy(dst, &v, (size_t)lane_bytes(t)); }

// Writes the B-byte image of input i: the defined lanes, then the lanes past
// the width (variant 0: copies of lane 0; variant 1: hostile values).
inline void build_image(const Shape& sh, const CallIn& in, int i, int variant, Rng& junk, uint8_t* img, int bytes) {
  Lane t = sh.in_t[i];
  int lb = lane_bytes(t);
  for (int j = 0; j * lb < bytes; ++j) {
    uint64_t v;
    if (j < sh.w) v = in.lane[i][j];
    else if (in.fixed_undefined) v = in.undefined[i];
    else if (variant == 0) v = in.lane[i][0];
    else v = gen_undefined_lane(t, (uint64_t)j + i, junk);
    put_lane(img + j * lb, t, v);
  }
}

struct CallOut {
  uint32_t faults;
  uint8_t bytes[512];
};

// Calls fn once; variant 0 or 1 chooses the junk (see the top of this file).
inline void call_once(void* fn, const Shape& sh, const CallIn& in, int trial, int variant, CallOut& out) {
  static Arena a;
  static RegFile rf;
  Rng junk(0x5eed0000u + (uint64_t)trial * 31 + (uint64_t)variant * 0x10001);
  memset(&rf, 0, sizeof rf);
  for (int k = 0; k < 32; ++k) rf.junk[k] = (uint8_t)junk.next();
  // Vector registers past the arguments: junk (variant 1) or zero.
  if (variant)
    for (int r = 0; r < 4; ++r)
      for (int b = 0; b < 32; ++b) rf.v[r][b] = (uint8_t)(junk.next() >> 17);
  for (int k = 0; k < 4; ++k) rf.g[k] = variant ? junk.next() : 0;
  rf.form = sh.by_address ? kFormByAddress : kFormRegister;

  // Arena: guard pattern everywhere, then the buffers at odd offsets.
  for (int b = 0; b < Arena::kBytes; ++b) a.bytes[b] = (uint8_t)(0xa5 ^ (b * 37) ^ (variant * 0x3c));
  memset(a.is_result, 0, sizeof a.is_result);
  int slot = 0;
  auto place = [&](int bytes, bool result) -> uint8_t* {
    int off = slot * Arena::kSlot + 64 + 1 + 2 * ((trial + slot * 5 + variant * 11) % 24);
    ++slot;
    uint8_t* p = a.bytes + off;
    if (result) {
      for (int b = 0; b < bytes; ++b) {
        p[b] = variant ? (uint8_t)(0x5a + b) : 0xcd;
        a.is_result[off + b] = true;
      }
    }
    return p;
  };

  uint8_t* res_buf = 0;
  uint8_t* ptr_buf = 0;
  if (sh.by_address) {
    res_buf = place(sh.ret_p[0].bytes, true);
    rf.g[0] = (uint64_t)(uintptr_t)res_buf;
  }
  for (int i = 0; i < sh.nin; ++i) {
    const Place& pl = sh.in_p[i];
    uint8_t img[128];
    if (pl.kind == 'g') {
      uint64_t v = in.lane[i][0];
      if (lane_bytes(sh.in_t[i]) == 4) v = (uint32_t)v | (variant ? junk.next() << 32 : 0);
      rf.g[pl.reg] = v;
      continue;
    }
    build_image(sh, in, i, variant, junk, img, pl.bytes);
    if (pl.kind == 'm') {
      uint8_t* p = place(pl.bytes, false);
      memcpy(p, img, (size_t)pl.bytes);
      rf.g[pl.reg] = (uint64_t)(uintptr_t)p;
    } else {  // 'v': registers from pl.reg on, 32 bytes each
      for (int b = 0; b < pl.bytes; ++b) rf.v[pl.reg + b / 32][b % 32] = img[b];
    }
  }
  if (sh.has_ptr) {
    ptr_buf = place(sh.ptr_p.bytes, true);
    rf.g[sh.ptr_p.reg] = (uint64_t)(uintptr_t)ptr_buf;
  }
  memcpy(a.expect, a.bytes, sizeof a.bytes);

  out.faults = (uint32_t)ravl_call_checked(fn, &rf);

  for (int b = 0; b < Arena::kBytes; ++b)
    if (!a.is_result[b] && a.bytes[b] != a.expect[b]) {
      out.faults |= kFaultGuard;
      break;
    }
  if (sh.by_address && rf.rax != (uint64_t)(uintptr_t)res_buf) out.faults |= kFaultRax;

  // The defined bytes of each result, then the pointer result.
  uint8_t regs[136];
  memcpy(regs, rf.v, 128);
  memcpy(regs + 128, &rf.rax, 8);
  for (int k = 0; k < sh.nres; ++k) {
    int lb = lane_bytes(sh.res_t[k]);
    int n = sh.w * lb;
    const uint8_t* src;
    if (sh.nret == 2) {
      src = regs + 32 * sh.ret_p[k].reg;  // xmm0, xmm1
    } else {
      const Place& pl = sh.ret_p[0];
      const uint8_t* base = pl.kind == 'm' ? res_buf : pl.kind == 'a' ? regs + 128 : regs + 32 * pl.reg;
      // Two results in one placement: packed lane after lane at width 1,
      // one half each at wider widths.
      int off = k == 0 ? 0 : sh.w == 1 ? lb : pl.bytes / 2;
      src = base + off;
    }
    memcpy(out.bytes + sh.res_offset[k], src, (size_t)n);
  }
  if (sh.has_ptr) memcpy(out.bytes + sh.res_offset[sh.nres], ptr_buf, (size_t)(sh.w * lane_bytes(sh.ptr_t)));
}

// Calls fn twice (variants 0 and 1); the result is variant 0's, and the
// faults of both plus kFaultUnstable when the defined bytes differ.
inline void call_checked(void* fn, const Shape& sh, const CallIn& in, int trial, CallOut& out) {
  static CallOut second;
  call_once(fn, sh, in, trial, 0, out);
  call_once(fn, sh, in, trial, 1, second);
  out.faults |= second.faults;
  if (memcmp(out.bytes, second.bytes, (size_t)sh.out_bytes) != 0) out.faults |= kFaultUnstable;
}

// ---- every trial of one export ------------------------------------------------

struct ExportResult {
  uint32_t faults;
  int trials;
  int rec_bytes;
  uint8_t* out;  // trials * rec_bytes, malloc'ed
  int first_fault_trial;
};

inline void run_export(void* fn, const ExportRow& row, ExportResult& res) {
  Shape sh = parse_shape(row);
  res.faults = 0;
  res.trials = trials_for_width(sh.w);
  res.rec_bytes = sh.out_bytes;
  res.out = (uint8_t*)calloc((size_t)res.trials, (size_t)sh.out_bytes);
  res.first_fault_trial = -1;
  if (!fn) {
    res.faults = kFaultMissing;
    return;
  }
  CallIn in;
  CallOut o;
  for (int t = 0; t < res.trials; ++t) {
    make_inputs(sh, t, in);
    call_checked(fn, sh, in, t, o);
    if (o.faults && res.first_fault_trial < 0) res.first_fault_trial = t;
    res.faults |= o.faults;
    memcpy(res.out + (size_t)t * sh.out_bytes, o.bytes, (size_t)sh.out_bytes);
  }
}

// ---- the outputs file -----------------------------------------------------------
//
// "RAVLOUT1", u32 export count, then per export in list order: u32 name
// length, the name, u32 faults, u32 trials, u32 record bytes, the records.

inline bool write_u32(FILE* f, uint32_t v) { return fwrite(&v, 4, 1, f) == 1; }
inline bool read_u32(FILE* f, uint32_t& v) { return fread(&v, 4, 1, f) == 1; }

inline bool write_outputs_header(FILE* f, uint32_t count) {
  return fwrite("RAVLOUT1", 1, 8, f) == 8 && write_u32(f, count);
}
inline bool write_export_record(FILE* f, const char* name, const ExportResult& r) {
  uint32_t n = (uint32_t)strlen(name);
  return write_u32(f, n) && fwrite(name, 1, n, f) == n && write_u32(f, r.faults) && write_u32(f, (uint32_t)r.trials) &&
         write_u32(f, (uint32_t)r.rec_bytes) &&
         fwrite(r.out, 1, (size_t)r.trials * r.rec_bytes, f) == (size_t)r.trials * r.rec_bytes;
}

}  // namespace ravl_test
