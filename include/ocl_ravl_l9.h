/* libocl_ravl_l9: OpenCL built-in math for x86-64 AVX2+FMA. Generated from
   exports/families.tsv by exports/gen_exports.py; do not edit.

   Register form: vectors in ymm0-3 (xmm for 128-bit values), results in ymm0-3,
   integer scalars and pointers in the integer argument registers, all of
   ymm6-15 preserved (Windows; ymm8-15 on Linux): clang's intel_ocl_bicc.
   By-address form (functions taking void* result): the platform's C convention;
   result buffer first, then the arguments' register images; returns the buffer.
   Width 3 travels as width 4; its fourth lane is undefined on entry and return.
   remquo stores the 7 low bits of the integral quotient with its sign. */
#ifndef OCL_RAVL_L9_H
#define OCL_RAVL_L9_H
#include <stdint.h>
#ifdef __cplusplus
extern "C" {
#endif
#if !defined(__clang__)
#error "the register-form entry points need clang's intel_ocl_bicc convention"
#endif
#define OCL_RAVL_CC __attribute__((intel_ocl_bicc))
#ifdef _WIN32
#define OCL_RAVL_API __declspec(dllimport)
#else
#define OCL_RAVL_API
#endif

typedef double ocl_ravl_double2 __attribute__((ext_vector_type(2)));
typedef double ocl_ravl_double4 __attribute__((ext_vector_type(4)));
typedef double ocl_ravl_double8 __attribute__((ext_vector_type(8)));
typedef double ocl_ravl_double16 __attribute__((ext_vector_type(16)));
typedef double ocl_ravl_double32 __attribute__((ext_vector_type(32)));
typedef int32_t ocl_ravl_int2 __attribute__((ext_vector_type(2)));
typedef int32_t ocl_ravl_int4 __attribute__((ext_vector_type(4)));
typedef int32_t ocl_ravl_int8 __attribute__((ext_vector_type(8)));
typedef int32_t ocl_ravl_int16 __attribute__((ext_vector_type(16)));
typedef int32_t ocl_ravl_int32 __attribute__((ext_vector_type(32)));
typedef int64_t ocl_ravl_long2 __attribute__((ext_vector_type(2)));
typedef int64_t ocl_ravl_long4 __attribute__((ext_vector_type(4)));
typedef int64_t ocl_ravl_long8 __attribute__((ext_vector_type(8)));
typedef int64_t ocl_ravl_long16 __attribute__((ext_vector_type(16)));
typedef int64_t ocl_ravl_long32 __attribute__((ext_vector_type(32)));
typedef float ocl_ravl_float2 __attribute__((ext_vector_type(2)));
typedef float ocl_ravl_float4 __attribute__((ext_vector_type(4)));
typedef float ocl_ravl_float8 __attribute__((ext_vector_type(8)));
typedef float ocl_ravl_float16 __attribute__((ext_vector_type(16)));
typedef float ocl_ravl_float32 __attribute__((ext_vector_type(32)));
typedef uint32_t ocl_ravl_uint2 __attribute__((ext_vector_type(2)));
typedef uint32_t ocl_ravl_uint4 __attribute__((ext_vector_type(4)));
typedef uint32_t ocl_ravl_uint8 __attribute__((ext_vector_type(8)));
typedef uint32_t ocl_ravl_uint16 __attribute__((ext_vector_type(16)));
typedef uint32_t ocl_ravl_uint32 __attribute__((ext_vector_type(32)));
typedef uint64_t ocl_ravl_ulong2 __attribute__((ext_vector_type(2)));
typedef uint64_t ocl_ravl_ulong4 __attribute__((ext_vector_type(4)));
typedef uint64_t ocl_ravl_ulong8 __attribute__((ext_vector_type(8)));
typedef uint64_t ocl_ravl_ulong16 __attribute__((ext_vector_type(16)));
typedef uint64_t ocl_ravl_ulong32 __attribute__((ext_vector_type(32)));

#define OCL_RAVL_EXPORT_COUNT 216

OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_copysign1(double a0, double a1);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_copysign2(ocl_ravl_double2 a0, ocl_ravl_double2 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_copysign3(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_copysign4(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_copysign8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a1_0, ocl_ravl_double4 a1_1);
OCL_RAVL_API void* __ocl_ravl_l9_copysign16(void* result, const void* arg0, const void* arg1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_copysignf1(float a0, float a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_copysignf2(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_copysignf3(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_copysignf4(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_copysignf8(ocl_ravl_float8 a0, ocl_ravl_float8 a1);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_copysignf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, ocl_ravl_float8 a1_0, ocl_ravl_float8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_fabs1(double a0);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_fabs2(ocl_ravl_double2 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fabs3(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fabs4(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_fabs8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1);
OCL_RAVL_API ocl_ravl_double16 OCL_RAVL_CC __ocl_ravl_l9_fabs16(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a0_2, ocl_ravl_double4 a0_3);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_fabsf1(float a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fabsf2(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fabsf3(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fabsf4(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_fabsf8(ocl_ravl_float8 a0);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_fabsf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_fdim1(double a0, double a1);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_fdim2(ocl_ravl_double2 a0, ocl_ravl_double2 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fdim3(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fdim4(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_fdim8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a1_0, ocl_ravl_double4 a1_1);
OCL_RAVL_API void* __ocl_ravl_l9_fdim16(void* result, const void* arg0, const void* arg1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_fdimf1(float a0, float a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fdimf2(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fdimf3(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fdimf4(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_fdimf8(ocl_ravl_float8 a0, ocl_ravl_float8 a1);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_fdimf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, ocl_ravl_float8 a1_0, ocl_ravl_float8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_fmax1(double a0, double a1);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_fmax2(ocl_ravl_double2 a0, ocl_ravl_double2 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fmax3(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fmax4(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_fmax8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a1_0, ocl_ravl_double4 a1_1);
OCL_RAVL_API void* __ocl_ravl_l9_fmax16(void* result, const void* arg0, const void* arg1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_fmaxf1(float a0, float a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaxf2(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaxf3(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaxf4(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_fmaxf8(ocl_ravl_float8 a0, ocl_ravl_float8 a1);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_fmaxf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, ocl_ravl_float8 a1_0, ocl_ravl_float8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_fmin1(double a0, double a1);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_fmin2(ocl_ravl_double2 a0, ocl_ravl_double2 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fmin3(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fmin4(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_fmin8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a1_0, ocl_ravl_double4 a1_1);
OCL_RAVL_API void* __ocl_ravl_l9_fmin16(void* result, const void* arg0, const void* arg1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_fminf1(float a0, float a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fminf2(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fminf3(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fminf4(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_fminf8(ocl_ravl_float8 a0, ocl_ravl_float8 a1);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_fminf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, ocl_ravl_float8 a1_0, ocl_ravl_float8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_frexp1(double a0, int32_t* out);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_frexp2(ocl_ravl_double2 a0, int32_t* out);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_frexp3(ocl_ravl_double4 a0, int32_t* out);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_frexp4(ocl_ravl_double4 a0, int32_t* out);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_frexp8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, int32_t* out);
OCL_RAVL_API ocl_ravl_double16 OCL_RAVL_CC __ocl_ravl_l9_frexp16(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a0_2, ocl_ravl_double4 a0_3, int32_t* out);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_frexpf1(float a0, int32_t* out);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_frexpf2(ocl_ravl_float4 a0, int32_t* out);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_frexpf3(ocl_ravl_float4 a0, int32_t* out);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_frexpf4(ocl_ravl_float4 a0, int32_t* out);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_frexpf8(ocl_ravl_float8 a0, int32_t* out);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_frexpf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, int32_t* out);
OCL_RAVL_API int32_t OCL_RAVL_CC __ocl_ravl_l9_idiv1(int32_t a0, int32_t a1);
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_idiv2(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_idiv3(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_idiv4(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_int8 OCL_RAVL_CC __ocl_ravl_l9_idiv8(ocl_ravl_int8 a0, ocl_ravl_int8 a1);
OCL_RAVL_API ocl_ravl_int16 OCL_RAVL_CC __ocl_ravl_l9_idiv16(ocl_ravl_int8 a0_0, ocl_ravl_int8 a0_1, ocl_ravl_int8 a1_0, ocl_ravl_int8 a1_1);
OCL_RAVL_API uint64_t OCL_RAVL_CC __ocl_ravl_l9_idivrem1(int32_t a0, int32_t a1);
/* returns the first result in xmm0 and the second in xmm1 (LLVM IR: a two-vector struct) */
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_idivrem2(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
/* returns the first result in xmm0 and the second in xmm1 (LLVM IR: a two-vector struct) */
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_idivrem3(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
/* returns the first result in xmm0 and the second in xmm1 (LLVM IR: a two-vector struct) */
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_idivrem4(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_int16 OCL_RAVL_CC __ocl_ravl_l9_idivrem8(ocl_ravl_int8 a0, ocl_ravl_int8 a1);
OCL_RAVL_API ocl_ravl_int32 OCL_RAVL_CC __ocl_ravl_l9_idivrem16(ocl_ravl_int8 a0_0, ocl_ravl_int8 a0_1, ocl_ravl_int8 a1_0, ocl_ravl_int8 a1_1);
OCL_RAVL_API int32_t OCL_RAVL_CC __ocl_ravl_l9_irem1(int32_t a0, int32_t a1);
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_irem2(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_irem3(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_int4 OCL_RAVL_CC __ocl_ravl_l9_irem4(ocl_ravl_int4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_int8 OCL_RAVL_CC __ocl_ravl_l9_irem8(ocl_ravl_int8 a0, ocl_ravl_int8 a1);
OCL_RAVL_API ocl_ravl_int16 OCL_RAVL_CC __ocl_ravl_l9_irem16(ocl_ravl_int8 a0_0, ocl_ravl_int8 a0_1, ocl_ravl_int8 a1_0, ocl_ravl_int8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_ldexp1(double a0, int32_t a1);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_ldexp2(ocl_ravl_double2 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_ldexp3(ocl_ravl_double4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_ldexp4(ocl_ravl_double4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_ldexp8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_int8 a1);
OCL_RAVL_API void* __ocl_ravl_l9_ldexp16(void* result, const void* arg0, const void* arg1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_ldexpf1(float a0, int32_t a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_ldexpf2(ocl_ravl_float4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_ldexpf3(ocl_ravl_float4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_ldexpf4(ocl_ravl_float4 a0, ocl_ravl_int4 a1);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_ldexpf8(ocl_ravl_float8 a0, ocl_ravl_int8 a1);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_ldexpf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, ocl_ravl_int8 a1_0, ocl_ravl_int8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_maxmag1(double a0, double a1);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_maxmag2(ocl_ravl_double2 a0, ocl_ravl_double2 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_maxmag3(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_maxmag4(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_maxmag8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a1_0, ocl_ravl_double4 a1_1);
OCL_RAVL_API void* __ocl_ravl_l9_maxmag16(void* result, const void* arg0, const void* arg1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_maxmagf1(float a0, float a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_maxmagf2(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_maxmagf3(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_maxmagf4(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_maxmagf8(ocl_ravl_float8 a0, ocl_ravl_float8 a1);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_maxmagf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, ocl_ravl_float8 a1_0, ocl_ravl_float8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_minmag1(double a0, double a1);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_minmag2(ocl_ravl_double2 a0, ocl_ravl_double2 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_minmag3(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_minmag4(ocl_ravl_double4 a0, ocl_ravl_double4 a1);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_minmag8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a1_0, ocl_ravl_double4 a1_1);
OCL_RAVL_API void* __ocl_ravl_l9_minmag16(void* result, const void* arg0, const void* arg1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_minmagf1(float a0, float a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_minmagf2(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_minmagf3(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_minmagf4(ocl_ravl_float4 a0, ocl_ravl_float4 a1);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_minmagf8(ocl_ravl_float8 a0, ocl_ravl_float8 a1);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_minmagf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1, ocl_ravl_float8 a1_0, ocl_ravl_float8 a1_1);
OCL_RAVL_API uint32_t OCL_RAVL_CC __ocl_ravl_l9_udiv1(uint32_t a0, uint32_t a1);
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_udiv2(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_udiv3(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_udiv4(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
OCL_RAVL_API ocl_ravl_uint8 OCL_RAVL_CC __ocl_ravl_l9_udiv8(ocl_ravl_uint8 a0, ocl_ravl_uint8 a1);
OCL_RAVL_API ocl_ravl_uint16 OCL_RAVL_CC __ocl_ravl_l9_udiv16(ocl_ravl_uint8 a0_0, ocl_ravl_uint8 a0_1, ocl_ravl_uint8 a1_0, ocl_ravl_uint8 a1_1);
OCL_RAVL_API uint64_t OCL_RAVL_CC __ocl_ravl_l9_udivrem1(uint32_t a0, uint32_t a1);
/* returns the first result in xmm0 and the second in xmm1 (LLVM IR: a two-vector struct) */
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_udivrem2(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
/* returns the first result in xmm0 and the second in xmm1 (LLVM IR: a two-vector struct) */
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_udivrem3(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
/* returns the first result in xmm0 and the second in xmm1 (LLVM IR: a two-vector struct) */
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_udivrem4(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
OCL_RAVL_API ocl_ravl_uint16 OCL_RAVL_CC __ocl_ravl_l9_udivrem8(ocl_ravl_uint8 a0, ocl_ravl_uint8 a1);
OCL_RAVL_API ocl_ravl_uint32 OCL_RAVL_CC __ocl_ravl_l9_udivrem16(ocl_ravl_uint8 a0_0, ocl_ravl_uint8 a0_1, ocl_ravl_uint8 a1_0, ocl_ravl_uint8 a1_1);
OCL_RAVL_API uint32_t OCL_RAVL_CC __ocl_ravl_l9_urem1(uint32_t a0, uint32_t a1);
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_urem2(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_urem3(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
OCL_RAVL_API ocl_ravl_uint4 OCL_RAVL_CC __ocl_ravl_l9_urem4(ocl_ravl_uint4 a0, ocl_ravl_uint4 a1);
OCL_RAVL_API ocl_ravl_uint8 OCL_RAVL_CC __ocl_ravl_l9_urem8(ocl_ravl_uint8 a0, ocl_ravl_uint8 a1);
OCL_RAVL_API ocl_ravl_uint16 OCL_RAVL_CC __ocl_ravl_l9_urem16(ocl_ravl_uint8 a0_0, ocl_ravl_uint8 a0_1, ocl_ravl_uint8 a1_0, ocl_ravl_uint8 a1_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_exp1(double a0);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_exp2(ocl_ravl_double2 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp3(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp4(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_exp8(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1);
OCL_RAVL_API ocl_ravl_double16 OCL_RAVL_CC __ocl_ravl_l9_exp16(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a0_2, ocl_ravl_double4 a0_3);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_exp1_native(double a0);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_exp2_native(ocl_ravl_double2 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp3_native(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp4_native(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_exp8_native(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1);
OCL_RAVL_API ocl_ravl_double16 OCL_RAVL_CC __ocl_ravl_l9_exp16_native(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a0_2, ocl_ravl_double4 a0_3);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_exp1_half(double a0);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_exp2_half(ocl_ravl_double2 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp3_half(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp4_half(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_exp8_half(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1);
OCL_RAVL_API ocl_ravl_double16 OCL_RAVL_CC __ocl_ravl_l9_exp16_half(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a0_2, ocl_ravl_double4 a0_3);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_exp1_rm(double a0);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_exp2_rm(ocl_ravl_double2 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp3_rm(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_exp4_rm(ocl_ravl_double4 a0);
OCL_RAVL_API ocl_ravl_double8 OCL_RAVL_CC __ocl_ravl_l9_exp8_rm(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1);
OCL_RAVL_API ocl_ravl_double16 OCL_RAVL_CC __ocl_ravl_l9_exp16_rm(ocl_ravl_double4 a0_0, ocl_ravl_double4 a0_1, ocl_ravl_double4 a0_2, ocl_ravl_double4 a0_3);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_expf1(float a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf2(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf3(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf4(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_expf8(ocl_ravl_float8 a0);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_expf16(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_expf1_native(float a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf2_native(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf3_native(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf4_native(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_expf8_native(ocl_ravl_float8 a0);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_expf16_native(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_expf1_half(float a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf2_half(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf3_half(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf4_half(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_expf8_half(ocl_ravl_float8 a0);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_expf16_half(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_expf1_rm(float a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf2_rm(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf3_rm(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_expf4_rm(ocl_ravl_float4 a0);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_expf8_rm(ocl_ravl_float8 a0);
OCL_RAVL_API ocl_ravl_float16 OCL_RAVL_CC __ocl_ravl_l9_expf16_rm(ocl_ravl_float8 a0_0, ocl_ravl_float8 a0_1);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_fma1(double a0, double a1, double a2);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_fma2(ocl_ravl_double2 a0, ocl_ravl_double2 a1, ocl_ravl_double2 a2);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fma3(ocl_ravl_double4 a0, ocl_ravl_double4 a1, ocl_ravl_double4 a2);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fma4(ocl_ravl_double4 a0, ocl_ravl_double4 a1, ocl_ravl_double4 a2);
OCL_RAVL_API void* __ocl_ravl_l9_fma8(void* result, const void* arg0, const void* arg1, const void* arg2);
OCL_RAVL_API void* __ocl_ravl_l9_fma16(void* result, const void* arg0, const void* arg1, const void* arg2);
OCL_RAVL_API double OCL_RAVL_CC __ocl_ravl_l9_fma1_rm(double a0, double a1, double a2);
OCL_RAVL_API ocl_ravl_double2 OCL_RAVL_CC __ocl_ravl_l9_fma2_rm(ocl_ravl_double2 a0, ocl_ravl_double2 a1, ocl_ravl_double2 a2);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fma3_rm(ocl_ravl_double4 a0, ocl_ravl_double4 a1, ocl_ravl_double4 a2);
OCL_RAVL_API ocl_ravl_double4 OCL_RAVL_CC __ocl_ravl_l9_fma4_rm(ocl_ravl_double4 a0, ocl_ravl_double4 a1, ocl_ravl_double4 a2);
OCL_RAVL_API void* __ocl_ravl_l9_fma8_rm(void* result, const void* arg0, const void* arg1, const void* arg2);
OCL_RAVL_API void* __ocl_ravl_l9_fma16_rm(void* result, const void* arg0, const void* arg1, const void* arg2);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_fmaf1(float a0, float a1, float a2);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaf2(ocl_ravl_float4 a0, ocl_ravl_float4 a1, ocl_ravl_float4 a2);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaf3(ocl_ravl_float4 a0, ocl_ravl_float4 a1, ocl_ravl_float4 a2);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaf4(ocl_ravl_float4 a0, ocl_ravl_float4 a1, ocl_ravl_float4 a2);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_fmaf8(ocl_ravl_float8 a0, ocl_ravl_float8 a1, ocl_ravl_float8 a2);
OCL_RAVL_API void* __ocl_ravl_l9_fmaf16(void* result, const void* arg0, const void* arg1, const void* arg2);
OCL_RAVL_API float OCL_RAVL_CC __ocl_ravl_l9_fmaf1_rm(float a0, float a1, float a2);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaf2_rm(ocl_ravl_float4 a0, ocl_ravl_float4 a1, ocl_ravl_float4 a2);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaf3_rm(ocl_ravl_float4 a0, ocl_ravl_float4 a1, ocl_ravl_float4 a2);
OCL_RAVL_API ocl_ravl_float4 OCL_RAVL_CC __ocl_ravl_l9_fmaf4_rm(ocl_ravl_float4 a0, ocl_ravl_float4 a1, ocl_ravl_float4 a2);
OCL_RAVL_API ocl_ravl_float8 OCL_RAVL_CC __ocl_ravl_l9_fmaf8_rm(ocl_ravl_float8 a0, ocl_ravl_float8 a1, ocl_ravl_float8 a2);
OCL_RAVL_API void* __ocl_ravl_l9_fmaf16_rm(void* result, const void* arg0, const void* arg1, const void* arg2);

#ifdef __cplusplus
}
#endif
#endif
