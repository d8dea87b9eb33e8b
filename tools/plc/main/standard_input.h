#pragma once

#include "plc/control/control_session.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>

namespace plc {

/**
 * Commands on standard input, as from a user or a pipe. When it ends, or where there is none, the
 * program goes on without it. In the background of a terminal it waits until it is in front.
 */
class StandardInput : public QObject
{
    Q_OBJECT

public:
    /**
     * @param target must outlive the object
     * @param reply is called with each reply
     */
    StandardInput(const ControlTarget &target, ReplyFormat format,
                  std::function<void(const QByteArray &)> reply, QObject *parent = nullptr);

private:
    void receive();
    void answerAll();

    ControlSession m_session;
    std::function<void(const QByteArray &)> m_reply;
    QSocketNotifier m_notifier;
    QTimer m_later;
};

} // namespace plc
