// Tests over every export of the generated list, on the built binaries: the
// .so through dlopen/dlsym (so the exported names themselves are tested) and
// the DLL through the Windows runner under Wine.
//
// - every call goes through the checked trampoline: the preserved registers,
//   MXCSR, the caller's stack, guard bytes around every buffer, unaligned
//   buffers, stable results when everything the callee must ignore changes
//   (hostile values in the lanes past the width among them);
// - the .so and the DLL give the same bits for the same inputs;
// - every lane of a width-W call is the width-1 call on that lane, with a
//   special value in one lane (or in all of them) among ordinary ones;
// - aliases are one address and one set of bits, and the classes that name
//   the same algorithm give the same bits;
// - two threads calling every export at once get the single-thread bits;
// - the .so's dynamic symbols and the DLL's export table are exactly the
//   list, and neither imports anything.
#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <map>
#include <set>
#include <thread>
#include <tuple>

#include "common/call.h"
#include "ocl_ravl_l9.h"

using namespace ravl_test;

namespace {

// The lanes of one output record, per output, for failure messages.
std::string text(const Shape& sh, const uint8_t* rec) {
  std::string s;
  char b[24];
  for (int k = 0; k < sh.nout; ++k)
    for (int j = 0, lb = lane_bytes(sh.out_t[k]); j < sh.w; ++j) {
      uint64_t v = 0;
      memcpy(&v, rec + sh.out_off[k] + j * lb, (size_t)lb);
      snprintf(b, sizeof b, lb == 8 ? "%s%016llx" : "%s%08llx", j ? " " : k ? " | " : "", (unsigned long long)v);
      s += b;
    }
  return s;
}
std::string text(const Shape& sh, const CallIn& in) {
  std::string s;
  char b[24];
  for (int i = 0; i < sh.nin; ++i)
    for (int j = 0; j < sh.w; ++j) {
      snprintf(b, sizeof b, lane_bytes(sh.in_t[i]) == 8 ? "%s%016llx" : "%s%08llx", j ? " " : i ? " | " : "",
               (unsigned long long)in.lane[i][j]);
      s += b;
    }
  return s;
}

void* fn_of(const ExportRow& r) {
  const Callee* c = callee(r.name + kPrefix);
  return c ? c->fn : nullptr;
}

struct Outputs {
  uint32_t faults = 0;
  int trials = 0, rec = 0, first_fault_trial = -1;
  std::vector<uint8_t> bytes;
  const uint8_t* record(int t) const { return bytes.data() + (size_t)t * rec; }
};

// Every export run once on the .so (single thread), also written to
// so_outputs.bin beside the DLL's outputs for inspection.
const std::vector<Outputs>& so_outputs() {
  static const std::vector<Outputs> all = [] {
    std::vector<Outputs> v(kExportCount);
    const std::string path = RAVL_BINARY_DIR "/tests/so_outputs.bin", tmp = path + "." + std::to_string(getpid());
    FILE* f = fopen(tmp.c_str(), "wb");
    if (f) write_outputs_header(f, (uint32_t)kExportCount);
    for (int e = 0; e < kExportCount; ++e) {
      ExportResult r;
      run_export(fn_of(kExports[e]), kExports[e], r);
      if (f) write_export_record(f, kExports[e].name, r);
      v[e] = {r.faults, r.trials, r.rec_bytes, r.first_fault_trial, {r.out, r.out + (size_t)r.trials * r.rec_bytes}};
      free(r.out);
    }
    if (f && fclose(f) == 0) rename(tmp.c_str(), path.c_str());  // tests run in parallel processes
    return v;
  }();
  return all;
}

std::vector<uint8_t> read_file(const char* path) {
  std::ifstream f(path, std::ios::binary);
  return std::vector<uint8_t>((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
}

void expect_the_list(const std::set<std::string>& got, const char* what) {
  std::set<std::string> want;
  for (const ExportRow& r : kExports) want.insert(r.name);
  int shown = 0;
  for (const auto& n : want)
    if (!got.count(n) && shown++ < 10) ADD_FAILURE() << what << " lacks " << n;
  for (const auto& n : got)
    if (!want.count(n) && shown++ < 10) ADD_FAILURE() << what << " has " << n << ", which is not in the list";
  EXPECT_EQ(got.size(), want.size()) << what;
}

}  // namespace

TEST(Exports, ConventionAndGuardsOnSo) {
  ASSERT_NE(so_handle(), nullptr) << dlerror();
  EXPECT_EQ(kExportCount, OCL_RAVL_EXPORT_COUNT);
  int bad = 0;
  for (int e = 0; e < kExportCount; ++e)
    if (so_outputs()[e].faults && bad++ < 40)
      ADD_FAILURE() << kExports[e].name << ": " << faults_text(so_outputs()[e].faults) << " (first at trial "
                    << so_outputs()[e].first_fault_trial << ")";
  EXPECT_EQ(bad, 0) << "exports with faults";
}

TEST(Exports, SoDynamicSymbolsAreTheList) {
  const std::vector<uint8_t> f = read_file(RAVL_SO_PATH);
  ASSERT_GE(f.size(), sizeof(Elf64_Ehdr));
  Elf64_Ehdr eh;
  memcpy(&eh, f.data(), sizeof eh);
  ASSERT_TRUE(memcmp(eh.e_ident, ELFMAG, SELFMAG) == 0 && eh.e_ident[EI_CLASS] == ELFCLASS64);
  ASSERT_LE(eh.e_shoff + (size_t)eh.e_shnum * sizeof(Elf64_Shdr), f.size());
  std::vector<Elf64_Shdr> sh(eh.e_shnum);
  memcpy(sh.data(), f.data() + eh.e_shoff, sh.size() * sizeof(Elf64_Shdr));
  std::set<std::string> names;
  for (const auto& s : sh) {
    if (s.sh_type != SHT_DYNSYM) continue;
    for (size_t k = 1; k < s.sh_size / sizeof(Elf64_Sym); ++k) {
      Elf64_Sym sym;
      memcpy(&sym, f.data() + s.sh_offset + k * sizeof sym, sizeof sym);
      const std::string name((const char*)f.data() + sh.at(s.sh_link).sh_offset + sym.st_name);
      if (sym.st_shndx == SHN_UNDEF) ADD_FAILURE() << "the .so imports " << name;
      else names.insert(name);
    }
  }
  expect_the_list(names, "the .so's dynamic symbol table");
}

// The export table is exactly the list, aliases share their body's address,
// and there is no import table.
TEST(Exports, DllExportTableIsTheList) {
  const std::vector<uint8_t> f = read_file(RAVL_DLL_PATH);
  ASSERT_GT(f.size(), 0x200u) << RAVL_DLL_PATH;
  auto u16 = [&](size_t at) { return (uint32_t)f.at(at) | (uint32_t)f.at(at + 1) << 8; };
  auto u32 = [&](size_t at) { return u16(at) | u16(at + 2) << 16; };
  const size_t pe = u32(0x3c), opt = pe + 24, sec = opt + u16(pe + 20);
  ASSERT_EQ(u32(pe), 0x00004550u);  // "PE\0\0"
  ASSERT_EQ(u16(opt), 0x20bu);      // PE32+
  auto dir = [&](uint32_t i, bool size) { return i < u32(opt + 108) ? u32(opt + 112 + 8 * i + 4 * size) : 0u; };
  auto offset = [&](uint32_t rva) -> size_t {
    for (uint32_t s = 0; s < u16(pe + 6); ++s) {
      const size_t h = sec + 40 * s;
      const uint32_t va = u32(h + 12), size = std::max(u32(h + 8), u32(h + 16));
      if (rva >= va && rva < va + size) return u32(h + 20) + (rva - va);
    }
    ADD_FAILURE() << "RVA " << rva << " lies in no section";
    return 0;
  };
  EXPECT_EQ(dir(1, true), 0u) << "the DLL has an import table";
  EXPECT_EQ(dir(13, true), 0u) << "the DLL has a delay-load import table";
  ASSERT_NE(dir(0, true), 0u) << "the DLL has no export table";
  const size_t ed = offset(dir(0, false)), funs = offset(u32(ed + 28)), names = offset(u32(ed + 32)),
               ords = offset(u32(ed + 36));
  std::map<std::string, uint32_t> address;
  for (uint32_t i = 0; i < u32(ed + 24); ++i) {
    ASSERT_LT(u16(ords + 2 * i), u32(ed + 20));
    address[(const char*)f.data() + offset(u32(names + 4 * i))] = u32(funs + 4 * u16(ords + 2 * i));
  }
  std::set<std::string> got;
  for (const auto& na : address) got.insert(na.first);
  expect_the_list(got, "the DLL's export table");
  for (const ExportRow& r : kExports)
    if (strcmp(r.name, r.body) != 0 && address.count(r.name) && address.count(r.body))
      EXPECT_EQ(address[r.name], address[r.body]) << r.name << " is not bound to " << r.body;
}

// The DLL, run under Wine by the Windows runner, keeps the convention and
// gives the .so's bits.
TEST(DllExports, MatchSoBitForBit) {
  const char* out_path = RAVL_DLL_OUTPUTS;
  struct stat dll, runner, outs;
  if (!(stat(out_path, &outs) == 0 && stat(RAVL_DLL_PATH, &dll) == 0 && stat(RAVL_WIN_RUNNER, &runner) == 0 &&
        outs.st_mtime >= dll.st_mtime && outs.st_mtime >= runner.st_mtime)) {
    // Not run after ctest's dll_runner_wine (or stale): run the DLL under Wine here.
    const std::string cmd = std::string("WINEPREFIX='") + RAVL_WINEPREFIX +
                            "' WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' '" + RAVL_WINE + "' '" +
                            RAVL_WIN_RUNNER + "' '" + RAVL_DLL_PATH + "' '" + out_path + "' > '" + out_path +
                            ".log' 2>&1";
    EXPECT_EQ(std::system(cmd.c_str()), 0) << cmd << "\nsee " << out_path << ".log";
  }
  const std::vector<uint8_t> f = read_file(out_path);
  ASSERT_GE(f.size(), 12u) << "no outputs from the DLL in " << out_path;
  ASSERT_EQ(memcmp(f.data(), "RAVLOUT1", 8), 0);
  size_t at = 8;
  auto u32 = [&]() {
    uint32_t v = 0;
    if (at + 4 <= f.size()) memcpy(&v, f.data() + at, 4);
    return at += 4, v;
  };
  ASSERT_EQ(u32(), (uint32_t)kExportCount) << "the runner was built from another export list";
  int mismatches = 0, faulty = 0;
  for (int e = 0; e < kExportCount; ++e) {
    const uint32_t n = u32();
    ASSERT_LE(at + n, f.size());
    const std::string name((const char*)f.data() + at, n);
    at += n;
    const uint32_t faults = u32(), trials = u32(), rec = u32();
    const Outputs& o = so_outputs()[e];
    ASSERT_EQ(name, kExports[e].name);
    ASSERT_TRUE((int)trials == o.trials && (int)rec == o.rec && at + (size_t)trials * rec <= f.size());
    const uint8_t* dll_rec = f.data() + at;
    at += (size_t)trials * rec;
    if (faults && faulty++ < 40) ADD_FAILURE() << name << " on the DLL: " << faults_text(faults);
    for (uint32_t t = 0; t < trials; ++t)
      if (memcmp(dll_rec + (size_t)t * rec, o.record((int)t), rec) != 0) {
        const Shape sh = parse_shape(kExports[e]);
        CallIn in;
        make_inputs(sh, (int)t, in);
        if (mismatches++ < 20)
          ADD_FAILURE() << name << " trial " << t << ": " << text(sh, in) << "\n  .so: " << text(sh, o.record((int)t))
                        << "\n  DLL: " << text(sh, dll_rec + (size_t)t * rec);
        break;
      }
  }
  EXPECT_EQ(at, f.size());
  EXPECT_EQ(faulty, 0) << "exports with faults on the DLL (the convention, guards or stable results)";
  EXPECT_EQ(mismatches, 0) << "exports whose DLL bits differ from the .so's";
}

// Every lane of a width-W call is the width-1 call on that lane's inputs. In
// each trial one lane (trial 0: every lane) holds a special value, so that the
// lanes the scalar routines compute sit among ordinary ones: neither may
// change the other.
TEST(Exports, EveryLaneIsTheWidthOneCall) {
  std::map<std::tuple<std::string, std::string>, const ExportRow*> width1;
  for (const ExportRow& r : kExports)
    if (r.width == 1) width1[{r.family, r.cls}] = &r;
  int bad = 0;
  for (const ExportRow& row : kExports) {
    if (row.width == 1) continue;
    const ExportRow* one = width1[{row.family, row.cls}];
    ASSERT_TRUE(one) << row.name << " has no width-1 member";
    const Shape sh = parse_shape(row), sh1 = parse_shape(*one);
    CallIn in, in1;
    CallOut wide, o1;
    bool reported = false;
    for (int t = 0; t < trials_for_width(sh.w) && !reported; ++t) {
      make_inputs(sh, t, in);
      Rng r(t);
      for (int j = 0; j < sh.w; ++j)
        for (int i = 0; i < sh.nin && (t == 0 || j == t % sh.w); ++i) in.lane[i][j] = gen_undefined_lane(sh.in_t[i], t + j, r);
      call_once(fn_of(row), sh, in, t, 0, wide);
      for (int j = 0; j < sh.w && !reported; ++j) {
        for (int i = 0; i < sh.nin; ++i) in1.lane[i][0] = in.lane[i][j];
        call_once(fn_of(*one), sh1, in1, t, 0, o1);
        for (int k = 0; k < sh.nout && !reported; ++k) {
          const int lb = lane_bytes(sh.out_t[k]);
          if (memcmp(wide.bytes + sh.out_off[k] + j * lb, o1.bytes + sh1.out_off[k], (size_t)lb) == 0) continue;
          reported = true;
          if (bad++ < 20)
            ADD_FAILURE() << row.name << " trial " << t << " lane " << j << " output " << k << ":\n  inputs " << text(sh, in)
                          << "\n  width " << sh.w << ": " << text(sh, wide.bytes) << "\n  width 1 on lane " << j << ": "
                          << text(sh1, o1.bytes);
        }
      }
    }
  }
  EXPECT_EQ(bad, 0) << "exports whose lanes differ from the width-1 member";
}

// Families that compute exactly what another family computes and differ only
// in how the results leave (both in registers, or the second through memory).
const std::map<std::string, std::string> kSameBitsAs = {{"sincosreg", "sincos"}, {"sincosregf", "sincosf"}};

// An alias is its body: one address, one set of bits. Every class of a family
// (or of its twin in kSameBitsAs) that names the same algorithm gives the
// same bits at the same width.
TEST(Exports, AliasesAndClassesOfOneAlgorithmGiveTheSameBits) {
  std::map<std::tuple<std::string, int, std::string>, int> first;
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    const auto twin = kSameBitsAs.find(row.family);
    const std::string family = twin == kSameBitsAs.end() ? row.family : twin->second;
    const int f = first.emplace(std::make_tuple(family, row.width, row.algorithm), e).first->second;
    int b = e;
    if (strcmp(row.name, row.body) != 0) {
      const Callee* body = callee(row.body + kPrefix);
      ASSERT_TRUE(body) << row.name << ": body " << row.body << " is not in the list";
      EXPECT_EQ(fn_of(row), body->fn) << row.name << " is not " << row.body;
      EXPECT_TRUE(row.width == body->row->width && !strcmp(row.sig, body->row->sig)) << row.name;
      b = (int)(body->row - kExports);
    }
    for (int other : {f, b}) {
      const Outputs &x = so_outputs()[other], &y = so_outputs()[e];
      for (int t = 0; t < x.trials && x.bytes != y.bytes; ++t)
        if (memcmp(x.record(t), y.record(t), (size_t)x.rec) != 0) {
          const Shape sh = parse_shape(row);
          CallIn in;
          make_inputs(sh, t, in);
          ADD_FAILURE() << row.name << " differs from " << kExports[other].name << " at trial " << t << ": "
                        << text(sh, in) << "\n  " << text(sh, x.record(t)) << "\n  " << text(sh, y.record(t));
          break;
        }
    }
  }
}

// Two threads run every export at once on all its inputs (special values
// sending lanes to the scalar routines included): first both on the same
// trial at the same time, then the second thread half the trials ahead, so
// that they also work on different lanes at the same time. Both must get the
// single-thread bits: the library keeps no state, and a shared scratch area
// would show here.
TEST(Exports, TwoThreadsGetTheSingleThreadBits) {
  const std::vector<Outputs>& single = so_outputs();
  std::atomic<int> arrived{0};
  int bad[2] = {0, 0};
  auto worker = [&](int id) {
    CallIn in;
    CallOut o;
    for (int e = 0; e < kExportCount; ++e) {
      const Callee* c = callee(kExports[e].name + kPrefix);
      const int n = single[e].trials;
      arrived.fetch_add(1);
      while (arrived.load() < 2 * (e + 1)) std::this_thread::yield();  // both threads on export e
      for (int round = 0; c && round < 2; ++round)
        for (int k = 0; k < n; ++k) {
          const int t = (k + round * id * n / 2) % n;
          make_inputs(c->shape, t, in);
          call_once(c->fn, c->shape, in, t, 0, o);
          if (memcmp(o.bytes, single[e].record(t), (size_t)single[e].rec) != 0 && bad[id]++ < 10)
            ADD_FAILURE() << kExports[e].name << " in thread " << id << ", trial " << t << ": "
                          << text(c->shape, o.bytes) << "\n  single thread: " << text(c->shape, single[e].record(t));
        }
    }
  };
  std::thread a(worker, 0), b(worker, 1);
  a.join();
  b.join();
  EXPECT_EQ(bad[0] + bad[1], 0);
}
