// The DLL's own entry point and the one symbol the Windows code generator
// expects of a C runtime. The library has no state, so attaching to and
// detaching from processes and threads needs no work.
#if defined(_WIN32)
extern "C" {
int _fltused = 0;  // referenced by any object that uses floating point
int __stdcall ravl_dll_entry(void*, unsigned long, void*) { return 1; }
}
#endif
