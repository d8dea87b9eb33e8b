#pragma once

/// Marks a function that the shared library hands to its hosts under its plain name. Everything
/// without this mark stays inside the library.
#if defined(LS_MASTER_K_CNET_BUILD)
#define LS_MASTER_K_CNET_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define LS_MASTER_K_CNET_EXPORT extern "C"
#endif
