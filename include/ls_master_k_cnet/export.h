#pragma once

/// Marks a function that the shared library exports under its plain name. Everything without this
/// mark stays private.
#if defined(LS_MASTER_K_CNET_BUILD)
#define LS_MASTER_K_CNET_EXPORT extern "C" __attribute__((visibility("default")))
#else
#define LS_MASTER_K_CNET_EXPORT extern "C"
#endif
