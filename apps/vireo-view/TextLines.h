#pragma once

#include <istream>
#include <string>
#include <string_view>

#include "apps/vireo-view/InputBuffer.h"

namespace vireo_view {

// The lines of a text that hold something: without comments, which '#' begins, and without blanks at their ends.
class TextLines
{
public:
    explicit TextLines(InputBuffer& input);

    // False at the end.
    bool next();

    // Joins lines that end with a backslash with the next, too.
    bool nextJoined();

    std::string_view get() const { return m_Text; }

    // Throws InputError with the line.
    [[noreturn]] void fail(const std::string& reason) const;

private:
    bool read();

    InputBuffer& m_Input;
    std::istream m_Stream;
    std::string m_Line;
    std::string m_Joined;
    std::string_view m_Text;
};

} // namespace vireo_view
