#pragma once

/// What a host and this library have to agree on. It lies in a section of its own, where
/// script/check-target finds it in the file of any processor, stripped or not.
struct Boundary
{
    char interfaceVersion[8];
    unsigned int qtVersion;      ///< of the Qt headers that the library was compiled with
    unsigned int recordSizes[4]; ///< in bytes: VARIABLE, KEY_ADDRESS, FRAME_PRO, _RCP_VAR_PRO
};

extern const Boundary boundary;
