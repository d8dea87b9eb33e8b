#include "model/operation_mix.h"

namespace model {

const std::vector<Mix> &Mix::all()
{
    static const std::vector<Mix> table = {
        Mix("words written", "monitor 1, write 30, look 6, exchange 40, lone 3", Words | Wide),
        Mix("single bits written", "monitor 2, write 30, look 6, exchange 40, lone 3", Bits),
        Mix("several bits written", "monitor 2, write 30, look 6, exchange 60, lone 3",
            ManyBits | Wide),
        Mix("data-register bits written", "monitor 2, write 30, look 6, exchange 60, lone 3",
            DataBits),
        Mix("contacts written", "monitor 2, write 20, once 4, look 6, exchange 60, lone 3",
            Contacts),
        Mix("bits and their words",
            "start 1, listen 1, monitor 4, write 30, once 12, look 8, exchange 60, lone 3",
            Words | Bits | ManyBits, "bad 25, from 2, narrow 1, varied 1"),
        Mix("one-off reads", "listen 1, monitor 1, once 30, look 6, exchange 40, lone 3",
            Words | Contacts | Bits | Wide, "bad 10"),
        Mix("writes against one-off reads",
            "monitor 2, write 30, once 20, look 2, exchange 45, lone 3", Words, "bad 2, from 40"),
        Mix("writes with nothing monitored", "write 40, once 10, look 2, exchange 45, lone 3",
            Words | Bits, "bad 2, from 40"),
        Mix("cyclic reads of several blocks",
            "listen 1, monitor 6, write 4, once 4, look 6, exchange 60, lone 3", All,
            "bad 10, from 60, varied 1, calm 50"),
        Mix("screens at rest",
            "listen 1, monitor 2, recipe 1, ask 1, write 3, once 3, look 4, exchange 120, within "
            "2, lone 2",
            Words | Bits | Contacts, "bad 3, from 12, varied 1, calm 90"),
        Mix("recipes", "start 1, listen 1, recipe 6, ask 14, exchange 60, lone 3", Words | Wide,
            "bad 8, from 12, varied 1"),
        Mix("recipes between other jobs",
            "start 1, listen 1, monitor 2, recipe 3, ask 8, write 14, once 8, look 4, exchange 60, "
            "lone 3",
            All, "bad 8, from 12, varied 1"),
        Mix("recipe cut off by a start",
            "start 6, monitor 1, recipe 6, ask 14, write 6, once 3, exchange 60, lone 3",
            Words | Bits, "bad 3, from 20"),
        Mix("bad answers to writes",
            "start 1, listen 1, monitor 2, write 30, look 6, exchange 60, lone 3",
            Words | Bits | ManyBits | DataBits | Contacts, "bad 60, from 4, varied 1"),
        Mix("bad answers to reads",
            "start 1, listen 1, monitor 3, write 2, once 25, look 6, exchange 60, lone 3", All,
            "bad 60, varied 1"),
        Mix("property texts change",
            "start 8, listen 1, monitor 4, recipe 2, ask 4, write 20, once 10, look 4, exchange "
            "50, lone 3",
            All, "bad 30, from 12, varied 1"),
        Mix("handshake",
            "start 6, listen 1, monitor 2, recipe 1, ask 8, write 10, once 8, look 2, handshake "
            "10, exchange 40, lone 4",
            All, "bad 20, from 12, varied 1"),
        Mix("full lists", "monitor 1, write 25, once 25, look 1, exchange 10, lone 2",
            Words | Contacts | Wide, "bad 2, from 4000, varied 1"),
        Mix("the same places again", "monitor 1, write 40, once 20, look 4, exchange 30, lone 3",
            Words | Bits, "bad 5, from 2, narrow 1"),
        Mix("calls from within the callback",
            "start 1, listen 1, monitor 4, recipe 1, ask 2, write 15, once 10, look 2, exchange "
            "60, within 25, lone 3",
            All, "bad 15, from 4, varied 1"),
        Mix("writes from within the callback",
            "start 1, monitor 4, write 25, once 2, look 2, exchange 60, within 25, lone 3",
            Words | Bits, "bad 25, from 2, narrow 1, varied 1"),
        Mix("one-off reads from within the callback",
            "start 1, write 2, once 25, exchange 60, within 25, lone 3", Words,
            "bad 20, from 2, narrow 1, varied 1"),
        Mix("everything",
            "start 2, listen 2, monitor 4, recipe 3, ask 6, write 25, once 15, look 8, handshake "
            "2, exchange 70, within 6, lone 5",
            All, "bad 20, from 12, varied 1"),
    };
    return table;
}

} // namespace model
