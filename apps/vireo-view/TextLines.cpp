#include "apps/vireo-view/TextLines.h"

#include <new>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/tableCells.h"

namespace vireo_view {

TextLines::TextLines(InputBuffer& input)
    : m_Input(input)
    , m_Stream(&input)
{}

bool TextLines::read()
{
    if (!std::getline(m_Stream, m_Line)) {
        if (m_Stream.bad())
            throw std::bad_alloc(); // which the stream has swallowed
        return false;
    }
    if (!m_Line.empty() && m_Line.back() == '\r')
        m_Line.pop_back();
    m_Text = std::string_view(m_Line);
    m_Text = trimmed(m_Text.substr(0, m_Text.find('#')));
    return true;
}

bool TextLines::next()
{
    while (read())
        if (!m_Text.empty())
            return true;
    return false;
}

bool TextLines::nextJoined()
{
    if (!next())
        return false;
    if (m_Text.back() != '\\')
        return true;
    m_Joined.clear();
    do {
        const bool goesOn = !m_Text.empty() && m_Text.back() == '\\';
        m_Joined += m_Text.substr(0, m_Text.size() - goesOn);
        m_Joined += ' ';
        if (!goesOn)
            break;
    } while (read());
    m_Text = m_Joined;
    return true;
}

void TextLines::fail(const std::string& reason) const
{
    throw InputError(m_Input.getFile(), m_Input.getLineNumber(), reason);
}

} // namespace vireo_view
