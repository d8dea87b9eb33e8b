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

/// The functions that a host calls, in the order in which it needs them. A host that loads the
/// library at run time looks each one up by its plain name; `decltype(&intf_getData)` is its type.
///
/// Threads. The driver keeps one state for the whole process and starts no thread. It has a lock of
/// its own, so a host needs none around its calls:
/// - the two exchange functions belong to one thread, one call at a time;
/// - `intf_initProperty`, `intf_addrMerge` and `intf_setRcpAddress` are called while the exchange
///   is idle: nothing is in flight and no exchange function runs. At another moment they harm no
///   memory, but jobs may be lost or served twice;
/// - all other functions may be called by any thread at any time, while any other call runs.
///
/// The callback comes on the thread whose call made the value change, so on several threads, even
/// at once. The driver holds no lock meanwhile: a host may hold a lock of its own while it calls,
/// and take the same one in its callback. From within the callback any function may be called
/// except the three above and the two exchange functions.
///
/// Two threads that write the same word at once do what a write from within the callback of another
/// does: the PLC ends with the one queued last, or with the bits of both, and the cache may keep
/// either until the word is read again.
///
/// No function throws, and none logs anything. Results and other numbers have names in `codes.h`.

// --- What the driver is. Any thread, at any time. ---

/// @param type  receives 0, the protocol type; null is allowed
LS_MASTER_K_CNET_EXPORT void intf_getProtocolType(int *type);

/// @param out  receives 26 items separated by commas: "0", the serial line's baud rate, data bits,
///             parity and stop bits, "0", "1", the network address and port, the driver's name, and
///             the 16 register names
LS_MASTER_K_CNET_EXPORT void intf_getDriverParameter(QString &out);

/// @param out  receives "0_0", whatever was set with `intf_SetDriverPropertyPage`
LS_MASTER_K_CNET_EXPORT void intf_getDriverPropertyPage(QString &out);

/// @param page  text of the host's property page; kept, not interpreted
LS_MASTER_K_CNET_EXPORT void intf_SetDriverPropertyPage(const QString &page);

#if defined(__clang__) // a plain name for a C++ function is what is wanted here
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

/// Checks an address that is typed for an object of the panel.
///
/// @param regName     register name
/// @param addrText    address as typed: "100", or "12.5" for a "_bit" register. Of that only the
///                    number is checked, which "3.-1" and "268435456.5" pass: take no signs and no
///                    more digits than the register's format has
/// @param addr        receives the number: the address itself, or word * 16 + bit; after a failure
///                    not to be used. For an unknown register the value that it came with is
///                    checked: 2 when that is below 0, or when `addr` + `wordCount` is above 1
/// @param wordCount   size of the object: 16-bit words, or bits or contacts
/// @param wordAccess  not 0: the object uses words; 0: bits
/// @return            0 valid; 1 a bit register used as words, or the reverse; 2 out of range;
///                    3 unknown register; 4 the text does not fit the register's format
LS_MASTER_K_CNET_EXPORT int intf_checkAddrValidity(const QString &regName, const QString &addrText,
                                                   int &addr, int wordCount, int wordAccess);

/// The same check for an object whose data type and access are known.
///
/// @param dataType    -1 for a bit object; any other value is a word type; 1, 3, 5, 6 and 9 are
///                    32 bits wide
/// @param accessMode  1 or 2: the object writes; any other value: it only reads
/// @return            as above; also 5: data type not allowed for a 32-bit register, 6: writing
///                    to a read-only register (no register of this driver gives either)
LS_MASTER_K_CNET_EXPORT int intf_checkAddr(const QString &regName, const QString &addrText,
                                           int &addr, int dataType, int wordCount, int accessMode);

/// Makes the addresses of copies of an object.
///
/// @param regName    register name
/// @param startAddr  number of the first address; one below 0 is not refused, and gives texts that
///                   are no addresses
/// @param count      how many; at most 1 000 000 are made
/// @param interval   from one to the next in the register's units; -1 a word, -2 a double word
///                   (one unit in a bit register); anything else below 1 counts as 1
/// @param outText    the texts are appended
/// @param outAddr    the numbers are appended
/// @return           0 unknown register; 1 all made; 2 some lie beyond the highest address and were
///                   set to it, or the series ended early
LS_MASTER_K_CNET_EXPORT int intf_multiCopy(QString &regName, int startAddr, int count, int interval,
                                           QVector<QString> &outText, QVector<int> &outAddr);

// --- Start of communication. While the exchange is idle; only the callback at any time. ---

/// @param callback  the host's function, or null for none. The one before may still run, or begin
///                  once more, while another thread is in a call
LS_MASTER_K_CNET_EXPORT void intf_setAddrValueChangeCallBack(ValueChangeCallback callback);

/// Starts (or restarts) communication: takes the host's settings and empties every job list and the
/// data area. The recipe definition stays, and so does the place at which a transfer was cut off.
///
/// @param shm      the host's shared block, at least 60117 bytes; byte 60115 set to 1 asks for a
///                 recipe write, byte 60116 for a recipe read; null: no recipes. The driver sets
///                 the byte to 0 when the transfer is over. Ask only with a recipe that has blocks:
///                 with none the byte stays, and the last job is sent again and again, or nothing
///                 at all when there was none. Ask for one direction at a time: a request raised
///                 during the other's transfer begins in its middle.
/// @param hostArg  kept, not interpreted
/// @param rcpData  the recipe buffer, 16-bit words, low byte first, as large as the recipe items
///                 need; null: no recipes
/// @param status   receives 0; null is allowed
/// @param props    Latin-1, five numbers separated by "#": device number; cache-only writes (0 or
///                 1); a spare one; bad answers after which a frame is given up (3 is usual: sent
///                 three times at most); words of a block (a MASTER-K gives at most 60 at a time
///                 and takes at most 58; below 1 nothing is merged, and words and bits are not
///                 written). A text that is no number counts as 0; with fewer than
///                 five fields the earlier settings stay. Null counts as an empty text.
/// @param shmLock  the host's mutex, not recursive, that guards the two bytes; null: no recipes.
///                 Whoever calls the exchange functions must not hold it; with the other
///                 functions it may be held.
/// @return         1
///
/// The three host objects must live until the next call of this function or until unloading, and
/// until an exchange function that runs meanwhile has returned.
LS_MASTER_K_CNET_EXPORT int intf_initProperty(unsigned char *shm, int hostArg,
                                              unsigned char *rcpData, int *status,
                                              const char *props, QMutex *shmLock);

/// Replaces the set of monitored addresses: marks their units for the callback and merges them into
/// as few cyclic block reads as the words of a block allow. Call it while the exchange is idle.
///
/// @param keys  the addresses, each checked before; the list is not changed. At most 100 000 words
///              (or contacts), or the bits of as many words, are marked for one key. A key is not
///              divided, so none may be longer than a PLC's answer. Contacts one by one: of a key
///              of several only the first is read, and the others are taken for off. One register
///              that is not listed stops all cyclic reading once its block is next.
/// @return      number of block reads that serve them, 0 for an empty list
///
/// A station that does not answer gets the same share of the exchange as the others. To leave it
/// out, merge again without its keys; a one-off reading now and then tells when it is back.
LS_MASTER_K_CNET_EXPORT int intf_addrMerge(QList<KEY_ADDRESS> &keys);

/// Replaces the recipe: keeps the items of this device, sorts them, and merges those that touch or
/// overlap into block transfers. Call it while no transfer runs.
///
/// @param items  word registers only, with addresses checked before. Writing a bit of a data
///               register, or several bits, puts zeros over the PLC's word, and contacts become 0;
///               a register that is not listed holds up everything while a request byte is 1. An
///               item is not divided: of more than 58 words a PLC refuses it when written. Items
///               that are to share a block need `bufOffset`s in the order of their addresses,
///               without gaps: a block takes its values from the buffer in one piece. The list is
///               not changed.
/// @return       number of items kept; 0 when none belongs to this device
LS_MASTER_K_CNET_EXPORT int intf_setRcpAddress(QVector<_RCP_VAR_PRO> &items);

// --- The exchange loop. One thread, one call at a time. ---

/// @param out  receives the next frame to send; untouched when there is none
/// @return     1: send the `out.sendLen` bytes of `out.sendBuf`, collect `out.recvLen` bytes, hand
///             them to `intf_dealRcvFrame`; 0: nothing to send now, ask again soon: writes may wait
///             all the same, since the answer is 0 once after ten writes in a row
LS_MASTER_K_CNET_EXPORT int intf_getSendFrame(FRAME_PRO &out);

/// Checks and uses the answer to the frame that was handed out last.
///
/// @param reply      the bytes that came in, an empty array after a time-out. Bytes 6 to 9 of a
///                   refusal (NAK) are its error code, which the driver does not read
/// @param errorText  receives the description of the request that the answer belongs to, or an
///                   empty text. "1#D_W100(2)(7)" is station 1, register D_W, address 100, two
///                   words, an answer of 7 bytes.
/// @return           0: no frame was out; 1: good; 2: bad and given up; 8: bad, and the next
///                   `intf_getSendFrame` hands the same frame out again
LS_MASTER_K_CNET_EXPORT int intf_dealRcvFrame(QByteArray &reply, QString &errorText);

// --- Values. Any thread, at any time, also from within the callback. ---

/// Copies the values that the driver knows, with the panel's own writes that are still on their
/// way; never talks to the PLC. What was never read is 0; a first reading of 0 makes no callback,
/// so that a value has been read shows by the good answer to the block that holds it.
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
/// @param regName    register name, checked before with the address: a write to an unknown one has
///                   no frame, and holds up every write behind it until communication starts anew
/// @param startAddr  first address
/// @param count      words of a word register; bits or contacts of a bit register. Several bits in
///                   one call are written right only when they are up to 8 bits within one word, or
///                   the 16 bits of one; write others one by one. More than 8 bits for each word
///                   of a block are cut, and the later pieces take other values, mostly zeros.
/// @param data       two bytes a word, low byte first; one byte, 0 or 1, a bit or contact (any
///                   other value is a 1 for the PLC and something else in the cache). More than
///                   1024 bytes, or a negative count: nothing is written. Writes that
///                   stay in the cache may have up to 100 000 words or contacts, or the bits of as
///                   many words.
/// @param opKind     the host's own tag
/// @return           1
///
/// The callback for the panel's own write comes from within this call and before the new value is
/// stored: `intf_getData` still gives the old value there, so a screen reads it once this call has
/// returned. Nor is the write sent before that, though the exchange goes on. A write to the same
/// word from within the callback reaches the PLC last, and the cache keeps the value of the outer
/// call until the word is read again: write once this call has returned.
///
/// At most 513 writes wait; a further one replaces the last, which is never sent: its place shows
/// the panel's value until the PLC's changes. A write to a place whose write still waits (and is
/// not the next to be sent) replaces that one.
LS_MASTER_K_CNET_EXPORT int intf_setData(int stationNo, QString &regName, int startAddr, int count,
                                         unsigned char *data, int opKind);

/// Asks for one reading of an address outside the cyclic reads. The callback reports changed values
/// as usual. The end of the reading is reported for the one queued last only, as (-1, -1, "-1", 0),
/// or with -1 at the end when it failed. A reading that fails drops all that wait, without a report
/// when it was not the last one: a host that waits needs a time-out of its own. What is asked for
/// from within the report of a failure is dropped too.
///
/// @param key     station, register, start address, count and `bitFlag` are used. Word registers
///                only: "_bit" registers queue nothing and never report an end, and a contact
///                overwrites the 15 behind it in the cache; read those with `intf_addrMerge`. An
///                unknown register has no frame and holds up every reading behind it.
/// @param opKind  the host's own tag
/// @return        1
///
/// At most 513 readings wait. A key longer than a block is read in pieces.
LS_MASTER_K_CNET_EXPORT int intf_addConditionRead(KEY_ADDRESS &key, int opKind);
