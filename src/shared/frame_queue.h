#pragma once

#include <QtCore/QtGlobal>

#include "ls_master_k_cnet/records.h"

/// The frames of one job that are built but not answered yet. No job has more than two, the read
/// and the write of a read-modify-write, so they have fixed places and no memory is allocated. A
/// frame takes two kilobytes, of which a read uses about forty bytes: each place remembers what was
/// used, and only that is cleared before reuse. Hold `Protocol::stateLock`.
class FrameQueue
{
public:
    enum { kCapacity = 2 };

    FrameQueue() noexcept;

    bool isEmpty() const { return m_size == 0; }
    int size() const { return m_size; }

    /// @param i  0 .. size() - 1; 0 is the frame in flight
    const FRAME_PRO &at(int i) const { return m_places[placeOf(i)].frame; }
    FRAME_PRO &operator[](int i) { return m_places[placeOf(i)].frame; }

    /// Appends a frame that serves `item` and is otherwise blank. If the queue is full, which no
    /// job causes, it replaces the last one.
    FRAME_PRO &append(const VARIABLE &item);

    /// The same for an item whose value area is known to be blank.
    FRAME_PRO &appendRead(const VARIABLE &item);

    /// Appends the handshake frame, which serves nothing.
    void appendBlank();

    void removeFirst();
    void clear();

private:
    struct Place
    {
        FRAME_PRO frame;
        bool hasValues; ///< `frame.var.data` may differ from 0
    };

    int placeOf(int i) const { return (m_first + i) % kCapacity; }
    Place &nextPlace();

    Place m_places[kCapacity];
    int m_first;
    int m_size;

    Q_DISABLE_COPY(FrameQueue)
};
