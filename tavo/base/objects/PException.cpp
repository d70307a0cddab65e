#include "tavo/base/objects/PException.h"

#include <utility>

namespace tavo {

PException::PException(std::string message)
    : m_Message(std::move(message))
{}

PException::~PException() = default;

} // namespace tavo
