; Callers of a sample of the generated declarations (ocl_ravl_l9.ll): the test
; prepends those `declare` lines and compiles this module with llc for Linux
; and Windows. Each caller has the platform's C convention and reaches the
; library through cc 77 (or the by-address form), so that ir_driver.c can
; compare its results with the same exports called from C.

define void @t_exp4(ptr %x, ptr %r) {
  %a = load <4 x double>, ptr %x, align 8
  %v = call cc 77 <4 x double> @__ocl_ravl_l9_exp4(<4 x double> %a)
  store <4 x double> %v, ptr %r, align 8
  ret void
}

define void @t_exp3(ptr %x, ptr %r) {
  %a = load <3 x double>, ptr %x, align 8
  %v = call cc 77 <3 x double> @__ocl_ravl_l9_exp3(<3 x double> %a)
  store <3 x double> %v, ptr %r, align 8
  ret void
}

define void @t_expf16(ptr %x, ptr %r) {
  %a = load <16 x float>, ptr %x, align 4
  %v = call cc 77 <16 x float> @__ocl_ravl_l9_expf16(<16 x float> %a)
  store <16 x float> %v, ptr %r, align 4
  ret void
}

define void @t_exp16(ptr %x, ptr %r) {
  %a = load <16 x double>, ptr %x, align 8
  %v = call cc 77 <16 x double> @__ocl_ravl_l9_exp16(<16 x double> %a)
  store <16 x double> %v, ptr %r, align 8
  ret void
}

define void @t_idivrem4(ptr %x, ptr %y, ptr %q, ptr %r) {
  %a = load <4 x i32>, ptr %x, align 4
  %b = load <4 x i32>, ptr %y, align 4
  %v = call cc 77 { <4 x i32>, <4 x i32> } @__ocl_ravl_l9_idivrem4(<4 x i32> %a, <4 x i32> %b)
  %v0 = extractvalue { <4 x i32>, <4 x i32> } %v, 0
  %v1 = extractvalue { <4 x i32>, <4 x i32> } %v, 1
  store <4 x i32> %v0, ptr %q, align 4
  store <4 x i32> %v1, ptr %r, align 4
  ret void
}

define void @t_idivrem3(ptr %x, ptr %y, ptr %q, ptr %r) {
  %a = load <3 x i32>, ptr %x, align 4
  %b = load <3 x i32>, ptr %y, align 4
  %v = call cc 77 { <3 x i32>, <3 x i32> } @__ocl_ravl_l9_idivrem3(<3 x i32> %a, <3 x i32> %b)
  %v0 = extractvalue { <3 x i32>, <3 x i32> } %v, 0
  %v1 = extractvalue { <3 x i32>, <3 x i32> } %v, 1
  store <3 x i32> %v0, ptr %q, align 4
  store <3 x i32> %v1, ptr %r, align 4
  ret void
}

define void @t_sincos4(ptr %x, ptr %s, ptr %c) {
  %a = load <4 x double>, ptr %x, align 8
  %v = call cc 77 <4 x double> @__ocl_ravl_l9_sincos4(<4 x double> %a, ptr %c)
  store <4 x double> %v, ptr %s, align 8
  ret void
}

define void @t_sincosreg4(ptr %x, ptr %s, ptr %c) {
  %a = load <4 x double>, ptr %x, align 8
  %v = call cc 77 { <4 x double>, <4 x double> } @__ocl_ravl_l9_sincosreg4(<4 x double> %a)
  %v0 = extractvalue { <4 x double>, <4 x double> } %v, 0
  %v1 = extractvalue { <4 x double>, <4 x double> } %v, 1
  store <4 x double> %v0, ptr %s, align 8
  store <4 x double> %v1, ptr %c, align 8
  ret void
}

define void @t_sincosregf2(ptr %x, ptr %s, ptr %c) {
  %a = load <2 x float>, ptr %x, align 4
  %v = call cc 77 { <2 x float>, <2 x float> } @__ocl_ravl_l9_sincosregf2(<2 x float> %a)
  %v0 = extractvalue { <2 x float>, <2 x float> } %v, 0
  %v1 = extractvalue { <2 x float>, <2 x float> } %v, 1
  store <2 x float> %v0, ptr %s, align 4
  store <2 x float> %v1, ptr %c, align 4
  ret void
}

define void @t_fma16(ptr %r, ptr %a, ptr %b, ptr %c) {
  %p = call ptr @__ocl_ravl_l9_fma16(ptr %r, ptr %a, ptr %b, ptr %c)
  ret void
}

define double @t_ldexp1(double %x, i32 %n) {
  %v = call cc 77 double @__ocl_ravl_l9_ldexp1(double %x, i32 %n)
  ret double %v
}

define void @t_ldexp3(ptr %x, ptr %n, ptr %r) {
  %a = load <3 x double>, ptr %x, align 8
  %b = load <3 x i32>, ptr %n, align 4
  %v = call cc 77 <3 x double> @__ocl_ravl_l9_ldexp3(<3 x double> %a, <3 x i32> %b)
  store <3 x double> %v, ptr %r, align 8
  ret void
}

define <2 x float> @t_sincosregf1(float %x) {
  %v = call cc 77 <2 x float> @__ocl_ravl_l9_sincosregf1(float %x)
  ret <2 x float> %v
}

define i64 @t_idivrem1(i32 %x, i32 %y) {
  %v = call cc 77 i64 @__ocl_ravl_l9_idivrem1(i32 %x, i32 %y)
  ret i64 %v
}
