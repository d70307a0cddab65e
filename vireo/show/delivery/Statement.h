#pragma once

#include "vireo/show/Export.h"

namespace tavo {

struct Batch;

/// All that a thread sends while one of these lives is shown at once, whatever views it is for.
///
/// The last argument of every operation of the handles is one. Leave it out: the compiler then makes it, and ends it at
/// the end of the statement, so that `plot("p").curve("a", a).curve("b", b);` is never shown half. Make one yourself
/// where several statements belong together:
///
///     {
///         tavo::Statement together;
///         tavo::plot("speed").curve("left", left);
///         tavo::plot("torque").curve("left", torque);
///     }
///
/// Statements nest: all is shown when the outermost ends. It must end in the thread that made it.
class VIREO_SHOW_EXPORT Statement
{
public:
    Statement() noexcept;
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

private:
    Batch* m_Batch;
};

} // namespace tavo
