// The Windows side of the export-wide tests, run under Wine:
//
//   ravl_win_runner.exe DLL OUTFILE   every export of the list: convention,
//                                     guards and outputs (tests/common/harness.h),
//                                     written to OUTFILE for the bit-for-bit
//                                     comparison with the .so; exit 1 on a fault
//   ravl_win_runner.exe --demo DLL    a few calls, printed
//
// Paths may be Unix paths: a leading '/' becomes Wine's Z: drive.
#include <windows.h>

#include "common/harness.h"

using namespace ravl_test;

// The checker checked on Win64: callees that break one promise each.
asm(R"(
        .text
        .globl ravl_selftest_ok, ravl_selftest_rdi, ravl_selftest_rsi, ravl_selftest_vzeroupper
        .globl ravl_selftest_xmm6, ravl_selftest_home, ravl_selftest_stack, ravl_selftest_rsp
ravl_selftest_ok:                       // clobbers every volatile register
        mov $1, %rax
        mov $2, %rcx
        mov $3, %rdx
        mov $6, %r8
        mov $7, %r9
        mov $8, %r10
        mov $9, %r11
        vpcmpeqb %ymm0, %ymm0, %ymm0
        vmovdqa %ymm0, %ymm1
        vmovdqa %ymm0, %ymm2
        vmovdqa %ymm0, %ymm3
        vmovdqa %ymm0, %ymm4
        vmovdqa %ymm0, %ymm5
        ret
ravl_selftest_rdi:
        mov $1, %rdi
        ret
ravl_selftest_rsi:
        mov $1, %rsi
        ret
ravl_selftest_vzeroupper:
        vzeroupper
        ret
ravl_selftest_xmm6:
        vpxor %xmm6, %xmm6, %xmm6
        ret
ravl_selftest_home:                     // the 32-byte home area is the callee's
        movq $0, 8(%rsp)
        movq $0, 32(%rsp)
        ret
ravl_selftest_stack:                    // just above the home area: the caller's
        movq $0, 40(%rsp)
        ret
ravl_selftest_rsp:
        lea 8(%rsp), %rax
        ret
)");
extern "C" {
void ravl_selftest_ok();
void ravl_selftest_rdi();
void ravl_selftest_rsi();
void ravl_selftest_vzeroupper();
void ravl_selftest_xmm6();
void ravl_selftest_home();
void ravl_selftest_stack();
void ravl_selftest_rsp();
}

static bool selftest() {
  struct Case {
    const char* what;
    void (*fn)();
    uint32_t reg_form, by_address;
  };
  const uint32_t all_ymm = 0x3ffu << kClobberYmmShift, ymm6 = 1u << kClobberYmmShift;
  const Case cases[] = {
      {"volatile registers only", ravl_selftest_ok, 0, 0},
      {"rdi", ravl_selftest_rdi, kClobberRdi, kClobberRdi},
      {"rsi", ravl_selftest_rsi, kClobberRsi, kClobberRsi},
      {"vzeroupper", ravl_selftest_vzeroupper, all_ymm, 0},
      {"xmm6", ravl_selftest_xmm6, ymm6, ymm6},
      {"home area", ravl_selftest_home, 0, 0},
      {"caller's stack", ravl_selftest_stack, kClobberCallerStack, kClobberCallerStack},
  };
  bool ok = true;
  static RegFile rf;
  for (const Case& c : cases)
    for (uint32_t form = 0; form < 2; ++form) {
      memset(&rf, 0, sizeof rf);
      rf.form = form;
      uint32_t got = (uint32_t)ravl_call_checked((void*)c.fn, &rf);
      uint32_t want = form ? c.by_address : c.reg_form;
      if (got != want) {
        fprintf(stderr, "trampoline self-test: %s, form %u: got %#x, want %#x\n", c.what, form, got, want);
        ok = false;
      }
    }
  memset(&rf, 0, sizeof rf);
  if (ravl_call_checked((void*)ravl_selftest_rsp, &rf) != 0 || rf.rax % 32 != 16) {
    fprintf(stderr, "trampoline self-test: the stack at the call is not 16 mod 32\n");
    ok = false;
  }
  return ok;
}

static void to_windows_path(const char* in, char* out, size_t n) {
  snprintf(out, n, "%s%s", in[0] == '/' ? "Z:" : "", in);
  for (char* p = out; *p; ++p)
    if (*p == '/') *p = '\\';
}

static void* resolve(HMODULE dll, const char* name) { return (void*)GetProcAddress(dll, name); }

static int demo(HMODULE dll) {
  int shown = 0, clean = 0;
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    void* fn = resolve(dll, row.name);
    ExportResult r;
    run_export(fn, row, r);
    if (r.faults == 0) ++clean;
    Shape sh = parse_shape(row);
    if (shown < 6 && row.width == 4 && (strcmp(row.sig, "d(d)") == 0 || strcmp(row.sig, "i(i,i)") == 0) &&
        strcmp(row.cls, "plain") == 0) {
      CallIn in;
      CallOut o;
      const double xd[4] = {-1.5, 0.5, 2.0, 10.0};
      const int32_t xi[4] = {7, -7, 100, INT32_MIN}, yi[4] = {2, 2, -3, -1};
      memset(&in, 0, sizeof in);
      for (int j = 0; j < 4; ++j) {
        if (sh.in_t[0] == kD) {
          memcpy(&in.lane[0][j], &xd[j], 8);
        } else {
          in.lane[0][j] = (uint32_t)xi[j];
          in.lane[1][j] = (uint32_t)yi[j];
        }
      }
      call_once(fn, sh, in, 1, 0, o);
      printf("%-28s", row.name);
      for (int j = 0; j < 4; ++j) {
        if (sh.in_t[0] == kD) {
          double x, y;
          memcpy(&x, &in.lane[0][j], 8);
          memcpy(&y, o.bytes + 8 * j, 8);
          printf("  (%.6g) = %.6g", x, y);
        } else {
          int32_t x = (int32_t)in.lane[0][j], y = (int32_t)in.lane[1][j], q;
          memcpy(&q, o.bytes + 4 * j, 4);
          printf("  (%d, %d) = %d", x, y, q);
        }
      }
      printf("\n");
      ++shown;
    }
    free(r.out);
  }
  printf("%d of %d exports keep the convention, guards and stable results\n", clean, kExportCount);
  return clean == kExportCount ? 0 : 1;
}

int main(int argc, char** argv) {
  bool want_demo = argc == 3 && strcmp(argv[1], "--demo") == 0;
  if (argc != 3) {
    fprintf(stderr, "usage: %s DLL OUTFILE | --demo DLL\n", argv[0]);
    return 2;
  }
  if (!selftest()) return 1;
  char path[1024];
  to_windows_path(want_demo ? argv[2] : argv[1], path, sizeof path);
  HMODULE dll = LoadLibraryA(path);
  if (!dll) {
    fprintf(stderr, "cannot load %s (error %lu)\n", path, (unsigned long)GetLastError());
    return 1;
  }
  if (want_demo) return demo(dll);

  char out_path[1024];
  to_windows_path(argv[2], out_path, sizeof out_path);
  FILE* f = fopen(out_path, "wb");
  if (!f) {
    fprintf(stderr, "cannot write %s\n", out_path);
    return 1;
  }
  bool ok = write_outputs_header(f, (uint32_t)kExportCount);
  int faulty = 0;
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    void* fn = resolve(dll, row.name);
    ExportResult r;
    run_export(fn, row, r);
    if (fn && resolve(dll, row.body) != fn) r.faults |= kFaultAlias;
    if (r.faults) {
      char what[512];
      describe_faults(r.faults, what, sizeof what);
      fprintf(stderr, "%s: %s (first at trial %d)\n", row.name, what, r.first_fault_trial);
      ++faulty;
    }
    ok = ok && write_export_record(f, row.name, r);
    free(r.out);
  }
  ok = (fclose(f) == 0) && ok;
  if (!ok) {
    fprintf(stderr, "writing %s failed\n", out_path);
    return 1;
  }
  printf("%d exports run on the DLL, %d with faults\n", kExportCount, faulty);
  return faulty ? 1 : 0;
}
