// ravl: calls the exports of libocl_ravl_l9 by name and measures them
// against MPFR. Run `ravl --help` for the verbs. The calls go through the
// tests' checked trampoline (tests/common/lanes.h), the references, bounds
// and input ranges are the accuracy rows of the tests (tests/common/tables.h),
// OpenCL's bounds are opencl_bounds.inc, and the benchmark is bench/'s.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "ocl_ravl_l9.h"
#include "tests/common/lanes.h"
#include "tests/common/tables.h"

using namespace ravl_test;

namespace {

const char kHelp[] =
    "ravl: call and measure the exports of libocl_ravl_l9 by name (with or without the __ocl_ravl_l9_ prefix)\n"
    "\n"
    "  ravl eval NAME VALUE...      call NAME on the values; print each result as decimal, hex-float and bits,\n"
    "                               beside MPFR's correctly rounded value and the error in ulp\n"
    "      VALUE: decimal (1.5, -inf, nan), hex-float (0x1.8p+0), raw bits (bits:0x3ff8000000000000);\n"
    "      integer arguments as integers (-3, 0x10). Values go argument after argument:\n"
    "        one value per argument       broadcast to every lane of that argument;\n"
    "        WIDTH values per argument    lane 0 first;\n"
    "        1 < k < WIDTH values (one-argument exports only): lanes 0..k-1, the rest filled with the last value.\n"
    "  ravl ulp NAME [--range a:b] [--yrange a:b] [--n N] [--bits] [--seed S] [--worst K]\n"
    "                               max and mean error against MPFR on N random inputs (default 100000),\n"
    "                               uniform in value, or uniform in bit pattern with --bits; prints the worst\n"
    "                               inputs. Without --range: the family's first range of the accuracy tests\n"
    "  ravl sweep FLOATNAME [--range a:b | --binades e0:e1] [--threads T] [-o table.md]\n"
    "                               every single input (2^32, or those in the range, or the binades\n"
    "                               2^e0..2^(e1+1) of both signs) on all cores, screened against the\n"
    "                               family's double export, the worst of each binade measured again with\n"
    "                               MPFR; prints (and writes) the per-binade table of max error\n"
    "  ravl plot NAME [--range a:b] [--n N] [--bits] [-o file.png|file.svg]\n"
    "                               error in ulp against x, with OpenCL's bound and ours as lines (gnuplot)\n"
    "  ravl report [-o DIR] [--n N] [--no-plots] [--readme README.md] [--check README.md]\n"
    "                               the accuracy table of every family and algorithm (max ulp measured on\n"
    "                               N samples per range of the accuracy tests, default 2000, OpenCL's\n"
    "                               bound, our asserted bound) as DIR/accuracy.md with a plot per family;\n"
    "                               --readme replaces the table between the README's ravl-report markers,\n"
    "                               --check exits 1 when the README's table is not the generated one\n"
    "  ravl bench [NAME...]         ns per element beside SLEEF's, same run (bench/ravl_bench; the plain and\n"
    "                               _native members at each family's comparison width)\n"
    "  ravl list [FILTER]           the exports and their signatures\n";

[[noreturn]] void die(const std::string& msg) {
  std::fprintf(stderr, "ravl: %s\n", msg.c_str());
  std::exit(2);
}

// ---- names -------------------------------------------------------------------------

size_t edit_distance(const std::string& a, const std::string& b) {
  std::vector<size_t> d(b.size() + 1);
  for (size_t j = 0; j <= b.size(); ++j) d[j] = j;
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diag = d[0];
    d[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t up = d[j];
      d[j] = std::min({d[j] + 1, d[j - 1] + 1, diag + (a[i - 1] != b[j - 1])});
      diag = up;
    }
  }
  return d[b.size()];
}

std::string short_name(std::string name) {
  if (name.compare(0, kPrefix, "__ocl_ravl_l9_") == 0) name = name.substr(kPrefix);
  return name;
}

// The export of that name, or exit with the nearest names.
const Callee* resolve(const std::string& given) {
  const std::string name = short_name(given);
  if (const Callee* c = find_callee(name)) return c;
  std::vector<std::pair<size_t, std::string>> near;
  for (const auto& kv : callees()) near.push_back({edit_distance(name, kv.first), kv.first});
  std::sort(near.begin(), near.end());
  std::string msg = "no export " + given + "; nearest:";
  for (size_t i = 0; i < near.size() && i < 5; ++i) msg += " " + near[i].second;
  die(msg);
}

const char* type_name(Lane t) {
  static const char* const n[] = {"double", "float", "int", "uint", "long", "ulong"};
  return n[t];
}
std::string vec_type(Lane t, int w) { return type_name(t) + (w > 1 ? std::to_string(w) : std::string()); }

// "double4 exp4(double4)", "double4 frexp4(double4, int4*)".
std::string signature(const Callee& c) {
  const Shape& sh = c.shape;
  std::string s = vec_type(sh.out_t[0], sh.w);
  if (sh.nres == 2) s = "{" + s + ", " + vec_type(sh.out_t[1], sh.w) + "}";
  s += std::string(" ") + (c.row->name + kPrefix) + "(";
  for (int i = 0; i < sh.nin; ++i) s += (i ? ", " : "") + vec_type(sh.in_t[i], sh.w);
  for (int k = sh.nres; k < sh.nout; ++k) s += (sh.nin ? ", " : "") + vec_type(sh.out_t[k], sh.w) + "*";
  return s + ")";
}

// ---- values --------------------------------------------------------------------------

uint64_t lane_mask(Lane t) { return lane_bytes(t) == 8 ? ~0ull : 0xffffffffull; }

bool parse_value(Lane t, const std::string& s, uint64_t* out) {
  char* end = nullptr;
  if (s.compare(0, 5, "bits:") == 0) {
    *out = std::strtoull(s.c_str() + 5, &end, 0) & lane_mask(t);
  } else if (t == kD) {
    *out = bits(std::strtod(s.c_str(), &end));
  } else if (t == kS) {
    *out = bits(std::strtof(s.c_str(), &end));
  } else if (t == kI || t == kL) {
    *out = (uint64_t)std::strtoll(s.c_str(), &end, 0) & lane_mask(t);
  } else {
    *out = std::strtoull(s.c_str(), &end, 0) & lane_mask(t);
  }
  return end && end != s.c_str() && *end == 0;
}

// The shortest decimal that reads back as the value.
template <class T> std::string shortest(T x) {
  char b[64];
  for (int p = 1; p <= (sizeof(T) == 8 ? 17 : 9); ++p) {
    std::snprintf(b, sizeof b, "%.*g", p, (double)x);
    if ((sizeof(T) == 8 ? (T)std::strtod(b, nullptr) : (T)std::strtof(b, nullptr)) == x || x != x) break;
  }
  return b;
}

// "2.718281828459045  0x1.5bf0a8b145769p+1  bits:0x4005bf0a8b145769"; integers as integers.
std::string show(Lane t, uint64_t b) {
  char out[160];
  if (t == kD || t == kS) {
    const double v = lane_value(b, t);
    std::snprintf(out, sizeof out, "%-24s %-24a bits:0x%0*llx",
                  (t == kD ? shortest(v) : shortest((float)v)).c_str(), v, t == kD ? 16 : 8, (unsigned long long)b);
  } else if (t == kI || t == kL) {
    std::snprintf(out, sizeof out, "%lld", (long long)(t == kI ? (int64_t)(int32_t)b : (int64_t)b));
  } else {
    std::snprintf(out, sizeof out, "%llu", (unsigned long long)b);
  }
  return out;
}

// ---- references and bounds -----------------------------------------------------------

// Error in ulp of result k of a family against MPFR (one- and two-argument
// families; the second argument as a double).
class Reference {
 public:
  Reference(const std::string& family, int k, Lane t) {
    MpfrFn f = mpfr_of(family, k);
    MpfrFn2 f2 = k == 0 ? mpfr2_of(family) : nullptr;
    if (!f && !f2) return;
    if (t == kD) d_.reset(new UlpRef<double>(f, f2));
    if (t == kS) s_.reset(new UlpRef<float>(f, f2));
  }
  bool ok() const { return d_ || s_; }
  double error(uint64_t x, double y, uint64_t got) {
    return d_ ? d_->ulp_error2(from_bits<double>(x), y, from_bits<double>(got))
              : s_->ulp_error2(from_bits<float>(x), y, from_bits<float>(got));
  }
  uint64_t correct(uint64_t x, double y) {
    return d_ ? bits(d_->correct(from_bits<double>(x), y)) : bits(s_->correct(from_bits<float>(x), y));
  }

 private:
  std::unique_ptr<UlpRef<double>> d_;
  std::unique_ptr<UlpRef<float>> s_;
};

struct OclBound {
  const char *function, *single, *dbl;
};
const OclBound kOpenCL[] = {
#include "opencl_bounds.inc"
};

// OpenCL's bound of a member, as text ("3", "CR", "8192" for _half, "-").
std::string opencl_bound(const ExportRow& r) {
  if (!strcmp(r.cls, "native") || !strcmp(r.cls, "rm")) return "-";  // no OpenCL bound: ours only
  const bool single = r.sig[0] == 's';
  if (!strcmp(r.cls, "half") && single) return "8192";
  std::string f = r.family;
  if (single && f.back() == 'f') f.pop_back();
  if (f == "sincosreg") f = "sincos";
  if (f == "div") f = "divide";
  if (f == "inv") f = "reciprocal";
  for (const OclBound& b : kOpenCL)
    if (f == b.function) return single ? b.single : b.dbl;
  return "-";
}
double bound_value(const std::string& s) { return s == "CR" ? 0.5 : s == "-" ? 0 : std::atof(s.c_str()); }

// ---- sampling and measuring ------------------------------------------------------------

struct Interval {
  double lo, hi;
  bool by_bits;
  bool integers = false;  // floating values rounded to integers (pow's y for negative x)
};

// n values of type t in [lo, hi]: uniform in value, or in bit pattern (over
// both signs when the interval holds zero).
std::vector<uint64_t> sample(Lane t, const Interval& iv, size_t n, Rng& g) {
  std::vector<uint64_t> v(n);
  const bool single = t == kS;
  auto fbits = [&](double x) { return single ? (uint64_t)bits((float)x) : bits(x); };
  const double a = std::min(iv.lo, iv.hi), b = std::max(iv.lo, iv.hi);
  for (size_t i = 0; i < n; ++i) {
    const double u = (double)(g.next() >> 11) * 0x1p-53;
    if (!is_fp(t)) {
      v[i] = (uint64_t)(int64_t)std::floor(a + (b - a + 1) * u) & lane_mask(t);
    } else if (!iv.by_bits) {
      v[i] = fbits(iv.integers ? std::round(a + (b - a) * u) : a + (b - a) * u);
    } else {
      // Magnitudes [ma, mb] of one sign, chosen in proportion when both signs are in.
      const bool both = a < 0 && b > 0;
      const bool neg = both ? (g.next() & 1) : a < 0;
      const double m0 = both ? 0 : std::min(std::fabs(a), std::fabs(b)), m1 = both ? (neg ? -a : b) : std::max(std::fabs(a), std::fabs(b));
      const uint64_t lo = fbits(m0), hi = fbits(m1);
      const uint64_t sign = neg ? (single ? 1ull << 31 : 1ull << 63) : 0;
      v[i] = (lo + g.next() % (hi - lo + 1)) | sign;
    }
  }
  return v;
}

// Errors of every result with a reference, per input, on `threads` threads.
struct Measured {
  Lanes out;
  std::vector<std::vector<double>> err;  // [result][input], empty for a result without a reference
  uint32_t faults = 0;
};

Measured measure(const Callee& c, const Lanes& args, unsigned threads) {
  Measured m;
  const Shape& sh = c.shape;
  m.out = run_lanes_raw(&c, args, &m.faults);
  const size_t n = args[0].size();
  m.err.resize(sh.nout);
  for (int k = 0; k < sh.nout; ++k) {
    if (!Reference(c.row->family, k, sh.out_t[k]).ok()) continue;
    m.err[k].resize(n);
    std::vector<std::thread> pool;
    for (unsigned t = 0; t < threads; ++t)
      pool.emplace_back([&, t] {
        Reference ref(c.row->family, k, sh.out_t[k]);
        for (size_t i = t; i < n; i += threads)
          m.err[k][i] = ref.error(args[0][i], sh.nin > 1 ? lane_value(args[1][i], sh.in_t[1]) : 0, m.out[k][i]);
      });
    for (auto& th : pool) th.join();
  }
  return m;
}

unsigned cores() { return std::max(1u, std::thread::hardware_concurrency()); }

const Range* first_range(const std::string& family) {
  static const std::vector<Range> all = ranges();
  for (const Range& r : all)
    if (family == r.family) return &r;
  return nullptr;
}

bool parse_interval(const std::string& s, Interval* iv) {
  const size_t colon = s.find(':', 1);
  if (colon == std::string::npos) return false;
  char *e1, *e2;
  const std::string a = s.substr(0, colon), b = s.substr(colon + 1);
  iv->lo = std::strtod(a.c_str(), &e1);
  iv->hi = std::strtod(b.c_str(), &e2);
  return *e1 == 0 && *e2 == 0 && !a.empty() && !b.empty();
}

// Options of the measuring verbs.
struct Options {
  std::vector<std::string> names;
  bool has_range = false, has_yrange = false, by_bits = false, plots = true;
  Interval range{}, yrange{};
  size_t n = 0;
  uint64_t seed = 1;
  int worst = 5, e0 = 0, e1 = 0;
  bool has_binades = false;
  unsigned threads = 0;
  std::string out, readme, check;
};

Options parse_options(int argc, char** argv, int from) {
  Options o;
  for (int a = from; a < argc; ++a) {
    const std::string s = argv[a];
    auto next = [&]() -> std::string {
      if (a + 1 >= argc) die(s + " needs a value");
      return argv[++a];
    };
    if (s == "--range" || s == "--yrange") {
      const std::string v = next();
      if (!parse_interval(v, s == "--range" ? &o.range : &o.yrange)) die("bad interval " + v + " (want a:b)");
      (s == "--range" ? o.has_range : o.has_yrange) = true;
    } else if (s == "--binades") {
      const std::string v = next();
      if (std::sscanf(v.c_str(), "%d:%d", &o.e0, &o.e1) != 2) die("bad binades " + v + " (want e0:e1)");
      o.has_binades = true;
    } else if (s == "--n") {
      o.n = std::strtoull(next().c_str(), nullptr, 0);
    } else if (s == "--seed") {
      o.seed = std::strtoull(next().c_str(), nullptr, 0);
    } else if (s == "--worst") {
      o.worst = std::atoi(next().c_str());
    } else if (s == "--threads") {
      o.threads = (unsigned)std::atoi(next().c_str());
    } else if (s == "--bits") {
      o.by_bits = true;
    } else if (s == "--no-plots") {
      o.plots = false;
    } else if (s == "-o") {
      o.out = next();
    } else if (s == "--readme") {
      o.readme = next();
    } else if (s == "--check") {
      o.check = next();
    } else if (s.size() > 1 && s[0] == '-' && !std::isdigit((unsigned char)s[1])) {
      die("unknown option " + s + " (ravl --help)");
    } else {
      o.names.push_back(s);
    }
  }
  if (!o.threads) o.threads = cores();
  return o;
}

// The inputs of ulp and plot: x over the range, y over the family's second range.
Lanes make_inputs(const Callee& c, const Options& o, size_t n, Interval* used) {
  const Shape& sh = c.shape;
  if (!is_fp(sh.in_t[0])) die(std::string(c.row->name + kPrefix) + ": the first argument is not floating");
  const Range* r = first_range(c.row->family);
  Interval x = o.has_range ? o.range : r ? Interval{r->lo, r->hi, r->how != kUniform} : Interval{-10, 10, false};
  if (o.has_range) x.by_bits = o.by_bits;
  if (o.by_bits) x.by_bits = true;
  *used = x;
  Rng g(o.seed);
  Lanes args{sample(sh.in_t[0], x, n, g)};
  if (sh.nin > 1) {
    Interval y = o.has_yrange ? o.yrange : r && (r->ylo || r->yhi) ? Interval{r->ylo, r->yhi, r->yhow == kBitPatterns, r->yhow == kIntegers}
                                                                    : Interval{-4, 4, false};
    args.push_back(sample(sh.in_t[1], y, n, g));
  }
  for (int i = 2; i < sh.nin; ++i) args.push_back(sample(sh.in_t[i], Interval{-4, 4, false}, n, g));
  return args;
}

const Callee& measurable(const std::string& name) {
  const Callee& c = *resolve(name);
  bool any = false;
  for (int k = 0; k < c.shape.nout; ++k) any |= Reference(c.row->family, k, c.shape.out_t[k]).ok();
  if (!any) die(name + ": family " + c.row->family + " has no MPFR reference (its results are checked bit for bit by tests/exact_test.cpp)");
  return c;
}

std::string bounds_text(const ExportRow& r) {
  char b[160];
  const double ours = class_bound(r.family, r.algorithm);
  const std::string ocl = opencl_bound(r);
  std::snprintf(b, sizeof b, "OpenCL bound %s, ours %s", ocl == "CR" ? "correctly rounded" : ocl == "-" ? "none" : (ocl + " ulp").c_str(),
                ours ? (shortest(ours) + " ulp").c_str() : "-");
  return b;
}

// ---- eval --------------------------------------------------------------------------------

int cmd_eval(int argc, char** argv) {
  if (argc < 3) die("usage: ravl eval NAME VALUE...");
  const Callee& c = *resolve(argv[2]);
  const Shape& sh = c.shape;
  const std::vector<std::string> vals(argv + 3, argv + argc);
  const size_t k = vals.size();
  const std::string usage = signature(c) + ": give " + std::to_string(sh.nin) + " value" + (sh.nin == 1 ? "" : "s") +
                            " (one per argument, broadcast to the " + std::to_string(sh.w) + " lanes) or " +
                            std::to_string(sh.nin * sh.w) + " (" + std::to_string(sh.w) + " per argument)" +
                            (sh.nin == 1 && sh.w > 2 ? ", or 2.." + std::to_string(sh.w - 1) +
                                                           " (the last one fills the remaining lanes)"
                                                     : "");
  const bool broadcast = k == (size_t)sh.nin, per_lane = k == (size_t)(sh.nin * sh.w);
  const bool fill = sh.nin == 1 && k > 1 && k < (size_t)sh.w;
  if (!broadcast && !per_lane && !fill) die("wrong number of values (" + std::to_string(k) + ") for " + usage);
  Lanes args(sh.nin, std::vector<uint64_t>(sh.w));
  for (int i = 0; i < sh.nin; ++i)
    for (int j = 0; j < sh.w; ++j) {
      const std::string& v = broadcast ? vals[i] : per_lane ? vals[i * sh.w + j] : vals[std::min<size_t>(j, k - 1)];
      if (!parse_value(sh.in_t[i], v, &args[i][j]))
        die("cannot read '" + v + "' as a " + type_name(sh.in_t[i]) + " for " + signature(c));
    }
  uint32_t faults;
  const Lanes out = run_lanes_raw(&c, args, &faults);
  std::printf("%s  (%s class, %s algorithm; %s)\n", signature(c).c_str(), c.row->cls, c.row->algorithm,
              bounds_text(*c.row).c_str());
  if (faults) std::printf("CONVENTION FAULT: %s\n", faults_text(faults).c_str());
  std::vector<std::unique_ptr<Reference>> refs;
  for (int r = 0; r < sh.nout; ++r) refs.emplace_back(new Reference(c.row->family, r, sh.out_t[r]));
  auto same = [&](int a, int b) {
    bool eq = true;
    for (int i = 0; i < sh.nin; ++i) eq &= args[i][a] == args[i][b];
    for (int r = 0; r < sh.nout; ++r) eq &= out[r][a] == out[r][b];
    return eq;
  };
  for (int j = 0, end; j < sh.w; j = end) {
    for (end = j + 1; end < sh.w && same(j, end);) ++end;  // lanes j..end-1 alike: printed once
    if (end - j == 1) std::printf("lane %d:", j);
    else std::printf("lanes %d-%d%s:", j, end - 1, end - j == sh.w ? " (every lane)" : "");
    for (int i = 0; i < sh.nin; ++i) std::printf("%s %s", i ? "," : "", show(sh.in_t[i], args[i][j]).c_str());
    std::printf("\n");
    for (int r = 0; r < sh.nout; ++r) {
      std::printf("  %-8s %s\n", r < sh.nres ? (r ? "result2" : "result") : "*out", show(sh.out_t[r], out[r][j]).c_str());
      if (!refs[r]->ok()) continue;
      const double y = sh.nin > 1 ? lane_value(args[1][j], sh.in_t[1]) : 0;
      const double e = refs[r]->error(args[0][j], y, out[r][j]);
      std::printf("  %-8s %s  error %.4g ulp\n", "mpfr", show(sh.out_t[r], refs[r]->correct(args[0][j], y)).c_str(), e);
    }
  }
  return faults ? 1 : 0;
}

// ---- ulp -------------------------------------------------------------------------------------

std::string interval_text(const Interval& iv) {
  char b[128];
  std::snprintf(b, sizeof b, "[%s, %s] %s", shortest(iv.lo).c_str(), shortest(iv.hi).c_str(),
                iv.by_bits ? "uniform in bit pattern" : "uniform in value");
  return b;
}

int cmd_ulp(int argc, char** argv) {
  Options o = parse_options(argc, argv, 2);
  if (o.names.size() != 1) die("usage: ravl ulp NAME [--range a:b] [--n N] [--bits]");
  const Callee& c = measurable(o.names[0]);
  const Shape& sh = c.shape;
  const size_t n = o.n ? o.n : 100000;
  Interval used;
  const Lanes args = make_inputs(c, o, n, &used);
  const Measured m = measure(c, args, o.threads);
  std::printf("%s: %zu inputs, x %s; %s\n", signature(c).c_str(), n, interval_text(used).c_str(),
              bounds_text(*c.row).c_str());
  if (m.faults) std::printf("CONVENTION FAULT: %s\n", faults_text(m.faults).c_str());
  for (int k = 0; k < sh.nout; ++k) {
    if (m.err[k].empty()) continue;
    double sum = 0, worst = 0;
    size_t finite = 0;
    std::vector<size_t> order(n);
    for (size_t i = 0; i < n; ++i) {
      order[i] = i;
      const double e = m.err[k][i];
      if (std::isfinite(e)) sum += e, ++finite;
      if (!(e <= worst)) worst = e;
    }
    std::partial_sort(order.begin(), order.begin() + std::min<size_t>(o.worst, n), order.end(), [&](size_t a, size_t b) {
      const double ea = m.err[k][a], eb = m.err[k][b];
      return ea > eb || (std::isnan(ea) && !std::isnan(eb));
    });
    std::printf("result %d: max %.4g ulp, mean %.4g ulp\n", k, worst, finite ? sum / finite : 0.0);
    Reference ref(c.row->family, k, sh.out_t[k]);
    for (int w = 0; w < o.worst && w < (int)n; ++w) {
      const size_t i = order[w];
      const double y = sh.nin > 1 ? lane_value(args[1][i], sh.in_t[1]) : 0;
      std::printf("  %.4g ulp at x = %s", m.err[k][i], show(sh.in_t[0], args[0][i]).c_str());
      if (sh.nin > 1) std::printf(", y = %s", show(sh.in_t[1], args[1][i]).c_str());
      std::printf("\n      got %s\n     want %s\n", show(sh.out_t[k], m.out[k][i]).c_str(),
                  show(sh.out_t[k], ref.correct(args[0][i], y)).c_str());
    }
  }
  return m.faults ? 1 : 0;
}

// ---- sweep ------------------------------------------------------------------------------------

// The double member of a single family with the same results (expf -> exp4).
const Callee* double_twin(const Callee& c) {
  std::string fam = c.row->family;
  if (fam.back() != 'f') return nullptr;
  fam.pop_back();
  for (const ExportRow& r : kExports)
    if (fam == r.family && !strcmp(r.cls, "plain") && r.sig[0] == 'd' && r.width == 4) {
      const Callee* d = find_callee(r.name + kPrefix);
      if (d && d->shape.nin == 1 && d->shape.nout == c.shape.nout) return d;
    }
  return nullptr;
}

bool one_register_result(const Callee& c, Lane t, int w) {
  const Shape& sh = c.shape;
  return sh.w == w && sh.nin == 1 && sh.nout == 1 && sh.in_t[0] == t && sh.out_t[0] == t && !sh.by_address &&
         !strcmp(c.row->args, "v0:32") && !strcmp(c.row->ret, "v0:32");
}
// A one-argument register-form member of width W (one ymm in, one out) on xs.
template <class T, int W> Lanes direct_call(void* fn, const std::vector<uint64_t>& xs) {
  using V = typename std::conditional<sizeof(T) == 4, ocl_ravl_float8, ocl_ravl_double4>::type;
  static_assert(sizeof(V) == 32 && W * sizeof(T) == 32, "one ymm");
  const auto f = (V(OCL_RAVL_CC*)(V))fn;
  Lanes out(1, std::vector<uint64_t>(xs.size()));
  for (size_t at = 0; at < xs.size(); at += W) {
    T in[W], res[W];
    for (int j = 0; j < W; ++j) in[j] = from_bits<T>(xs[std::min(at + j, xs.size() - 1)]);
    V v;
    std::memcpy(&v, in, 32);
    v = f(v);
    std::memcpy(res, &v, 32);
    for (int j = 0; j < W && at + j < xs.size(); ++j) out[0][at + j] = bits(res[j]);
  }
  return out;
}

struct Binade {
  double worst = 0;
  uint32_t at = 0;
  uint64_t n = 0, above = 0;
};

int cmd_sweep(int argc, char** argv) {
  Options o = parse_options(argc, argv, 2);
  if (o.names.size() != 1) die("usage: ravl sweep FLOATNAME [--range a:b | --binades e0:e1]");
  const Callee& c = measurable(o.names[0]);
  const Shape& sh = c.shape;
  if (sh.nin != 1 || sh.in_t[0] != kS) die(signature(c) + ": sweep takes one-argument single exports");
  const Callee* twin = double_twin(c);
  // One result in a register: called directly, eight singles and four doubles
  // a call (the checked trampoline's bookkeeping costs more than the call).
  const bool direct = one_register_result(c, kS, 8) && (!twin || one_register_result(*twin, kD, 4));
  const double bound = class_bound(c.row->family, c.row->algorithm);
  // The inputs: intervals of bit patterns [a, b].
  std::vector<std::pair<uint64_t, uint64_t>> spans;
  auto add_values = [&](double lo, double hi) {  // the singles in [lo, hi], both signs
    if (hi >= 0) spans.push_back({lo > 0 ? bits((float)lo) : 0, bits((float)hi)});
    if (lo < 0) spans.push_back({hi < 0 ? bits((float)hi) : 0x80000000u, bits((float)lo)});
  };
  if (o.has_range) {
    add_values(o.range.lo, o.range.hi);
  } else if (o.has_binades) {
    if (o.e0 > o.e1 || o.e0 < -150 || o.e1 > 127) die("binades e0:e1 with -150 <= e0 <= e1 <= 127");
    const uint32_t a = o.e0 < -126 ? 0 : (uint32_t)(o.e0 + 127) << 23, b = ((uint32_t)(o.e1 + 128) << 23) - 1;
    spans.push_back({a, b});
    spans.push_back({a | 0x80000000u, b | 0x80000000u});
  } else {
    spans.push_back({0, 0xffffffffu});
  }
  uint64_t total = 0;
  for (auto& s : spans) total += s.second - s.first + 1;
  std::fprintf(stderr, "%s: %llu inputs on %u threads, screened against %s%s\n", signature(c).c_str(),
               (unsigned long long)total, o.threads, twin ? signature(*twin).c_str() : "MPFR",
               direct ? "" : " (through the checked trampoline)");

  // Per result, per (sign, biased exponent) of x: the max screened error.
  const int nres = sh.nout;
  std::vector<Binade> table((size_t)nres * 512);
  std::mutex mu;
  std::atomic<uint64_t> next{0}, done{0};
  const uint64_t kChunk = 1 << 16;
  auto input = [&](uint64_t i) {
    for (auto& s : spans) {
      if (i <= s.second - s.first) return (uint32_t)(s.first + i);
      i -= s.second - s.first + 1;
    }
    return 0u;
  };
  auto worker = [&] {
    std::vector<Binade> mine((size_t)nres * 512);
    std::vector<std::unique_ptr<Reference>> refs;
    for (int k = 0; k < nres; ++k) refs.emplace_back(new Reference(c.row->family, k, kS));
    Lanes x(1), xd(1);
    for (uint64_t at; (at = next.fetch_add(kChunk)) < total;) {
      const uint64_t m = std::min(kChunk, total - at);
      x[0].resize(m);
      xd[0].resize(m);
      for (uint64_t i = 0; i < m; ++i) {
        x[0][i] = input(at + i);
        xd[0][i] = bits((double)from_bits<float>(x[0][i]));
      }
      uint32_t f1 = 0, f2 = 0;
      const Lanes got = direct ? direct_call<float, 8>(c.fn, x[0]) : run_lanes_raw(&c, x, &f1);
      const Lanes ref = !twin ? Lanes() : direct ? direct_call<double, 4>(twin->fn, xd[0]) : run_lanes_raw(twin, xd, &f2);
      if (f1 | f2) die("convention fault: " + faults_text(f1 | f2));
      for (int k = 0; k < nres; ++k)
        for (uint64_t i = 0; i < m; ++i) {
          const uint32_t xb = (uint32_t)x[0][i];
          const double e = twin ? screen_ulp(from_bits<double>(ref[k][i]), from_bits<float>(got[k][i]))
                                : refs[k]->error(xb, 0, got[k][i]);
          Binade& b = mine[(size_t)k * 512 + (xb >> 23)];
          b.above += e > bound;
          if (!(e <= b.worst) || !b.n) b.worst = e, b.at = xb;  // the first input stands until a worse one
          ++b.n;
        }
      done += m;
    }
    std::lock_guard<std::mutex> lock(mu);
    for (size_t i = 0; i < table.size(); ++i) {
      Binade &t = table[i], &b = mine[i];
      if (b.n && (!(b.worst <= t.worst) || !t.n)) t.worst = b.worst, t.at = b.at;
      t.n += b.n, t.above += b.above;
    }
  };
  const auto t0 = std::chrono::steady_clock::now();
  std::vector<std::thread> pool;
  for (unsigned t = 0; t < o.threads; ++t) pool.emplace_back(worker);
  const bool tty = isatty(2);
  for (uint64_t last = 0; done < total;) {
    std::this_thread::sleep_for(std::chrono::milliseconds(tty ? 250 : 1000));
    const uint64_t d = done;
    const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    if (!tty && d - last < total / 10 && d < total) continue;
    last = d;
    const double rate = d / std::max(s, 1e-9), left = rate > 0 ? (total - d) / rate : 0;
    const int bar = (int)(30.0 * d / total);
    std::fprintf(stderr, "%s[%s%s] %5.1f%%  %.1f M/s  %dm%02ds left ", tty ? "\r" : "", std::string(bar, '#').c_str(),
                 std::string(30 - bar, '.').c_str(), 100.0 * d / total, rate * 1e-6, (int)left / 60, (int)left % 60);
    if (!tty) std::fprintf(stderr, "\n");
  }
  for (auto& th : pool) th.join();
  const double secs = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
  std::fprintf(stderr, "%sdone in %.1f s\n", tty ? "\n" : "", secs);

  // The table: the worst input of each binade measured again with MPFR.
  std::ostringstream md;
  md << "| result | binade of x | inputs | max ulp (MPFR) | worst x | above our bound (" << shortest(bound) << ") |\n"
     << "|---|---|---|---|---|---|\n";
  double overall = 0;
  uint32_t overall_at = 0;
  int overall_k = 0;
  for (int k = 0; k < nres; ++k) {
    Reference ref(c.row->family, k, kS);
    for (int i = 0; i < 512; ++i) {
      const Binade& b = table[(size_t)k * 512 + i];
      if (!b.n) continue;
      uint32_t f1;
      const Lanes got = run_lanes_raw(&c, Lanes{{b.at}}, &f1);
      const double e = ref.error(b.at, 0, got[k][0]);
      const int ex = (i & 255) - 127;
      char bin[64], worst[64];
      if ((i & 255) == 255) std::snprintf(bin, sizeof bin, "%sinf, NaN", i & 256 ? "-" : "+");
      else if ((i & 255) == 0) std::snprintf(bin, sizeof bin, "%sdenormal, 0", i & 256 ? "-" : "+");
      else std::snprintf(bin, sizeof bin, "%s[2^%d, 2^%d)", i & 256 ? "-" : "+", ex, ex + 1);
      std::snprintf(worst, sizeof worst, "%a", (double)from_bits<float>(b.at));
      char line[256];
      std::snprintf(line, sizeof line, "| %d | %s | %llu | %.4g | %s | %llu |\n", k, bin, (unsigned long long)b.n, e,
                    worst, (unsigned long long)b.above);
      md << line;
      if (!(e <= overall)) overall = e, overall_at = b.at, overall_k = k;
    }
  }
  char tail[200];
  std::snprintf(tail, sizeof tail, "\nmax %.4g ulp (result %d at x = %a) over %llu inputs; %s\n", overall, overall_k,
                (double)from_bits<float>(overall_at), (unsigned long long)total, bounds_text(*c.row).c_str());
  md << tail;
  std::fputs(md.str().c_str(), stdout);
  if (!o.out.empty()) std::ofstream(o.out) << "# " << signature(c) << "\n\n" << md.str();
  return 0;
}

bool read_file(const std::string& path, std::string* s) {
  std::ifstream f(path);
  if (!f) return false;
  std::stringstream b;
  b << f.rdbuf();
  *s = b.str();
  return true;
}

// ---- plot -----------------------------------------------------------------------------------

// Plots the errors of result 0 against x with gnuplot; false when gnuplot fails.
bool plot(const Callee& c, const Lanes& args, const Measured& m, const std::string& file) {
  const Shape& sh = c.shape;
  int k = 0;
  while (k < sh.nout && m.err[k].empty()) ++k;
  if (k == sh.nout) return false;
  const std::string data = file + ".dat";
  FILE* f = std::fopen(data.c_str(), "w");
  if (!f) return false;
  double lo = INFINITY, hi = -INFINITY, top = 0;
  for (size_t i = 0; i < args[0].size(); ++i) {
    const double x = lane_value(args[0][i], sh.in_t[0]), e = m.err[k][i];
    if (!std::isfinite(x) || !std::isfinite(e)) continue;
    std::fprintf(f, "%.17g %.17g\n", x, e);
    lo = std::min(lo, x), hi = std::max(hi, x), top = std::max(top, e);
  }
  std::fclose(f);
  const std::string name = c.row->name + kPrefix;
  const double ocl = bound_value(opencl_bound(*c.row)), ours = class_bound(c.row->family, c.row->algorithm);
  top = std::max({top, ocl, ours}) * 1.15;
  const bool svg = file.size() > 4 && file.compare(file.size() - 4, 4, ".svg") == 0;
  std::ostringstream gp;
  gp << "set terminal " << (svg ? "svg size 900,500" : "pngcairo size 900,500") << "\n"
     << "set output '" << file << "'\n"
     << "set title '" << name << ": error against MPFR (" << args[0].size() << " inputs)' noenhanced\n"
     << "set xlabel 'x'\nset ylabel 'error (ulp)'\nset key outside bottom center horizontal\nset grid\n"
     << (lo > 0 && hi / lo > 1e4 ? "set logscale x\n" : "") << "set xrange [" << lo << ":" << hi << "]\n" << "set yrange [0:" << (top > 0 ? top : 1) << "]\n"
     << "plot '" << data << "' using 1:2 with points pt 7 ps 0.3 title 'measured'";
  if (ocl > 0) gp << ", " << ocl << " with lines lw 2 title 'OpenCL bound (" << shortest(ocl) << " ulp)'";
  if (ours > 0) gp << ", " << ours << " with lines dt 2 title 'our bound (" << shortest(ours) << " ulp)'";
  gp << "\n";
  // gnuplot's messages are shown only when it fails (it warns about the
  // bound lines' samples on log axes spanning the whole double range).
  const std::string log = file + ".log";
  FILE* p = popen(("gnuplot 2>'" + log + "'").c_str(), "w");
  if (!p) return false;
  std::fputs(gp.str().c_str(), p);
  const int rc = pclose(p);
  std::string msgs;
  if (rc != 0 && read_file(log, &msgs)) std::fputs(msgs.c_str(), stderr);
  std::remove(data.c_str());
  std::remove(log.c_str());
  struct stat st;
  return rc == 0 && stat(file.c_str(), &st) == 0 && st.st_size > 0;
}

int cmd_plot(int argc, char** argv) {
  Options o = parse_options(argc, argv, 2);
  if (o.names.size() != 1) die("usage: ravl plot NAME [--range a:b] [-o file.png|file.svg]");
  const Callee& c = measurable(o.names[0]);
  Interval used;
  const Lanes args = make_inputs(c, o, o.n ? o.n : 4000, &used);
  const std::string file = o.out.empty() ? std::string(c.row->name + kPrefix) + ".png" : o.out;
  if (!plot(c, args, measure(c, args, o.threads), file)) die("gnuplot could not write " + file);
  std::printf("%s: x %s -> %s\n", signature(c).c_str(), interval_text(used).c_str(), file.c_str());
  return 0;
}

// ---- report ---------------------------------------------------------------------------------

const char kBegin[] = "<!-- ravl-report:begin (generated by `ravl report --readme README.md`; do not edit) -->";
const char kEnd[] = "<!-- ravl-report:end -->";

// The table: one row per family and algorithm (its classes together), max
// error over every range of the accuracy rows with n samples each.
std::string report_table(size_t n, unsigned threads, const std::string& plot_dir, std::string* plots_md) {
  std::ostringstream t;
  t << "| family | classes | max ulp measured | inputs | OpenCL bound | our bound |\n|---|---|---|---|---|---|\n";
  std::vector<std::string> families;
  for (const ExportRow& e : kExports)
    if (has_reference(e.family) && std::find(families.begin(), families.end(), e.family) == families.end())
      families.push_back(e.family);
  const std::vector<Range> all = ranges();
  for (const std::string& fam : families) {
    std::vector<std::string> algs;
    for (const ExportRow& e : kExports)
      if (fam == e.family && std::find(algs.begin(), algs.end(), e.algorithm) == algs.end()) algs.push_back(e.algorithm);
    for (const std::string& alg : algs) {
      const Callee* c = nullptr;
      std::string classes, ocl = "-";
      std::set<std::string> seen;
      for (const ExportRow& e : kExports)
        if (fam == e.family && alg == e.algorithm) {
          if (!c || e.width > c->shape.w) c = find_callee(e.name + kPrefix);
          if (!seen.insert(e.cls).second) continue;
          classes += (classes.empty() ? "" : ", ") + std::string(e.cls);
          // The algorithm answers for its strictest class.
          const std::string b = opencl_bound(e);
          if (b != "-" && (ocl == "-" || bound_value(b) < bound_value(ocl))) ocl = b;
        }
      if (!c) continue;
      double worst = 0;
      size_t count = 0;
      Lanes first_args;
      Measured first;
      Options o;
      for (const Range& r : all) {
        if (fam != r.family) continue;
        o.seed = std::hash<std::string>()(fam + r.name);
        o.has_range = true;
        o.range = {r.lo, r.hi, r.how != kUniform};
        o.by_bits = r.how != kUniform;
        o.has_yrange = r.ylo || r.yhi;
        o.yrange = {r.ylo, r.yhi, r.yhow == kBitPatterns, r.yhow == kIntegers};
        Interval used;
        const Lanes args = make_inputs(*c, o, n, &used);
        Measured m = measure(*c, args, threads);
        const bool normal_only = normal_only_bound(fam, alg);
        for (const auto& errs : m.err)
          for (size_t i = 0; i < errs.size(); ++i)
            if (!normal_only || (c->shape.in_t[0] == kS ? std::isnormal(from_bits<float>(args[0][i]))
                                                        : std::isnormal(from_bits<double>(args[0][i]))))
              worst = std::max(worst, std::isnan(errs[i]) ? INFINITY : errs[i]);
        count += n;
        if (first_args.empty()) first_args = args, first = std::move(m);
      }
      const double ours = class_bound(fam, alg);
      char row[256];
      char ours_text[32] = "-";
      if (ours) std::snprintf(ours_text, sizeof ours_text, "%.6g", ours);
      std::snprintf(row, sizeof row, "| `%s` | %s | %.4g | %zu | %s | %s |\n", fam.c_str(), classes.c_str(), worst, count,
                    ocl.c_str(), ours_text);
      t << row;
      if (!plot_dir.empty() && alg == algs[0] && !first_args.empty()) {
        const std::string file = fam + ".png";
        if (plot(*c, first_args, first, plot_dir + "/" + file))
          *plots_md += "### `" + fam + "`\n\n![" + fam + "](plots/" + file + ")\n\n";
      }
    }
  }
  return t.str();
}


// Whether two accuracy tables say the same: every cell equal, except that a
// measured maximum may differ from the other table's by up to a factor of 2
// while both stay within the row's bound. The hardware estimates (vrcpps,
// vrsqrtps) that some classes start from are exact to 2^-11 or so on every
// processor but not bit for bit the same between vendors, so those classes'
// measured maxima move by that much from one machine to another; any other
// change (a row, a bound, a sample count, a measured value moving further or
// past its bound) makes the table stale.
bool same_table(const std::string& a, const std::string& b) {
  auto lines = [](const std::string& t) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream in(t);
    for (std::string line; std::getline(in, line);) {
      std::vector<std::string> cells;
      std::istringstream cs(line);
      for (std::string c; std::getline(cs, c, '|');) cells.push_back(c);
      rows.push_back(cells);
    }
    return rows;
  };
  const auto ra = lines(a), rb = lines(b);
  if (ra.size() != rb.size()) return false;
  for (size_t i = 0; i < ra.size(); ++i) {
    if (ra[i] == rb[i]) continue;
    // | family | classes | measured | inputs | OpenCL bound | our bound |
    if (ra[i].size() != 7 || rb[i].size() != 7) return false;
    for (int k : {0, 1, 2, 4, 5, 6})
      if (ra[i][k] != rb[i][k]) return false;
    const double x = std::atof(ra[i][3].c_str()), y = std::atof(rb[i][3].c_str()), bound = std::atof(ra[i][6].c_str());
    if (!(x <= bound && y <= bound && x <= 2 * y && y <= 2 * x)) return false;
  }
  return true;
}

int cmd_report(int argc, char** argv) {
  Options o = parse_options(argc, argv, 2);
  const size_t n = o.n ? o.n : 2000;
  const bool page = o.readme.empty() && o.check.empty();
  const std::string dir = o.out.empty() ? "ravl-report" : o.out;
  std::string plots_md;
  if (page) mkdir(dir.c_str(), 0755), mkdir((dir + "/plots").c_str(), 0755);
  const std::string table = report_table(n, o.threads, page && o.plots ? dir + "/plots" : "", &plots_md);
  const std::string block = std::string(kBegin) + "\n" + "Max error against MPFR over every input range of the accuracy tests, " +
                            std::to_string(n) + " samples per range (`ravl report`); our bound is the one the tests " +
                            "assert (measured on 2^24 inputs or more, every single where stated).\n\n" + table + kEnd;
  if (page) {
    std::ofstream(dir + "/accuracy.md") << "# libocl_ravl_l9 accuracy\n\n" << block << "\n\n"
                                        << (plots_md.empty() ? "" : "## Error plots (plain class)\n\n" + plots_md);
    std::printf("%s", table.c_str());
    std::printf("wrote %s/accuracy.md\n", dir.c_str());
    return 0;
  }
  const std::string path = o.readme.empty() ? o.check : o.readme;
  std::string text;
  if (!read_file(path, &text)) die("cannot read " + path);
  const size_t a = text.find(kBegin), b = text.find(kEnd);
  if (a == std::string::npos || b == std::string::npos || b < a) die(path + " has no ravl-report markers");
  const std::string now = text.substr(a, b + sizeof kEnd - 1 - a);
  if (!o.check.empty()) {
    if (same_table(now, block)) return std::printf("%s: the accuracy table is current\n", path.c_str()), 0;
    std::printf("%s: the accuracy table is not current; run: ravl report --n %zu --readme %s\n", path.c_str(), n,
                path.c_str());
    return 1;
  }
  std::ofstream(path) << text.substr(0, a) << block << text.substr(b + sizeof kEnd - 1);
  std::printf("%s: accuracy table replaced\n", path.c_str());
  return 0;
}

// ---- bench ------------------------------------------------------------------------------------

std::string bench_binary() {
  if (const char* e = std::getenv("RAVL_BENCH")) return e;
  char self[4096];
  const ssize_t len = readlink("/proc/self/exe", self, sizeof self - 1);
  if (len > 0) {
    self[len] = 0;
    std::string beside = std::string(self).substr(0, std::string(self).rfind('/') + 1) + "ravl_bench";
    if (access(beside.c_str(), X_OK) == 0) return beside;
  }
  return RAVL_BENCH_PATH;
}

int cmd_bench(int argc, char** argv) {
  std::string filter;
  std::vector<std::string> asked;
  // An entry asked for by name, by name without the class, or by family
  // (the benchmark's filter is looser: substrings).
  auto wanted = [&](const std::string& entry) {
    const Callee* c = find_callee(entry);
    for (const std::string& q : asked)
      if (entry == q || entry.compare(0, q.size() + 1, q + "_") == 0 || (c && q == c->row->family)) return true;
    return asked.empty() && entry != "fabsf8";
  };
  for (int a = 2; a < argc; ++a) {
    const std::string name = short_name(argv[a]);
    bool known = false;
    for (const ExportRow& e : kExports) known |= name == e.name + kPrefix || name == e.family;
    if (!known) resolve(name);
    filter += (filter.empty() ? "" : "|") + name;
    asked.push_back(name);
  }
  const std::string bin = bench_binary();
  if (bin.empty() || access(bin.c_str(), X_OK) != 0) die("no benchmark binary (build bench/ravl_bench, or set RAVL_BENCH)");
  const std::string cmd = "'" + bin + "' --tsv '" + filter + "'";
  FILE* p = popen(cmd.c_str(), "r");
  if (!p) die("cannot run " + bin);
  std::map<std::string, double> ns;
  std::vector<std::pair<std::string, std::string>> ours;  // entry, peer
  char line[512];
  while (std::fgets(line, sizeof line, p)) {
    if (line[0] == '#') continue;
    char name[128], peer[128];
    double t;
    int lanes;
    if (std::sscanf(line, "%127[^\t]\t%lf\t%d\t%127[^\t\n]", name, &t, &lanes, peer) != 4) continue;
    ns[name] = t;
    if (std::strncmp(name, "sleef ", 6) != 0 && wanted(name)) ours.push_back({name, peer});
  }
  if (pclose(p) != 0) die("the benchmark failed: " + cmd);
  std::printf("| entry | ns/element | SLEEF | SLEEF ns/element | SLEEF / ours |\n|---|---|---|---|---|\n");
  for (const auto& r : ours) {
    const auto it = ns.find(r.second);
    if (it == ns.end()) std::printf("| %s | %.3f | - | - | - |\n", r.first.c_str(), ns[r.first]);
    else std::printf("| %s | %.3f | %s | %.3f | %.2fx |\n", r.first.c_str(), ns[r.first], r.second.c_str() + 6,
                     it->second, it->second / ns[r.first]);
  }
  if (ours.empty()) std::printf("(no benchmarked entry matches: the benchmark times the plain and _native members at each family's comparison width)\n");
  return 0;
}

int cmd_list(int argc, char** argv) {
  const std::string filter = argc > 2 ? argv[2] : "";
  for (const auto& kv : callees())
    if (kv.first.find(filter) != std::string::npos)
      std::printf("%-36s %s\n", kv.first.c_str(), signature(kv.second).c_str());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string verb = argc > 1 ? argv[1] : "--help";
  if (verb == "--help" || verb == "-h" || verb == "help") return std::fputs(kHelp, stdout), 0;
  if (!so_handle()) die(std::string("cannot load ") + RAVL_SO_PATH + ": " + dlerror());
  if (verb == "eval") return cmd_eval(argc, argv);
  if (verb == "ulp") return cmd_ulp(argc, argv);
  if (verb == "sweep") return cmd_sweep(argc, argv);
  if (verb == "plot") return cmd_plot(argc, argv);
  if (verb == "report") return cmd_report(argc, argv);
  if (verb == "bench") return cmd_bench(argc, argv);
  if (verb == "list") return cmd_list(argc, argv);
  die("unknown verb " + verb + " (eval, ulp, sweep, plot, report, bench, list; ravl --help)");
}
