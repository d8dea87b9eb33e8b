#ifndef LS_MASTER_K_CNET_H
#define LS_MASTER_K_CNET_H

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>

#include "ls_master_k_cnet/export.h"
#include "ls_master_k_cnet/records.h"

class QMutex;

/// The functions that a host calls, in the order in which it needs them. A host that loads the
/// library at run time looks each one up by its plain name; `decltype(&intf_getData)` is its type.
///
/// Threads. The driver keeps one state for the whole process and starts no thread. It locks next to
/// nothing, so the host makes sure that no two calls run at the same time; a host with one thread
/// does that by itself. "Exchange thread" below is the host's thread that talks to the PLC, "panel
/// thread" the one that draws and writes values. From within the value-change callback any function
/// may be called except `intf_initProperty`, `intf_addrMerge`, `intf_setRcpAddress` and the two
/// exchange functions.
///
/// No function throws, and none logs anything.

/// Called by the driver for each monitored view of a value that changed.
///
/// @param deviceNo   device number of the property text (first field), -1 for the end of a
///                   condition read, 0 for a recipe word
/// @param stationNo  PLC station, -1 for the end of a condition read and for a recipe word
/// @param name       what changed: the register letter followed by "_bit", "_B", "_W", "_D" or
///                   nothing ("M_bit", "D_W", "TX"); "RWI" for a recipe word that was read; "-1"
///                   for the end of a condition read
/// @param address    address in the units of `name`; the index of the word in the recipe buffer for
///                   "RWI"; 0 (read) or -1 (failed) for the end of a condition read
/// @return           ignored
///
/// It runs on the thread whose call made the value change, with no lock held, and may call back
/// into the driver.
typedef int (*ValueChangeCallback)(int deviceNo, int stationNo, QString &name, int address);

// --- What the driver is. Any thread, at any time. ---

/// @param type  receives 0, the protocol type; must not be null
LS_MASTER_K_CNET_EXPORT void intf_getProtocolType(int *type);

/// @param out  receives 26 items separated by commas: "0", the serial line's baud rate, data bits,
///             parity and stop bits, "0", "1", the network address and port, the driver's name, and
///             the 16 register names
LS_MASTER_K_CNET_EXPORT void intf_getDriverParameter(QString &out);

/// @param out  receives "0_0", whatever was set with `intf_SetDriverPropertyPage`
LS_MASTER_K_CNET_EXPORT void intf_getDriverPropertyPage(QString &out);

/// @param page  text of the host's property page; kept, not interpreted
LS_MASTER_K_CNET_EXPORT void intf_SetDriverPropertyPage(const QString &page);

/// @return  version of the driver's interface, "2.0.0.0"
LS_MASTER_K_CNET_EXPORT QString intf_getVersion();

/// @param type  0 for the bit registers, anything else for the word registers
/// @param out   the names are appended
/// @return      1 when `type` is 0 or 1, else 0 (the word registers are appended all the same)
LS_MASTER_K_CNET_EXPORT int intf_getRegListByType(int type, QList<QString> &out);

/// @param regName  register name; an unknown one appends nothing
/// @param out      five texts are appended: address format ("DDDD", "DDD.dd"), lowest address,
///                 highest address, width code ("0" bit, "1" word, "2" double word), access code
///                 ("0" read, "1" read and write, "2" write)
/// @return         0
LS_MASTER_K_CNET_EXPORT int intf_getRegDiscription(const QString &regName, QList<QString> &out);

// --- Addresses, for the panel's editor. Any thread, at any time. ---

/// Checks an address that is typed for an object of the panel.
///
/// @param regName     register name
/// @param addrText    address as typed: "100", or "12.5" for a "_bit" register
/// @param addr        receives the number: the address itself, or word * 16 + bit; after a failure
///                    not to be used
/// @param wordCount   size of the object: 16-bit words, or bits or contacts
/// @param wordAccess  not 0: the object uses words; 0: bits
/// @return            0 valid; 1 a bit register used as words, or the reverse; 2 out of range;
///                    3 unknown register; 4 the text does not fit the register's format
LS_MASTER_K_CNET_EXPORT int intf_checkAddrValidity(const QString &regName, const QString &addrText,
                                                   int &addr, int wordCount, int wordAccess);

/// The same check for an object whose data type and access are known.
///
/// @param dataType    -1 for a bit object; any other value is a word type, of which 1, 3, 5, 6 and
/// 9
///                    are 32 bits wide
/// @param accessMode  1 or 2: the object writes; any other value: it only reads
/// @return            as above; also 5: data type not allowed for a 32-bit register, 6: writing to
/// a
///                    read-only register (no register of this driver gives either)
LS_MASTER_K_CNET_EXPORT int intf_checkAddr(const QString &regName, const QString &addrText,
                                           int &addr, int dataType, int wordCount, int accessMode);

/// Makes the addresses of copies of an object.
///
/// @param regName    register name
/// @param startAddr  number of the first address
/// @param count      how many; at most 1 000 000 are made
/// @param interval   from one to the next in the register's units; -1 a word, -2 a double word
///                   (one unit in a bit register); anything else below 1 counts as 1
/// @param outText    the texts are appended
/// @param outAddr    the numbers are appended
/// @return           0 unknown register; 1 all made; 2 some lie beyond the highest address and were
///                   set to it, or the series ended early
LS_MASTER_K_CNET_EXPORT int intf_multiCopy(QString &regName, int startAddr, int count, int interval,
                                           QVector<QString> &outText, QVector<int> &outAddr);

// --- Start of communication. While no other call runs. ---

/// @param callback  the host's function, or null for none
LS_MASTER_K_CNET_EXPORT void intf_setAddrValueChangeCallBack(ValueChangeCallback callback);

/// Starts (or restarts) communication: takes the host's settings and empties every job list and the
/// data area. The recipe definition stays.
///
/// @param shm      the host's shared block, at least 60117 bytes; byte 60115 set to 1 asks for a
///                 recipe write, byte 60116 for a recipe read; null: no recipes
/// @param hostArg  kept, not interpreted
/// @param rcpData  the recipe buffer, 16-bit words, low byte first, as large as the recipe items
///                 need; null: no recipes
/// @param status   receives 0; null is allowed
/// @param props    Latin-1, five numbers separated by "#": device number, cache-only writes (0 or
///                 1), a spare one, retries of a frame (3 is usual), words of a block (at most 60
///                 for a MASTER-K). A text that is no number counts as 0; with fewer than five
///                 fields the earlier settings stay. Null counts as an empty text.
/// @param shmLock  the host's mutex, not recursive, that guards the two bytes; null: no recipes
/// @return         1
///
/// The three host objects must live until the next call of this function or until unloading.
LS_MASTER_K_CNET_EXPORT int intf_initProperty(unsigned char *shm, int hostArg,
                                              unsigned char *rcpData, int *status,
                                              const char *props, QMutex *shmLock);

/// Replaces the set of monitored addresses: marks their units for the callback and merges them into
/// as few cyclic block reads as the words of a block allow. Call it while the exchange is idle.
///
/// @param keys  the addresses, each checked before; the list is not changed. At most 100 000 words
///              (or contacts), or the bits of as many words, are marked for one key.
/// @return      number of block reads that serve them, 0 for an empty list
LS_MASTER_K_CNET_EXPORT int intf_addrMerge(QList<KEY_ADDRESS> &keys);

/// Replaces the recipe: keeps the items of this device, sorts them, and merges those that touch or
/// overlap into block transfers. Call it while no transfer runs.
///
/// @param items  word registers only, with addresses checked before; a transfer of bit registers or
///               contacts moves other data than meant. Items that are to share a block need
///               `bufOffset`s in the order of their addresses, without gaps: a block takes its
///               values from the buffer in one piece. The list is not changed.
/// @return       number of items kept; 0 when none belongs to this device
LS_MASTER_K_CNET_EXPORT int intf_setRcpAddress(QVector<_RCP_VAR_PRO> &items);

// --- The exchange loop. Exchange thread, in turn. ---

/// @param out  receives the next frame to send; untouched when there is none
/// @return     1: send `out.sendBuf`, collect `out.recvLen` bytes, hand them to
///             `intf_dealRcvFrame`; 0: nothing to send now, ask again later
LS_MASTER_K_CNET_EXPORT int intf_getSendFrame(FRAME_PRO &out);

/// Checks and uses the answer to the frame that was handed out last.
///
/// @param reply      the bytes that came in; empty after a time-out
/// @param errorText  receives the description of the request that the answer belongs to,
///                   "station#register address(count)(bytes of the answer)" without the space, or
///                   an empty text
/// @return           0: no frame was out; 1: good; 2: bad and given up; 8: bad, and the next
///                   `intf_getSendFrame` hands the same frame out again
LS_MASTER_K_CNET_EXPORT int intf_dealRcvFrame(QByteArray &reply, QString &errorText);

// --- Values. Panel thread; also from within the callback. ---

/// Copies the values that the driver knows, with the panel's own writes that are still on their
/// way; never talks to the PLC. What was never read is 0.
///
/// @param stationNo  PLC station
/// @param regName    register name, checked before; an unknown one is taken for a data-register bit
/// @param startAddr  first address
/// @param count      words of a word register; bits or contacts of a bit register
/// @param buffer     receives two bytes a word, low byte first, or one byte, 0 or 1, a bit or
///                   contact; at most 1024 bytes are written, whatever `count` says
/// @return           1
LS_MASTER_K_CNET_EXPORT int intf_getData(int stationNo, QString &regName, int startAddr, int count,
                                         unsigned char *buffer);

/// Writes values: the panel sees them at once, the PLC gets them as soon as the exchange allows.
/// How the write ended shows in the value: a failed one falls back to what the PLC holds, and the
/// callback tells so.
///
/// @param stationNo  PLC station
/// @param regName    register name, checked before with the address; an unknown one is taken for a
///                   data-register bit and reaches no PLC
/// @param startAddr  first address
/// @param count      words of a word register; bits or contacts of a bit register. Several bits in
///                   one call are written right only within one word.
/// @param data       two bytes a word, low byte first; one byte, 0 or 1, a bit or contact. More
/// than
///                   1024 bytes, or a negative count: nothing is written.
/// @param opKind     the host's own tag
/// @return           1
///
/// At most 513 writes wait; a further one replaces the last. A write to a place whose write still
/// waits (and is not the next to be sent) replaces that one.
LS_MASTER_K_CNET_EXPORT int intf_setData(int stationNo, QString &regName, int startAddr, int count,
                                         unsigned char *data, int opKind);

/// Asks for one reading of an address outside the cyclic reads. The callback reports changed values
/// as usual, and then the end of the reading as (-1, -1, "-1", 0), or -1 at the end when it failed;
/// a failure drops every reading that waits.
///
/// @param key     station, register, start address, count and `bitFlag` are used. Word registers
///                only: "_bit" registers queue nothing and never report an end, contacts read other
///                units than meant; read those with `intf_addrMerge`.
/// @param opKind  the host's own tag
/// @return        1
LS_MASTER_K_CNET_EXPORT int intf_addConditionRead(KEY_ADDRESS &key, int opKind);

#endif
