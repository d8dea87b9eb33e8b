#pragma once

#include "host.h"

namespace bench {

/** A recipe transfer to or from the station: each step is a whole transfer with all exchanges. */
class RecipeTransfer
{
public:
    enum class Direction { ToStation, ToPanel };

    static constexpr int kWords = 2000;

    explicit RecipeTransfer(Direction direction);
    ~RecipeTransfer();
    RecipeTransfer(const RecipeTransfer &) = delete;
    RecipeTransfer &operator=(const RecipeTransfer &) = delete;

    void step()
    {
        m_request = 1;
        while (m_host.ask()) {
            if (m_host.isWrite()) {
                m_host.answer(m_written);
            } else {
                m_host.answer(m_host.frame().unitCount == Host::kBlockWords ? m_block : m_rest);
            }
        }
    }

private:
    Host m_host;
    unsigned char &m_request;
    QByteArray m_written; ///< answer to a write
    QByteArray m_block;   ///< answer to the read of a whole block
    QByteArray m_rest;    ///< answer to the read of the last block
};

} // namespace bench
