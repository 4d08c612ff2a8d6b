// LADDER_INDEPENDENT stands before a loop whose passes do not depend on each other, which the
// compiler cannot see because they work on many arrays: it may then use vector registers.
// Macros only: this header is read by files compiled for different instruction sets.
#pragma once

#if defined(_MSC_VER) && !defined(__clang__)
#define LADDER_INDEPENDENT __pragma(loop(ivdep))
#elif defined(__clang__)
#define LADDER_INDEPENDENT _Pragma("clang loop vectorize(assume_safety)")
#else
#define LADDER_INDEPENDENT _Pragma("GCC ivdep")
#endif
