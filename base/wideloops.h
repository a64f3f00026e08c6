// Loops that gain from wide vector units are compiled for several, and the machine's best version runs.
// Results are the same in both: contraction is off and no sum changes its order.
#pragma once

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define ORV_WIDELOOPS __attribute__((target_clones("arch=x86-64-v4", "avx2", "default")))
#else
#define ORV_WIDELOOPS
#endif
