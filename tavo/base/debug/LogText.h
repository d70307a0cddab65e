#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tavo {

// Text on its way into the log of the debug window: no more of it than the log keeps, in lines that a text widget lays
// out quickly.
class LogText
{
public:
    // The log keeps the newest lines, the one that is being written included.
    static constexpr std::size_t MAX_LINES = 10000;

    // In characters. A longer line goes on in the next one.
    static constexpr std::size_t LONGEST_LINE = 1000;

    // A carriage return ends a line as well, once with the line feed behind it.
    void append(std::string_view text)
    {
        for (const char c : text) {
            if (c == '\r' || (c == '\n' && !m_EndsInReturn))
                endLine();
            else if (c != '\n')
                appendByte(c);
            m_EndsInReturn = c == '\r';
        }
    }

    // Hands out what has come since the last time, without most of what the log would not keep.
    std::string take()
    {
        dropOldLines();
        m_NumLineEnds = 0;
        return std::exchange(m_Text, {});
    }

    // Bytes.
    std::size_t getSize() const { return m_Text.size(); }

private:
    // In UTF-8, but text need not be UTF-8.
    static constexpr std::size_t MOST_BYTES_OF_A_CHARACTER = 4;

    void appendByte(char c)
    {
        const bool isCharacter = (static_cast<unsigned char>(c) & 0xC0u) != 0x80; // and not the rest of one
        if ((isCharacter && m_LineLength == LONGEST_LINE) || m_LineBytes == LONGEST_LINE * MOST_BYTES_OF_A_CHARACTER)
            endLine();
        m_Text += c;
        m_LineLength += isCharacter ? 1 : 0;
        ++m_LineBytes;
    }

    void endLine()
    {
        m_Text += '\n';
        m_LineLength = 0;
        m_LineBytes = 0;
        if (++m_NumLineEnds == 2 * MAX_LINES) // many at a time, because those that stay are moved
            dropOldLines();
    }

    // One line more stays than the log keeps, so that it drops it: it may have got stuck to one that was handed out
    // without its end.
    void dropOldLines()
    {
        std::size_t begin = 0;
        for (; m_NumLineEnds > MAX_LINES; --m_NumLineEnds)
            begin = m_Text.find('\n', begin) + 1;
        m_Text.erase(0, begin);
    }

    std::string m_Text;
    std::size_t m_NumLineEnds = 0;
    std::size_t m_LineLength = 0; // of the last line, with what of it has been handed out
    std::size_t m_LineBytes = 0;  // likewise
    bool m_EndsInReturn = false;
};

} // namespace tavo
