#pragma once

namespace tavo {

class GLEventObject;

// Whether the shown object can take over the data of a newer one: they have the same class record. Where that is
// GLEventObject's own, because their classes have none, they must be of one type; if they are not, the log says what is
// missing.
bool canTakeOver(const GLEventObject& shown, const GLEventObject& newer);

} // namespace tavo
