// Accuracy against MPFR of every algorithm of the one-argument floating
// families: one bound per (family, algorithm), the one place it is kept (the
// kernels' comments quote the measured figures), and each family's ranges;
// every range is run on the width-16 member of the first class of every
// algorithm (the export tests show every width and every class of one
// algorithm give the same bits). Inputs per range: samples over the range
// (uniform in value, uniform in bit pattern over many binades), random bit
// patterns over the whole format, the points of the family's special-value
// table with 64 neighbours on each side, and the special values; or every bit
// pattern of a small range whose lanes all go to one scalar routine. RAVL_ACCURACY_SCALE=k multiplies the sample counts.
#include <algorithm>
#include <cfloat>
#include <iomanip>
#include <map>
#include <set>

#include "common/call.h"
#include "common/tables.h"

namespace ravl_test {
namespace {

const std::map<std::string, MpfrFn> kMpfr = {
    {"exp", mpfr_exp},     {"exp2", mpfr_exp2}, {"exp10", mpfr_exp10}, {"expm1", mpfr_expm1},
    {"log", mpfr_log},     {"log2", mpfr_log2}, {"log10", mpfr_log10}, {"log1p", mpfr_log1p},
    {"sin", mpfr_sin},     {"cos", mpfr_cos},   {"tan", mpfr_tan},     {"sincos", mpfr_sin},
    {"sincosreg", mpfr_sin}};
// The second result of the two-result families.
const std::map<std::string, MpfrFn> kMpfrSecond = {{"sincos", mpfr_cos}, {"sincosreg", mpfr_cos}};

// Families whose results are odd (o) or even (e) in x, one letter per
// result: f(-x) must be -f(x) or f(x) bit for bit at every finite x, in every
// algorithm.
const struct {
  const char *family, *parity;
} kParity[] = {{"sin", "o"}, {"cos", "e"}, {"tan", "o"}, {"sincos", "oe"}, {"sincosreg", "oe"}};

// Asserted max error, ulp; the measured maxima (2^24 samples or more) in the comments.
const struct {
  const char *family, *algorithm;
  double ulp;
} kBounds[] = {
    {"exp", "full", 1.0},       // 0.519
    {"exp", "fast", 2.98e7},    // 2.972e7 (relative 3.3e-9: the degree-2 polynomial's r^3/6 at ln2/256)
    {"expf", "full", 1.0},      // 0.748
    {"expf", "fast", 1780},     // 1775.5 (half_exp allows 8192)
    {"exp2", "full", 0.76},     // 0.522 on normal results, 0.7503 on denormal ones (two roundings)
    {"exp2", "fast", 1.53e7},   // 1.528e7 (relative 1.9e-9)
    {"exp2f", "full", 0.62},    // 0.615
    {"exp2f", "fast", 1235},    // 1230
    {"exp10", "full", 0.51},    // 0.508
    {"exp10", "fast", 2.83e7},  // 2.827e7 (relative 4.4e-9)
    {"exp10f", "full", 0.53},   // 0.525
    {"exp10f", "fast", 2150},   // 2148
    {"expm1", "full", 0.51},    // 0.5044
    {"expm1", "fast", 221},     // 220.2
    {"expm1f", "full", 0.501},  // 0.5000
    {"expm1f", "fast", 8.7},    // 8.60
    {"log", "full", 1.001},     // 0.732; denormal x (the scalar routine, two roundings) 0.9999
    {"log", "fast", 3e6},       // 2.09e6 just below 1 (relative 2.3e-10, the r^4/4 truncation)
    {"log2", "full", 0.502},    // 0.5004
    {"log2", "fast", 2e6},      // 1.782e6 (relative 2.0e-10)
    {"log10", "full", 0.502},   // 0.5007
    {"log10", "fast", 2e6},     // 1.823e6 (relative 2.0e-10)
    {"logf", "full", 0.59},     // 0.5871 (every positive normal single)
    {"logf", "fast", 2.7},      // 2.645
    {"logf", "half", 1000},     // 909.8 (half_log allows 8192)
    {"log2f", "full", 0.64},    // 0.6336
    {"log2f", "fast", 4},       // 3.987
    {"log10f", "full", 0.58},   // 0.5777
    {"log10f", "fast", 3},      // 2.918
    {"log1p", "full", 0.501},   // 0.5003
    {"log1p", "fast", 2.7},     // 2.645 (x near 2^-11: T(1023) + r cancels to half)
    {"log1pf", "full", 0.67},   // 0.6602 (every single in (-1, 2^127))
    {"log1pf", "fast", 3.5},    // 3.419
    // Single trigonometric families: every positive single (tools/exhaustive/exhaustive_trigf.cpp).
    {"sinf", "full", 2.38},       // 2.370 fast path (the designed kernel), 0.5005 full range
    {"sinf", "fast", 2525},       // 2524.5 (the degree-5 kernel; half_sin allows 8192)
    {"cosf", "full", 2.36},       // 2.356, 0.5005 full range
    {"cosf", "fast", 2536},       // 2535.97
    {"tanf", "full", 3.66},       // 3.651 fast path, 0.5011 full range
    {"tanf", "fast", 984},        // 983.7 near odd multiples of pi/2 (pi/2 in two pieces)
    {"sincosf", "full", 2.19},    // sine 2.148, cosine 2.152; above 2^19 2.182 and 2.176
    {"sincosregf", "full", 2.19},  // the bits of sincosf
    {"sincosregf", "fast", 2.19},  // the bits of sincosf
};

enum Sampling { kUniform, kBitPatterns, kEvery };
struct Range {
  const char *family, *name;
  double lo, hi;  // for kBitPatterns and kEvery: of one sign
  Sampling how = kUniform;
  double ulp = 0;  // a tighter bound than the algorithm's, for the full algorithm only
};
constexpr double kDMin = DBL_MIN, kDMax = DBL_MAX, kFMin = FLT_MIN, kFMax = FLT_MAX;
const Range kRanges[] = {
    {"exp", "wide", -750, 720},
    {"expf", "wide", -105, 90},
    {"exp2", "wide", -1080, 1030},
    {"exp2f", "wide", -155, 130},
    // The single scalar routines, correctly rounded on every single they get.
    {"exp2f", "flagged_above", 0x1.f80002p6, 128.5, kEvery, 0.5},
    {"exp2f", "flagged_below", -0x1.f80002p6, -150.5, kEvery, 0.5},
    {"exp10", "wide", -330, 315},
    {"exp10f", "wide", -46, 39},
    {"exp10f", "flagged_above", 0x1.2f7032p+5, 38.6, kEvery, 0.5},
    {"exp10f", "flagged_below", -0x1.2f7032p+5, -45.2, kEvery, 0.5},
    {"expm1", "moderate", -3, 3},
    {"expm1", "wide", -45, 712},
    {"expm1", "tiny", 0x1p-60, 2, kBitPatterns},
    {"expm1f", "moderate", -3, 3},
    {"expm1f", "wide", -25, 90},
    {"expm1f", "tiny", 0x1p-30, 2, kBitPatterns},
    {"log1p", "moderate", -1, 3},
    {"log1p", "wide", 1, 0x1p1000, kBitPatterns},
    {"log1p", "tiny", 0x1p-60, 1, kBitPatterns},
    {"log1pf", "moderate", -1, 3},
    {"log1pf", "wide", 1, kFMax, kBitPatterns},
    {"log1pf", "tiny", 0x1p-30, 1, kBitPatterns},
    // Single sine, cosine and tangent: the fast paths, every single within
    // 100 of their bounds, and the full-range paths up to FLT_MAX.
    {"sinf", "moderate", -10000, 10000},
    {"sinf", "tiny", 0x1p-40, 2, kBitPatterns},
    {"sinf", "bound", 9900, 10100, kEvery},
    {"sinf", "huge", 10000, kFMax, kBitPatterns},
    {"cosf", "moderate", -10000, 10000},
    {"cosf", "bound", 9900, 10100, kEvery},
    {"cosf", "huge", 10000, kFMax, kBitPatterns},
    {"tanf", "moderate", -8256, 8256},
    {"tanf", "tiny", 0x1p-40, 2, kBitPatterns},
    {"tanf", "bound", 8156, 8356, kEvery},
    {"tanf", "huge", 8256, kFMax, kBitPatterns},
    {"sincosf", "moderate", -524288, 524288},
    {"sincosf", "bound", 520000, 530000, kEvery},
    {"sincosf", "huge", 524288, kFMax, kBitPatterns},
    {"sincosregf", "moderate", -524288, 524288},
    {"sincosregf", "huge", 524288, kFMax, kBitPatterns},
};
// The logarithms: every positive normal, around 1 (where the result
// cancels), and the denormals (the scalar routines).
std::vector<Range> ranges() {
  std::vector<Range> v(std::begin(kRanges), std::end(kRanges));
  for (const char* f : {"log", "log2", "log10", "logf", "log2f", "log10f"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    v.push_back({f, "wide", single ? kFMin : kDMin, single ? kFMax : kDMax, kBitPatterns});
    v.push_back({f, "near1", 0.5, 2.0});
    v.push_back({f, "denormal", single ? 0x1p-149 : 0x1p-1074, single ? 0x1p-126 : kDMin, kBitPatterns});
  }
  return v;
}

struct Row {
  Range range;
  std::string cls, algorithm;
  double bound;
};
void PrintTo(const Row& r, std::ostream* os) {
  *os << r.range.family << " " << r.cls << " over [" << std::setprecision(9) << r.range.lo << ", " << r.range.hi
      << "] within " << r.bound << " ulp";
}
std::string row_name(const ::testing::TestParamInfo<Row>& info) {
  return std::string(info.param.range.family) + "_" + info.param.cls + "_" + info.param.range.name;
}

// Every range with every algorithm of its family (through its first class).
std::vector<Row> rows() {
  std::vector<Row> v;
  for (const Range& r : ranges())
    for (const ExportRow& e : kExports) {
      const bool first = e.width == 16 && r.family == std::string(e.family) &&
                         std::none_of(v.begin(), v.end(), [&](const Row& w) {
                           return w.range.name == r.name && w.range.family == r.family && w.algorithm == e.algorithm;
                         });
      if (first && (!r.ulp || !strcmp(e.algorithm, "full")))
        v.push_back({r, e.cls, e.algorithm, r.ulp ? r.ulp : class_bound(r.family, e.algorithm)});
    }
  return v;
}

int scale() {
  const char* s = std::getenv("RAVL_ACCURACY_SCALE");
  return s ? std::max(1, std::atoi(s)) : 1;
}

template <class T> std::vector<T> inputs(const Row& row) {
  const Range& r = row.range;
  Rng g(std::hash<std::string>()(r.family + std::string(r.name)));
  const int n = (sizeof(T) == 8 ? 1 << 17 : 1 << 18) * scale();
  const double s = std::signbit(r.lo) ? -1 : 1;
  const uint64_t a = bits((T)std::fabs(r.lo)), b = bits((T)std::fabs(r.hi));
  const uint64_t lo = std::min(a, b), span = std::max(a, b) - lo, step = std::max<uint64_t>(1, span / n);
  std::vector<T> in;
  if (r.how == kEvery)
    for (uint64_t u = 0; u <= span; u += step) in.push_back((T)s * from_bits<T>(lo + u));
  for (int i = 0; i < n && r.how != kEvery; ++i)
    in.push_back(r.how == kUniform ? (T)(r.lo + (r.hi - r.lo) * (double)(g.next() >> 11) * 0x1p-53)
                                   : (T)s * from_bits<T>(lo + g.next() % (span + 1)));
  if (r.how == kEvery) return in;
  for (int i = 0; i < n / 4; ++i) in.push_back(from_bits<T>(g.next()));
  for (double p : table_points(r.family)) {
    T x = (T)p, y = (T)p;
    for (int k = 0; k < 64 && std::isfinite(x); ++k, x = std::nextafter(x, (T)INFINITY), y = std::nextafter(y, -(T)INFINITY))
      in.insert(in.end(), {x, -x, y});
  }
  for (T x : {T(0), T(-0.0), T(INFINITY), T(-INFINITY), T(NAN), T(1), T(-1), T(0.5), T(2)}) in.push_back(x);
  return in;
}

template <class T> void check(const Row& row) {
  const std::vector<T> in = inputs<T>(row);
  std::vector<uint64_t> x(in.size());
  for (size_t i = 0; i < in.size(); ++i) x[i] = bits(in[i]);
  const std::string name = member(row.range.family, row.cls, 16);
  const Lanes outs = run_lanes(name, {x});
  for (int k = 0; k < (int)outs.size() && mpfr_of(row.range.family, k); ++k) {
    const std::vector<uint64_t>& out = outs[k];
    UlpRef<T> ref(mpfr_of(row.range.family, k));
    double worst = 0;
    size_t at = 0;
    for (size_t i = 0; i < in.size(); ++i) {
      const double e = ref.ulp_error(in[i], from_bits<T>(out[i]));
      if (!(e <= worst)) worst = e, at = i;
    }
    const T got = from_bits<T>(out[at]);
    std::printf("%s result %d: max %.4g ulp over %zu inputs, worst x = %a (got %a, want %a)\n", name.c_str(), k, worst,
                in.size(), (double)in[at], (double)got, (double)ref.correct(in[at]));
    EXPECT_LE(worst, row.bound) << name << " result " << k << " at x = " << hex(in[at]) << ": got " << hex(got);
  }
}

class Accuracy : public ::testing::TestWithParam<Row> {};

TEST_P(Accuracy, WithinBound) {
  const Row& row = GetParam();
  ASSERT_GT(row.bound, 0) << "no bound for " << row.range.family << " " << row.algorithm;
  if (callee(member(row.range.family, row.cls, 16))->shape.in_t[0] == kS) check<float>(row);
  else check<double>(row);
}

INSTANTIATE_TEST_SUITE_P(, Accuracy, ::testing::ValuesIn(rows()), row_name);

// Odd and even families, every algorithm at width 16 (through its first
// class), on random bit patterns of every exponent and on the family's ranges.
template <class T> void check_parity(const ExportRow& e, const char* parity) {
  Rng g(std::hash<std::string>()(e.name));
  std::vector<uint64_t> x, neg;
  for (const Range& r : ranges())
    for (int i = 0; i < (1 << 12) && r.family == std::string(e.family); ++i)
      x.push_back(bits((T)(r.lo + (r.hi - r.lo) * (double)(g.next() >> 11) * 0x1p-53)));
  for (int i = 0; i < (1 << 16); ++i) x.push_back(bits(from_bits<T>(g.next())));
  x.erase(std::remove_if(x.begin(), x.end(), [](uint64_t b) { return !std::isfinite(from_bits<T>(b)); }), x.end());
  for (uint64_t b : x) neg.push_back(bits(-from_bits<T>(b)));
  const Lanes a = run_lanes(e.name + kPrefix, {x}), b = run_lanes(e.name + kPrefix, {neg});
  const uint64_t sign = sizeof(T) == 8 ? 1ull << 63 : 1u << 31;
  for (size_t k = 0; k < a.size() && parity[k]; ++k)
    for (size_t i = 0, bad = 0; i < x.size() && bad < 5; ++i)
      if (b[k][i] != (parity[k] == 'o' ? a[k][i] ^ sign : a[k][i]) && ++bad)
        ADD_FAILURE() << e.name << " result " << k << " is not " << (parity[k] == 'o' ? "odd" : "even") << " at "
                      << hex(from_bits<T>(x[i])) << ": " << hex(from_bits<T>(a[k][i])) << " and "
                      << hex(from_bits<T>(b[k][i]));
}

TEST(Parity, OddAndEvenFamiliesBitForBit) {
  std::set<std::string> seen;
  for (const auto& p : kParity)
    for (const std::string fam : {std::string(p.family), std::string(p.family) + "f"})
      for (const ExportRow& e : kExports)
        if (e.width == 16 && e.family == fam && seen.insert(fam + e.algorithm).second) {
          if (callee(e.name + kPrefix)->shape.in_t[0] == kS) check_parity<float>(e, p.parity);
          else check_parity<double>(e, p.parity);
        }
}

}  // namespace

MpfrFn mpfr_of(const std::string& family, int result) {
  const std::map<std::string, MpfrFn>& m = result == 0 ? kMpfr : kMpfrSecond;
  auto it = m.find(family);
  if (it == m.end() && !family.empty() && family.back() == 'f') it = m.find(family.substr(0, family.size() - 1));
  return it == m.end() || result > 1 ? nullptr : it->second;
}

double class_bound(const std::string& family, const std::string& algorithm) {
  for (const auto& b : kBounds)
    if (family == b.family && algorithm == b.algorithm) return b.ulp;
  return 0;
}

// Every algorithm of every family with an MPFR function has a bound and a range.
TEST(AccuracyRows, EveryAlgorithmHasABoundAndARange) {
  const std::vector<Row> all = rows();
  for (const ExportRow& e : kExports)
    if (mpfr_of(e.family)) {
      EXPECT_GT(class_bound(e.family, e.algorithm), 0) << e.family << " " << e.algorithm;
      EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const Row& r) { return r.range.family == std::string(e.family); }))
          << e.family << " has no range";
    }
}

}  // namespace ravl_test
