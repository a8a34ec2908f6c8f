// Tests that run over every export of the generated list, on the built
// binaries: the .so through dlopen/dlsym (so the exported names themselves are
// what is tested) and the DLL through the Windows runner under Wine.
//
// - every call goes through the checked trampoline (tests/call_sysv.S): the
//   preserved registers, MXCSR, the caller's stack, guard bytes around every
//   result buffer, unaligned buffers, and stable results when everything the
//   callee must ignore changes (tests/common/harness.h);
// - the .so and the DLL give the same bits for the same fixed inputs;
// - every lane of a width-W call equals the width-1 call on that lane, and a
//   special value in one lane leaves the other lanes' bits as they were;
// - width 3 ignores its fourth lane, whatever it holds;
// - aliases are one address and one set of bits; classes that name the same
//   algorithm give the same bits;
// - the .so's dynamic symbols and the DLL's export table are exactly the
//   list, and the DLL imports nothing.
#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "common/harness.h"
#include "ocl_ravl_l9.h"

using namespace ravl_test;

namespace {

std::string faults_text(uint32_t f) {
  char buf[512];
  describe_faults(f, buf, sizeof buf);
  return buf;
}

// Lane values of n bytes as hexadecimal numbers (lb bytes each).
std::string hex(const uint8_t* p, int n, int lb) {
  std::string s;
  for (int at = 0; at + lb <= n; at += lb) {
    uint64_t v = 0;
    memcpy(&v, p + at, (size_t)lb);
    char b[24];
    snprintf(b, sizeof b, lb == 8 ? " %016llx" : " %08llx", (unsigned long long)v);
    s += b;
  }
  return s;
}

// One output record: each result's lanes, then the pointer result's.
std::string record_text(const Shape& sh, const uint8_t* rec) {
  std::string s;
  for (int k = 0; k <= sh.nres; ++k) {
    if (k == sh.nres && !sh.has_ptr) break;
    int lb = lane_bytes(k < sh.nres ? sh.res_t[k] : sh.ptr_t);
    s += k ? " |" : "";
    s += hex(rec + sh.res_offset[k], sh.w * lb, lb);
  }
  return s;
}

// The inputs of one trial, as text, for failure messages.
std::string inputs_text(const Shape& sh, const CallIn& in) {
  std::string s;
  for (int i = 0; i < sh.nin; ++i) {
    s += i ? " | arg" : "arg";
    s += std::to_string(i) + ":";
    for (int j = 0; j < sh.w; ++j) {
      char b[24];
      snprintf(b, sizeof b, lane_bytes(sh.in_t[i]) == 8 ? " %016llx" : " %08llx", (unsigned long long)in.lane[i][j]);
      s += b;
    }
  }
  return s;
}

void* so_handle() {
  static void* h = dlopen(RAVL_SO_PATH, RTLD_NOW | RTLD_LOCAL);
  return h;
}

void* so_symbol(const char* name) { return so_handle() ? dlsym(so_handle(), name) : nullptr; }

struct Outputs {
  uint32_t faults = 0;
  int trials = 0, rec = 0, first_fault_trial = -1;
  std::vector<uint8_t> bytes;
  const uint8_t* record(int t) const { return bytes.data() + (size_t)t * rec; }
};

// Every export run once on the .so; written to so_outputs.bin beside the
// DLL's outputs for inspection.
const std::vector<Outputs>& so_outputs() {
  static std::vector<Outputs> all = [] {
    std::vector<Outputs> v(kExportCount);
    // Tests run in parallel processes: each writes its own file and renames it.
    const std::string path = RAVL_BINARY_DIR "/tests/so_outputs.bin";
    const std::string tmp = path + "." + std::to_string(getpid());
    FILE* f = fopen(tmp.c_str(), "wb");
    if (f) write_outputs_header(f, (uint32_t)kExportCount);
    for (int e = 0; e < kExportCount; ++e) {
      ExportResult r;
      run_export(so_symbol(kExports[e].name), kExports[e], r);
      if (f) write_export_record(f, kExports[e].name, r);
      v[e].faults = r.faults;
      v[e].trials = r.trials;
      v[e].rec = r.rec_bytes;
      v[e].first_fault_trial = r.first_fault_trial;
      v[e].bytes.assign(r.out, r.out + (size_t)r.trials * r.rec_bytes);
      free(r.out);
    }
    if (f && fclose(f) == 0) rename(tmp.c_str(), path.c_str());
    return v;
  }();
  return all;
}

int find_row(const std::string& family, const std::string& cls, int width) {
  static std::map<std::tuple<std::string, std::string, int>, int> index = [] {
    std::map<std::tuple<std::string, std::string, int>, int> m;
    for (int e = 0; e < kExportCount; ++e) m[{kExports[e].family, kExports[e].cls, kExports[e].width}] = e;
    return m;
  }();
  auto it = index.find({family, cls, width});
  return it == index.end() ? -1 : it->second;
}

int find_name(const std::string& name) {
  for (int e = 0; e < kExportCount; ++e)
    if (name == kExports[e].name) return e;
  return -1;
}

std::set<std::string> list_names() {
  std::set<std::string> s;
  for (int e = 0; e < kExportCount; ++e) s.insert(kExports[e].name);
  return s;
}

std::vector<uint8_t> read_file(const char* path) {
  std::ifstream f(path, std::ios::binary);
  return std::vector<uint8_t>((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
}

void compare_name_sets(const std::set<std::string>& got, const char* what) {
  std::set<std::string> want = list_names();
  int shown = 0;
  for (const auto& n : want)
    if (!got.count(n) && shown++ < 10) ADD_FAILURE() << what << " lacks " << n;
  for (const auto& n : got)
    if (!want.count(n) && shown++ < 10) ADD_FAILURE() << what << " has " << n << ", which is not in the list";
  EXPECT_EQ(got.size(), want.size()) << what;
}

}  // namespace

TEST(Exports, ListMatchesHeader) {
  EXPECT_EQ(kExportCount, OCL_RAVL_EXPORT_COUNT);
  ASSERT_NE(so_handle(), nullptr) << dlerror();
}

// (a) The register convention, guards, unaligned buffers and stable results.
TEST(Exports, ConventionAndGuardsOnSo) {
  const auto& out = so_outputs();
  int bad = 0;
  for (int e = 0; e < kExportCount; ++e)
    if (out[e].faults && bad++ < 40)
      ADD_FAILURE() << kExports[e].name << ": " << faults_text(out[e].faults) << " (first at trial "
                    << out[e].first_fault_trial << ")";
  EXPECT_EQ(bad, 0) << "exports with faults";
}

// The .so exports exactly the list's names.
TEST(Exports, SoDynamicSymbolsAreTheList) {
  std::vector<uint8_t> f = read_file(RAVL_SO_PATH);
  ASSERT_GE(f.size(), sizeof(Elf64_Ehdr));
  Elf64_Ehdr eh;
  memcpy(&eh, f.data(), sizeof eh);
  ASSERT_EQ(memcmp(eh.e_ident, ELFMAG, SELFMAG), 0);
  ASSERT_EQ(eh.e_ident[EI_CLASS], ELFCLASS64);
  std::vector<Elf64_Shdr> sh(eh.e_shnum);
  ASSERT_LE(eh.e_shoff + (size_t)eh.e_shnum * sizeof(Elf64_Shdr), f.size());
  memcpy(sh.data(), f.data() + eh.e_shoff, sh.size() * sizeof(Elf64_Shdr));
  std::set<std::string> names;
  int dynsyms = 0;
  for (const auto& s : sh) {
    if (s.sh_type != SHT_DYNSYM) continue;
    ++dynsyms;
    const Elf64_Shdr& str = sh.at(s.sh_link);
    for (size_t k = 1; k < s.sh_size / sizeof(Elf64_Sym); ++k) {
      Elf64_Sym sym;
      memcpy(&sym, f.data() + s.sh_offset + k * sizeof sym, sizeof sym);
      std::string name(reinterpret_cast<const char*>(f.data() + str.sh_offset + sym.st_name));
      if (sym.st_shndx == SHN_UNDEF) {
        ADD_FAILURE() << "the .so imports " << name;
        continue;
      }
      names.insert(name);
    }
  }
  ASSERT_EQ(dynsyms, 1);
  compare_name_sets(names, "the .so's dynamic symbol table");
}

// The DLL's export table is exactly the list, aliases share their body's
// address, and there is no import table.
TEST(Exports, DllExportTableIsTheList) {
  std::vector<uint8_t> f = read_file(RAVL_DLL_PATH);
  ASSERT_GT(f.size(), 0x200u) << RAVL_DLL_PATH;
  auto u16 = [&](size_t at) { return (uint32_t)f.at(at) | (uint32_t)f.at(at + 1) << 8; };
  auto u32 = [&](size_t at) { return u16(at) | u16(at + 2) << 16; };
  size_t pe = u32(0x3c);
  ASSERT_EQ(u32(pe), 0x00004550u);  // "PE\0\0"
  size_t coff = pe + 4, opt = coff + 20;
  uint32_t nsec = u16(coff + 2), optsize = u16(coff + 16);
  ASSERT_EQ(u16(opt), 0x20bu);  // PE32+
  uint32_t ndirs = u32(opt + 108);
  auto dir = [&](uint32_t i, uint32_t& rva, uint32_t& size) {
    rva = i < ndirs ? u32(opt + 112 + 8 * i) : 0;
    size = i < ndirs ? u32(opt + 116 + 8 * i) : 0;
  };
  size_t sec = opt + optsize;
  auto offset = [&](uint32_t rva) -> size_t {
    for (uint32_t s = 0; s < nsec; ++s) {
      size_t h = sec + 40 * s;
      uint32_t vsize = u32(h + 8), va = u32(h + 12), raw = u32(h + 16), ptr = u32(h + 20);
      if (rva >= va && rva < va + (vsize > raw ? vsize : raw)) return ptr + (rva - va);
    }
    ADD_FAILURE() << "RVA " << rva << " lies in no section";
    return 0;
  };
  uint32_t rva, size;
  dir(1, rva, size);
  EXPECT_EQ(size, 0u) << "the DLL has an import table";
  dir(13, rva, size);
  EXPECT_EQ(size, 0u) << "the DLL has a delay-load import table";
  dir(0, rva, size);
  ASSERT_NE(size, 0u) << "the DLL has no export table";
  size_t ed = offset(rva);
  uint32_t nfun = u32(ed + 20), nnames = u32(ed + 24);
  size_t funs = offset(u32(ed + 28)), names = offset(u32(ed + 32)), ords = offset(u32(ed + 36));
  std::map<std::string, uint32_t> address;
  for (uint32_t i = 0; i < nnames; ++i) {
    std::string name(reinterpret_cast<const char*>(f.data() + offset(u32(names + 4 * i))));
    uint32_t ord = u16(ords + 2 * i);
    ASSERT_LT(ord, nfun);
    address[name] = u32(funs + 4 * ord);
  }
  std::set<std::string> got;
  for (const auto& na : address) got.insert(na.first);
  compare_name_sets(got, "the DLL's export table");
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    if (strcmp(row.name, row.body) != 0 && address.count(row.name) && address.count(row.body))
      EXPECT_EQ(address[row.name], address[row.body]) << row.name << " is not bound to " << row.body;
  }
}

// (b) The DLL, run under Wine by the Windows runner, gives the .so's bits.
TEST(DllExports, MatchSoBitForBit) {
  const char* out_path = RAVL_DLL_OUTPUTS;
  struct stat so, dll, runner, outs;
  bool fresh = stat(out_path, &outs) == 0 && stat(RAVL_DLL_PATH, &dll) == 0 &&
               stat(RAVL_WIN_RUNNER, &runner) == 0 && outs.st_mtime >= dll.st_mtime &&
               outs.st_mtime >= runner.st_mtime;
  (void)so;
  if (!fresh) {
    // Not run by ctest's fixture (or stale): run the DLL under Wine here.
    std::string cmd = std::string("WINEPREFIX='") + RAVL_WINEPREFIX +
                      "' WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' '" + RAVL_WINE + "' '" + RAVL_WIN_RUNNER +
                      "' '" + RAVL_DLL_PATH + "' '" + out_path + "' > '" + out_path + ".log' 2>&1";
    int rc = std::system(cmd.c_str());
    EXPECT_EQ(rc, 0) << cmd << "\nsee " << out_path << ".log";
  }
  std::vector<uint8_t> f = read_file(out_path);
  ASSERT_GE(f.size(), 12u) << "no outputs from the DLL in " << out_path;
  ASSERT_EQ(memcmp(f.data(), "RAVLOUT1", 8), 0);
  size_t at = 8;
  auto u32 = [&]() {
    uint32_t v = 0;
    if (at + 4 <= f.size()) memcpy(&v, f.data() + at, 4);
    at += 4;
    return v;
  };
  ASSERT_EQ(u32(), (uint32_t)kExportCount) << "the runner was built from another export list";
  const auto& so_out = so_outputs();
  int mismatches = 0, faulty = 0;
  for (int e = 0; e < kExportCount; ++e) {
    uint32_t n = u32();
    ASSERT_LE(at + n, f.size());
    std::string name(reinterpret_cast<const char*>(f.data() + at), n);
    at += n;
    uint32_t faults = u32(), trials = u32(), rec = u32();
    ASSERT_EQ(name, kExports[e].name);
    ASSERT_LE(at + (size_t)trials * rec, f.size());
    const uint8_t* dll_rec = f.data() + at;
    at += (size_t)trials * rec;
    if (faults && faulty++ < 40) ADD_FAILURE() << name << " on the DLL: " << faults_text(faults);
    const Outputs& o = so_out[e];
    ASSERT_EQ((int)trials, o.trials);
    ASSERT_EQ((int)rec, o.rec);
    for (uint32_t t = 0; t < trials; ++t) {
      if (memcmp(dll_rec + (size_t)t * rec, o.record((int)t), rec) == 0) continue;
      if (mismatches++ < 20) {
        Shape sh = parse_shape(kExports[e]);
        CallIn in;
        make_inputs(sh, (int)t, in);
        ADD_FAILURE() << name << " trial " << t << ": " << inputs_text(sh, in)
                      << "\n  .so:" << record_text(sh, o.record((int)t))
                      << "\n  DLL:" << record_text(sh, dll_rec + (size_t)t * rec);
      }
      break;
    }
  }
  EXPECT_EQ(at, f.size());
  EXPECT_EQ(faulty, 0) << "exports with faults on the DLL (the convention, guards or stable results)";
  EXPECT_EQ(mismatches, 0) << "exports whose DLL bits differ from the .so's";
}

// (c) Every lane of a width-W call is the width-1 call on that lane's inputs.
TEST(Exports, EveryLaneIsTheWidthOneResult) {
  const auto& out = so_outputs();
  int bad = 0;
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    if (row.width == 1) continue;
    int one = find_row(row.family, row.cls, 1);
    ASSERT_GE(one, 0) << row.name << " has no width-1 member";
    void* fn1 = so_symbol(kExports[one].name);
    ASSERT_NE(fn1, nullptr);
    Shape sh = parse_shape(row), sh1 = parse_shape(kExports[one]);
    CallIn in, in1;
    CallOut o1;
    bool reported = false;
    for (int t = 0; t < out[e].trials && !reported; ++t) {
      make_inputs(sh, t, in);
      const uint8_t* wide = out[e].record(t);
      for (int j = 0; j < sh.w && !reported; ++j) {
        memset(&in1, 0, sizeof in1);
        for (int i = 0; i < sh.nin; ++i) in1.lane[i][0] = in.lane[i][j];
        call_checked(fn1, sh1, in1, t * 16 + j, o1);
        for (int k = 0; k <= sh.nres; ++k) {
          if (k == sh.nres && !sh.has_ptr) break;
          int lb = lane_bytes(k < sh.nres ? sh.res_t[k] : sh.ptr_t);
          const uint8_t* a = wide + sh.res_offset[k] + j * lb;
          const uint8_t* b = o1.bytes + sh1.res_offset[k];
          if (memcmp(a, b, (size_t)lb) != 0) {
            reported = true;
            if (bad++ < 20)
              ADD_FAILURE() << row.name << " trial " << t << " lane " << j << " result " << k << ": "
                            << inputs_text(sh1, in1) << "\n  width " << sh.w << ":" << hex(a, lb, lb) << "\n  width 1:"
                            << hex(b, lb, lb);
            break;
          }
        }
      }
    }
  }
  EXPECT_EQ(bad, 0) << "exports whose lanes differ from the width-1 member";
}

// (d) Width 3: NaN, huge, infinite, denormal or zero values in the fourth
// lane leave lanes 0-2 as they are with an ordinary fourth lane.
TEST(Exports, WidthThreeIgnoresTheFourthLane) {
  const uint64_t hostile_d[] = {0x7ff8000000000000ull, 0xfff8000000000123ull, 0x7ff0000000000001ull,
                                0xffefffffffffffffull, 0x7ff0000000000000ull, 0x0000000000000001ull, 0};
  const uint64_t hostile_s[] = {0x7fc00000u, 0xffc00123u, 0x7f800001u, 0xff7fffffu, 0x7f800000u, 1u, 0};
  const uint64_t hostile_i[] = {0, 0x80000000u, 0xffffffffu, 0x7fffffffu, 1, 0, 0};
  const uint64_t hostile_l[] = {0, 0x8000000000000000ull, ~0ull, 0x7fffffffffffffffull, 1, 0, 0};
  int checked = 0, bad = 0;
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    if (row.width != 3) continue;
    ++checked;
    void* fn = so_symbol(row.name);
    ASSERT_NE(fn, nullptr);
    Shape sh = parse_shape(row);
    CallIn in;
    CallOut clean, dirty;
    bool reported = false;
    for (int t = 0; t < 24 && !reported; ++t) {
      make_inputs(sh, t, in);
      in.fixed_undefined = true;
      for (int i = 0; i < sh.nin; ++i) in.undefined[i] = in.lane[i][1];
      call_once(fn, sh, in, t, 0, clean);
      for (int h = 0; h < 7 && !reported; ++h) {
        for (int i = 0; i < sh.nin; ++i) {
          Lane lt = sh.in_t[i];
          in.undefined[i] = lt == kD ? hostile_d[h] : lt == kS ? hostile_s[h] : lane_bytes(lt) == 4 ? hostile_i[h]
                                                                                                  : hostile_l[h];
        }
        call_once(fn, sh, in, t, 0, dirty);
        if (memcmp(clean.bytes, dirty.bytes, (size_t)sh.out_bytes) != 0) {
          reported = true;
          if (bad++ < 20)
            ADD_FAILURE() << row.name << " trial " << t << " fourth lane " << std::hex << in.undefined[0] << std::dec
                          << ": " << inputs_text(sh, in) << "\n  clean:" << record_text(sh, clean.bytes)
                          << "\n  dirty:" << record_text(sh, dirty.bytes);
        }
      }
    }
  }
  EXPECT_GT(checked, 0);
  EXPECT_EQ(bad, 0);
}

// A special value in one lane leaves every other lane's bits as they were.
TEST(Exports, ASpecialLaneLeavesTheOthers) {
  const uint64_t special_d[] = {0x7ff8000000000000ull, 0xfff0000000000000ull, 0x7fefffffffffffffull};
  const uint64_t special_s[] = {0x7fc00000u, 0xff800000u, 0x7f7fffffu};
  const uint64_t special_i[] = {0, 0x80000000u, 0xffffffffu};
  const uint64_t special_l[] = {0, 0x8000000000000000ull, ~0ull};
  int bad = 0;
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    if (row.width == 1) continue;
    void* fn = so_symbol(row.name);
    ASSERT_NE(fn, nullptr);
    Shape sh = parse_shape(row);
    CallIn in, hit;
    CallOut base, o;
    bool reported = false;
    for (int t = 0; t < 4 && !reported; ++t) {
      make_inputs(sh, t, in);
      call_once(fn, sh, in, t, 0, base);
      for (int j = 0; j < sh.w && !reported; ++j)
        for (int h = 0; h < 3 && !reported; ++h) {
          hit = in;
          for (int i = 0; i < sh.nin; ++i) {
            Lane lt = sh.in_t[i];
            hit.lane[i][j] = lt == kD ? special_d[h] : lt == kS ? special_s[h] : lane_bytes(lt) == 4 ? special_i[h]
                                                                                                   : special_l[h];
          }
          call_once(fn, sh, hit, t, 0, o);
          for (int k = 0; k <= sh.nres && !reported; ++k) {
            if (k == sh.nres && !sh.has_ptr) break;
            int lb = lane_bytes(k < sh.nres ? sh.res_t[k] : sh.ptr_t);
            for (int m = 0; m < sh.w; ++m) {
              int at = sh.res_offset[k] + m * lb;
              if (m == j || memcmp(base.bytes + at, o.bytes + at, (size_t)lb) == 0) continue;
              reported = true;
              if (bad++ < 20)
                ADD_FAILURE() << row.name << " trial " << t << ": a special value in lane " << j << " changed lane "
                              << m << " of result " << k << "\n  before: " << inputs_text(sh, in)
                              << "\n  after:  " << inputs_text(sh, hit);
              break;
            }
          }
        }
    }
  }
  EXPECT_EQ(bad, 0);
}

// (e) An alias is its body: the same address and the same bits.
TEST(Exports, AliasesAreTheirBody) {
  const auto& out = so_outputs();
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    if (strcmp(row.name, row.body) == 0) continue;
    int b = find_name(row.body);
    ASSERT_GE(b, 0) << row.name << ": body " << row.body << " is not in the list";
    EXPECT_EQ(so_symbol(row.name), so_symbol(row.body)) << row.name << " is not " << row.body;
    EXPECT_TRUE(out[e].bytes == out[b].bytes) << row.name << " and " << row.body << " differ";
    EXPECT_EQ(row.width, kExports[b].width);
    EXPECT_STREQ(row.sig, kExports[b].sig);
  }
}

// (f) Classes of one family that select the same algorithm give the same bits.
TEST(Exports, SameAlgorithmSameBits) {
  const auto& out = so_outputs();
  std::map<std::tuple<std::string, int, std::string>, int> first;
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& row = kExports[e];
    auto key = std::make_tuple(std::string(row.family), row.width, std::string(row.algorithm));
    auto it = first.find(key);
    if (it == first.end()) {
      first[key] = e;
      continue;
    }
    const Outputs& a = out[it->second];
    const Outputs& b = out[e];
    ASSERT_EQ(a.rec, b.rec);
    for (int t = 0; t < a.trials; ++t)
      if (memcmp(a.record(t), b.record(t), (size_t)a.rec) != 0) {
        Shape sh = parse_shape(row);
        CallIn in;
        make_inputs(sh, t, in);
        ADD_FAILURE() << row.name << " differs from " << kExports[it->second].name << " (both " << row.algorithm
                      << ") at trial " << t << ": " << inputs_text(sh, in) << "\n  " << record_text(sh, a.record(t))
                      << "\n  " << record_text(sh, b.record(t));
        break;
      }
  }
}
