#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What a terminal shows after a program has written to it: as much of one as the monitor needs.
class TerminalGrid
{
public:
    TerminalGrid(int columns, int rows)
        : m_columns(columns)
        , m_rows(rows)
    {
        clear();
    }

    void write(const QByteArray &bytes)
    {
        for (const QChar character : QString::fromUtf8(bytes)) {
            put(character);
        }
    }

    /** The rows without blanks at their ends. */
    QStringList lines() const
    {
        QStringList lines;
        for (QString line : m_lines) {
            while (line.endsWith(QLatin1Char(' '))) {
                line.chop(1);
            }
            lines.append(line);
        }
        return lines;
    }

    QString text() const { return lines().join(QLatin1Char('\n')); }

    /** All that was ever written in reverse. */
    QString reversed() const { return m_reversed; }

private:
    void clear()
    {
        m_lines.clear();
        for (int i = 0; i < m_rows; ++i) {
            m_lines.append(QString(m_columns, QLatin1Char(' ')));
        }
        m_row = m_column = 0;
    }

    void put(QChar character)
    {
        const char byte = character.toLatin1();
        if (m_sequence.isEmpty() && byte == '\x1b') {
            m_sequence = "\x1b";
        } else if (!m_sequence.isEmpty()) {
            m_sequence += byte;
            if (m_sequence.size() > 2 && byte >= '@') {
                obey();
                m_sequence.clear();
            }
        } else if (byte == '\r') {
            m_column = 0;
        } else if (byte == '\n') {
            feedLine();
        } else if (m_column < m_columns) {
            m_lines[m_row][m_column++] = character;
            m_reversed += m_isReverse ? QString(character) : QString();
        }
    }

    void feedLine()
    {
        if (m_row + 1 < m_rows) {
            ++m_row;
            return;
        }
        m_lines.removeFirst();
        m_lines.append(QString(m_columns, QLatin1Char(' ')));
    }

    void obey()
    {
        const QByteArray parameter = m_sequence.mid(2, m_sequence.size() - 3);
        const int count = qMax(1, parameter.toInt());
        switch (m_sequence.at(m_sequence.size() - 1)) {
        case 'A':
            m_row = qMax(0, m_row - count);
            break;
        case 'B':
            m_row = qMin(m_rows - 1, m_row + count);
            break;
        case 'G':
            m_column = qMin(m_columns, count) - 1;
            break;
        case 'H':
            m_row = m_column = 0;
            break;
        case 'K':
            blank(m_row, m_column);
            break;
        case 'J':
            eraseDisplay(parameter);
            break;
        case 'm':
            m_isReverse = parameter == "7";
            break;
        default:
            break;
        }
    }

    void eraseDisplay(const QByteArray &parameter)
    {
        blank(m_row, parameter == "2" ? 0 : m_column);
        for (int row = parameter == "2" ? 0 : m_row + 1; row < m_rows; ++row) {
            blank(row, 0);
        }
    }

    void blank(int row, int from)
    {
        m_lines[row] = m_lines.at(row).left(from).leftJustified(m_columns, QLatin1Char(' '));
    }

    int m_columns;
    int m_rows;
    QStringList m_lines;
    int m_row = 0;
    int m_column = 0;
    QByteArray m_sequence;
    bool m_isReverse = false;
    QString m_reversed;
};
