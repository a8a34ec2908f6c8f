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

#define OCL_RAVL_EXPORT_COUNT 48

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

#ifdef __cplusplus
}
#endif
#endif
