#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>

#include "tests/tavo/platform/ContextSource.h"

namespace tavo {

inline void PrintTo(const ContextKind& kind, std::ostream* stream)
{
    *stream << kind.name;
}

// What holds for a context however it was made. Each program instantiates it with the kinds that it can make.
class WglGLTest : public testing::TestWithParam<ContextKind>
{
public:
    static std::string nameOf(const testing::TestParamInfo<ContextKind>& info) { return info.param.name; }

protected:
    void SetUp() override;
    void TearDown() override;

    testing::AssertionResult draws() const;

    std::unique_ptr<ContextSource> m_Contexts;
};

} // namespace tavo
