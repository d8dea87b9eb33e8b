#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

namespace cnet::panel {

/**
 * Opens standard input, output and error if the caller has closed them. Otherwise the line would
 * get one of their numbers, and what is printed would go to the PLC. A reader that goes away
 * becomes an ordinary error. Call it before anything is opened.
 */
void keepStandardStreams();

/**
 * Writes to standard output, at once.
 *
 * After the first failure nothing is written any more. A write that waits for its reader is left
 * when one of the StopSignals comes.
 *
 * @return false when standard output has failed
 */
bool writeToStandardOutput(const QByteArray &text);

/** Whether everything that was written to standard output was delivered. */
enum class OutputState {
    Fine,
    Interrupted, ///< the user ended the program while it waited for the reader
    Failed,
};

/** @param reason receives why it has failed, if it has */
OutputState standardOutputState(QString &reason);

/** Forgets a failure, for a program that runs more than one command. */
void resetStandardOutput();

/** Standard output as a device. */
class StandardOutput : public QIODevice
{
    Q_OBJECT

public:
    StandardOutput() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }

Q_SIGNALS:
    /** Emitted once: nothing that is written from here on arrives. */
    void failed();

protected:
    qint64 readData(char *data, qint64 longest) override;
    qint64 writeData(const char *data, qint64 length) override;

private:
    bool m_failed = false;
};

} // namespace cnet::panel
