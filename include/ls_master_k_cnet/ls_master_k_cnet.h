#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVector>

#include "ls_master_k_cnet/codes.h"
#include "ls_master_k_cnet/export.h"
#include "ls_master_k_cnet/records.h"
#include "ls_master_k_cnet/value_change_callback.h"

class QMutex;

/// The functions of the driver, in the order in which a host needs them. A host that loads the
/// library at run time looks each one up by its plain name; `decltype(&intf_getData)` is its type.
///
/// Threads. The driver keeps one state for the whole process and starts no thread. It has its own
/// lock, so a host needs none around its calls:
/// - Call the two exchange functions on one thread, one call at a time.
/// - Call `intf_initProperty`, `intf_addrMerge` and `intf_setRcpAddress` while the exchange is
///   idle: nothing is in flight and no exchange function runs. At any other moment they corrupt no
///   memory, but jobs may be lost or served twice.
/// - All other functions may be called by any thread at any time, while any other call runs.
///
/// The callback runs on the thread whose call changed the value, so possibly on several threads at
/// once. The driver holds no lock meanwhile: a host may hold its own lock during a call, and take
/// the same lock in its callback. The callback may call any function except the three above and
/// the two exchange functions.
///
/// Two threads that write the same word at once have the same effect as a write from within the
/// callback of another write: the PLC ends up with the one queued last, or with the bits of both,
/// and the cache may keep either until the word is read again.
///
/// No function throws, and none logs anything. Results and other numbers have names in `codes.h`.

// --- Description of the driver. Any thread, at any time. ---

/// @param type  receives 0, the protocol type; null is allowed
LS_MASTER_K_CNET_EXPORT void intf_getProtocolType(int *type);

/// @param out  receives 26 items separated by commas: "0", the serial line's baud rate, data bits,
///             parity and stop bits, "0", "1", the network address and port, the driver's name, and
///             the 16 register names
LS_MASTER_K_CNET_EXPORT void intf_getDriverParameter(QString &out);

/// @param out  receives "0_0", regardless of `intf_SetDriverPropertyPage`
LS_MASTER_K_CNET_EXPORT void intf_getDriverPropertyPage(QString &out);

/// @param page  text of the host's property page; kept, not interpreted
LS_MASTER_K_CNET_EXPORT void intf_SetDriverPropertyPage(const QString &page);

#if defined(__clang__) // a plain name for a C++ function is intended here
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
/// @return  version of the driver's interface, "2.0.0.0"
LS_MASTER_K_CNET_EXPORT QString intf_getVersion();
#if defined(__clang__)
#pragma clang diagnostic pop
#endif

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

/// Checks an address that was typed for an object of the panel.
///
/// @param regName     register name
/// @param addrText    address as typed: "100", or "12.5" for a "_bit" register. For the latter
///                    only the resulting number is checked, so "3.-1" and "268435456.5" pass: let
///                    nobody type signs or more digits than the register's format has
/// @param addr        receives the number: the address itself, or word * 16 + bit. Do not use it
///                    after a failure. For an unknown register the value passed in is checked: the
///                    result is 2 if it is below 0, or if `addr` + `wordCount` is above 1
/// @param wordCount   size of the object: 16-bit words, or bits or contacts
/// @param wordAccess  not 0: the object uses words; 0: bits
/// @return            0 valid; 1 a bit register used as words, or vice versa; 2 out of range;
///                    3 unknown register; 4 the text does not fit the register's format
LS_MASTER_K_CNET_EXPORT int intf_checkAddrValidity(const QString &regName, const QString &addrText,
                                                   int &addr, int wordCount, int wordAccess);

/// Checks an address for an object whose data type and access are known.
///
/// @param dataType    -1 for a bit object; any other value is a word type; 1, 3, 5, 6 and 9 are
///                    32 bits wide
/// @param accessMode  1 or 2: the object writes; any other value: it only reads
/// @return            as above; also 5: data type not allowed for a 32-bit register, 6: writing
///                    to a read-only register (no register of this driver returns either)
LS_MASTER_K_CNET_EXPORT int intf_checkAddr(const QString &regName, const QString &addrText,
                                           int &addr, int dataType, int wordCount, int accessMode);

/// Makes the addresses for copies of an object.
///
/// @param regName    register name
/// @param startAddr  number of the first address; a negative one is not refused, but its texts are
///                   not valid addresses
/// @param count      how many; capped at 1 000 000
/// @param interval   distance between two addresses in units of the register; -1 a word, -2 a
///                   double word (one unit in a bit register); anything else below 1 counts as 1
/// @param outText    the texts are appended
/// @param outAddr    the numbers are appended
/// @return           0 unknown register; 1 all made; 2 some were beyond the highest address and
///                   were set to it, or the series ended early
LS_MASTER_K_CNET_EXPORT int intf_multiCopy(QString &regName, int startAddr, int count, int interval,
                                           QVector<QString> &outText, QVector<int> &outAddr);

// --- Start of communication. While the exchange is idle; only the first one at any time. ---

/// @param callback  the host's function, or null for none. While another thread is in a call, the
///                  previous function may still be running and may be called once more
LS_MASTER_K_CNET_EXPORT void intf_setAddrValueChangeCallBack(ValueChangeCallback callback);

/// Starts (or restarts) communication: takes the host's settings and empties all job lists and the
/// data area. The recipe definition is kept, and so is the position of an interrupted transfer.
///
/// @param shm      the host's shared block, at least 60117 bytes; byte 60115 set to 1 requests a
///                 recipe write, byte 60116 a recipe read; null: no recipes. The driver resets the
///                 byte to 0 when the transfer is over. Request a transfer only if the recipe has
///                 blocks: otherwise the byte stays 1 and the last job is sent over and over again,
///                 or nothing at all if there was none. Request one direction at a time: a request
///                 raised during the other transfer starts in the middle.
/// @param hostArg  kept, not interpreted
/// @param rcpData  the recipe buffer, 16-bit words, low byte first, as large as the recipe items
///                 need; null: no recipes
/// @param status   receives 0; null is allowed
/// @param props    Latin-1, five numbers separated by "#": device number; cache-only writes (0 or
///                 1); a spare one; bad answers after which a frame is given up (typically 3: it is
///                 sent three times at most); words of a block (a MASTER-K can send 60 at a time
///                 and accept 58; below 1 nothing is merged, and neither words nor bits are
///                 written). A text that is not a number counts as 0. With fewer than five fields
///                 the previous settings are kept. Null counts as an empty text.
/// @param shmLock  the host's mutex, not recursive, that guards the two bytes; null: no recipes.
///                 Do not hold it while calling the exchange functions; with the other functions
///                 it may be held.
/// @return         1
///
/// The three host objects must live until the next call of this function or until unloading, and
/// until any exchange function still running has returned.
LS_MASTER_K_CNET_EXPORT int intf_initProperty(unsigned char *shm, int hostArg,
                                              unsigned char *rcpData, int *status,
                                              const char *props, QMutex *shmLock);

/// Replaces the set of monitored addresses: marks their units for the callback and merges them into
/// as few cyclic block reads as the block size allows. Call it while the exchange is idle.
///
/// @param keys  the addresses, checked beforehand; the list is not changed. At most 100 000 words
///              (or contacts), or the bits of as many words, are marked per key. A key is not
///              split, so none may be longer than a PLC's answer. Pass contacts one by one: of a
///              key with several, only the first is read, and the others are assumed to be off. A
///              single unknown register stops all cyclic reading as soon as its block is due.
/// @return      number of block reads that serve them, 0 for an empty list
///
/// A station that does not answer gets the same share of the exchange as the others. To exclude
/// it, merge again without its keys, and use an occasional one-off read to detect its return.
LS_MASTER_K_CNET_EXPORT int intf_addrMerge(QList<KEY_ADDRESS> &keys);

/// Replaces the recipe: keeps the items of this device, sorts them, and merges adjacent and
/// overlapping ones into block transfers. Call it while no transfer runs.
///
/// @param items  word registers only, with addresses checked beforehand. Writing a bit of a data
///               register, or several bits, overwrites the PLC's word with zeros, and contacts
///               become 0. An unknown register blocks everything while a request byte is 1. An
///               item is not split: a PLC refuses to write more than 58 words. Items that are to
///               share a block need `bufOffset`s in the order of their addresses, without gaps: a
///               block takes its values from the buffer in one piece. The list is not changed.
/// @return       number of items kept; 0 if none belongs to this device
LS_MASTER_K_CNET_EXPORT int intf_setRcpAddress(QVector<_RCP_VAR_PRO> &items);

// --- The exchange loop. One thread, one call at a time. ---

/// @param out  receives the next frame to send; unchanged if there is none
/// @return     1: send the `out.sendLen` bytes of `out.sendBuf`, collect `out.recvLen` bytes, and
///             pass them to `intf_dealRcvFrame`; 0: nothing to send now. Ask again soon: writes
///             may be waiting even so, because after ten writes in a row the result is 0 once
LS_MASTER_K_CNET_EXPORT int intf_getSendFrame(FRAME_PRO &out);

/// Checks and processes the answer to the last frame.
///
/// @param reply      the bytes received; an empty array after a timeout. Bytes 6 to 9 of a refusal
///                   (NAK) are its error code, which the driver does not read
/// @param errorText  receives a description of the request that was answered, or an empty text.
///                   "1#D_W100(2)(7)" is station 1, register D_W, address 100, two words, an
///                   answer of 7 bytes.
/// @return           0: no frame was in flight; 1: good; 2: bad and given up; 8: bad, and the next
///                   `intf_getSendFrame` returns the same frame again
LS_MASTER_K_CNET_EXPORT int intf_dealRcvFrame(QByteArray &reply, QString &errorText);

// --- Values. Any thread, at any time, also from within the callback. ---

/// Copies the known values, including the panel's own writes that are still in progress. Never
/// talks to the PLC. A value that was never read is 0. A first read of 0 makes no callback: to know
/// that a value has been read, wait for the good answer to the block that contains it.
///
/// @param stationNo  PLC station
/// @param regName    register name, checked beforehand; an unknown one is treated as a
///                   data-register bit
/// @param startAddr  first address
/// @param count      words of a word register; bits or contacts of a bit register
/// @param buffer     receives two bytes a word, low byte first, or one byte, 0 or 1, a bit or
///                   contact; never more than 1024 bytes, even for a larger `count`
/// @return           1
LS_MASTER_K_CNET_EXPORT int intf_getData(int stationNo, QString &regName, int startAddr, int count,
                                         unsigned char *buffer);

/// Writes values: the panel sees them at once, the PLC gets them as soon as the exchange allows.
/// The value shows how the write ended: after a failure it reverts to the PLC's value, which the
/// callback reports.
///
/// @param stationNo  PLC station
/// @param regName    register name, checked beforehand together with the address: no frame can be
///                   built for an unknown one, and it blocks all later writes until communication
///                   is restarted
/// @param startAddr  first address
/// @param count      words of a word register; bits or contacts of a bit register. Several bits in
///                   one call are written correctly only if they are up to 8 bits within one word,
///                   or all 16 bits of a word; write others one by one. More than 8 bits per word
///                   of a block are split, and the later pieces get wrong values, mostly zeros.
/// @param data       two bytes per word, low byte first; one byte, 0 or 1, per bit or contact (any
///                   other value is a 1 for the PLC and something else in the cache). With more
///                   than 1024 bytes, or a negative count, nothing is written. Cache-only writes
///                   may have up to 100 000 words or contacts, or the bits of as many words.
/// @param opKind     the host's own tag
/// @return           1
///
/// The callback for the panel's own write runs within this call and before the new value is
/// stored. `intf_getData` still returns the old value there, so update the screen after this call
/// has returned. The write is not sent before that either, though the exchange continues. A write
/// to the same word from within the callback reaches the PLC last, but the cache keeps the value of
/// the outer call until the word is read again: write after this call has returned.
///
/// The queue is capped at 513 writes. A further one replaces the last, which is never sent: its
/// address shows the panel's value until the PLC's value changes. A write to an address that is
/// already in the queue (and not the next to be sent) replaces the queued one.
LS_MASTER_K_CNET_EXPORT int intf_setData(int stationNo, QString &regName, int startAddr, int count,
                                         unsigned char *data, int opKind);

/// Requests a one-off read of an address outside the cyclic reads. The callback reports changed
/// values as usual. Completion is reported only for the read queued last, as (-1, -1, "-1", 0), or
/// with -1 as the last argument if it failed. A failed read drops all queued ones, without a report
/// unless it was the last one: a host that waits for the report needs its own timeout. A read
/// requested from within the report of a failure is dropped too.
///
/// @param key     station, register, start address, count and `bitFlag` are used. Word registers
///                only: "_bit" registers queue nothing and never report completion, and a contact
///                overwrites the next 15 in the cache; read those with `intf_addrMerge`. No frame
///                can be built for an unknown register, and it blocks all later reads.
/// @param opKind  the host's own tag
/// @return        1
///
/// The queue is capped at 513 reads. A key longer than a block is read in pieces.
LS_MASTER_K_CNET_EXPORT int intf_addConditionRead(KEY_ADDRESS &key, int opKind);
