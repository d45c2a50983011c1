// PROJ is built without frame pointers, so AddressSanitizer's walk up the stack ends in other
// frames at each of PROJ's many allocations, and keeping all those stacks takes more than half of
// the time of these tests. A few frames are enough to tell who allocated.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=4";
}
