// Width handling, the lane mask, the callout frame and the lane loop: the
// part of every entry point that is not the family's arithmetic.
//
// A family kernel is a struct that computes one register's worth of lanes:
//
//   struct full : frame::Kernel {
//     using sig = double(double);          // lane types: result(inputs...)
//     template <int L> static Vec<double, L> vec(Vec<double, L> x);
//     // with a callout:
//     static constexpr bool has_callout = true;
//     template <int L> static Mask<double, L> special(Vec<double, L> x, Vec<double, L> r);
//     template <int L> static Mask<double, L> settle(Vec<double, L> x, Vec<double, L>& r,
//                                                   Mask<double, L> flagged);   // optional
//     static int scalar(const double* x, double* r);
//     static constexpr bool tied = true;   // optional: special() reads r
//   };
//
// Signatures: `R(A...)` with lane types double, float, int32_t, uint32_t,
// int64_t, uint64_t. An argument `P*` (always last) is a second result stored
// through a pointer; `Two<R0, R1>` as R is a pair of register results. The
// kernel's `vec` returns the result chunk, or `Two<chunk, chunk>` for two
// results; `special`, `settle` and `scalar` see the inputs then the results.
//
// Entry<K, W> turns that into width W (1, 2, 3, 4, 8 or 16):
// - a chunk is L lanes in one register: 256 bits for widths 3 and up (4 double
//   or 64-bit lanes, 8 lanes when every lane is 32-bit, or 4 at widths 3 and
//   4), 128 bits for widths 1 and 2; width 1 works on its argument broadcast
//   to every lane of the chunk, width 3 as width 4;
// - the lane mask gathers the chunks' flagged lanes (bit i for lane i) and
//   keeps only the lanes of the width (width 3 keeps four bits: its fourth
//   lane is computed like the others and never reaches lanes 0-2);
// - the exported function computes every lane and tests the mask; when a lane
//   is flagged it tail-calls its slow twin (same signature, not inlined), which
//   computes the call again, runs the inline pass and sends the lanes still
//   flagged one by one, in lane order, to the family's scalar routine through
//   the 64-byte aligned callout frame. So the common path has no stack frame
//   and saves no register; the twin saves what the scalar calls clobber.
//   The test is computed on its own ahead of the arithmetic, or, for a kernel
//   whose test reads its result (`tied`), taken from the one computation
//   whose results the common path returns.
#pragma once

#include "frame/simd.h"
#include "frame/status.h"

namespace ravl {

template <class A, class B> struct Two {
  A first;
  B second;
};

namespace frame {

// Defaults a kernel may override.
struct Kernel {
  static constexpr bool has_callout = false;
  // Width 3: when set, every input's ignored fourth lane is replaced by
  // width3_fill before the computation, so that lane is never flagged.
  static constexpr bool has_width3_fill = false;
  static constexpr double width3_fill = 0.0;
  // The inline pass: lanes whose answer is a constant are fixed in the result
  // and dropped from the returned mask. By default nothing is settled inline.
  template <int L, class M, class... A> static RAVL_INLINE M settle(M flagged, A&&...) { return flagged; }
  // Set when `special` reads the result (a lane test that is part of the
  // computation, such as a result marked NaN in the flagged lanes): the entry
  // then computes the call once and tests the mask of that computation, and
  // returns its results when no lane is flagged. Otherwise the test is
  // computed on its own, from the inputs, ahead of the arithmetic.
  static constexpr bool tied = false;
};

// ---- signature analysis ----------------------------------------------------

template <class... T> struct List {};
template <bool b, class A, class B> struct CondT { using type = A; };
template <class A, class B> struct CondT<false, A, B> { using type = B; };
template <class T> struct IsPtr { static constexpr bool value = false; using type = T; };
template <class T> struct IsPtr<T*> { static constexpr bool value = true; using type = T; };

template <class S> struct Sig;
template <class R, class... A> struct Sig<R(A...)> {
  using Ret = R;
  static constexpr int nargs = sizeof...(A);
};

template <class T> constexpr int max_bytes(List<T>) { return sizeof(typename IsPtr<T>::type); }
template <class T, class U, class... R> constexpr int max_bytes(List<T, U, R...>) {
  return sizeof(typename IsPtr<T>::type) > max_bytes(List<U, R...>{})
             ? (int)sizeof(typename IsPtr<T>::type) : max_bytes(List<U, R...>{});
}
template <class R> struct RetLanes { using type = List<R>; };
template <class A, class B> struct RetLanes<Two<A, B>> { using type = List<A, B>; };

template <class S> struct MaxBytes;
template <class R, class... A> struct MaxBytes<R(A...)> {
  template <class... X> static constexpr int of(List<X...>) { return max_bytes(List<X..., A...>{}); }
  static constexpr int value = of(typename RetLanes<R>::type{});
};

// The register image of a width-W value of lane type T: the scalar itself at
// width 1, else enough lanes to fill at least a 128-bit register (width 3
// travels as 4).
constexpr int padded(int w) { return w == 3 ? 4 : w; }
template <class T, int W> struct ImageT {
  static constexpr int lanes = padded(W) * (int)sizeof(T) < 16 ? 16 / (int)sizeof(T) : padded(W);
  using type = Vec<T, lanes>;
};
template <class T> struct ImageT<T, 1> {
  static constexpr int lanes = 1;
  using type = T;
};
template <class T, int W> using Image = typename ImageT<T, W>::type;

// Lane bits that belong to width W (width 3 keeps its fourth lane's bit).
constexpr uint32_t width_bits(int w) { return w >= 32 ? ~0u : (1u << padded(w)) - 1u; }

template <int c> struct Idx { static constexpr int value = c; };
// f(Idx<0>{}), f(Idx<1>{}), ... f(Idx<N-1>{}), unrolled at compile time.
template <class F, int... I> RAVL_INLINE void unroll_impl(F& f, Ints<I...>) { (f(Idx<I>{}), ...); }
template <int N, class F> RAVL_INLINE void unroll(F&& f) { unroll_impl(f, typename MakeInts<N>::type{}); }

struct None {};

// An argument that arrived in several 256-bit registers, kept as those
// registers (joining them into one wide vector first makes poor code).
template <class V, int k> struct Pieces {
  V v[k];
};
template <class V, class... R> RAVL_INLINE Pieces<V, 1 + sizeof...(R)> pieces(V a, R... r) { return {{a, r...}}; }
// An argument image in memory (by-address form), any alignment.
struct MemImage {
  const void* p;
};

// The parts of a signature: inputs, register results, a result through a pointer.
template <class S> struct Parts;
template <class R, class... A> struct Parts<R(A...)> {
  using In = List<A...>;
  using Out0 = R;
  using Out1 = None;
  static constexpr int nin = sizeof...(A), nout = 1;
  static constexpr bool ptr_out = false;
};
template <class R, class A, class P> struct Parts<R(A, P*)> {
  using In = List<A>;
  using Out0 = R;
  using Out1 = P;
  static constexpr int nin = 1, nout = 2;
  static constexpr bool ptr_out = true;
};
template <class R, class A, class B, class P> struct Parts<R(A, B, P*)> {
  using In = List<A, B>;
  using Out0 = R;
  using Out1 = P;
  static constexpr int nin = 2, nout = 2;
  static constexpr bool ptr_out = true;
};
template <class R0, class R1, class... A> struct Parts<Two<R0, R1>(A...)> {
  using In = List<A...>;
  using Out0 = R0;
  using Out1 = R1;
  static constexpr int nin = sizeof...(A), nout = 2;
  static constexpr bool ptr_out = false;
};

template <int i, class L> struct At;
template <class T, class... R> struct At<0, List<T, R...>> { using type = T; };
template <int i, class T, class... R> struct At<i, List<T, R...>> { using type = typename At<i - 1, List<R...>>::type; };

// The family's scalar routine as an out-of-line function with the platform's
// convention, one copy per routine however many classes and widths call it.
template <auto F, class... A> __attribute__((noinline)) int callout(A... a) { return F(a...); }

template <class T> constexpr bool is_float_lane = __is_same(T, double) || __is_same(T, float);

template <class K, int W> struct Entry {
  using S = typename K::sig;
  using P = Parts<S>;
  static constexpr int wide = MaxBytes<S>::value;
  // Lanes per chunk and number of chunks.
  static constexpr int L = W <= 2 ? 16 / wide : (padded(W) * wide <= 32 ? padded(W) : 32 / wide);
  static constexpr int n = W <= 2 ? 1 : padded(W) / L;
  static constexpr uint32_t lane_bits = width_bits(W);

  template <class T> using C = Vec<T, L>;
  template <int i> using InT = typename At<i, typename P::In>::type;
  using O0 = typename P::Out0;
  using O1 = typename P::Out1;
  static constexpr bool two = P::nout == 2;
  // What the kernel returns for one chunk.
  using O1x = typename CondT<two, O1, O0>::type;  // O1, or a placeholder with one result
  using Out = typename CondT<two, Two<C<O0>, C<O1x>>, C<O0>>::type;

  // Input chunks, output chunks and the lane mask of one call.
  struct State {
    C<InT<0>> in0[n];
    C<typename At<(P::nin > 1 ? 1 : 0), typename P::In>::type> in1[n];
    C<typename At<(P::nin > 2 ? 2 : 0), typename P::In>::type> in2[n];
    Out out[n];
    uint32_t mask;
  };

  // ---- images <-> chunks ----
  // Chunk c of an argument: from a scalar (width 1: broadcast), a whole
  // register image, the 256-bit pieces the argument arrived in, or an image
  // in memory (by-address form; read a chunk at a time).
  template <int c, class T> static RAVL_INLINE C<T> chunk(T x) { return C<T>(x); }
  template <int c, class T, int N> static RAVL_INLINE C<T> chunk(Vec<T, N> img) { return slice<c * L, L>(img); }
  template <int c, class T, int N, int k> static RAVL_INLINE C<T> chunk(const Pieces<Vec<T, N>, k>& p) {
    static_assert((c * L) % N + L <= N, "a chunk never spans two pieces");
    return slice<(c * L) % N, L>(p.v[(c * L) / N]);
  }
  template <int c, class T> static RAVL_INLINE C<T> chunk(MemImage m) {
    if constexpr (W == 1) {
      T x;
      __builtin_memcpy(&x, m.p, sizeof x);
      return C<T>(x);
    } else {
      C<T> v;
      __builtin_memcpy(&v, static_cast<const unsigned char*>(m.p) + c * L * sizeof(T), sizeof v);
      return v;
    }
  }

  template <class T> static RAVL_INLINE Image<T, W> image(const C<T>* ch) {
    if constexpr (W == 1) {
      return ch[0][0];
    } else if constexpr (n == 1) {
      return slice<0, ImageT<T, W>::lanes>(ch[0]);
    } else if constexpr (n == 2) {
      return slice<0, ImageT<T, W>::lanes>(join(ch[0], ch[1]));
    } else {
      return slice<0, ImageT<T, W>::lanes>(join(ch[0], ch[1], ch[2], ch[3]));
    }
  }
  template <int k> static RAVL_INLINE auto out_image(const State& s) {
    using T = typename CondT<k == 0, O0, O1x>::type;
    C<T> ch[n];
    for (int c = 0; c < n; ++c) {
      if constexpr (!two) ch[c] = s.out[c];
      else if constexpr (k == 0) ch[c] = s.out[c].first;
      else ch[c] = s.out[c].second;
    }
    return image<T>(ch);
  }

  // ---- the common path ----
  // Computes every lane and the lane mask. With `full` (the slow function's
  // body) flagged lanes then go through the inline pass and the lane loop.
  template <bool full, class... Img> static RAVL_INLINE State compute(Img... img) {
    static_assert(sizeof...(Img) == P::nin, "argument count");
    State s;
    unroll<n>([&](auto ci) {
      constexpr int c = decltype(ci)::value;
      load_inputs<c>(s, img...);
    });
    if constexpr (W == 3 && K::has_width3_fill) {
      s.in0[0][3] = (InT<0>)K::width3_fill;
      if constexpr (P::nin > 1) s.in1[0][3] = (InT<1>)K::width3_fill;
      if constexpr (P::nin > 2) s.in2[0][3] = (InT<2>)K::width3_fill;
    }
    uint32_t mask = 0;
    if constexpr (K::tied) {
      // Always in line, however large the kernel: the common path returns
      // this computation's results, which an out-of-line step would pass
      // through memory (and the entry would save the registers it clobbers).
      unroll<n>([&](auto ci) __attribute__((always_inline)) {
        constexpr int c = decltype(ci)::value;
        s.out[c] = call_vec(s, c);
        mask |= bits(call_special(s, c)) << (c * L);
      });
    } else {
      unroll<n>([&](auto ci) {
        constexpr int c = decltype(ci)::value;
        s.out[c] = call_vec(s, c);
        if constexpr (K::has_callout) mask |= bits(call_special(s, c)) << (c * L);
      });
    }
    s.mask = mask & lane_bits;
    if constexpr (K::has_callout && full) {
      if (s.mask != 0) {
        // Inline pass: constant answers are blended in and leave the mask.
        mask = 0;
        unroll<n>([&](auto ci) {
          constexpr int c = decltype(ci)::value;
          mask |= bits(call_settle(s, c)) << (c * L);
        });
        s.mask &= mask;
        if (s.mask != 0) lane_loop(s);
      }
    }
    return s;
  }

  static constexpr bool tied = K::tied;

  // True when some lane needs the slow function (the common path's only test).
  template <class... Img> static RAVL_INLINE bool flagged(Img... img) {
    if constexpr (K::has_callout) return __builtin_expect(compute<false>(img...).mask != 0, 0);
    else return false;
  }
  template <class... Ptr> static RAVL_INLINE bool flagged_mem(const void* res, const Ptr*... p) {
    if constexpr (K::has_callout) return __builtin_expect(load_and_compute<false>(p...).mask != 0, 0);
    else return false;
  }

  template <int c, class... Img> static RAVL_INLINE void load_inputs(State& s, Img... img) {
    set_in<c, 0>(s, img...);
  }
  template <int c, int i, class X, class... R> static RAVL_INLINE void set_in(State& s, X x, R... r) {
    if constexpr (i == 0) s.in0[c] = chunk<c, InT<0>>(x);
    else if constexpr (i == 1) s.in1[c] = chunk<c, InT<1>>(x);
    else s.in2[c] = chunk<c, InT<2>>(x);
    if constexpr (sizeof...(R) > 0) set_in<c, i + 1>(s, r...);
  }

  static RAVL_INLINE Out call_vec(const State& s, int c) {
    if constexpr (P::nin == 1) return K::template vec<L>(s.in0[c]);
    else if constexpr (P::nin == 2) return K::template vec<L>(s.in0[c], s.in1[c]);
    else return K::template vec<L>(s.in0[c], s.in1[c], s.in2[c]);
  }
  static RAVL_INLINE auto call_special(const State& s, int c) {
    if constexpr (P::nin == 1) return K::template special<L>(s.in0[c], s.out[c]);
    else if constexpr (P::nin == 2) return K::template special<L>(s.in0[c], s.in1[c], s.out[c]);
    else return K::template special<L>(s.in0[c], s.in1[c], s.in2[c], s.out[c]);
  }
  static RAVL_INLINE auto call_settle(State& s, int c) {
    auto flagged = call_special(s, c);
    if constexpr (P::nin == 1) return K::template settle<L>(flagged, s.in0[c], s.out[c]);
    else if constexpr (P::nin == 2) return K::template settle<L>(flagged, s.in0[c], s.in1[c], s.out[c]);
    else return K::template settle<L>(flagged, s.in0[c], s.in1[c], s.in2[c], s.out[c]);
  }

  // ---- the slow path: callout frame and lane loop ----
  //
  // The frame is 64-byte aligned; its blocks follow each other, each starting
  // on a 64-byte boundary and as long as the vector rounded up to 64 bytes:
  // the floating inputs in argument order, the floating results, then the
  // 32-bit integer blocks (integer inputs, then integer results).
  template <class T> static constexpr int block_bytes() { return (n * L * (int)sizeof(T) + 63) / 64 * 64; }
  template <class T> static constexpr int fblock(bool is) { return is_float_lane<T> == is ? block_bytes<T>() : 0; }
  struct Layout {
    // Offsets of in0, in1, in2, out0, out1.
    int off[5];
    int total;
  };
  static constexpr Layout layout() {
    using I1 = typename At<(P::nin > 1 ? 1 : 0), typename P::In>::type;
    using I2 = typename At<(P::nin > 2 ? 2 : 0), typename P::In>::type;
    constexpr bool has[5] = {true, P::nin > 1, P::nin > 2, true, two};
    constexpr bool flt[5] = {is_float_lane<InT<0>>, is_float_lane<I1>, is_float_lane<I2>, is_float_lane<O0>,
                             is_float_lane<O1x>};
    constexpr int size[5] = {block_bytes<InT<0>>(), block_bytes<I1>(), block_bytes<I2>(), block_bytes<O0>(),
                             block_bytes<O1x>()};
    Layout l{};
    int at = 0;
    for (int pass = 0; pass < 2; ++pass)
      for (int k = 0; k < 5; ++k)
        if (has[k] && flt[k] == (pass == 0)) { l.off[k] = at; at += size[k]; }
    l.total = at;
    return l;
  }

  static RAVL_INLINE void lane_loop(State& s) {
    constexpr Layout lay = layout();
    alignas(64) unsigned char fr[lay.total];
    // Steps 1-2: store inputs and the current results into their blocks.
    for (int c = 0; c < n; ++c) {
      store_chunk(fr + lay.off[0], c, s.in0[c]);
      if constexpr (P::nin > 1) store_chunk(fr + lay.off[1], c, s.in1[c]);
      if constexpr (P::nin > 2) store_chunk(fr + lay.off[2], c, s.in2[c]);
      if constexpr (two) {
        store_chunk(fr + lay.off[3], c, s.out[c].first);
        store_chunk(fr + lay.off[4], c, s.out[c].second);
      } else {
        store_chunk(fr + lay.off[3], c, s.out[c]);
      }
    }
    // The lane loop: every bit position in increasing order, a call for each
    // set bit.
    uint32_t mask = s.mask;
    for (int i = 0; i < 32; ++i) {
      if (!(mask >> i & 1)) continue;
      // Clear the upper halves before entering scalar code (avoids the
      // penalty of mixing 256-bit and legacy-encoded instructions).
      _mm256_zeroupper();
      call_scalar(fr, lay, i);
    }
    // Reload the result blocks: lanes that were not called keep their value.
    for (int c = 0; c < n; ++c) {
      if constexpr (two) {
        s.out[c].first = load_chunk<O0>(fr + lay.off[3], c);
        s.out[c].second = load_chunk<O1x>(fr + lay.off[4], c);
      } else {
        s.out[c] = load_chunk<O0>(fr + lay.off[3], c);
      }
    }
  }
  template <class T> static RAVL_INLINE void store_chunk(unsigned char* blk, int c, C<T> v) {
    __builtin_memcpy(blk + c * L * sizeof(T), &v, sizeof(T) * L);
  }
  template <class T> static RAVL_INLINE C<T> load_chunk(const unsigned char* blk, int c) {
    C<T> v;
    __builtin_memcpy(&v, blk + c * L * sizeof(T), sizeof(T) * L);
    return v;
  }
  template <class T> static RAVL_INLINE T* lane(unsigned char* fr, int off, int i) {
    return reinterpret_cast<T*>(fr + off) + i;
  }
  static RAVL_INLINE void call_scalar(unsigned char* fr, const Layout& lay, int i) {
    if constexpr (P::nin == 1 && !two)
      callout<&K::scalar>(lane<InT<0>>(fr, lay.off[0], i), lane<O0>(fr, lay.off[3], i));
    else if constexpr (P::nin == 1)
      callout<&K::scalar>(lane<InT<0>>(fr, lay.off[0], i), lane<O0>(fr, lay.off[3], i), lane<O1x>(fr, lay.off[4], i));
    else if constexpr (P::nin == 2 && !two)
      callout<&K::scalar>(lane<InT<0>>(fr, lay.off[0], i), lane<InT<1>>(fr, lay.off[1], i), lane<O0>(fr, lay.off[3], i));
    else if constexpr (P::nin == 2)
      callout<&K::scalar>(lane<InT<0>>(fr, lay.off[0], i), lane<InT<1>>(fr, lay.off[1], i), lane<O0>(fr, lay.off[3], i),
                lane<O1x>(fr, lay.off[4], i));
    else
      callout<&K::scalar>(lane<InT<0>>(fr, lay.off[0], i), lane<InT<1>>(fr, lay.off[1], i), lane<InT<2>>(fr, lay.off[2], i),
                lane<O0>(fr, lay.off[3], i));
  }

  // ---- the two entry forms ----

  // Register form. Returns the register result image; with a second result
  // through a pointer, stores exactly W lanes of it there; with two register
  // results, returns both images one after the other.
  template <bool full, class... Img> static RAVL_INLINE auto reg(void* ptr, Img... img) {
    return reg_out(ptr, compute<full>(img...));
  }
  // The same from a call already computed (the common path of a tied kernel).
  static RAVL_INLINE auto reg_out(void* ptr, const State& s) {
    if constexpr (P::ptr_out) store_lanes<O1>(ptr, out_image<1>(s));
    if constexpr (two && !P::ptr_out) return pair_image(s);
    else return out_image<0>(s);
  }
  static RAVL_INLINE auto pair_image(const State& s) {
    auto a = out_image<0>(s);
    auto b = out_image<1>(s);
    if constexpr (W == 1 && is_float_lane<O0>) {
      // Both scalars packed into one register, the first in lane 0.
      return Vec<O0, 16 / sizeof(O0)>{a, b};
    } else if constexpr (W == 1) {
      // Integer pair in one general register, the first in the low half.
      return (uint64_t)(uint32_t)a | (uint64_t)(uint32_t)b << 32;
    } else {
      return join(a, b);
    }
  }

  // By-address form: arguments and results as register images in memory
  // (any alignment); returns the result address.
  template <bool full, class... Ptr> static RAVL_INLINE void* mem(void* res, const Ptr*... p) {
    return mem_out(load_and_compute<full>(p...), res, p...);
  }
  // The same from a call already computed (the common path of a tied kernel).
  template <class... Ptr> static RAVL_INLINE void* mem_out(const State& s, void* res, const Ptr*... p) {
    if constexpr (P::ptr_out) {
      const void* ptrs[] = {p...};
      store_lanes<O1>(const_cast<void*>(ptrs[P::nin]), out_image<1>(s));
    }
    store_lanes<O0>(res, out_image<0>(s));
    if constexpr (two && !P::ptr_out)
      store_lanes<O1>(static_cast<unsigned char*>(res) + sizeof(Image<O0, W>), out_image<1>(s));
    return res;
  }
  template <bool full, class... Ptr> static RAVL_INLINE State load_and_compute(const Ptr*... p) {
    const void* ptrs[] = {p...};
    if constexpr (P::nin == 1) return compute<full>(MemImage{ptrs[0]});
    else if constexpr (P::nin == 2) return compute<full>(MemImage{ptrs[0]}, MemImage{ptrs[1]});
    else return compute<full>(MemImage{ptrs[0]}, MemImage{ptrs[1]}, MemImage{ptrs[2]});
  }
  // Exactly W lanes: nothing is written past the caller's vector.
  template <class T> static RAVL_INLINE void store_lanes(void* p, Image<T, W> v) {
    __builtin_memcpy(p, &v, W * sizeof(T));
  }
};

}  // namespace frame
}  // namespace ravl
