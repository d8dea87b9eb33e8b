#pragma once

/// The facts on which a host and this library have to agree. They are in a section of their own,
/// where script/check-target finds them in a library for any processor, stripped or not.
struct Boundary
{
    char interfaceVersion[8];
    unsigned int qtVersion;      ///< version of the Qt headers that the library was compiled with
    unsigned int recordSizes[4]; ///< in bytes: VARIABLE, KEY_ADDRESS, FRAME_PRO, _RCP_VAR_PRO
};

extern const Boundary boundary;
