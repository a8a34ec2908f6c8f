// Accuracy against MPFR of every algorithm of the floating families, from
// the rows of accuracy_rows.cpp (MPFR function, bound, ranges): every range
// is run on the width-16 member of the first class of every algorithm (the
// export tests show every width and every class of one algorithm give the
// same bits). Inputs per range: samples over the range (uniform in value,
// uniform in bit pattern over many binades), random bit patterns over the
// whole format, the points of the family's special-value table with 64
// neighbours on each side, and the special values; or every bit pattern of a
// small range whose lanes all go to one scalar routine.
// RAVL_ACCURACY_SCALE=k multiplies the sample counts.
#include <algorithm>
#include <cfloat>
#include <iomanip>
#include <map>
#include <set>

#include "common/call.h"
#include "common/tables.h"

namespace ravl_test {
namespace {

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

// The second arguments of a two-argument row, one per first argument, as
// lane bits of type t, and as doubles for the reference.
template <class T> void second_inputs(const Range& r, Lane t, size_t n, std::vector<uint64_t>& lanes,
                                      std::vector<double>& values) {
  Rng g(std::hash<std::string>()(r.family + std::string(r.name) + "y"));
  const double s = std::signbit(r.ylo) ? -1 : 1;
  const uint64_t a = bits((T)std::fabs(r.ylo)), b = bits((T)std::fabs(r.yhi));
  const uint64_t lo = std::min(a, b), span = std::max(a, b) - lo;
  for (size_t i = 0; i < n; ++i) {
    const bool wild = g.next() % 8 == 0;
    if (t == kI) {
      const int32_t k = wild ? (int32_t)g.next()
                             : (int32_t)(r.ylo + (double)(g.next() % (uint64_t)(r.yhi - r.ylo + 1)));
      lanes.push_back((uint32_t)k);
      values.push_back(k);
      continue;
    }
    const T y = wild ? from_bits<T>(g.next())
                : r.yhow == kIntegers ? (T)std::round(r.ylo + (r.yhi - r.ylo) * (double)(g.next() >> 11) * 0x1p-53)
                : r.yhow == kUniform ? (T)(r.ylo + (r.yhi - r.ylo) * (double)(g.next() >> 11) * 0x1p-53)
                                     : (T)s * from_bits<T>(lo + g.next() % (span + 1));
    lanes.push_back(bits(y));
    values.push_back(y);
  }
}

template <class T> void check(const Row& row) {
  const std::vector<T> in = inputs<T>(row);
  std::vector<uint64_t> x(in.size()), y;
  std::vector<double> yv;
  for (size_t i = 0; i < in.size(); ++i) x[i] = bits(in[i]);
  const std::string name = member(row.range.family, row.cls, 16);
  const Shape& sh = callee(name)->shape;
  if (sh.nin == 2) second_inputs<T>(row.range, sh.in_t[1], in.size(), y, yv);
  const Lanes outs = run_lanes(name, sh.nin == 2 ? Lanes{x, y} : Lanes{x});
  for (int k = 0; k < (int)outs.size() && (mpfr_of(row.range.family, k) || (k == 0 && mpfr2_of(row.range.family)));
       ++k) {
    const std::vector<uint64_t>& out = outs[k];
    UlpRef<T> ref(mpfr_of(row.range.family, k), mpfr2_of(row.range.family));
    double worst = 0;
    size_t at = 0;
    const bool normal_only = normal_only_bound(row.range.family, row.algorithm);
    for (size_t i = 0; i < in.size(); ++i) {
      if (normal_only && !(std::isnormal(in[i]) || std::isnan(in[i]))) continue;
      const double e = ref.ulp_error2(in[i], yv.empty() ? 0 : yv[i], from_bits<T>(out[i]));
      if (!(e <= worst)) worst = e, at = i;
    }
    const T got = from_bits<T>(out[at]);
    const double y_at = yv.empty() ? 0 : yv[at];
    char ytext[48] = "";
    if (!yv.empty()) std::snprintf(ytext, sizeof ytext, ", y = %a", y_at);
    std::printf("%s result %d: max %.4g ulp over %zu inputs, worst x = %a%s (got %a, want %a)\n", name.c_str(), k,
                worst, in.size(), (double)in[at], ytext, (double)got, (double)ref.correct(in[at], y_at));
    EXPECT_LE(worst, row.bound) << name << " result " << k << " at x = " << hex(in[at]) << ", y = " << y_at
                                << ": got " << hex(got);
  }
  // An exact integer second result (lgammar's sign), lane by lane.
  if (IntSecond want = int_second_of(row.range.family)) {
    size_t bad = 0, at = 0;
    for (size_t i = 0; i < in.size(); ++i)
      if ((int32_t)outs[1][i] != want(in[i]) && !bad++) at = i;
    EXPECT_EQ(bad, 0u) << name << " second result at x = " << hex(in[at]) << ": got " << (int32_t)outs[1][at]
                       << ", want " << want(in[at]);
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
  for (const Parity& p : parity_rows())
    for (const std::string fam : {std::string(p.family), std::string(p.family) + "f"})
      for (const ExportRow& e : kExports)
        if (e.width == 16 && e.family == fam && seen.insert(fam + e.algorithm).second) {
          if (callee(e.name + kPrefix)->shape.in_t[0] == kS) check_parity<float>(e, p.parity);
          else check_parity<double>(e, p.parity);
        }
}

}  // namespace


// Every algorithm of every family with an MPFR function has a bound and a range.
TEST(AccuracyRows, EveryAlgorithmHasABoundAndARange) {
  const std::vector<Row> all = rows();
  for (const ExportRow& e : kExports)
    if (has_reference(e.family)) {
      EXPECT_GT(class_bound(e.family, e.algorithm), 0) << e.family << " " << e.algorithm;
      EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const Row& r) { return r.range.family == std::string(e.family); }))
          << e.family << " has no range";
    }
}

}  // namespace ravl_test
