// The Windows side of the export-wide tests, run under Wine:
//
//   ravl_win_runner.exe DLL OUTFILE   every export of the list: convention,
//                                     guards and outputs (tests/common/harness.h)
//                                     written to OUTFILE for the bit-for-bit
//                                     comparison with the .so; exit 1 on a fault
//   ravl_win_runner.exe --demo DLL    a few calls, printed
//
// Paths may be Unix paths: a leading '/' becomes Wine's Z: drive. The
// trampoline (tests/call_checked.S) is checked first on callees that break
// one Win64 promise each.
#include <windows.h>

#include "common/harness.h"

using namespace ravl_test;

asm(R"(
        .text
ravl_selftest_ok:                       // clobbers every volatile register
        mov $1, %rax
        mov $2, %rcx
        mov $3, %rdx
        mov $6, %r8
        mov $7, %r9
        mov $8, %r10
        mov $9, %r11
        vpcmpeqb %ymm0, %ymm0, %ymm0
        .irp k, 1, 2, 3, 4, 5
        vmovdqa %ymm0, %ymm\k
        .endr
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
extern "C" void ravl_selftest_ok(), ravl_selftest_rdi(), ravl_selftest_rsi(), ravl_selftest_vzeroupper(),
    ravl_selftest_xmm6(), ravl_selftest_home(), ravl_selftest_stack(), ravl_selftest_rsp();

static bool selftest() {
  const uint32_t all_ymm = 0x3ffu << kClobberYmmShift, ymm6 = 1u << kClobberYmmShift;
  const struct {
    const char* what;
    void (*fn)();
    uint32_t reg_form, by_address;
  } cases[] = {
      {"volatile registers only", ravl_selftest_ok, 0, 0},
      {"rdi", ravl_selftest_rdi, kClobberRdi, kClobberRdi},
      {"rsi", ravl_selftest_rsi, kClobberRsi, kClobberRsi},
      {"vzeroupper", ravl_selftest_vzeroupper, all_ymm, 0},
      {"xmm6", ravl_selftest_xmm6, ymm6, ymm6},
      {"home area", ravl_selftest_home, 0, 0},
      {"caller's stack", ravl_selftest_stack, kClobberCallerStack, kClobberCallerStack},
      {"stack alignment", ravl_selftest_rsp, 0, 0},
  };
  bool ok = true;
  RegFile rf;
  for (const auto& c : cases)
    for (uint32_t form = 0; form < 2; ++form) {
      memset(&rf, 0, sizeof rf);
      rf.form = form;
      const uint32_t got = (uint32_t)ravl_call_checked((void*)c.fn, &rf), want = form ? c.by_address : c.reg_form;
      if (got != want || (c.fn == ravl_selftest_rsp && rf.rax % 32 != 16)) {
        fprintf(stderr, "trampoline self-test: %s, form %u: got %#x, want %#x\n", c.what, form, got, want);
        ok = false;
      }
    }
  return ok;
}

static void to_windows_path(const char* in, char* out, size_t n) {
  snprintf(out, n, "%s%s", in[0] == '/' ? "Z:" : "", in);
  for (char* p = out; *p; ++p)
    if (*p == '/') *p = '\\';
}

// The plain width-4 members of the first few d(d) and i(i,i) families on fixed inputs.
static int demo(HMODULE dll) {
  const double xd[4] = {-1.5, 0.5, 2.0, 10.0};
  const int32_t xi[4] = {7, -7, 100, INT32_MIN}, yi[4] = {2, 2, -3, -1};
  int shown = 0;
  for (const ExportRow& row : kExports) {
    const bool dd = strcmp(row.sig, "d(d)") == 0, ii = strcmp(row.sig, "i(i,i)") == 0;
    if (shown == 6 || row.width != 4 || (!dd && !ii) || strcmp(row.cls, "plain") != 0) continue;
    const Shape sh = parse_shape(row);
    CallIn in;
    CallOut o;
    for (int j = 0; j < 4; ++j) {
      memcpy(&in.lane[0][j], dd ? (const void*)&xd[j] : (const void*)&xi[j], dd ? 8 : 4);
      in.lane[1][j] = (uint32_t)yi[j];
    }
    call_once((void*)GetProcAddress(dll, row.name), sh, in, 1, 0, o);
    printf("%-28s", row.name);
    for (int j = 0; j < 4; ++j) {
      double y;
      int32_t q;
      memcpy(&y, o.bytes + 8 * j, 8);
      memcpy(&q, o.bytes + 4 * j, 4);
      if (dd) printf("  (%g) = %.6g", xd[j], y);
      else printf("  (%d, %d) = %d", xi[j], yi[j], q);
    }
    printf("\n");
    ++shown;
  }
  return shown ? 0 : 1;
}

int main(int argc, char** argv) {
  const bool want_demo = argc == 3 && strcmp(argv[1], "--demo") == 0;
  if (argc != 3) {
    fprintf(stderr, "usage: %s DLL OUTFILE | --demo DLL\n", argv[0]);
    return 2;
  }
  if (!selftest()) return 1;
  char path[1024], out_path[1024];
  to_windows_path(want_demo ? argv[2] : argv[1], path, sizeof path);
  HMODULE dll = LoadLibraryA(path);
  if (!dll) {
    fprintf(stderr, "cannot load %s (error %lu)\n", path, (unsigned long)GetLastError());
    return 1;
  }
  if (want_demo) return demo(dll);
  to_windows_path(argv[2], out_path, sizeof out_path);
  FILE* f = fopen(out_path, "wb");
  bool ok = f && write_outputs_header(f, (uint32_t)kExportCount);
  int faulty = 0;
  for (const ExportRow& row : kExports) {
    void* fn = (void*)GetProcAddress(dll, row.name);
    ExportResult r;
    run_export(fn, row, r);
    if (fn && (void*)GetProcAddress(dll, row.body) != fn) r.faults |= kFaultAlias;
    if (r.faults) {
      char what[512];
      describe_faults(r.faults, what, sizeof what);
      fprintf(stderr, "%s: %s (first at trial %d)\n", row.name, what, r.first_fault_trial);
      ++faulty;
    }
    ok = ok && write_export_record(f, row.name, r);
    free(r.out);
  }
  if (!f || fclose(f) != 0 || !ok) {
    fprintf(stderr, "writing %s failed\n", out_path);
    return 1;
  }
  printf("%d exports run on the DLL, %d with faults\n", kExportCount, faulty);
  return faulty ? 1 : 0;
}
