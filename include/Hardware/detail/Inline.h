// How what each accessor contains is declared.
#pragma once

// Inline, however long the compiler finds it. Without optimisation it is a call: its copies in all
// accessors would be most of what a build under the sanitizers compiles, links and loads.
#ifdef __OPTIMIZE__
#define HARDWARE_INLINE [[gnu::always_inline]]
#else
#define HARDWARE_INLINE
#endif
